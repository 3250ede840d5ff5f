// The settings files of the meter: factory contents, and whether a file can be read.
#pragma once

#include "model/settings.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vmeter {

// Every settings folder without a file gets its factory files: those of the catalogue, and lists without
// names. Throws Failure.
void fillSettings(const Settings& settings);

// Empties the settings folders and fills them anew. Gives whether that succeeded; no folder that is not the
// meter's own is touched.
bool restoreSettings(const Settings& settings);

// What became of a settings file that was to be read.
struct ReadBack {
    std::string path;             // of the file, or of the one among several that could not be read
    int32_t records = 0;          // or why it could not be read, see lsys.h
    std::vector<uint8_t> content; // of one file
};

// Reads a file; the sets of a folder are read all, and so is their list. `fileId` is one of the catalogue.
ReadBack readSettings(const Settings& settings, uint8_t fileId);

} // namespace vmeter
