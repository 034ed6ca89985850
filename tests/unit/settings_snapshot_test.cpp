// Tests of the settings snapshot and of the session's settings: a start
// reads the snapshot while everything it came from is unchanged and goes
// back to the settings file (through the Qt module) as soon as anything is.
#include "shell/settings_snapshot.h"

#include <sys/stat.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "shell/session.h"
#include "shell/session_settings.h"
#include "shell/settings.h"
#include "shell/shell_state.h"
#include "shell_test_support.h"

namespace tl::test {
namespace {

using shell::AppSettings;
using shell::SettingsSnapshot;

/// Sets an environment variable for the life of the object.
class ScopedVariable {
public:
    ScopedVariable(const char* name, const std::string& value) : name_(name) {
        if (const char* old = std::getenv(name)) old_ = old, had_ = true;
        ::setenv(name, value.c_str(), 1);
    }
    ~ScopedVariable() {
        if (had_)
            ::setenv(name_, old_.c_str(), 1);
        else
            ::unsetenv(name_);
    }

private:
    const char* name_;
    std::string old_;
    bool had_ = false;
};

class SettingsSnapshotTest : public ::testing::Test {
protected:
    ScratchDir dir;
    std::string snapshot = dir / "cache/settings.snapshot";
    std::string ini = dir / "Tessaline.conf";

