// Tests of reading and writing the user's settings.
#include "shell/settings.h"

#include <random>
#include <vector>

#include "shell_test_support.h"

namespace tl::test {
namespace {

using shell::AppSettings;
using shell::load_settings;
using shell::save_settings;

class SettingsTest : public ::testing::Test {
protected:
    ScratchDir dir;
    std::string ini = dir / "Tessaline.conf";

    AppSettings load_with(const std::string& settings_lines) {
        write_file(ini, "[Settings]\n" + settings_lines);
        return load_settings(ini);
    }
};

void expect_all_defaults(const AppSettings& s) {
    const AppSettings fresh;
    EXPECT_EQ(s.sizes.value, default_sizing().value);
    EXPECT_EQ(s.log_file_path, fresh.log_file_path);
    EXPECT_EQ(s.log_file_name, "logfile.log");
    EXPECT_EQ(s.src_pgm_name, "program.txt");
    EXPECT_EQ(s.work_path, "");
    EXPECT_FALSE(s.create_log_file);
    EXPECT_EQ(s.jpeg_quality, 75U);
    EXPECT_EQ(s.jpeg_resolution, 96U);
    EXPECT_EQ(s.recent_commands.first_non_empty, -1);
}

TEST_F(SettingsTest, MissingFileGivesDefaults) { expect_all_defaults(load_settings(dir / "absent.conf")); }

TEST_F(SettingsTest, SizingValuesOutsideTheirLimitsOrZeroTakeTheDefault) {
    EXPECT_EQ(load_with("StringSpace=500\n").sizes[size_string_space], 65536U);
    EXPECT_EQ(load_with("StringSpace=5000000\n").sizes[size_string_space], 65536U);
    EXPECT_EQ(load_with("StringSpace=0\n").sizes[size_string_space], 65536U);
    EXPECT_EQ(load_with("StringSpace=-7\n").sizes[size_string_space], 65536U);
    EXPECT_EQ(load_with("StringSpace=lots\n").sizes[size_string_space], 65536U);
    EXPECT_EQ(load_with("StringSpace=99999999999\n").sizes[size_string_space], 65536U);
}

TEST_F(SettingsTest, SizingValuesAtTheirLimitsAreKept) {
    const AppSettings s = load_with(
        "StringSpace=1000\nProgramBufferSpace=1048576\nScreenSize=2\nNumberOfFiles=20\nTempLongNumberSpace=4500\n");
    EXPECT_EQ(s.sizes[size_string_space], 1000U);
    EXPECT_EQ(s.sizes[size_program_buffer_space], 1048576U);
    EXPECT_EQ(s.sizes[size_screen_size], 2U);
    EXPECT_EQ(s.sizes[size_number_of_files], 20U);
    EXPECT_EQ(s.sizes[size_temp_long_number_space], 4500U);
    EXPECT_EQ(s.sizes[size_num_variables], 200U);  // missing
}

TEST_F(SettingsTest, ValuesOutsideTheGroupAreIgnored) {
    write_file(ini, "StringSpace=2000\n[Other]\nStringSpace=3000\n");
    EXPECT_EQ(load_settings(ini).sizes[size_string_space], 65536U);
}

TEST_F(SettingsTest, JpegValuesAreClampedAndMissingOnesDefault) {
    AppSettings s = load_with("JPEGQuality=10\nJPEGResolution=1000\n");
    EXPECT_EQ(s.jpeg_quality, 25U);
    EXPECT_EQ(s.jpeg_resolution, 600U);
    s = load_with("JPEGQuality=150\nJPEGResolution=1\n");
    EXPECT_EQ(s.jpeg_quality, 100U);
    EXPECT_EQ(s.jpeg_resolution, 25U);
    s = load_with("JPEGQuality=80\n");
    EXPECT_EQ(s.jpeg_quality, 80U);
    EXPECT_EQ(s.jpeg_resolution, 96U);
}

TEST_F(SettingsTest, PathsFlagsAndOverlongValues) {
    const std::string long_path(261, 'p');
    const AppSettings s = load_with("LogFilePath=/var/tmp/logs\nLogFileName=session.log\nWorkPath=" + long_path +
                                    "\nJpegFile=" + std::string(260, 'j') + "\nCreateLogFile=3\nWorkingDir=1\n");
    EXPECT_EQ(s.log_file_path, "/var/tmp/logs");
    EXPECT_EQ(s.log_file_name, "session.log");
    EXPECT_EQ(s.work_path, "");  // too long: ignored
    EXPECT_EQ(s.jpeg_file.size(), 260U);
    EXPECT_TRUE(s.create_log_file);
    EXPECT_EQ(s.working_dir, 1U);
}

TEST_F(SettingsTest, RecentListsRememberTheirFirstNonEmptyEntry) {
    const AppSettings s = load_with("RecentCommand3=print 1, 2\nRecentCommand19=list\nRecentCommand20=beyond\n"
                                    "RecentLogFile0=a.log\nRecentSourceProgram9=" +
                                    std::string(256, 'x') + "\n");
    EXPECT_EQ(s.recent_commands.first_non_empty, 3);
    EXPECT_EQ(s.recent_commands.entries.size(), 20U);
    EXPECT_EQ(s.recent_commands.entries[3], "print 1, 2");  // the INI reader's list split is undone
    EXPECT_EQ(s.recent_commands.entries[19], "list");
    EXPECT_EQ(s.recent_log_files.first_non_empty, 0);
    EXPECT_EQ(s.recent_source_programs.first_non_empty, -1);  // the only entry is too long
    EXPECT_EQ(s.recent_working_dirs.first_non_empty, -1);
}

TEST_F(SettingsTest, GarbageCostsOnlyTheValuesItHides) {
    std::mt19937 gen(12345);
    for (int round = 0; round < 20; ++round) {
        std::string junk(2000, '\0');
        for (char& c : junk) c = static_cast<char>(gen() & 0xff);
        if (round % 2 == 0) {
            write_file(ini, junk);
            expect_all_defaults(load_settings(ini));
        } else {
            const AppSettings s = load_with("StringSpace=2000\nWorkPath=/srv/basic\n" + junk);
            EXPECT_EQ(s.sizes[size_string_space], 2000U);
            EXPECT_EQ(s.work_path, "/srv/basic");
        }
    }
}

TEST_F(SettingsTest, AnUnreadableValueCostsOnlyItself) {
    // Raw DEL (as earlier versions stored it), a byte that is not UTF-8, a
    // value of another type, a negative quality: each is judged on its own.
    const AppSettings s = load_with("RecentCommand0=print 1\x7f\nRecentCommand1=print \"\xff\"\n"
                                    "RecentCommand2=list\nWorkPath=@Rect(1 2 3 4)\nLogFileName=\xe9t\xe9.log\n"
                                    "LogFilePath=/var/log\nCreateLogFile=1\nJPEGQuality=-5\nJPEGResolution=+300\n"
                                    "NumVariables=-1\n");
    EXPECT_EQ(s.recent_commands.entries[0], "print 1\x7f");
    EXPECT_EQ(s.recent_commands.entries[1], "");
    EXPECT_EQ(s.recent_commands.entries[2], "list");
    EXPECT_EQ(s.work_path, "");
    EXPECT_EQ(s.log_file_name, "logfile.log");
    EXPECT_EQ(s.log_file_path, "/var/log");
    EXPECT_TRUE(s.create_log_file);
    EXPECT_EQ(s.jpeg_quality, 25U);  // clamped like any other value below the range
    EXPECT_EQ(s.jpeg_resolution, 300U);
    EXPECT_EQ(s.sizes[size_num_variables], 200U);
}

TEST_F(SettingsTest, EveryByteTypedRoundTripsAndTheFileStaysText) {
    AppSettings s;
    s.src_pgm_name = "\xe2\x82\xac.bas";  // plain text stays readable as such
    for (int b = 0; b < 256; ++b) {
        const std::size_t slot = static_cast<std::size_t>(b % 20);
        s.recent_commands.entries[slot] = std::string("print \"a") + static_cast<char>(b) + "b\"";
        if (b % 20 != 19 && b != 255) continue;
        s.work_path = std::string("/home/") + static_cast<char>(b);
        ASSERT_TRUE(save_settings(s, ini)) << b;
        const std::string file = read_file(ini);
        for (const char c : file) {
            const auto u = static_cast<unsigned char>(c);
            ASSERT_TRUE(u == '\n' || (u >= 0x20 && u != 0x7f)) << "byte " << int(u) << " written raw:\n" << file;
        }
        const AppSettings back = load_settings(ini);
        EXPECT_EQ(back.recent_commands.entries, s.recent_commands.entries) << "up to byte " << b;
        EXPECT_EQ(back.work_path, s.work_path) << b;
        EXPECT_TRUE(shell::settings_stored_as(back, ini)) << b;  // nothing left to save
    }
    EXPECT_NE(read_file(ini).find("SrcPgmName=\xe2\x82\xac.bas\n"), std::string::npos) << read_file(ini);
}

TEST_F(SettingsTest, HostileValuesForEveryKnownNameAreClampedOrIgnored) {
    // Values the INI reader treats specially (variants, escapes, lists, quotes),
    // huge numbers and huge texts: nothing may crash, and every value read
    // stays within its limits.
    const std::vector<std::string> values = {
        "@Variant(\\0\\0\\0\\x7f\\xff\\xff)", "@ByteArray(\\xff\\xfe)", "@Rect(1 2 3)", "@Size(", "@",
        "\"unterminated", "\\x", "\\u12", "a, b, c", "-1", "4294967296", "1e300", "0x7fffffff",
        std::string(5000, '9'), std::string(70000, 'x'), "\x01\x02\x03", "=", "[Settings]"};
    std::vector<std::string> names = {"LogFilePath",  "LogFileName",  "SrcPgmPath", "SrcPgmName", "JpegPath",
                                      "JpegFile",     "WorkPath",     "CreateLogFile", "WorkingDir", "JPEGQuality",
                                      "JPEGResolution", "RecentCommand0", "RecentLogFile9", "RecentWorkingDir5",
                                      "RecentSourceProgram0"};
    for (const SizingRecord& r : sizing_records) names.emplace_back(r.value_name);
    for (std::size_t v = 0; v < values.size(); ++v) {
        std::string text;
        for (const std::string& name : names) text += name + "=" + values[(v + text.size()) % values.size()] + "\n";
        const AppSettings s = load_with(text);
        for (int i = 0; i < sizing_count; ++i) {
            const SizingRecord& r = sizing_records[static_cast<std::size_t>(i)];
            const std::uint32_t value = s.sizes.value[static_cast<std::size_t>(i)];
            EXPECT_TRUE(value >= r.minimum && value <= r.maximum) << r.value_name << "=" << value;
        }
        EXPECT_LE(s.log_file_path.size(), 260U);
        EXPECT_LE(s.work_path.size(), 260U);
        EXPECT_GE(s.jpeg_quality, 25U);
        EXPECT_LE(s.jpeg_quality, 100U);
        EXPECT_GE(s.jpeg_resolution, 25U);
        EXPECT_LE(s.jpeg_resolution, 600U);
        EXPECT_EQ(s.recent_commands.entries.size(), 20U);
        for (const std::string& e : s.recent_commands.entries) EXPECT_LE(e.size(), 255U);
    }
}

TEST_F(SettingsTest, UnreadableLocationKeepsDefaultsAndIsNotWritten) {
    std::filesystem::create_directory(ini);  // a folder where the file should be
    expect_all_defaults(load_settings(ini));
    EXPECT_FALSE(save_settings(AppSettings{}, ini));
}

TEST_F(SettingsTest, WriteBackRoundTripsAndLeavesSizesAlone) {
    write_file(ini, "[Settings]\nStringSpace=500\nNumVariables=300\n");
    AppSettings s = load_settings(ini);
    s.work_path = "/home/someone/basic";
    s.log_file_path = "/tmp";
    s.create_log_file = true;
    s.jpeg_quality = 90;
    s.recent_commands.entries[0] = "print \"a, b\"; 1,2";
    s.recent_commands.entries[5] = "run";
    s.recent_working_dirs.entries[2] = "/home/someone/ünïcode";
    ASSERT_TRUE(save_settings(s, ini));

    const AppSettings back = load_settings(ini);
    EXPECT_EQ(back.work_path, "/home/someone/basic");
    EXPECT_EQ(back.log_file_path, "/tmp");
    EXPECT_TRUE(back.create_log_file);
    EXPECT_EQ(back.jpeg_quality, 90U);
    EXPECT_EQ(back.recent_commands.entries[0], "print \"a, b\"; 1,2");
    EXPECT_EQ(back.recent_commands.entries[5], "run");
    EXPECT_EQ(back.recent_commands.first_non_empty, 0);
    EXPECT_EQ(back.recent_working_dirs.entries[2], "/home/someone/ünïcode");
    EXPECT_EQ(back.recent_working_dirs.first_non_empty, 2);
    const std::string text = read_file(ini);
    EXPECT_NE(text.find("StringSpace=500"), std::string::npos) << text;  // the user's value stays as written
    EXPECT_NE(text.find("NumVariables=300"), std::string::npos) << text;
}

TEST_F(SettingsTest, ClearedRecentEntriesAreRemoved) {
    write_file(ini, "[Settings]\nRecentLogFile1=old.log\n");
    AppSettings s = load_settings(ini);
    s.recent_log_files.entries[1].clear();
    ASSERT_TRUE(save_settings(s, ini));
    EXPECT_EQ(read_file(ini).find("RecentLogFile1"), std::string::npos);
}

TEST_F(SettingsTest, ADamagedFileIsKeptBesideTheRewrittenOne) {
    for (const std::string junk : {"[Settings\n\x01\x02=\xff\xfe\n", "[Settings]\nStringSpace=2000\n\x01\xff\n"}) {
        write_file(ini, junk);
        AppSettings s = load_settings(ini);
        s.work_path = "/srv";
        ASSERT_TRUE(save_settings(s, ini));
        EXPECT_EQ(read_file(ini + ".unreadable"), junk);
        EXPECT_EQ(load_settings(ini).work_path, "/srv");
    }
}

}  // namespace
}  // namespace tl::test
