// A file that takes the place of another in one step, or not at all.
#pragma once

#include "csv.h"

#include <climits>
#include <sys/types.h>

namespace csv {

class Replacement {
public:
    Replacement() = default;
    ~Replacement();
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    // Makes a temporary file in the folder of the file at `path`, or of the one behind it where that is a
    // link. The members tell the error: LSYS_OK when it was made.
    Failure begin(const char* path);
    Failure write(const uint8_t* bytes, size_t count);
    // Puts the temporary file, once it is on the disk, in the place of the file.
    Failure commit();

private:
    Failure findFolder(const char* path);
    Failure makeTemporary();
    bool reclaim() const;

    int m_folder = -1;
    int m_file = -1;
    bool m_exists = false;
    mode_t m_mode = 0644;
    uid_t m_owner = 0;
    gid_t m_group = 0;
    char m_name[NAME_MAX + 1] = "";
    char m_temporary[sizeof ".lsys.4294967295.tmp"] = "";
};

} // namespace csv
