// The settings files of the virtual meter, in folders of the test's own.
#include "failure.h"
#include "meter_bench.h"
#include "services/settings_files.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>
#include <unistd.h>

namespace vmeter {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFolders[] = {"sys_set",       "meas_set",   "user_set",        "user_set_usb1",
                                    "user_set_usb2", "logger_set", "logger_set_usb1", "logger_set_usb2",
                                    "ch_set",        "pmeas_set"};

class SettingsFolders : public testing::Test {
protected:
    void SetUp() override
    {
        std::string pattern = testing::TempDir() + "settings-XXXXXX";
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        root_ = pattern;
        for (const char* folder : kFolders)
            fs::create_directory(root_ / folder);
        bench_.settings_ = {root_, true};
    }
    void TearDown() override { fs::remove_all(root_); }

    std::string read(const fs::path& file) const
    {
        std::ostringstream text;
        text << std::ifstream(root_ / file).rdbuf();
        return text.str();
    }
    void write(const fs::path& file, const std::string& text) const { std::ofstream(root_ / file) << text; }

    // Every file below the folders, with its contents.
    std::map<std::string, std::string> all() const
    {
        std::map<std::string, std::string> files;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root_))
            if (entry.is_regular_file())
                files[entry.path().lexically_relative(root_)] = read(entry.path().lexically_relative(root_));
        return files;
    }

    int notice(uint8_t fileId) { return bench_.ret(kSystemService, 0x12, fileId); }
    int notice(uint8_t fileId, uint8_t record)
    {
        return bench_.ret(kSystemService, 0x13, {fileId, 0, 0, 0, record, 0, 0, 0});
    }

    fs::path root_;
    Bench bench_;
};

TEST_F(SettingsFolders, AreFilledWithTheFactoryFiles)
{
    fillSettings(bench_.settings_);
    const std::map<std::string, std::string> files = all();
    EXPECT_EQ(files.size(), 44u); // 50 of the catalogue less 6 sets
    EXPECT_EQ(
        files.at("sys_set/system_setting_file_powoff.csv"),
        "1.0.0\nPOWER_OFF_SEL1,POWER_OFF_SEL2,POWER_OFF_SEL3,POWER_OFF_SEL4,POWER_OFF_SEL5,POWER_OFF_SEL6,"
        "POWER_OFF\n0,5,10,15,30,60,10\n");
    std::string list = "1.0.0\nNO,ENBFLG,FILE_NAME\n";
    for (int i = 1; i <= 140; ++i)
        list += std::to_string(i) + ",0,\n";
    for (const char* name : {"user_set/user", "user_set_usb1/user", "user_set_usb2/user", "logger_set/logger",
                             "logger_set_usb1/logger", "logger_set_usb2/logger"})
        EXPECT_EQ(files.at(std::string(name) + "_setting_file_list.csv"), list) << name;
}

TEST_F(SettingsFolders, ThatHoldAFileAreLeftAlone)
{
    write("sys_set/mine", "x");
    fillSettings(bench_.settings_);
    EXPECT_EQ(all().size(), 44u - 3 + 1); // sys_set would have three
    EXPECT_FALSE(fs::exists(root_ / "sys_set/system_setting_file_powoff.csv"));
    EXPECT_TRUE(fs::exists(root_ / "ch_set/channel_setting_file_fm.csv"));
}

TEST_F(SettingsFolders, ThatAreMissingAreToldAtTheStart)
{
    fs::remove(root_ / "pmeas_set");
    try {
        fillSettings(bench_.settings_);
        FAIL() << "filled";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.what(),
                  (root_ / "pmeas_set").string() + ": No such file or directory: create it as a folder");
    }
}

