// libcsv: calls back for each field and each line.
#include "libvx63_settings.h"
#include "others/readers.h"

#include <algorithm>
#include <csv.h>
#include <memory>

namespace bench {
namespace {

struct Reading {
    const vx63::SetFileDef& def;
    uint8_t* record;
    int line = 0;
    uint32_t column = 0;
    bool good = true;

    bool inRecords() const { return line >= 2; }
};

void takeField(void* text, size_t length, void* data)
{
    Reading& reading = *static_cast<Reading*>(data);
    const std::string_view field(static_cast<const char*>(text), length);
    if (reading.line == 0)
        reading.good = field == vx63::settings::kVersion;
    else if (reading.inRecords())
        reading.good = reading.good && reading.column < reading.def.columnCount &&
                       reading.line < reading.def.rows + 2 &&
                       storeField(field, reading.def.columns[reading.column], reading.record);
    ++reading.column;
}

void endLine(int, void* data)
{
    Reading& reading = *static_cast<Reading*>(data);
    if (reading.inRecords()) {
        reading.good = reading.good && reading.column == reading.def.columnCount;
        reading.record += reading.def.dataSize;
    }
    ++reading.line;
    reading.column = 0;
}

} // namespace

bool readByLibcsv(const FactoryFile& file, std::vector<uint8_t>& records)
{
    const std::unique_ptr<FILE, int (*)(FILE*)> in(std::fopen(file.path.c_str(), "re"), std::fclose);
    csv_parser parser;
    if (in == nullptr || csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI) != 0)
        return false;
    std::fill(records.begin(), records.end(), uint8_t{0});
    Reading reading{.def = file.def, .record = records.data()};
    char chunk[4096];
    for (size_t got; (got = std::fread(chunk, 1, sizeof chunk, in.get())) > 0;)
        reading.good = csv_parse(&parser, chunk, got, takeField, endLine, &reading) == got && reading.good;
    const bool ended = csv_fini(&parser, takeField, endLine, &reading) == 0;
    csv_free(&parser);
    return reading.good && ended && std::ferror(in.get()) == 0;
}

} // namespace bench
