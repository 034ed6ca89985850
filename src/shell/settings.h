// settings.h — the user's settings: sizes, paths, flags, JPEG values and recent lists.
//
// The settings live in the INI file that QSettings keeps for the organisation
// "Ostraval Software" and the application "Tessaline", group "Settings".
// A missing, unreadable or corrupt file leaves every default in force.
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
/// Returns false when the file could not be written; a corrupt file is left
/// as it is.
bool save_settings(const AppSettings& settings, const std::string& ini_file = {});

/// True when saving `settings` would leave the file as it is.
[[nodiscard]] bool settings_stored_as(const AppSettings& settings, const std::string& ini_file = {});

/// The user's documents folder with "/" separators (may not exist yet).
[[nodiscard]] std::string user_documents_folder();

/// Every file the settings and the documents folder are read from, whether
/// it exists or not (the user's settings file first).
[[nodiscard]] std::vector<std::string> settings_files();

// The functions above use Qt, which the program loads only when it needs
// them (see qt_module.h); the ones below do not.

}  // namespace tl::shell
