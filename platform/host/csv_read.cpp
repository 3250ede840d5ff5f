// Reads CSV settings files into records: one pass over chunks of the file, without a limit to the length of a
// line. A zero byte stands behind each chunk; as a NUL is never legal in a file, only who meets one has to
// ask whether the chunk has ended.
#include "csv.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace csv {

namespace {

// The largest magnitude of a number in that column.
inline uint32_t largestOf(const LsysColumn& column, bool negative)
{
    const uint32_t largest = UINT32_MAX >> (32 - 8 * column.ulWidth);
    if (isSigned(column))
        return largest / 2 + negative;
    return negative ? 0 : largest;
}

inline void store(uint8_t* field, uint32_t width, uint32_t value)
{
    if (width == 1) {
        *field = static_cast<uint8_t>(value);
    } else if (width == 2) {
        const uint16_t narrow = static_cast<uint16_t>(value);
        memcpy(field, &narrow, sizeof narrow);
    } else {
        memcpy(field, &value, sizeof value);
    }
}

// Fields as nearly all are: whole in the chunk, correct, without quotes. They give the place behind the
// separator, and nullptr for any other: the reader takes it from its start, and knows what is wrong.

inline const uint8_t* readQuickNumber(const uint8_t* at, const LsysColumn& column, uint8_t separator,
                                      uint8_t* field)
{
    const bool negative = *at == '-';
    at += negative;
    const uint8_t* const start = at;
    uint32_t magnitude = 0;
    for (unsigned digit; (digit = *at - unsigned{'0'}) <= 9; ++at)
        magnitude = magnitude * 10 + digit;
    const auto digits = at - start;
    if (*at != separator || digits == 0 || digits > 9)
        return nullptr;
    if (magnitude > largestOf(column, negative))
        return nullptr;
    store(field, column.ulWidth, negative ? 0 - magnitude : magnitude);
    return at + 1;
}

inline const uint8_t* readQuickText(const uint8_t* at, uint32_t width, uint8_t separator, uint8_t* field)
{
    const uint8_t* const end = at + width;
    for (; kPlain.is[*at]; ++at) {
        if (at + 1 == end)
            return nullptr;
        *field++ = *at;
    }
    return *at == separator ? at + 1 : nullptr;
}

// The file and the place in it. What parses keeps the place to itself as `at`, gives the new one back, and
// nullptr when it failed.
class Reader {
public:
    explicit Reader(int descriptor) : m_descriptor(descriptor), m_end(m_chunk)
    {
        m_chunk[0] = 0;
        m_failure.line = 1;
    }

    const uint8_t* start() const { return m_chunk; }
    const Failure& failure() const { return m_failure; }

    const uint8_t* readVersion(const uint8_t* at, const char* version);
    const uint8_t* readHeader(const uint8_t* at, uint32_t columnCount);
    const uint8_t* readRecord(const uint8_t* at, uint32_t columnCount, const LsysColumn* columns,
                              uint8_t* record);
    bool atEnd(const uint8_t*& at);
    const uint8_t* fail(int32_t code);

private:
    const uint8_t* more(const uint8_t* at);
    const uint8_t* separate(const uint8_t* at, bool last, int32_t otherwise);
    const uint8_t* readNumber(const uint8_t* at, const LsysColumn& column, uint8_t* field, bool last);
    const uint8_t* readText(const uint8_t* at, uint32_t width, uint8_t* field, bool last);
    const uint8_t* readQuoted(const uint8_t* at, uint32_t width, uint8_t* field);

