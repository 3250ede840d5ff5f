// Feeds any bytes as a settings file to the reader, and what it accepts to the writer and back.
#include "lsys.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr uint32_t kMaxRecords = 4;
constexpr uint8_t kGuard = 0xA5;
constexpr size_t kGuardSize = 64;

struct Layout {
    uint32_t recordSize;
    const char* header;
    std::vector<LsysColumn> columns;
};

const Layout kLayouts[] = {
    {12, "CH_NO,CENT_FREQ", {{6, 8, 0}, {3, 4, 8}}},
    {15, "NO,ENBFLG,FILE_NAME", {{3, 1, 0}, {3, 1, 1}, {6, 13, 2}}},
    {20, "A,B,C,D", {{4, 4, 12}, {4, 2, 8}, {4, 1, 2}, {6, 2, 0}}},
    {1, "T", {{6, 1, 0}}},
};

void require(bool holds, const char* what)
{
    if (!holds) {
        fprintf(stderr, "csv: %s\n", what);
        abort();
    }
}

struct Read {
    int32_t result;
    std::vector<uint8_t> records;
};

Read read(const char* path, const Layout& layout)
{
    const size_t room = kMaxRecords * layout.recordSize;
    std::vector<uint8_t> records(room + kGuardSize, kGuard);
    const int32_t result =
        lsys_readCsvNewFmt(path, "1.0.0", kMaxRecords, static_cast<uint32_t>(layout.columns.size()),
                           records.data(), layout.recordSize, layout.columns.data());
    require(result <= static_cast<int32_t>(kMaxRecords), "more records than there is room for");
    require(result >= LSYS_ERR_SYSTEM && result != LSYS_ERR_ARG, "an unknown result");
    for (size_t i = room; i < records.size(); ++i)
        require(records[i] == kGuard, "a byte behind the last record has changed");
    records.resize(result < 0 ? 0 : static_cast<size_t>(result) * layout.recordSize);
    return {result, records};
}

// A folder for what is written; it goes with the process.
const std::string& folder()
{
    static const std::string made = [] {
        std::string pattern =
            access("/dev/shm", W_OK) == 0 ? "/dev/shm/fuzz_csv.XXXXXX" : "/tmp/fuzz_csv.XXXXXX";
        require(mkdtemp(pattern.data()) != nullptr, "no folder");
        return pattern;
    }();
    static const int cleared = atexit([] {
        unlink((folder() + "/file.csv").c_str());
        rmdir(folder().c_str());
    });
    require(cleared == 0, "atexit");
    return made;
}

} // namespace

// The first byte chooses the layout, and whether a good head is put before the bytes.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const Layout& layout = kLayouts[data[0] % std::size(kLayouts)];
    std::string text;
    if ((data[0] & 0x80) == 0)
        text = std::string("1.0.0\n") + layout.header + "\n";
    text.append(reinterpret_cast<const char*>(data + 1), size - 1);

    const int file = memfd_create("fuzz_csv", MFD_CLOEXEC);
    require(file >= 0 && ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size()),
            "no file");
    const Read got = read(("/proc/self/fd/" + std::to_string(file)).c_str(), layout);
    close(file);
    if (got.result < 0)
        return 0;

    const std::string path = folder() + "/file.csv";
    require(lsys_writeCsvNewFmt(path.c_str(), "1.0.0", layout.header, static_cast<uint32_t>(got.result),
                                static_cast<uint32_t>(layout.columns.size()),
                                got.result == 0 ? data : got.records.data(), layout.recordSize,
                                layout.columns.data()) == LSYS_OK,
            "what was read cannot be written");
    const Read again = read(path.c_str(), layout);
    require(again.result == got.result && again.records == got.records,
            "what was written comes back otherwise");
    return 0;
}
