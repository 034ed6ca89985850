// settings_snapshot.cpp — writing and checking the settings snapshot.
//
// The file is a sequence of records "<length>:<bytes>\n" in a fixed order,
// so that no value needs escaping.
#include "shell/settings_snapshot.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>

namespace tl::shell {
namespace {

constexpr const char* snapshot_header = "tessaline settings snapshot " TESSALINE_VERSION " 1";
/// The variables that decide which files QSettings and the standard folders read.
constexpr const char* stamped_variables[] = {"HOME", "XDG_CONFIG_HOME", "XDG_CONFIG_DIRS"};

/// The state of a file: "-" when absent, else its size, inode and times.
std::string file_state(const std::string& path) {
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0) return "-";
    char text[160];
    std::snprintf(text, sizeof text, "%lld %llu %lld.%09ld %lld.%09ld", static_cast<long long>(st.st_size),
                  static_cast<unsigned long long>(st.st_ino), static_cast<long long>(st.st_mtim.tv_sec),
                  st.st_mtim.tv_nsec, static_cast<long long>(st.st_ctim.tv_sec), st.st_ctim.tv_nsec);
    return text;
}

std::string variable(const char* name) {
    const char* v = std::getenv(name);
    return v == nullptr ? std::string("\x01unset") : std::string(v);
}

class Writer {
public:
    void text(const std::string& v) {
        out_ += std::to_string(v.size());
        out_ += ':';
        out_ += v;
        out_ += '\n';
    }
    void number(std::uint64_t v) { text(std::to_string(v)); }
    const std::string& result() const { return out_; }

private:
    std::string out_;
};

class Reader {
public:
    explicit Reader(std::string data) : data_(std::move(data)) {}
    bool text(std::string& v) {
        const std::size_t colon = data_.find(':', at_);
        if (colon == std::string::npos || colon == at_ || colon - at_ > 10) return fail();
        std::size_t n = 0;
        for (std::size_t i = at_; i < colon; ++i) {
            if (data_[i] < '0' || data_[i] > '9') return fail();
            n = n * 10 + static_cast<std::size_t>(data_[i] - '0');
        }
        if (colon + 1 + n >= data_.size() || data_[colon + 1 + n] != '\n') return fail();
        v.assign(data_, colon + 1, n);
        at_ = colon + 2 + n;
        return true;
    }
    template <typename T>
    bool number(T& v) {
        std::string t;
        if (!text(t) || t.empty() || t.size() > 19) return fail();
        std::uint64_t n = 0;
        for (const char c : t) {
            if (c < '0' || c > '9') return fail();
            n = n * 10 + static_cast<std::uint64_t>(c - '0');
        }
        // A number too large for the field reads as its largest value (which
        // the range checks then refuse) rather than wrapping into range.
        v = n > static_cast<std::uint64_t>(std::numeric_limits<T>::max()) ? std::numeric_limits<T>::max()
                                                                          : static_cast<T>(n);
        return true;
    }
    bool expect(const std::string& wanted) {
        std::string t;
        return text(t) && t == wanted;
    }
    bool at_end() const { return at_ == data_.size(); }

private:
    bool fail() { return false; }
    std::string data_;
    std::size_t at_ = 0;
};

std::vector<RecentList*> recent_lists(AppSettings& s) {
    return {&s.recent_working_dirs, &s.recent_log_files, &s.recent_source_programs, &s.recent_commands};
}

std::vector<std::string*> text_fields(AppSettings& s) {
    return {&s.log_file_path, &s.log_file_name, &s.src_pgm_path, &s.src_pgm_name,
            &s.jpeg_path,     &s.jpeg_file,     &s.work_path};
}

}  // namespace

std::string settings_snapshot_path() {
    const char* cache = std::getenv("XDG_CACHE_HOME");
    if (cache != nullptr && *cache == '/') return std::string(cache) + "/tessaline/settings.snapshot";
    const char* home = std::getenv("HOME");
    if (home == nullptr || *home == 0) return {};
    return std::string(home) + "/.cache/tessaline/settings.snapshot";
}

bool write_settings_snapshot(const SettingsSnapshot& snapshot, const std::vector<std::string>& files,
                             const std::string& path) {
    if (path.empty()) return false;
    Writer w;
    w.text(snapshot_header);
    for (const char* name : stamped_variables) w.text(variable(name));
    w.number(files.size());
    for (const std::string& f : files) {
        w.text(f);
        w.text(file_state(f));
    }
    AppSettings s = snapshot.settings;
    w.text(snapshot.documents_folder);
    w.number(snapshot.needs_saving ? 1 : 0);
    for (const std::uint32_t v : s.sizes.value) w.number(v);
    for (const std::string* t : text_fields(s)) w.text(*t);
    w.number(s.create_log_file ? 1 : 0);
    w.number(s.working_dir);
    w.number(s.jpeg_quality);
    w.number(s.jpeg_resolution);
    for (const RecentList* list : recent_lists(s)) {
        w.number(list->entries.size());
        for (const std::string& e : list->entries) w.text(e);
        w.number(static_cast<std::uint64_t>(list->first_non_empty + 1));
    }
    w.text("end");

    std::error_code ec;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ec);
    const std::string temporary = path + "." + std::to_string(::getpid());
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        if (!out) return false;
        out << w.result();
        if (!out.flush()) {
            std::filesystem::remove(temporary, ec);
            return false;
        }
    }
    std::filesystem::rename(temporary, path, ec);
    if (ec) std::filesystem::remove(temporary, ec);
    return !ec;
}

std::optional<SettingsSnapshot> read_settings_snapshot(const std::string& path) {
    if (path.empty()) return std::nullopt;
    std::ifstream in(path, std::ios::binary);
    if (!in) return std::nullopt;
    std::string data((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    Reader r(std::move(data));
    if (!r.expect(snapshot_header)) return std::nullopt;
    for (const char* name : stamped_variables)
        if (!r.expect(variable(name))) return std::nullopt;
    std::size_t file_count = 0;
    if (!r.number(file_count) || file_count > 64) return std::nullopt;
    for (std::size_t i = 0; i < file_count; ++i) {
        std::string file;
        if (!r.text(file) || !r.expect(file_state(file))) return std::nullopt;
    }
    SettingsSnapshot snapshot;
    AppSettings& s = snapshot.settings;
    int flag = 0;
    if (!r.text(snapshot.documents_folder) || !r.number(flag)) return std::nullopt;
    snapshot.needs_saving = flag != 0;
    for (std::uint32_t& v : s.sizes.value)
        if (!r.number(v)) return std::nullopt;
    for (std::string* t : text_fields(s))
        if (!r.text(*t)) return std::nullopt;
    if (!r.number(flag) || !r.number(s.working_dir) || !r.number(s.jpeg_quality) || !r.number(s.jpeg_resolution))
        return std::nullopt;
    s.create_log_file = flag != 0;
    for (RecentList* list : recent_lists(s)) {
        std::size_t n = 0;
        if (!r.number(n) || n != list->entries.size()) return std::nullopt;
        for (std::string& e : list->entries)
            if (!r.text(e)) return std::nullopt;
        int first = 0;
        if (!r.number(first)) return std::nullopt;
        list->first_non_empty = first - 1;
    }
    if (!r.expect("end") || !r.at_end()) return std::nullopt;
    // The snapshot is a file like any other: its values get the checks the
    // settings file's values get.
    keep_within_limits(s);
    return snapshot;
}

}  // namespace tl::shell
