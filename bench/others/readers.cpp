// Reading a settings file, by the platform and by others.
#include "others/readers.h"

#include "libvx63.h"
#include "libvx63_settings.h"
#include "others/others.h"
#include "require.h"

#include <charconv>
#include <cstring>
#include <fstream>

namespace bench {

bool storeField(std::string_view text, const LsysColumn& column, uint8_t* record)
{
    uint8_t* const field = record + column.ulOffset;
    if (column.ulType == LSYS_TYPE_TEXT) {
        if (text.size() >= column.ulWidth)
            return false;
        std::memcpy(field, text.data(), text.size());
        return true;
    }
    int64_t value;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isSigned = column.ulType == LSYS_TYPE_SIGNED;
    const int64_t count = int64_t{1} << (8 * column.ulWidth);
    const int64_t smallest = isSigned ? -count / 2 : 0;
    if (error != std::errc() || end != text.data() + text.size() || value < smallest ||
        value >= smallest + count)
        return false;
    std::memcpy(field, &value, column.ulWidth); // little-endian, as the comparison runs on PCs alone
    return true;
}

bool readByStream(const FactoryFile& file, std::vector<uint8_t>& records)
{
    std::ifstream in(file.path);
    std::string line;
    if (!std::getline(in, line) || line != vx63::settings::kVersion || !std::getline(in, line))
        return false;
    std::fill(records.begin(), records.end(), uint8_t{0});
    for (uint32_t row = 0; std::getline(in, line); ++row) {
        if (row == file.def.rows)
            return false;
        std::string_view rest = line;
        for (uint32_t i = 0; i < file.def.columnCount; ++i) {
            const size_t comma = rest.find(',');
            const bool last = comma == rest.npos;
            if (last != (i + 1 == file.def.columnCount) ||
                !storeField(rest.substr(0, comma), file.def.columns[i],
                            records.data() + size_t{row} * file.def.dataSize))
                return false;
            rest.remove_prefix(last ? rest.size() : comma + 1);
        }
    }
    return in.eof();
}

void compareOtherReaders(Runner& runner)
{
    if (readByLibcsv == nullptr)
        tellLeftOut("libcsv", "libcsv-dev");
    constexpr struct {
        uint32_t id;
        const char* size;
    } kFiles[] = {{VX63_SET_FILE_CATV_UP_STREAM, "1001 x 2"}, {VX63_SET_FILE_PMEAS_MNG, "48 x 29"}};
    for (const auto& [id, size] : kFiles) {
        const FactoryFile file(id, "/dev/shm");
        const Body floor = readFloor(file);
        std::vector<uint8_t> records(file.records.size());
        const auto compare = [&](const char* what, const Body& read) {
            read();
            require(records == file.records, what, "other records");
            std::fill(records.begin(), records.end(), uint8_t{0});
            runner.compare({what + std::string(", ") + size, "open, read, close, memcpy"}, floor, read);
        };
        compare("reading by lsys_readCsvNewFmt", [&] { file.read(records); });
        compare("reading by std::ifstream",
                [&] { require(readByStream(file, records), "std::ifstream", "not that file"); });
        if (readByLibcsv != nullptr) {
            compare("reading by libcsv",
                    [&] { require(readByLibcsv(file, records), "libcsv", "not that file"); });
        }
    }
}

} // namespace bench
