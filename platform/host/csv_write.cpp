// Writes records as CSV settings files, in one pass through a buffer.
#include "csv.h"
#include "replacement.h"

#include <charconv>
#include <cstring>

namespace csv {

namespace {

constexpr size_t kNumberRoom = sizeof "-2147483648,";

class Writer {
public:
    // Each gives false once something has failed.
    bool begin(const char* path);
    bool putLine(const char* line);
    bool putRecord(const uint8_t* record, uint32_t columnCount, const LsysColumn* columns);
    bool commit();

    const Failure& failure() const { return m_failure; }

private:
    bool fail(const Failure& failure);
    bool flush();
    bool put(uint8_t byte);
    bool putNumber(const LsysColumn& column, const uint8_t* field, uint8_t separator);
    bool putText(uint32_t width, const uint8_t* field, uint8_t separator);
    bool putQuoted(const uint8_t* text, uint32_t length);

    Replacement m_replacement;
    Failure m_failure;
    uint32_t m_line = 1;
    uint8_t* m_at = m_chunk;
    uint8_t m_chunk[kChunk];
};

bool Writer::fail(const Failure& failure)
{
    m_failure = failure;
    return failure.code == LSYS_OK;
}

bool Writer::begin(const char* path)
{
    return fail(m_replacement.begin(path));
}

bool Writer::flush()
{
    const size_t count = static_cast<size_t>(m_at - m_chunk);
    m_at = m_chunk;
    return fail(m_replacement.write(m_chunk, count));
}

bool Writer::commit()
{
    return flush() && fail(m_replacement.commit());
}

inline bool Writer::put(uint8_t byte)
{
    if (m_at == m_chunk + kChunk && !flush())
        return false;
    *m_at++ = byte;
    return true;
}

bool Writer::putLine(const char* line)
{
    for (size_t left = strlen(line); left != 0;) {
        if (m_at == m_chunk + kChunk && !flush())
            return false;
        const size_t room = static_cast<size_t>(m_chunk + kChunk - m_at);
        const size_t count = left < room ? left : room;
        memcpy(m_at, line, count);
        m_at += count;
        line += count;
        left -= count;
    }
    ++m_line;
    return put('\n');
}

// The value of a number's field.
template <class Number>
Number load(const uint8_t* field)
{
    Number number;
    memcpy(&number, field, sizeof number);
    return number;
}

inline bool Writer::putNumber(const LsysColumn& column, const uint8_t* field, uint8_t separator)
{
    if (static_cast<size_t>(m_chunk + kChunk - m_at) < kNumberRoom && !flush())
        return false;
    uint32_t magnitude = column.ulWidth == 1   ? *field
                         : column.ulWidth == 2 ? load<uint16_t>(field)
                                               : load<uint32_t>(field);
    uint8_t* at = m_at;
    const uint32_t sign = uint32_t{1} << (8 * column.ulWidth - 1);
    if (isSigned(column) && (magnitude & sign) != 0) {
        *at++ = '-';
        magnitude = (sign << 1) - magnitude;
    }
    if (magnitude < 10) {
        *at++ = static_cast<uint8_t>('0' + magnitude);
    } else {
        char* const text = reinterpret_cast<char*>(at);
        at = reinterpret_cast<uint8_t*>(std::to_chars(text, text + kNumberRoom, magnitude).ptr);
    }
    *at++ = separator;
    m_at = at;
    return true;
}

bool Writer::putQuoted(const uint8_t* text, uint32_t length)
{
    if (!put('"'))
        return false;
    for (uint32_t i = 0; i < length; ++i) {
        if ((text[i] == '"' && !put('"')) || !put(text[i]))
            return false;
    }
    return put('"');
}

inline bool Writer::putText(uint32_t width, const uint8_t* field, uint8_t separator)
{
    uint32_t length = 0;
    bool plain = true;
    for (; field[length] != 0; ++length) {
        plain = plain && kPlain.is[field[length]];
        if (length + 1 == width)
            return fail({LSYS_ERR_TEXT});
    }
    if (length != 0)
        plain = plain && field[0] != ' ' && field[length - 1] != ' ';
    if (!plain)
        return putQuoted(field, length) && put(separator);
    for (uint32_t i = 0; i < length; ++i) {
        if (!put(field[i]))
            return false;
    }
    return put(separator);
}

bool Writer::putRecord(const uint8_t* record, uint32_t columnCount, const LsysColumn* columns)
{
    for (uint32_t i = 0; i < columnCount; ++i) {
        const LsysColumn& column = columns[i];
        const uint8_t* const field = record + column.ulOffset;
        const uint8_t separator = i + 1 == columnCount ? '\n' : ',';
        if (isText(column) ? !putText(column.ulWidth, field, separator)
                           : !putNumber(column, field, separator)) {
            if (m_failure.code == LSYS_ERR_TEXT) {
                m_failure.line = m_line;
                m_failure.column = i + 1;
            }
            return false;
        }
    }
    ++m_line;
    return true;
}

// Whether a reader would find as many names as there are columns.
bool namesColumns(const char* header, uint32_t columnCount)
{
    if (header == nullptr)
        return false;
    uint32_t names = 1;
    for (const char* at = header;; ++at) {
        if (kPlain.is[static_cast<uint8_t>(*at)])
            continue;
        const bool empty = at == header || at[-1] == ',';
        if (empty || (*at != ',' && *at != '\0'))
            return false;
        if (*at == '\0')
            return names == columnCount;
        ++names;
    }
}

} // namespace

} // namespace csv

LSYS_EXPORT int32_t lsys_writeCsvNewFmt(const char* pcPath, const char* pcVersion, const char* pcHeader,
                                        uint32_t ulRecords, uint32_t ulColumnCount, const uint8_t* pRecords,
                                        uint32_t ulRecordSize, const LsysColumn* pColumns)
{
    using namespace csv;
    if (pRecords == nullptr || ulRecords > INT32_MAX || !namesColumns(pcHeader, ulColumnCount) ||
        !describesFile(pcPath, pcVersion, ulColumnCount, pColumns, ulRecordSize))
        return report(pcPath, {LSYS_ERR_ARG});

    Writer writer;
    bool good = writer.begin(pcPath) && writer.putLine(pcVersion) && writer.putLine(pcHeader);
    for (uint32_t i = 0; good && i < ulRecords; ++i) {
        good = writer.putRecord(pRecords, ulColumnCount, pColumns);
        pRecords += ulRecordSize;
    }
    if (!good || !writer.commit())
        return report(pcPath, writer.failure());
    return LSYS_OK;
}
