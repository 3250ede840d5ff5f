// Settings files: reading, writing, factory contents.
#include "groups.h"
#include "libvx63.h"
#include "libvx63_settings.h"
#include "lsys.h"
#include "ready_line.h"
#include "setfile/catalogue.h"

#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>
#include <utility>
#include <vector>

namespace bench {
namespace {

using vx63::SetFileDef;

struct File {
    uint32_t id;
    const char* size;
    double readTarget;
    double writeTarget;
};
constexpr File kFiles[] = {
    {VX63_SET_FILE_CATV_UP_STREAM, "1001 x 2", 7, 4},
    {VX63_SET_FILE_PMEAS_MNG, "48 x 29", 6, 3},
};

std::string contentsOf(const std::string& path)
{
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

// A file of the first of its factory records, read and written by the platform's functions and by nothing but
// the system calls.
class TestFile {
public:
    TestFile(uint32_t fileId, uint32_t records, std::string folder)
        : m_def(vx63::kCatalogue[fileId]), m_count(records), m_folder(std::move(folder)),
          m_records(size_t{records} * m_def.dataSize)
    {
        write();
        m_text = contentsOf(m_path);
        m_room.resize(m_text.size() + 1);
    }
    ~TestFile() { unlink(m_path.c_str()); }
    TestFile(const TestFile&) = delete;
    TestFile& operator=(const TestFile&) = delete;

    void read()
    {
        lsys_readCsvNewFmt(m_path.c_str(), vx63::settings::kVersion, m_count, m_def.columnCount,
                           m_records.data(), m_def.dataSize, m_def.columns);
    }

    void readBarely()
    {
        const int file = open(m_path.c_str(), O_RDONLY | O_CLOEXEC);
        [[maybe_unused]] const ssize_t got = ::read(file, m_room.data(), m_room.size());
        close(file);
        std::memcpy(m_records.data(), m_def.defaultData, m_records.size());
    }

    void write()
    {
        lsys_writeCsvNewFmt(m_path.c_str(), vx63::settings::kVersion, m_def.header, m_count,
                            m_def.columnCount, static_cast<const uint8_t*>(m_def.defaultData), m_def.dataSize,
                            m_def.columns);
    }

    // As durable as the platform's: the folder is flushed too.
    void writeBarely()
    {
        const std::string temporary = m_path + ".new";
        const int file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
        [[maybe_unused]] const ssize_t written = ::write(file, m_text.data(), m_text.size());
        fsync(file);
        close(file);
        rename(temporary.c_str(), m_path.c_str());
        const int parent = open(m_folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        fsync(parent);
        close(parent);
    }

private:
    const SetFileDef& m_def;
    uint32_t m_count;
    std::string m_folder;
    std::string m_path = m_folder + "/settings.csv";
    std::string m_text;
    std::vector<char> m_room;
    std::vector<uint8_t> m_records;
};

constexpr char kReadFloor[] = "open, read, close, memcpy";
constexpr char kWriteFloor[] = "open, write, fsync, rename, fsync of the folder";
constexpr char kMemory[] = "/dev/shm";

void compareFile(Runner& runner, const File& file, const std::string& folder)
{
    const bool onDisk = folder != kMemory;
    const std::string place = onDisk ? ", on disk" : ", in memory";
    TestFile test(file.id, vx63::kCatalogue[file.id].rows, folder);
    runner.compare(
        {"reading a file of " + std::string(file.size) + place, kReadFloor, file.readTarget},
        [&] { test.readBarely(); }, [&] { test.read(); });
    runner.compare(
        {"writing a file of " + std::string(file.size) + place, kWriteFloor,
         onDisk ? 1.05 : file.writeTarget},
        [&] { test.writeBarely(); }, [&] { test.write(); });
}

void compareFactoryContents(Runner& runner, uint32_t fileId, const char* name)
{
    const SetFileDef& def = vx63::kCatalogue[fileId];
    std::vector<uint8_t> records(size_t{def.rows} * def.dataSize);
    const auto read = [&] { vx63_readSetFile(fileId, records.data(), nullptr, 1); };
    const std::vector<std::string> lines = linesOf(read);
    runner.compare(
        {std::string("vx63_readSetFile, factory contents of ") + name,
         "memcpy, " + std::to_string(lines.size()) + " ready lines", 1.05},
        [&] {
            for (const std::string& line : lines)
                writeReadyLine(line);
            std::memcpy(records.data(), def.defaultData, def.defaultSize);
        },
        read);
}

} // namespace

void compareSettingsFiles(Runner& runner)
{
    for (const File& file : kFiles) {
        compareFile(runner, file, kMemory);
        compareFile(runner, file, std::filesystem::current_path());
    }
    compareFactoryContents(runner, VX63_SET_FILE_CATV_UP_STREAM, "1001 x 2");
    compareFactoryContents(runner, VX63_SET_FILE_PMEAS_MNG, "48 x 29");
}

void growSettingsFiles(Runner& runner)
{
    for (const uint32_t records : {1, 3, 10, 30, 100, 300, 1001}) {
        TestFile test(VX63_SET_FILE_CATV_UP_STREAM, records, kMemory);
        runner.grow(
            {"reading", static_cast<double>(records), "lsys_readCsvNewFmt", kReadFloor},
            [&] { test.readBarely(); }, [&] { test.read(); });
        runner.grow(
            {"writing", static_cast<double>(records), "lsys_writeCsvNewFmt", kWriteFloor},
            [&] { test.writeBarely(); }, [&] { test.write(); });
    }
}

} // namespace bench
