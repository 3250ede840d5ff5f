// Files as a whole.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

// The file, or its beginning where it is longer: ask for one byte more than there may be. Throws Failure.
//   what, hint  of the failure: "cannot read FILE"
std::string readWholeFile(const std::string& path, size_t most, const std::string& what,
                          const std::string& hint);

// Throws Failure; a file that cannot be written whole is removed.
void writeWholeFile(const std::string& path, std::string_view bytes, const std::string& what,
                    const std::string& hint);

// The same, but what is there stays until all of the new file is on the disk.
void replaceWholeFile(const std::string& path, std::string_view bytes, const std::string& what,
                      const std::string& hint);

// With those above it; one that is there stays as it is. They outlive a loss of power. Throws Failure.
void makeFolder(const std::string& path);

// The names in a folder outlive a loss of power from now on. Does nothing where it cannot be read: files
// count.
void flushNames(const std::string& folder);

} // namespace tool
