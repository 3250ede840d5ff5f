// Deletion: of one setting set, of all sets of a folder, of every settings file.
#include "frame/call.h"
#include "frame/log.h"
#include "libvx63.h"
#include "lsys.h"
#include "setfile/catalogue.h"
#include "setfile/file_kind.h"
#include "setfile/set_path.h"
#include "setfile/staging.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

using namespace vx63;

// ---- One set by its name; the folder's list stays as it is ----

static int32_t removeFile(const char* path, Caller caller = {})
{
    if (remove(path) != 0) {
        logLine({caller}, "file delete error. errno=%d", errno);
        return -1;
    }
    sync();
    return 0;
}

static int32_t vx63_deleteSetFileUserInner(uint32_t fileId, const char* pcUserFileName)
{
    logLine({}, "Start.");
    if (pcUserFileName == nullptr) {
        logLine({}, "arg null pointer error. pcUserFileName=%p", static_cast<const void*>(pcUserFileName));
        return -1;
    }
    logLine({}, "pcUserFileName=[%s]", pcUserFileName);
    const char* const path = pathOf(fileId, pcUserFileName);
    if (path == nullptr) {
        logLine({}, "arg error. pcUserFileName=[%.64s]...", pcUserFileName);
        return -1;
    }
    const int32_t iRet = removeFile(path);
    logLine({}, "End. iRet=%d", iRet);
    return iRet;
}

static int32_t vx63_deleteSetFileLoggerInner(uint32_t fileId, const char* pcLoggerFileName)
{
    logLine({}, "Start.");
    if (pcLoggerFileName == nullptr) {
        logLine({}, "arg null pointer error. pcLoggerFileName=%p",
                static_cast<const void*>(pcLoggerFileName));
        return -1;
    }
    logLine({}, "pcLoggerFileName=[%s]", pcLoggerFileName);
    const char* const path = pathOf(fileId, pcLoggerFileName);
    if (path == nullptr) {
        logLine({}, "arg error. pcLoggerFileName=[%.64s]...", pcLoggerFileName);
        return -1;
    }
    const int32_t iRet = removeFile(path);
    logLine({}, "End. iRet=%d", iRet);
    return iRet;
}

int32_t vx63_deleteSetFileUser(const char* pcUserFileName)
{
    logLine({}, "Start.");
    return logEnd(vx63_deleteSetFileUserInner(VX63_SET_FILE_USER_SET, pcUserFileName));
}

int32_t vx63_deleteSetFileUserUsb1(const char* pcUserFileName)
{
    logLine({}, "Start.");
    return logEnd(vx63_deleteSetFileUserInner(VX63_SET_FILE_USER_SET_USB1, pcUserFileName));
}

int32_t vx63_deleteSetFileUserUsb2(const char* pcUserFileName)
{
    logLine({}, "Start.");
    return logEnd(vx63_deleteSetFileUserInner(VX63_SET_FILE_USER_SET_USB2, pcUserFileName));
}

int32_t vx63_deleteSetFileLogger(const char* pcLoggerFileName)
{
    logLine({}, "Start.");
    return logEnd(vx63_deleteSetFileLoggerInner(VX63_SET_FILE_LOGGER_SET, pcLoggerFileName));
}

int32_t vx63_deleteSetFileLoggerUsb1(const char* pcLoggerFileName)
{
    logLine({}, "Start.");
    return logEnd(vx63_deleteSetFileLoggerInner(VX63_SET_FILE_LOGGER_SET_USB1, pcLoggerFileName));
}

int32_t vx63_deleteSetFileLoggerUsb2(const char* pcLoggerFileName)
{
    logLine({}, "Start.");
    return logEnd(vx63_deleteSetFileLoggerInner(VX63_SET_FILE_LOGGER_SET_USB2, pcLoggerFileName));
}

// ---- All sets of a folder, whose list starts anew ----

// Runs a command by the shell; logs how it went.
static bool run(const char* command, Caller caller = {})
{
    if (lsys_system(command) != 0) {
        logLine({caller}, "lsys_system(%s) error.", command);
        return false;
    }
    logLine({caller}, "lsys_system(%s) ok.", command);
    return true;
}

static constinit thread_local char s_command[kSetPathSize] = {};

// Takes the id of a set.
static int32_t deleteFolder(uint32_t fileId, Caller caller = {})
{
    // The folder keeps its own slash: the command has two.
    const char* const path = kCatalogue[fileId].path;
    const auto folderLength = static_cast<int>(strrchr(path, '/') - path + 1);
    snprintf(s_command, sizeof s_command, "rm -r %.*s/*", folderLength, path);
    if (!run(s_command, caller)) {
        return -1;
    }

    // The command took the list as well.
    const int32_t listFileId = vx63_getFileIdSetFlist(static_cast<int32_t>(fileId));
    if (listFileId == -1) {
        logLine({caller}, "vx63_getFileIdSetFlist() error. fileId=%d", static_cast<int32_t>(fileId));
        return -1;
    }
    const auto list = static_cast<uint32_t>(listFileId);
    const uint32_t rows = kCatalogue[list].rows;
    memset(s_staging, 0, sizeof s_staging);
    for (uint32_t i = 0; i < rows; ++i) {
        s_staging[i * sizeof(SetListEntry) + offsetof(SetListEntry, NO)] = static_cast<uint8_t>(i + 1);
    }
    if (vx63_writeSetFile(list, s_staging, nullptr, rows) < 0) {
        logLine({caller}, "vx63_writeSetFile() error. fileId=%d", static_cast<int32_t>(fileId));
        return -1;
    }
    return logEnd(0, {caller});
}

int32_t vx63_deleteSetFileUserBulk(uint32_t fileId)
{
    logLine({}, "Start.");
    if (vx63_isFileIdUserSet(static_cast<int32_t>(fileId)) == 0) {
        logLine({}, "fileId is not user_set* error. fileId=%d", static_cast<int32_t>(fileId));
        return -1;
    }
    return deleteFolder(fileId);
}

int32_t vx63_deleteSetFileLoggerBulk(uint32_t fileId)
{
    logLine({}, "Start.");
    if (vx63_isFileIdLoggerSet(static_cast<int32_t>(fileId)) == 0) {
        logLine({}, "fileId is not logger_set* error. fileId=%d", static_cast<int32_t>(fileId));
        return -1;
    }
    return deleteFolder(fileId);
}

// ---- Every settings file ----

int32_t vx63_deleteAllSetFile(void)
{
    static constexpr char kCommands[][40] = {
        "rm -r /usr/local/bin/sys_set/*",         //
        "rm -r /usr/local/bin/meas_set/*",        //
        "rm -r /usr/local/bin/user_set/*",        //
        "rm -r /usr/local/bin/user_set_usb1/*",   //
        "rm -r /usr/local/bin/user_set_usb2/*",   //
        "rm -r /usr/local/bin/logger_set/*",      //
        "rm -r /usr/local/bin/logger_set_usb1/*", //
        "rm -r /usr/local/bin/logger_set_usb2/*", //
        "rm -r /usr/local/bin/ch_set/*",          //
        "rm -r /usr/local/bin/pmeas_set/*",       //
    };
    logLine({}, "Start.");
    int32_t vx63_err = VX63_OK;
    for (const char* const command : kCommands) {
        if (!run(command)) { // the next ones run all the same
            vx63_err = -1;
        }
    }
    return logEnd(vx63_err);
}
