// Settings files as these tests lay them out, and folders to put them into.
#pragma once

#include "lsys.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace lsystest {

using Bytes = std::vector<uint8_t>;

inline constexpr uint8_t kUntouched = 0xA5;

struct Layout {
    uint32_t recordSize;
    std::string header;
    std::vector<LsysColumn> columns;
};

inline int32_t write(const std::string& path, const Layout& layout, const Bytes& records,
                     const char* version = "1.0.0")
{
    return lsys_writeCsvNewFmt(path.c_str(), version, layout.header.c_str(),
                               static_cast<uint32_t>(records.size() / layout.recordSize),
                               static_cast<uint32_t>(layout.columns.size()),
                               records.empty() ? &kUntouched : records.data(), layout.recordSize,
                               layout.columns.data());
}

struct Read {
    int32_t result;
    Bytes records; // as many as were asked for, and as the call left them
};

// Fails the test where a byte behind the last record has changed.
inline Read read(const std::string& path, const Layout& layout, uint32_t maxRecords,
                 const char* version = "1.0.0")
{
    constexpr size_t kGuard = 64;
    const size_t room = size_t{maxRecords} * layout.recordSize;
    Bytes buffer(room + kGuard, kUntouched);
    const int32_t result =
        lsys_readCsvNewFmt(path.c_str(), version, maxRecords, static_cast<uint32_t>(layout.columns.size()),
                           buffer.data(), layout.recordSize, layout.columns.data());
    EXPECT_EQ(Bytes(buffer.begin() + static_cast<ptrdiff_t>(room), buffer.end()), Bytes(kGuard, kUntouched));
    buffer.resize(room);
    return {result, buffer};
}

inline std::string textOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void putText(const std::string& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
}

// What lies in a folder, sorted; hidden files too.
inline std::vector<std::string> namesIn(const std::string& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

// Runs in a child, for what would change this process for good; gives its exit status, or -1.
template <class Function>
int inChild(Function function)
{
    const pid_t child = fork();
    if (child == 0)
        _exit(function());
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return -1;
    return WEXITSTATUS(status);
}

// A test with a folder of its own.
class FolderTest : public testing::Test {
protected:
    void SetUp() override
    {
        // In memory where possible: thousands of files are flushed.
        const std::string place = access("/dev/shm", W_OK) == 0 ? "/dev/shm/" : testing::TempDir();
        std::string pattern = place + "lsys_test.XXXXXX";
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        m_folder = pattern;
        ASSERT_EQ(chmod(pattern.c_str(), 0777), 0);
    }
    void TearDown() override
    {
        std::error_code error;
        std::filesystem::remove_all(m_folder, error);
    }

    std::string path(const std::string& name = "file.csv") const { return m_folder + "/" + name; }

    std::string m_folder;
};

} // namespace lsystest