    static SettingsSnapshot sample() {
        SettingsSnapshot s;
        s.settings.log_file_path = "/logs with spaces/\n\"odd\"";
        s.settings.work_path = "";
        s.settings.create_log_file = true;
        s.settings.jpeg_quality = 90;
        s.settings.sizes.value[3] = 12345;
        s.settings.recent_commands.entries[2] = "print 1:2";
        s.settings.recent_commands.first_non_empty = 2;
        s.documents_folder = "/home/someone/Documents";
        s.needs_saving = true;
        return s;
    }
};

TEST_F(SettingsSnapshotTest, GivesBackWhatWasWrittenWhileTheFilesStayTheSame) {
    write_file(ini, "[Settings]\nJPEGQuality=90\n");
    const SettingsSnapshot s = sample();
    ASSERT_TRUE(shell::write_settings_snapshot(s, {ini, dir / "absent.conf"}, snapshot));
    const auto back = shell::read_settings_snapshot(snapshot);
    ASSERT_TRUE(back.has_value());
    EXPECT_TRUE(back->settings == s.settings);
    EXPECT_EQ(back->documents_folder, s.documents_folder);
    EXPECT_TRUE(back->needs_saving);
}

TEST_F(SettingsSnapshotTest, AnyChangeOfItsFilesOrVariablesMakesItStale) {
    const std::string absent = dir / "absent.conf";
    const auto write = [&] {
        write_file(ini, "[Settings]\nJPEGQuality=90\n");
        ASSERT_TRUE(shell::write_settings_snapshot(sample(), {ini, absent}, snapshot));
        ASSERT_TRUE(shell::read_settings_snapshot(snapshot).has_value());
    };
    write();
    write_file(ini, "[Settings]\nJPEGQuality=91\n");  // the same size, written again
    EXPECT_FALSE(shell::read_settings_snapshot(snapshot).has_value());
    write();
    write_file(absent, "[Settings]\n");  // a file QSettings falls back on appears
    EXPECT_FALSE(shell::read_settings_snapshot(snapshot).has_value());
    std::remove(absent.c_str());
    write();
    std::remove(ini.c_str());
    EXPECT_FALSE(shell::read_settings_snapshot(snapshot).has_value());
    write();
    {
        const ScopedVariable other("XDG_CONFIG_HOME", dir / "elsewhere");
        EXPECT_FALSE(shell::read_settings_snapshot(snapshot).has_value());
    }
    EXPECT_TRUE(shell::read_settings_snapshot(snapshot).has_value());
}

TEST_F(SettingsSnapshotTest, DamagedOrMissingSnapshotsAreNotUsed) {
    EXPECT_FALSE(shell::read_settings_snapshot(snapshot).has_value());
    EXPECT_FALSE(shell::read_settings_snapshot("").has_value());
    write_file(ini, "[Settings]\n");
    ASSERT_TRUE(shell::write_settings_snapshot(sample(), {ini}, snapshot));
    const std::string whole = read_file(snapshot);
    for (const std::size_t cut : {std::size_t{0}, std::size_t{10}, whole.size() / 2, whole.size() - 1}) {
        write_file(snapshot, whole.substr(0, cut));
        EXPECT_FALSE(shell::read_settings_snapshot(snapshot).has_value()) << cut;
    }
    std::string bent = whole;
    bent[bent.size() / 2] = 'x';
    write_file(snapshot, bent);
    EXPECT_FALSE(shell::read_settings_snapshot(snapshot).has_value());
    write_file(snapshot, whole + "more");
    EXPECT_FALSE(shell::read_settings_snapshot(snapshot).has_value());
}

TEST_F(SettingsSnapshotTest, ItsValuesGetTheChecksOfTheSettingsFile) {
    write_file(ini, "[Settings]\n");
    SettingsSnapshot s = sample();
    s.settings.sizes.value[size_string_space] = 0;
    s.settings.sizes.value[size_program_buffer_space] = 5;
    s.settings.sizes.value[size_num_variables] = 1001;
    s.settings.jpeg_quality = 1;
    s.settings.jpeg_resolution = 9999;
    s.settings.work_path = std::string(261, 'w');
    s.settings.recent_commands.entries[2] = std::string(256, 'c');
    s.settings.recent_commands.entries[7] = "list";
    ASSERT_TRUE(shell::write_settings_snapshot(s, {ini}, snapshot));
    auto back = shell::read_settings_snapshot(snapshot);
    ASSERT_TRUE(back.has_value());
    EXPECT_EQ(back->settings.sizes[size_string_space], 65536U);
    EXPECT_EQ(back->settings.sizes[size_program_buffer_space], 65536U);
    EXPECT_EQ(back->settings.sizes[size_num_variables], 200U);
    EXPECT_EQ(back->settings.sizes.value[3], 12345U);
    EXPECT_EQ(back->settings.jpeg_quality, 25U);
    EXPECT_EQ(back->settings.jpeg_resolution, 600U);
    EXPECT_EQ(back->settings.work_path, "");
    EXPECT_EQ(back->settings.recent_commands.entries[2], "");
    EXPECT_EQ(back->settings.recent_commands.first_non_empty, 7);

    // A number too large for its field does not wrap into range.
    s = sample();
    s.settings.sizes.value[size_string_space] = 3210;
    ASSERT_TRUE(shell::write_settings_snapshot(s, {ini}, snapshot));
    std::string text = read_file(snapshot);
    const std::size_t at = text.find("\n4:3210\n");
    ASSERT_NE(at, std::string::npos);
    text.replace(at, 8, "\n10:4294970506\n");  // 2^32 + 3210
    write_file(snapshot, text);
    back = shell::read_settings_snapshot(snapshot);
    ASSERT_TRUE(back.has_value());
    EXPECT_EQ(back->settings.sizes[size_string_space], 65536U);
}

TEST_F(SettingsSnapshotTest, SessionsReadTheFileOnceAndSaveOnlyWhatChanged) {
    const ScopedVariable home("HOME", dir.path());
    const ScopedVariable config("XDG_CONFIG_HOME", dir / "config");
    const std::string conf = dir / "config/Ostraval Software/Tessaline.conf";

    // First start: no file; the settings need saving, the snapshot is made.
    SettingsSnapshot first = shell::load_session_settings(snapshot);
    EXPECT_TRUE(first.needs_saving);
    EXPECT_FALSE(first.documents_folder.empty());
    ASSERT_TRUE(shell::save_session_settings(first.settings, first, snapshot));
    struct stat before {};
    ASSERT_EQ(::stat(conf.c_str(), &before), 0);

    // Later starts read the snapshot; a session that changed nothing leaves the file alone.
    SettingsSnapshot second = shell::load_session_settings(snapshot);
    EXPECT_FALSE(second.needs_saving);
    EXPECT_TRUE(shell::read_settings_snapshot(snapshot).has_value());
    ASSERT_TRUE(shell::save_session_settings(second.settings, second, snapshot));
    struct stat after {};
    ASSERT_EQ(::stat(conf.c_str(), &after), 0);
    EXPECT_EQ(before.st_mtim.tv_nsec, after.st_mtim.tv_nsec);
    EXPECT_EQ(before.st_ino, after.st_ino);

    // A change is saved, and the next start sees it.
    AppSettings changed = second.settings;
    changed.recent_commands.entries[0] = "print 42";
    ASSERT_TRUE(shell::save_session_settings(changed, second, snapshot));
    EXPECT_EQ(shell::load_session_settings(snapshot).settings.recent_commands.entries[0], "print 42");

    // So is an edit of the file by hand.
    write_file(conf, read_file(conf) + "JPEGQuality=33\n");
    EXPECT_EQ(shell::load_session_settings(snapshot).settings.jpeg_quality, 33U);

    // (Qt keeps the user's settings folder it found first, so the session's
    // own saving is tried here, in the same folder.)
    // What the window, a dialog or an export changes is written at once,
    // and again when it is changed back to what the session began with.
    shell::ShellState& state = shell::shell_state;
    const AppSettings kept = state.settings;
    EXPECT_TRUE(shell::save_settings_now());  // outside a session: nothing to do
    shell::SessionStart start;
    start.snapshot_path = snapshot;
    start.loaded = shell::load_session_settings(snapshot);
    state.settings = start.loaded.settings;
    state.session = &start;
    state.settings.jpeg_quality = 90;
    state.settings.jpeg_file = "plot.jpg";
    ASSERT_TRUE(shell::save_settings_now());
    EXPECT_NE(read_file(conf).find("JPEGQuality=90\n"), std::string::npos) << read_file(conf);
    EXPECT_NE(read_file(conf).find("JpegFile=plot.jpg\n"), std::string::npos);
    state.settings.jpeg_quality = 33;
    ASSERT_TRUE(shell::save_settings_now());
    EXPECT_NE(read_file(conf).find("JPEGQuality=33\n"), std::string::npos) << read_file(conf);
    shell::end_session(start);  // forgets the session
    EXPECT_EQ(state.session, nullptr);
    state.settings = kept;
}

}  // namespace
}  // namespace tl::test
