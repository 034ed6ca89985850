// settings.h — the user's settings: sizes, paths, flags, JPEG values and recent lists.
//
// The settings live in the INI file that QSettings keeps for the organisation
// "Ostraval Software" and the application "Tessaline", group "Settings".
// A missing or unreadable file leaves every default in force; in a damaged
// file each value that cannot be read keeps its default, and only that one.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "exec/sizing_settings.h"

namespace tl::shell {

inline constexpr const char* settings_organisation = "Ostraval Software";
inline constexpr const char* settings_application = "Tessaline";
inline constexpr const char* settings_group = "Settings";

/// Longest path or file name kept; a longer stored value is ignored.
inline constexpr int max_path_setting = 260;
/// Longest recent-list entry kept; a longer stored value reads as empty.
inline constexpr int max_recent_entry = 255;

inline constexpr std::uint32_t jpeg_quality_min = 25;
inline constexpr std::uint32_t jpeg_quality_max = 100;
inline constexpr std::uint32_t jpeg_quality_default = 75;
inline constexpr std::uint32_t jpeg_resolution_min = 25;
inline constexpr std::uint32_t jpeg_resolution_max = 600;
inline constexpr std::uint32_t jpeg_resolution_default = 96;

/// One recent-use list: a fixed number of slots stored as "<prefix>0", "<prefix>1", ...
struct RecentList {
    const char* value_prefix;
    std::vector<std::string> entries;
    /// Index of the first non-empty entry as last read, or -1 when all are empty.
    int first_non_empty = -1;

    RecentList(const char* prefix, int size) : value_prefix(prefix), entries(static_cast<std::size_t>(size)) {}
    bool operator==(const RecentList& other) const {
        return std::string_view(value_prefix) == other.value_prefix && entries == other.entries &&
               first_non_empty == other.first_non_empty;
    }
};

struct AppSettings {
    SizingValues sizes = default_sizing();

    std::string log_file_path;
    std::string log_file_name = "logfile.log";
    std::string src_pgm_path;
    std::string src_pgm_name = "program.txt";
    std::string jpeg_path;
    std::string jpeg_file;
    std::string work_path;

    bool create_log_file = false;
    /// "WorkingDir": remembered for the window's file choices; not used at start-up.
    std::uint32_t working_dir = 0;

    std::uint32_t jpeg_quality = jpeg_quality_default;
    std::uint32_t jpeg_resolution = jpeg_resolution_default;

    RecentList recent_working_dirs{"RecentWorkingDir", 10};
    RecentList recent_log_files{"RecentLogFile", 10};
    RecentList recent_source_programs{"RecentSourceProgram", 10};
    RecentList recent_commands{"RecentCommand", 20};

    bool operator==(const AppSettings&) const = default;
};

/// Reads the settings from `ini_file`, or from the user's settings file when
/// `ini_file` is empty. Never fails: anything unusable keeps its default.
[[nodiscard]] AppSettings load_settings(const std::string& ini_file = {});

/// Writes the paths, flags, JPEG values and recent lists (not the sizes, which
/// only the Customize dialog changes), those that differ from the file only.
/// Texts that are not plain UTF-8 are stored as escaped bytes, so the file
/// stays plain text. A damaged file is copied to "<file>.unreadable" before it
/// is rewritten. Returns false when the file could not be written.
bool save_settings(const AppSettings& settings, const std::string& ini_file = {});

/// Writes the fourteen sizing values (those that differ from the file). The
/// Customize dialog's way: they take effect at the next start. False when
/// the file could not be written.
bool save_sizing(const SizingValues& sizes, const std::string& ini_file = {});

/// True when saving `settings` would leave the file as it is.
[[nodiscard]] bool settings_stored_as(const AppSettings& settings, const std::string& ini_file = {});

/// The user's documents folder with "/" separators (may not exist yet).
[[nodiscard]] std::string user_documents_folder();

/// Every file the settings and the documents folder are read from, whether
/// it exists or not (the user's settings file first).
[[nodiscard]] std::vector<std::string> settings_files();

// The functions above use Qt, which the program loads only when it needs
// them (see qt_module.h); the ones below do not.

[[nodiscard]] constexpr std::uint32_t clamp_jpeg_value(std::uint32_t v, std::uint32_t lo, std::uint32_t hi) {
    return v < lo ? lo : (v > hi ? hi : v);
}

/// Puts settings that came from anywhere within the limits that reading the
/// settings file applies: a size outside its range takes its default, the
/// JPEG values are clamped, a path or file name longer than max_path_setting
/// takes its default, a recent entry longer than max_recent_entry is emptied,
/// and each recent list's first non-empty entry is found again.
inline void keep_within_limits(AppSettings& s) {
    for (int i = 0; i < sizing_count; ++i)
        s.sizes.value[static_cast<std::size_t>(i)] =
            clamp_sizing(static_cast<SizingIndex>(i), s.sizes.value[static_cast<std::size_t>(i)]);
    s.jpeg_quality = clamp_jpeg_value(s.jpeg_quality, jpeg_quality_min, jpeg_quality_max);
    s.jpeg_resolution = clamp_jpeg_value(s.jpeg_resolution, jpeg_resolution_min, jpeg_resolution_max);
    const AppSettings defaults;
    const auto limit_path = [](std::string& v, const std::string& fallback) {
        if (v.size() > static_cast<std::size_t>(max_path_setting)) v = fallback;
    };
    limit_path(s.log_file_path, defaults.log_file_path);
    limit_path(s.log_file_name, defaults.log_file_name);
    limit_path(s.src_pgm_path, defaults.src_pgm_path);
    limit_path(s.src_pgm_name, defaults.src_pgm_name);
    limit_path(s.jpeg_path, defaults.jpeg_path);
    limit_path(s.jpeg_file, defaults.jpeg_file);
    limit_path(s.work_path, defaults.work_path);
    for (RecentList* list : {&s.recent_working_dirs, &s.recent_log_files, &s.recent_source_programs,
                             &s.recent_commands}) {
        list->first_non_empty = -1;
        for (std::size_t i = 0; i < list->entries.size(); ++i) {
            std::string& e = list->entries[i];
            if (e.size() > static_cast<std::size_t>(max_recent_entry)) e.clear();
            if (list->first_non_empty < 0 && !e.empty()) list->first_non_empty = static_cast<int>(i);
        }
    }
}

}  // namespace tl::shell
