// A settings file with its factory contents, and the floors of reading and writing it.
#pragma once

#include "paired.h"
#include "setfile/catalogue.h"

#include <string>
#include <vector>

namespace bench {

// Lies in the folder while it lives, by a name of this process.
class FactoryFile {
public:
    FactoryFile(uint32_t id, const std::string& folder); // all records
    FactoryFile(uint32_t id, const std::string& folder, uint32_t firstRecords);
    ~FactoryFile();
    FactoryFile(const FactoryFile&) = delete;
    FactoryFile& operator=(const FactoryFile&) = delete;

    // As the library does it.
    void write() const;
    void read(std::vector<uint8_t>& into) const;

    const vx63::SetFileDef& def;
    const uint32_t count;
    const std::string path;
    const std::vector<uint8_t> records;
};

std::string contentsOf(const std::string& path);

// For as long as the file lives.
inline constexpr char kReadFloor[] = "open, read, close, memcpy";
Body readFloor(const FactoryFile& file);

} // namespace bench
