// Settings files: reading, writing, factory contents.
#include "settings_files.h"

#include "groups.h"
#include "libvx63.h"
#include "libvx63_settings.h"
#include "lsys.h"
#include "ready_line.h"
#include "require.h"

#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

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

constexpr char kWriteFloor[] = "open, write, fsync, rename, fsync of the folder";
constexpr char kMemory[] = "/dev/shm";

const uint8_t* factoryContents(const SetFileDef& def)
{
    return static_cast<const uint8_t*>(def.defaultData);
}

// As durable as the platform's: the folder is flushed too.
Body writeFloor(const FactoryFile& file)
{
    return [path = file.path, folder = std::filesystem::path(file.path).parent_path(),
            text = contentsOf(file.path)] {
        const std::string temporary = path + ".new";
        const int to = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
        [[maybe_unused]] const ssize_t written = write(to, text.data(), text.size());
        fsync(to);
        close(to);
        rename(temporary.c_str(), path.c_str());
        const int parent = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        fsync(parent);
        close(parent);
    };
}

void compareFile(Runner& runner, const File& file, const std::string& folder)
{
    const FactoryFile factory(file.id, folder);
    std::vector<uint8_t> records = factory.records;
    const bool onDisk = folder != kMemory;
    const std::string what = "a file of " + std::string(file.size) + (onDisk ? ", on disk" : ", in memory");
    runner.compare({"reading " + what, kReadFloor, file.readTarget}, readFloor(factory),
                   [&] { factory.read(records); });
    runner.compare({"writing " + what, kWriteFloor, onDisk ? 1.05 : file.writeTarget}, writeFloor(factory),
                   [&] { factory.write(); });
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

FactoryFile::FactoryFile(uint32_t id, const std::string& folder)
    : FactoryFile(id, folder, vx63::kCatalogue[id].rows)
{}

FactoryFile::FactoryFile(uint32_t id, const std::string& folder, uint32_t firstRecords)
    : def(vx63::kCatalogue[id]), count(firstRecords),
      path(folder + "/vx63-bench." + std::to_string(getpid()) + ".csv"),
      records(factoryContents(def), factoryContents(def) + size_t{count} * def.dataSize)
{
    write();
}

FactoryFile::~FactoryFile()
{
    std::filesystem::remove(path);
}

void FactoryFile::write() const
{
    const int32_t result = lsys_writeCsvNewFmt(path.c_str(), vx63::settings::kVersion, def.header, count,
                                               def.columnCount, records.data(), def.dataSize, def.columns);
    require(result == LSYS_OK, path.c_str(), "it cannot be written");
}

void FactoryFile::read(std::vector<uint8_t>& into) const
{
    const int32_t result = lsys_readCsvNewFmt(path.c_str(), vx63::settings::kVersion, count, def.columnCount,
                                              into.data(), def.dataSize, def.columns);
    require(result == static_cast<int32_t>(count), path.c_str(), "it cannot be read");
}

std::string contentsOf(const std::string& path)
{
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

Body readFloor(const FactoryFile& factory)
{
    return [&factory, text = std::vector<char>(contentsOf(factory.path).size() + 1),
            records = factory.records]() mutable {
        const int file = open(factory.path.c_str(), O_RDONLY | O_CLOEXEC);
        [[maybe_unused]] const ssize_t got = ::read(file, text.data(), text.size());
        close(file);
        std::memcpy(records.data(), factory.records.data(), records.size());
    };
}

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
    for (const uint32_t count : {1, 3, 10, 30, 100, 300, 1001}) {
        const FactoryFile factory(VX63_SET_FILE_CATV_UP_STREAM, kMemory, count);
        std::vector<uint8_t> records = factory.records;
        runner.grow({"reading", static_cast<double>(count), "lsys_readCsvNewFmt", kReadFloor},
                    readFloor(factory), [&] { factory.read(records); });
        runner.grow({"writing", static_cast<double>(count), "lsys_writeCsvNewFmt", kWriteFloor},
                    writeFloor(factory), [&] { factory.write(); });
    }
}

} // namespace bench