TEST_F(SettingsFolders, AreRestoredByAFactoryReset)
{
    fillSettings(bench_.settings_);
    const auto factory = all();
    write("sys_set/system_setting_file_volume.csv", "changed");
    write("user_set/ABC.csv", "a set");
    fs::create_directories(root_ / "ch_set/folder/deep");
    fs::remove(root_ / "pmeas_set/pmeas_setting_file_pmeas_mng.csv");
    bench_.ret(kSystemService, 0x0B, 2);
    bench_.ret(kSystemService, 0x1B, 1);
    bench_.ret(kBuzzerService, 0x0A, {3, 3, 0, 0});
    bench_.ret(kSystemService, 0x11, Body{7, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                                          0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(bench_.ret(kSystemService, 0x1A), 0);
    EXPECT_EQ(all(), factory);
    EXPECT_FALSE(fs::exists(root_ / "ch_set/folder"));
    const DeviceState& device = bench_.state_.device;
    EXPECT_EQ(device.ucBrightness, 1);
    EXPECT_EQ(device.ucDeveloperMode, 0);
    EXPECT_EQ(device.buzzer.ucVolumes[3], 0);
    EXPECT_EQ(device.failure.usCode, 7); // the record is not a setting
    EXPECT_EQ(device.ulFactoryResets, 1u);
}

TEST_F(SettingsFolders, OfOthersAreNotReset)
{
    write("sys_set/mine", "x");
    bench_.settings_.own = false;
    EXPECT_EQ(bench_.ret(kSystemService, 0x1A), 1);
    EXPECT_EQ(bench_.note_, "the settings folders are not the meter's own");
    EXPECT_EQ(all(), (std::map<std::string, std::string>{{"sys_set/mine", "x"}}));
    EXPECT_EQ(bench_.state_.device.ulFactoryResets, 0u);
}

TEST_F(SettingsFolders, ThatCannotBeFilledAreAnError)
{
    fs::remove(root_ / "pmeas_set");
    EXPECT_EQ(bench_.ret(kSystemService, 0x1A), 1);
    EXPECT_EQ(bench_.note_, "the settings folders cannot be filled");
}

TEST_F(SettingsFolders, NoticesTellWhatWasReloaded)
{
    fillSettings(bench_.settings_);
    EXPECT_EQ(notice(4), 0);
    EXPECT_EQ(bench_.note_, "reloaded " + (root_ / "meas_set/measrement_setting_file_thrd.csv").string());
    EXPECT_EQ(notice(4, 23), 0);
    EXPECT_EQ(bench_.note_,
              "reloaded " + (root_ / "meas_set/measrement_setting_file_thrd.csv").string() + ", record 23");
    EXPECT_EQ(bench_.state_.device.notice.ulCount, 2u);
    EXPECT_EQ(bench_.state_.device.notice.lFileId, 4);
    EXPECT_EQ(bench_.state_.device.notice.lRecord, 23);
    EXPECT_EQ(notice(4, 24), 2);
    EXPECT_EQ(bench_.note_,
              (root_ / "meas_set/measrement_setting_file_thrd.csv").string() + " has no record 24");
    for (int fileId = 0; fileId < 50; ++fileId)
        EXPECT_EQ(notice(static_cast<uint8_t>(fileId)), 0) << fileId;
}

TEST_F(SettingsFolders, NoticesOfNoFileAreParameterErrors)
{
    fillSettings(bench_.settings_);
    for (const uint8_t fileId : std::initializer_list<uint8_t>{50, 255}) {
        EXPECT_EQ(notice(fileId), 2);
        EXPECT_EQ(bench_.note_, "no settings file " + std::to_string(fileId));
        EXPECT_EQ(notice(fileId, 0), 2);
    }
    EXPECT_EQ(bench_.state_.device.notice.ulCount, 0u);
}

TEST_F(SettingsFolders, NoticesOfUnreadableFilesAreErrors)
{
    fillSettings(bench_.settings_);
    fs::remove(root_ / "sys_set/system_setting_file_volume.csv");
    EXPECT_EQ(notice(1), 1);
    EXPECT_EQ(bench_.note_, "cannot reload " + (root_ / "sys_set/system_setting_file_volume.csv").string() +
                                ": lsys_err=-2");
    write("sys_set/system_setting_file_volume.csv", "garbage\n");
    EXPECT_EQ(notice(1, 0), 1);
    EXPECT_EQ(bench_.state_.device.notice.ucRead, 0);
}

TEST_F(SettingsFolders, NoticesOfSetsReadAllSetsOfTheFolder)
{
    fillSettings(bench_.settings_);
    const std::string header =
        "1.0.0\nNO,ENBFLG,BAND,SPEC,CH,CENTER_FREQ,MOD,LOCAL_FREQ,GETDATA_FLG,DC_OUT\n";
    write("user_set_usb1/ABC.csv", header + "1,1,0,0,13,473143,1,0,1,0\n");
    write("user_set_usb1/notes.txt", "no set");
    EXPECT_EQ(notice(42), 0);
    EXPECT_EQ(bench_.note_, "reloaded " + (root_ / "user_set_usb1/%s.csv").string());
    write("user_set_usb1/BAD.csv", header + "1,1,0\n");
    EXPECT_EQ(notice(42), 1);
    EXPECT_EQ(bench_.note_, "cannot reload " + (root_ / "user_set_usb1/BAD.csv").string() + ": lsys_err=-6");
    EXPECT_EQ(notice(14), 0); // another folder
}

TEST_F(SettingsFolders, VolumeAndBrightnessAreTakenIntoUse)
{
    fillSettings(bench_.settings_);
    const std::string volume = "1.0.0\nVOLUME_SEL1,VOLUME_SEL2,VOLUME_SEL3,VOLUME_SEL4,VOLUME\n0,1,2,3,";
    const std::string brightness =
        "1.0.0\nBRIGHTNESS_SEL1,BRIGHTNESS_SEL2,BRIGHTNESS_SEL3,BRIGHTNESS\n3,2,1,";
    const DeviceState& device = bench_.state_.device;
    write("sys_set/system_setting_file_volume.csv", volume + "2\n");
    EXPECT_EQ(notice(1), 0);
    EXPECT_EQ(device.buzzer.ucVolumes[0], 2);
    EXPECT_EQ(device.buzzer.ucVolumes[4], 2);
    write("sys_set/system_setting_file_volume.csv", volume + "4\n"); // no such volume
    EXPECT_EQ(notice(1), 0);
    EXPECT_EQ(device.buzzer.ucVolumes[0], 2);
    for (const int level : {3, 1}) {
        write("sys_set/system_setting_file_brightness.csv", brightness + std::to_string(level) + "\n");
        EXPECT_EQ(notice(2, 0), 0);
        EXPECT_EQ(device.ucBrightness, level - 1);
    }
    for (const int level : {0, 4}) {
        write("sys_set/system_setting_file_brightness.csv", brightness + std::to_string(level) + "\n");
        EXPECT_EQ(notice(2), 0);
        EXPECT_EQ(device.ucBrightness, 0);
    }
    write("sys_set/system_setting_file_brightness.csv", brightness.substr(0, brightness.find("3,2,1")));
    EXPECT_EQ(notice(2), 0); // no record at all
    EXPECT_EQ(device.ucBrightness, 0);
}

} // namespace
} // namespace vmeter
