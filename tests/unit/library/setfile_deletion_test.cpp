#include "support/set_file_test.h"

#include <cerrno>

namespace {

using testing::ElementsAre;
using vx63test::logMessages;
using vx63test::lsys;

using DeletionTest = vx63test::SetFileTest;

// ---- One set ----

struct OneSet {
    const char* name; // of the function
    int32_t (*deleteSet)(const char*);
    const char* folder;
    const char* inner;    // the function behind it
    const char* argument; // its name in the messages
};

const OneSet kOneSets[] = {
    {"vx63_deleteSetFileUser", vx63_deleteSetFileUser, "/usr/local/bin/user_set/",
     "vx63_deleteSetFileUserInner", "pcUserFileName"},
    {"vx63_deleteSetFileUserUsb1", vx63_deleteSetFileUserUsb1, "/usr/local/bin/user_set_usb1/",
     "vx63_deleteSetFileUserInner", "pcUserFileName"},
    {"vx63_deleteSetFileUserUsb2", vx63_deleteSetFileUserUsb2, "/usr/local/bin/user_set_usb2/",
     "vx63_deleteSetFileUserInner", "pcUserFileName"},
    {"vx63_deleteSetFileLogger", vx63_deleteSetFileLogger, "/usr/local/bin/logger_set/",
     "vx63_deleteSetFileLoggerInner", "pcLoggerFileName"},
    {"vx63_deleteSetFileLoggerUsb1", vx63_deleteSetFileLoggerUsb1, "/usr/local/bin/logger_set_usb1/",
     "vx63_deleteSetFileLoggerInner", "pcLoggerFileName"},
    {"vx63_deleteSetFileLoggerUsb2", vx63_deleteSetFileLoggerUsb2, "/usr/local/bin/logger_set_usb2/",
     "vx63_deleteSetFileLoggerInner", "pcLoggerFileName"},
};

class OneSetTest : public DeletionTest, public testing::WithParamInterface<OneSet> {
protected:
    std::string outer(const std::string& message) const { return GetParam().name + (": " + message); }
    std::string inner(const std::string& message) const { return GetParam().inner + (": " + message); }
    std::string argument() const { return GetParam().argument; }
};

TEST_P(OneSetTest, TheFileIsRemovedAndTheDiskSynced)
{
    lsys().expectRemove(std::string(GetParam().folder) + "My set.1.csv");
    lsys().expectSync();
    EXPECT_EQ(GetParam().deleteSet("My set.1"), 0);
    EXPECT_THAT(logMessages(),
                ElementsAre(outer("Start."), inner("Start."), inner(argument() + "=[My set.1]"),
                            inner("End. iRet=0"), outer("End. vx63_err=0")));
}

TEST_P(OneSetTest, AFileThatCannotBeRemovedIsToldWithTheReason)
{
    for (const int error : {ENOENT, EACCES, EROFS}) {
        vx63test::removeLog();
        lsys().expectRemove(std::string(GetParam().folder) + "ABC.csv", error);
        EXPECT_EQ(GetParam().deleteSet("ABC"), -1);
        EXPECT_THAT(logMessages(), ElementsAre(outer("Start."), inner("Start."), inner(argument() + "=[ABC]"),
                                               inner("file delete error. errno=" + std::to_string(error)),
                                               inner("End. iRet=-1"), outer("End. vx63_err=-1")));
    }
}

TEST_P(OneSetTest, ANullNameIsRefused)
{
    EXPECT_EQ(GetParam().deleteSet(nullptr), -1);
    EXPECT_THAT(logMessages(), ElementsAre(outer("Start."), inner("Start."),
                                           inner("arg null pointer error. " + argument() + "=(nil)"),
                                           outer("End. vx63_err=-1")));
}

TEST_P(OneSetTest, ANameThatThePathBufferDoesNotHoldRemovesNothing)
{
    const size_t room = 127 - std::string(GetParam().folder).size() - std::string(".csv").size();
    const std::string fits(room, 'n');
    lsys().expectRemove(GetParam().folder + fits + ".csv");
    lsys().expectSync();
    EXPECT_EQ(GetParam().deleteSet(fits.c_str()), 0);
    vx63test::removeLog();
    const std::string name(room + 1, 'n');
    EXPECT_EQ(GetParam().deleteSet(name.c_str()), -1);
    EXPECT_THAT(logMessages(),
                ElementsAre(outer("Start."), inner("Start."), inner(argument() + "=[" + name + "]"),
                            inner("arg error. " + argument() + "=[" + name.substr(0, 64) + "]..."),
                            outer("End. vx63_err=-1")));
}

INSTANTIATE_TEST_SUITE_P(EveryFolder, OneSetTest, testing::ValuesIn(kOneSets),
                         [](const auto& set) { return std::string(set.param.name); });

// ---- A folder ----

// 140 records of 15 bytes: the number, and zeros.
std::vector<uint8_t> emptyList()
{
    std::vector<uint8_t> list(140 * 15);
    for (size_t i = 0; i < 140; ++i) {
        list[i * 15] = static_cast<uint8_t>(i + 1);
    }
    return list;
}

struct Folder {
    const char* name;
    int32_t (*deleteFolder)(uint32_t);
    uint32_t set;
    uint32_t list;
    const char* command;
};

const Folder kFolders[] = {
    {"vx63_deleteSetFileUserBulk", vx63_deleteSetFileUserBulk, 14, 15, "rm -r /usr/local/bin/user_set//*"},
    {"vx63_deleteSetFileUserBulk", vx63_deleteSetFileUserBulk, 42, 43,
     "rm -r /usr/local/bin/user_set_usb1//*"},
    {"vx63_deleteSetFileUserBulk", vx63_deleteSetFileUserBulk, 44, 45,
     "rm -r /usr/local/bin/user_set_usb2//*"},
    {"vx63_deleteSetFileLoggerBulk", vx63_deleteSetFileLoggerBulk, 35, 36,
     "rm -r /usr/local/bin/logger_set//*"},
    {"vx63_deleteSetFileLoggerBulk", vx63_deleteSetFileLoggerBulk, 46, 47,
     "rm -r /usr/local/bin/logger_set_usb1//*"},
    {"vx63_deleteSetFileLoggerBulk", vx63_deleteSetFileLoggerBulk, 48, 49,
     "rm -r /usr/local/bin/logger_set_usb2//*"},
};

class FolderTest : public DeletionTest, public testing::WithParamInterface<Folder> {
protected:
    std::string line(const std::string& message) const { return GetParam().name + (": " + message); }
    std::string command() const { return GetParam().command; }
    std::string set() const { return std::to_string(GetParam().set); }
    std::string list() const { return std::to_string(GetParam().list); }
};

TEST_P(FolderTest, TheFolderIsEmptiedAndItsListStartsAnew)
{
    // Something in the staging buffer first: none of it may reach the list.
    std::vector<uint8_t> dat(1001 * 12);
    lsys().expectRead(33, "", std::vector<uint8_t>(1001 * 12, 0xEE), 1001);
    EXPECT_EQ(vx63_readSetFileIdx(33, dat.data(), 0, nullptr, 0), 1001);
    vx63test::removeLog();

    for (const int32_t written : {0, 140}) {
        lsys().expectSystem(command());
        lsys().expectWrite(GetParam().list, "", 140, emptyList(), written);
        lsys().expectSync();
        EXPECT_EQ(GetParam().deleteFolder(GetParam().set), 0);
    }
    std::vector<std::string> lines = logMessages();
    ASSERT_EQ(lines.size(), 16u);
    lines.resize(8);
    lines[5].replace(lines[5].find("pDat=0x"), lines[5].find(", pcMeas") - lines[5].find("pDat=0x"),
                     "pDat=P");
    EXPECT_THAT(lines,
                ElementsAre(line("Start."), line("lsys_system(" + command() + ") ok."),
                            "vx63_getFileIdSetFlist: Start. fileId=" + set(),
                            "vx63_getFileIdSetFlist: End. retFileId=" + list(), "vx63_writeSetFile: Start.",
                            "vx63_writeSetFile: fileId=" + list() +
                                ", pDat=P, pcMeasFileName=[(null)], ulUserLine=140",
                            "vx63_writeSetFile: End. iRet=0", line("End. vx63_err=0")));

    const std::vector<int> sourceLines = vx63test::logSourceLines();
    EXPECT_NE(sourceLines[1], sourceLines[7]); // in the operation's name, but by statements of their own
}

TEST_P(FolderTest, AFailedCommandLeavesTheList)
{
    for (const int32_t result : {1, -1, 256, INT32_MIN}) {
        vx63test::removeLog();
        lsys().expectSystem(command(), result);
        EXPECT_EQ(GetParam().deleteFolder(GetParam().set), -1);
        EXPECT_THAT(logMessages(),
                    ElementsAre(line("Start."), line("lsys_system(" + command() + ") error.")));
    }
}

TEST_P(FolderTest, AListThatCannotBeWrittenIsTold)
{
    lsys().expectSystem(command());
    lsys().expectWrite(GetParam().list, "", 140, emptyList(), -3);
    lsys().expectSync();
    EXPECT_EQ(GetParam().deleteFolder(GetParam().set), -1);
    EXPECT_EQ(logMessages().back(), line("vx63_writeSetFile() error. fileId=" + set()));
}

INSTANTIATE_TEST_SUITE_P(EveryFolder, FolderTest, testing::ValuesIn(kFolders),
                         [](const auto& folder) { return "File" + std::to_string(folder.param.set); });

TEST_F(DeletionTest, AFolderIsNamedByItsSet)
{
    const std::pair<uint32_t, const char*> users[] = {{15, "15"}, {35, "35"}, {0, "0"},          {43, "43"},
                                                      {46, "46"}, {50, "50"}, {UINT32_MAX, "-1"}};
    for (const auto& [id, text] : users) {
        vx63test::removeLog();
        EXPECT_EQ(vx63_deleteSetFileUserBulk(id), -1);
        EXPECT_THAT(
            logMessages(),
            ElementsAre("vx63_deleteSetFileUserBulk: Start.",
                        std::string("vx63_deleteSetFileUserBulk: fileId is not user_set* error. fileId=") +
                            text));
    }
    const std::pair<uint32_t, const char*> loggers[] = {{14, "14"}, {36, "36"}, {0, "0"},          {47, "47"},
                                                        {42, "42"}, {50, "50"}, {UINT32_MAX, "-1"}};
    for (const auto& [id, text] : loggers) {
        vx63test::removeLog();
        EXPECT_EQ(vx63_deleteSetFileLoggerBulk(id), -1);
        EXPECT_THAT(
            logMessages(),
            ElementsAre(
                "vx63_deleteSetFileLoggerBulk: Start.",
                std::string("vx63_deleteSetFileLoggerBulk: fileId is not logger_set* error. fileId=") +
                    text));
    }
}

// ---- Everything ----

const std::string kCommands[] = {
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

// All files are deleted while the commands at these places (a bit each) fail.
void expectDeleteAll(uint32_t failing)
{
    vx63test::removeLog();
    std::vector<std::string> lines = {"vx63_deleteAllSetFile: Start."};
    for (uint32_t i = 0; i < 10; ++i) {
        const bool fails = (failing >> i & 1) != 0;
        lsys().expectSystem(kCommands[i], fails ? 1 : 0);
        lines.push_back("vx63_deleteAllSetFile: lsys_system(" + kCommands[i] +
                        (fails ? ") error." : ") ok."));
    }
    const int32_t result = failing == 0 ? 0 : -1;
    lines.push_back("vx63_deleteAllSetFile: End. vx63_err=" + std::to_string(result));
    EXPECT_EQ(vx63_deleteAllSetFile(), result) << failing;
    EXPECT_EQ(logMessages(), lines);
}

TEST_F(DeletionTest, DeletingEverythingRunsTenCommandsWhateverFails)
{
    expectDeleteAll(0);
    for (uint32_t i = 0; i < 10; ++i) {
        expectDeleteAll(1u << i);
    }
    expectDeleteAll(0x3FF);
}

} // namespace