    int m_descriptor;
    const uint8_t* m_end;
    Failure m_failure; // its line and column tell the place until then
    uint8_t m_chunk[kChunk + 1];
};

const uint8_t* Reader::fail(int32_t code)
{
    m_failure.code = code;
    return nullptr;
}

// The next byte of the file, where `at` has met a NUL.
const uint8_t* Reader::more(const uint8_t* at)
{
    if (at != m_end)
        return fail(LSYS_ERR_BINARY);
    ssize_t got;
    do {
        got = read(m_descriptor, m_chunk, kChunk);
    } while (got < 0 && errno == EINTR);
    if (got < 0) {
        m_failure.error = errno;
        return fail(LSYS_ERR_SYSTEM);
    }
    if (got == 0)
        return fail(LSYS_ERR_CUT);
    m_chunk[got] = 0;
    m_end = m_chunk + got;
    return *m_chunk != 0 ? m_chunk : fail(LSYS_ERR_BINARY);
}

bool Reader::atEnd(const uint8_t*& at)
{
    if (*at != 0)
        return false;
    at = more(at);
    return at == nullptr;
}

// Steps over the comma behind a field, or the newline behind the last one. `otherwise` is what any other byte
// means, once the field has taken what it could.
inline const uint8_t* Reader::separate(const uint8_t* at, bool last, int32_t otherwise)
{
    const uint8_t separator = last ? '\n' : ',';
    if (*at == separator)
        return at + 1;
    if (*at == '\r') {
        ++at;
        if (*at == 0 && (at = more(at)) == nullptr)
            return nullptr;
        if (*at != '\n')
            return fail(LSYS_ERR_BINARY);
        if (last)
            return at + 1;
    }
    if (*at == ',' || *at == '\n')
        return fail(LSYS_ERR_COLUMNS);
    return fail(isControl(*at) ? LSYS_ERR_BINARY : otherwise);
}

const uint8_t* Reader::readVersion(const uint8_t* at, const char* version)
{
    bool same = true;
    for (;;) {
        for (; !isControl(*at); ++at) {
            same = same && *at == static_cast<uint8_t>(*version);
            version += same;
        }
        if (*at != 0)
            break;
        if ((at = more(at)) == nullptr)
            return nullptr;
    }
    at = separate(at, true, LSYS_ERR_BINARY);
    if (at == nullptr)
        return nullptr;
    if (!same || *version != '\0')
        return fail(LSYS_ERR_VERSION);
    ++m_failure.line;
    return at;
}

const uint8_t* Reader::readHeader(const uint8_t* at, uint32_t columnCount)
{
    for (uint32_t i = 0; i < columnCount; ++i) {
        m_failure.column = i + 1;
        bool empty = true;
        for (;;) {
            for (; kPlain.is[*at]; ++at)
                empty = false;
            if (*at != 0)
                break;
            if ((at = more(at)) == nullptr)
                return nullptr;
        }
        at = separate(at, i + 1 == columnCount, LSYS_ERR_QUOTE);
        if (at == nullptr)
            return nullptr;
        if (empty)
            return fail(LSYS_ERR_COLUMNS);
    }
    m_failure.column = 0;
    ++m_failure.line;
    return at;
}

const uint8_t* Reader::readNumber(const uint8_t* at, const LsysColumn& column, uint8_t* field, bool last)
{
    if (*at == 0 && (at = more(at)) == nullptr)
        return nullptr;
    const bool negative = *at == '-';
    at += negative;
    uint64_t magnitude = 0;
    uint64_t excess = 0; // keeps what no field can hold, even when the magnitude itself has overflowed
    bool empty = true;
    for (;;) {
        for (unsigned digit; (digit = *at - unsigned{'0'}) <= 9; ++at) {
            magnitude = magnitude * 10 + digit;
            excess |= magnitude >> 32;
            empty = false;
        }
        if (*at != 0)
            break;
        if ((at = more(at)) == nullptr)
            return nullptr;
    }
    at = separate(at, last, LSYS_ERR_NUMBER);
    if (at == nullptr)
        return nullptr;
    if (empty)
        return fail(LSYS_ERR_NUMBER);

    if (excess != 0 || magnitude > largestOf(column, negative))
        return fail(LSYS_ERR_RANGE);
    store(field, column.ulWidth, static_cast<uint32_t>(negative ? 0 - magnitude : magnitude));
    return at;
}

// Takes the quoted text behind its opening quote, and the closing quote.
const uint8_t* Reader::readQuoted(const uint8_t* at, uint32_t width, uint8_t* field)
{
    uint8_t* const last = field + width - 1;
    for (;; ++at) {
        if (*at == 0 && (at = more(at)) == nullptr)
            return m_failure.code == LSYS_ERR_CUT ? fail(LSYS_ERR_QUOTE) : nullptr;
        if (*at == '"') {
            ++at;
            if (*at == 0 && (at = more(at)) == nullptr)
                return nullptr;
            if (*at != '"')
                return at;
        }
        if (field == last)
            return fail(LSYS_ERR_TEXT);
        if (*at == '\n')
            ++m_failure.line;
        *field++ = *at;
    }
}

const uint8_t* Reader::readText(const uint8_t* at, uint32_t width, uint8_t* field, bool last)
{
    if (*at == 0 && (at = more(at)) == nullptr)
        return nullptr;
    if (*at == '"') {
        at = readQuoted(at + 1, width, field);
        return at == nullptr ? nullptr : separate(at, last, LSYS_ERR_QUOTE);
    }
    uint8_t* const end = field + width - 1;
    for (;;) {
        for (; kPlain.is[*at]; ++at) {
            if (field == end)
                return fail(LSYS_ERR_TEXT);
            *field++ = *at;
        }
        if (*at != 0)
            return separate(at, last, LSYS_ERR_QUOTE);
        if ((at = more(at)) == nullptr)
            return nullptr;
    }
}

const uint8_t* Reader::readRecord(const uint8_t* at, uint32_t columnCount, const LsysColumn* columns,
                                  uint8_t* record)
{
    for (uint32_t i = 0; i < columnCount; ++i) {
        const LsysColumn& column = columns[i];
        uint8_t* const field = record + column.ulOffset;
        const bool last = i + 1 == columnCount;
        const uint8_t separator = last ? '\n' : ',';
        const uint8_t* const quick = isText(column) ? readQuickText(at, column.ulWidth, separator, field)
                                                    : readQuickNumber(at, column, separator, field);
        if (quick != nullptr) {
            at = quick;
            continue;
        }
        at = isText(column) ? readText(at, column.ulWidth, field, last) : readNumber(at, column, field, last);
        if (at == nullptr) {
            m_failure.column = i + 1;
            return nullptr;
        }
    }
    ++m_failure.line;
    return at;
}

// The number of records, or what the reader has failed with.
int32_t readFile(Reader& reader, const char* version, uint32_t maxRecords, uint32_t columnCount,
                 uint8_t* record, uint32_t recordSize, const LsysColumn* columns)
{
    const uint8_t* at = reader.readVersion(reader.start(), version);
    if (at != nullptr)
        at = reader.readHeader(at, columnCount);
    for (uint32_t count = 0; at != nullptr; ++count) {
        const bool atEnd = reader.atEnd(at);
        if (atEnd && reader.failure().code == LSYS_ERR_CUT)
            return static_cast<int32_t>(count);
        if (count == maxRecords) {
            if (!atEnd)
                reader.fail(LSYS_ERR_RECORDS);
            break;
        }
        memset(record, 0, recordSize);
        if (atEnd) // or not to be read on
            break;
        at = reader.readRecord(at, columnCount, columns, record);
        if (at == nullptr)
            memset(record, 0, recordSize);
        record += recordSize;
    }
    return reader.failure().code;
}

} // namespace

} // namespace csv

LSYS_EXPORT int32_t lsys_readCsvNewFmt(const char* pcPath, const char* pcVersion, uint32_t ulMaxRecords,
                                       uint32_t ulColumnCount, uint8_t* pRecords, uint32_t ulRecordSize,
                                       const LsysColumn* pColumns)
{
    using namespace csv;
    if (pRecords == nullptr || ulMaxRecords > INT32_MAX ||
        !describesFile(pcPath, pcVersion, ulColumnCount, pColumns, ulRecordSize))
        return report(pcPath, {LSYS_ERR_ARG});

    // Not to wait for the other end of a pipe.
    const int descriptor = open(pcPath, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        return report(pcPath, systemFailure(errno));
    struct stat status;
    const int error = fstat(descriptor, &status) != 0 ? errno : 0;
    if (error != 0 || !S_ISREG(status.st_mode)) {
        close(descriptor);
        return report(pcPath, error != 0 ? systemFailure(error) : Failure{LSYS_ERR_NOT_FILE});
    }
    Reader reader(descriptor);
    const int32_t result =
        readFile(reader, pcVersion, ulMaxRecords, ulColumnCount, pRecords, ulRecordSize, pColumns);
    close(descriptor);
    return result >= 0 ? result : report(pcPath, reader.failure());
}
