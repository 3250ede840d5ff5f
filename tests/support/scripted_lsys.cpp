#include "support/scripted_lsys.h"

#include "support/set_files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace vx63test {
namespace {

std::string columnsText(const LsysColumn* columns, uint32_t count)
{
    std::string text;
    for (uint32_t i = 0; i < count; ++i) {
        text += " " + std::to_string(columns[i].ulType) + "/" + std::to_string(columns[i].ulWidth) + "/" +
                std::to_string(columns[i].ulOffset);
    }
    return text;
}

std::string csvText(const char* what, const std::string& path, const char* version, const std::string& header,
                    uint32_t records, uint32_t columnCount, uint32_t recordSize, const LsysColumn* columns)
{
    return std::string(what) + " " + path + " version " + version + " header [" + header + "] records " +
           std::to_string(records) + " columns " + std::to_string(columnCount) + ":" +
           columnsText(columns, columnCount) + " size " + std::to_string(recordSize);
}

} // namespace

void ScriptedLsys::expectRead(uint32_t fileId, std::string_view name, std::vector<uint8_t> bytes,
                              int32_t result)
{
    const SetFile& file = setFile(fileId);
    m_calls.push_back({csvText("read", pathOf(fileId, name), "1.0.0", "", file.rows, file.columnCount,
                               file.recordSize, file.columns.data()),
                       std::move(bytes), result});
}

void ScriptedLsys::expectWrite(uint32_t fileId, std::string_view name, uint32_t records,
                               std::vector<uint8_t> bytes, int32_t result)
{
    const SetFile& file = setFile(fileId);
    m_calls.push_back({csvText("write", pathOf(fileId, name), "1.0.0", file.header, records, file.columnCount,
                               file.recordSize, file.columns.data()),
                       std::move(bytes), result});
}

void ScriptedLsys::expectSync()
{
    m_calls.push_back({"sync", {}, 0});
}

void ScriptedLsys::expectRemove(std::string_view path, int error)
{
    m_calls.push_back({"remove " + std::string(path), {}, error});
}

void ScriptedLsys::expectSystem(std::string_view command, int32_t result)
{
    m_calls.push_back({"system " + std::string(command), {}, result});
}

void ScriptedLsys::finish()
{
    for (const Call& call : m_calls) {
        ADD_FAILURE() << "listed call that was not made: " << call.text;
    }
    m_calls.clear();
    onRead = nullptr;
}

ScriptedLsys::Call ScriptedLsys::take(const std::string& text)
{
    if (m_calls.empty() || m_calls.front().text != text) {
        ADD_FAILURE() << "call: " << text
                      << "\nlisted: " << (m_calls.empty() ? "nothing" : m_calls.front().text);
        return {};
    }
    Call call = m_calls.front();
    m_calls.pop_front();
    return call;
}

ScriptedLsys& lsys()
{
    static ScriptedLsys instance;
    return instance;
}

} // namespace vx63test

using vx63test::lsys;
using vx63test::ScriptedLsys;

extern "C" {

int32_t lsys_readCsvNewFmt(const char* pcPath, const char* pcVersion, uint32_t ulMaxRecords,
                           uint32_t ulColumnCount, uint8_t* pRecords, uint32_t ulRecordSize,
                           const LsysColumn* pColumns)
{
    if (lsys().onRead) {
        return lsys().onRead(pcPath, pRecords);
    }
    const ScriptedLsys::Call call = lsys().take(vx63test::csvText("read", pcPath, pcVersion, "", ulMaxRecords,
                                                                  ulColumnCount, ulRecordSize, pColumns));
    std::copy(call.bytes.begin(), call.bytes.end(), pRecords);
    return call.result;
}

int32_t lsys_writeCsvNewFmt(const char* pcPath, const char* pcVersion, const char* pcHeader,
                            uint32_t ulRecords, uint32_t ulColumnCount, const uint8_t* pRecords,
                            uint32_t ulRecordSize, const LsysColumn* pColumns)
{
    const ScriptedLsys::Call call = lsys().take(vx63test::csvText(
        "write", pcPath, pcVersion, pcHeader, ulRecords, ulColumnCount, ulRecordSize, pColumns));
    EXPECT_EQ(std::vector<uint8_t>(pRecords, pRecords + ulRecords * ulRecordSize), call.bytes) << pcPath;
    return call.result;
}

int32_t lsys_system(const char* pcCommand)
{
    return lsys().take(std::string("system ") + pcCommand).result;
}

int remove(const char* path) noexcept
{
    if (strncmp(path, "/usr/local/bin/", 15) != 0) { // the test's own
        return unlinkat(AT_FDCWD, path, 0) == 0 || unlinkat(AT_FDCWD, path, AT_REMOVEDIR) == 0 ? 0 : -1;
    }
    const int error = lsys().take(std::string("remove ") + path).result;
    if (error == 0) {
        return 0;
    }
    errno = error;
    return -1;
}

void sync() noexcept
{
    lsys().take("sync");
}
}
