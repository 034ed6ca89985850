// file_table.cpp — opening, closing, flushing and reading the files of the File Table.
#include "exec/file_table.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <new>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include "exec/front_end.h"
#include "exec/named_variables.h"
#include "exec/open_without_waiting.h"
#include "exec/string_space.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/lang_state.h"

namespace tl {
namespace {

constexpr std::uint32_t max_record_length = 32767;
constexpr std::uint32_t default_record_length = 255;
/// Characters of a text file taken as one line at most.
constexpr std::size_t max_line_length = 65536;

int report_at(int column, int error) {
    lang.reporter.error_column = column;
    return report_error(error);
}

/// A line that says why, before the numbered message (which starts a line of its own).
void explain(const std::string& why) {
    console_write("\n");
    console_write(why);
    // Without a statement shown after it (a file written out when a command
    // line ends), the message still starts a line of its own.
    if (lang.reporter.text == nullptr || lang.reporter.no_echo) console_write("\n");
}

int entry_number(const FileEntry& f) { return static_cast<int>(&f - areas.files.data()); }

/// Finished lines of a sequential output file: a failed write is reported
/// once with what the system said.
int file_sink(FileEntry& f, const char* text, std::size_t length) {
    if (f.stream == nullptr) return 0;
    if (std::fwrite(text, 1, length, f.stream) == length && std::ferror(f.stream) == 0) return 0;
    const int error = errno;
    std::clearerr(f.stream);
    explain("Writing to file #" + std::to_string(entry_number(f)) + " (" + f.name + ") failed: " +
            std::strerror(error) + ".");
    return report_error(err_open_file_failed);
}

int serial_sink(FileEntry& f, const char* text, std::size_t length) {
    if (serial_write(f.fd, text, length) == 0) return 0;
    return report_error(err_serial_i_o_error);
}

bool interrupt_asked() {
    pump_events();
    return host.flags.interrupt_requested.load();
}

int serial_timeout_ms() {
    double seconds = named_double("serialtimeout");
    if (!(seconds > 0.0)) seconds = default_serial_timeout;
    if (seconds > 86400.0) seconds = 86400.0;
    return static_cast<int>(std::lround(seconds * 1000.0));
}

/// Another open file or port on the same file as `st`, for output modes and
/// ports; or 0.
int already_open(const struct stat& st, int except) {
    for (std::size_t i = 1; i + 1 < areas.files.size(); ++i) {
        const FileEntry& f = areas.files[i];
        if (f.open == 0 || static_cast<int>(i) == except) continue;
        const int fd = f.stream != nullptr ? ::fileno(f.stream) : f.fd;
        struct stat other {};
        if (fd >= 0 && ::fstat(fd, &other) == 0 && other.st_dev == st.st_dev && other.st_ino == st.st_ino)
            return static_cast<int>(i);
    }
    return 0;
}

std::FILE* open_stream(const OpenRequest& r, std::string& problem) {
    struct stat st {};
    const bool exists = ::stat(r.name, &st) == 0;
    if (exists && S_ISDIR(st.st_mode)) {
        problem = std::string("\"") + r.name + "\" is a folder.";
        return nullptr;
    }
    const bool pipe = exists && (S_ISFIFO(st.st_mode) || S_ISSOCK(st.st_mode));
    // Opened for both reading and writing, a pipe is its own writer: a read
    // would wait for ever. (A RANDOM file seeks first, and fails there.)
    if (pipe && r.mode == file_mode_binary) {
        problem = std::string("\"") + r.name + "\" is a pipe, without the positions of a BINARY file.";
        return nullptr;
    }
    if (exists && r.mode != file_mode_input) {
        if (const int other = already_open(st, r.number); other != 0) {
            problem = std::string("\"") + r.name + "\" is already open as file #" + std::to_string(other) + ".";
            return nullptr;
        }
    }
    const char* how = "rb";
    switch (r.mode) {
        case file_mode_output: how = "wb"; break;
        case file_mode_append: how = "ab"; break;
        case file_mode_random:
        case file_mode_binary: how = exists ? "r+b" : "w+b"; break;
        default: break;
    }
    std::FILE* s = open_without_waiting(r.name, how);
    if (s == nullptr) {
        const int error = errno;
        const bool pipe = exists && S_ISFIFO(st.st_mode);
        problem = std::string("Cannot open \"") + r.name + "\": " +
                  (error == ENXIO && pipe ? "no program is reading from it" : std::strerror(error)) + ".";
    }
    return s;
}

/// Drops a port's message up to and including its end (CR, LF or CR LF);
/// when the end has not come yet, what came is dropped and the rest will be.
void drop_message(FileEntry& f) {
    std::vector<char>& b = f.record;
    const auto end = std::find_if(b.begin(), b.end(), [](char c) { return c == '\n' || c == '\r'; });
    f.skip_message = end == b.end();
    if (f.skip_message) {
        b.clear();
        return;
    }
    auto next = end + 1;
    f.skip_line_feed = *end == '\r';
    if (f.skip_line_feed && next != b.end() && *next == '\n') {
        f.skip_line_feed = false;
        ++next;
    }
    b.erase(b.begin(), next);
}

/// Takes a finished record out of a port's receive buffer, if there is one.
/// Returns 1 with the record in entry.input, 0 when none is complete yet,
/// or -319 (reported) when more than the record length came without an end;
/// the whole of that message is dropped, the messages after it are kept.
int take_port_record(FileEntry& f) {
    std::vector<char>& b = f.record;
    if (f.skip_message) {
        drop_message(f);
        if (f.skip_message) return 0;
    }
    std::size_t start = 0;
    if (f.skip_line_feed && !b.empty()) {
        if (b[0] == '\n') start = 1;
        f.skip_line_feed = false;
    }
    if (start == 1) b.erase(b.begin());
    for (std::size_t i = 0; i < b.size(); ++i) {
        if (b[i] != '\n' && b[i] != '\r') continue;
        if (i > f.record_length) break;
        f.input.assign(b.data(), i);
        f.skip_line_feed = b[i] == '\r';
        if (f.skip_line_feed && i + 1 < b.size() && b[i + 1] == '\n') {
            f.skip_line_feed = false;
            ++i;
        }
        b.erase(b.begin(), b.begin() + static_cast<std::ptrdiff_t>(i + 1));
        return 1;
    }
    if (b.size() > f.record_length) {
        drop_message(f);
        return report_error(err_serial_input_buffer_overflow_message);
    }
    return 0;
}

/// The next byte of a text file, or EOF at its end. The reader of a pipe
/// waits for it here, hearing Ctrl+C, Stop and SIGTERM: then EOF too, with
/// the interrupt flag set.
int next_char(FileEntry& f) {
    for (;;) {
        errno = 0;
        const int c = getc_unlocked(f.stream);
        if (c != EOF || !f.pipe || std::ferror(f.stream) == 0 || errno != EAGAIN) return c;
        std::clearerr(f.stream);
        if (interrupt_asked()) return EOF;
        pollfd p{::fileno(f.stream), POLLIN, 0};
        (void)::poll(&p, 1, 50);
    }
}

/// After a pipe's wait ended by an interruption: 106 (reported), else 0.
int pipe_interrupted(const FileEntry& f) {
    if (!f.pipe || !host.flags.interrupt_requested.load()) return 0;
    return report_error(err_user_interrupted_program);
}

int read_port_line(FileEntry& f) {
    const int timeout = serial_timeout_ms();
    for (;;) {
        const int got = take_port_record(f);
        if (got != 0) return got;
        const int n = serial_read_some(f.fd, f.record, f.record_length + 2, timeout, interrupt_asked);
        if (n < 0) return report_error(err_serial_i_o_error);
        if (n == 0) {
            if (host.flags.interrupt_requested.load()) return report_error(err_user_interrupted_program);
            return report_error(err_serial_input_timeout);
        }
    }
}

}  // namespace

std::uint32_t mode_from_letter(const char* text) {
    if (text[0] == 0 || text[1] != 0) return 0;
    switch (text[0]) {
        case 'i': case 'I': return file_mode_input;
        case 'o': case 'O': return file_mode_output;
        case 'a': case 'A': return file_mode_append;
        case 'r': case 'R': return file_mode_random;
        case 'b': case 'B': return file_mode_binary;
        case 's': case 'S': return file_mode_serial;
        default: return 0;
    }
}

int file_count() { return static_cast<int>(areas.sizes[size_number_of_files]); }

FileEntry* open_entry(int number) {
    if (number < 1 || number > file_count() || static_cast<std::size_t>(number) >= areas.files.size()) return nullptr;
    FileEntry& f = areas.files[static_cast<std::size_t>(number)];
    return f.open != 0 ? &f : nullptr;
}

int open_file(const OpenRequest& r) {
    FileEntry& f = areas.files[static_cast<std::size_t>(r.number)];
    if (f.open != 0) return report_error(err_file_number_use);
    std::uint32_t length = r.record_length;
    if (r.mode == file_mode_binary) {
        if (length > default_record_length) return report_at(r.name_column, err_invalid_record_length_binary_file);
    } else if (length > max_record_length) {
        return report_at(r.name_column, err_invalid_logical_record_length_open);
    }
    if (r.mode == file_mode_random && length == 0) return report_at(r.name_column, err_record_length_required_random_files);
    if (length == 0) length = default_record_length;

    std::string problem;
    FileEntry fresh;
    fresh.name[0] = 0;
    copy_text(fresh.name, sizeof fresh.name, r.name);
    try {
        if (r.mode == file_mode_random) fresh.record.assign(length, ' ');
        if (r.mode == file_mode_serial) fresh.record.reserve(length + 256);
    } catch (const std::bad_alloc&) {
        return report_error(err_could_not_allocate_buffer_file);
    }
    if (r.mode == file_mode_serial) {
        const std::string device = serial_device_path(r.name);
        // Two numbers on one port would take each other's messages.
        struct stat st {};
        if (::stat(device.c_str(), &st) == 0) {
            if (const int other = already_open(st, r.number); other != 0) {
                explain(device + " is already open as file #" + std::to_string(other) + ".");
                return report_at(r.name_column, err_open_file_failed);
            }
        }
        fresh.fd = serial_open(device, r.serial, problem);
        if (fresh.fd < 0) {
            explain(problem);
            return report_at(r.name_column, err_open_file_failed);
        }
        fresh.sink = serial_sink;
    } else {
        fresh.stream = open_stream(r, problem);
        if (fresh.stream == nullptr) {
            explain(problem);
            return report_at(r.name_column, err_open_file_failed);
        }
        struct stat st {};
        const int fd = ::fileno(fresh.stream);
        if (r.mode == file_mode_input && ::fstat(fd, &st) == 0 && (S_ISFIFO(st.st_mode) || S_ISSOCK(st.st_mode))) {
            // Reads of a pipe wait in next_char, where Ctrl+C, Stop and SIGTERM are heard.
            fresh.pipe = ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | O_NONBLOCK) == 0;
        }
        if (r.mode == file_mode_output || r.mode == file_mode_append) {
            // Every finished line goes to the system at once.
            std::setvbuf(fresh.stream, nullptr, _IOLBF, BUFSIZ);
            fresh.sink = file_sink;
        }
    }
    fresh.open = 1;
    fresh.mode = r.mode;
    fresh.record_length = length;
    // The output line: a RANDOM record holds at most the line buffer.
    fresh.width = length < line_buffer_size - 1 ? length : line_buffer_size - 1;
    if (r.mode != file_mode_random && r.mode != file_mode_serial) fresh.width = default_record_length;
    f = std::move(fresh);
    return 0;
}

int close_file(int number) {
    if (number < 1 || static_cast<std::size_t>(number) >= areas.files.size()) return 0;
    FileEntry& f = areas.files[static_cast<std::size_t>(number)];
    if (f.open == 0) return 0;
    int rc = 0;
    if (f.mode != file_mode_random && f.write_index > 0 && f.sink != nullptr) {
        rc = f.sink(f, f.line, f.write_index);
        f.write_index = 0;
    }
    if (f.stream != nullptr) {
        const bool failed = std::fclose(f.stream) != 0;
        const int error = errno;
        f.stream = nullptr;
        if (failed && rc == 0) {
            explain("Closing file #" + std::to_string(number) + " (" + f.name + ") failed: " + std::strerror(error) + ".");
            rc = report_error(err_open_file_failed);
        }
    }
    if (f.fd >= 0) ::close(f.fd);
    const std::uint32_t width = f.width;
    f = FileEntry{};
    f.width = width == 80 ? 80 : 255;
    return rc;
}

void close_all_files() {
    for (std::size_t i = 1; i < areas.files.size(); ++i) {
        if (areas.files[i].open != 0) (void)close_file(static_cast<int>(i));
    }
}

int flush_all_files() {
    int first = 0;
    for (std::size_t i = 1; i < areas.files.size(); ++i) {
        FileEntry& f = areas.files[i];
        if (f.open == 0 || f.mode == file_mode_random) continue;
        int rc = 0;
        if (f.write_index > 0 && f.sink != nullptr) {
            rc = f.sink(f, f.line, f.write_index);
            f.write_index = 0;
        }
        if (rc == 0 && f.stream != nullptr && std::fflush(f.stream) != 0) {
            const int error = errno;
            std::clearerr(f.stream);
            explain("Writing to file #" + std::to_string(i) + " (" + f.name + ") failed: " + std::strerror(error) + ".");
            rc = report_error(err_open_file_failed);
        }
        if (first == 0) first = rc;
    }
    return first;
}

int read_next_line(FileEntry& f) {
    f.input.clear();
    f.input_position = 0;
    f.input_loaded = false;
    if (f.mode == file_mode_serial) {
        const int rc = read_port_line(f);
        if (rc > 0) {
            f.input_loaded = true;
            blank_zero_bytes(f.input);
        }
        return rc;
    }
    std::FILE* s = f.stream;
    int c = 0;
    bool any = false;
    while ((c = next_char(f)) != EOF) {
        any = true;
        if (c == '\n') break;
        f.input.push_back(static_cast<char>(c));
        // A file without line ends is read in pieces.
        if (f.input.size() >= max_line_length) break;
    }
    if (c == EOF && std::ferror(s) != 0) {
        std::clearerr(s);
        return report_error(err_error_on_input_file);
    }
    if (const int rc = pipe_interrupted(f); rc < 0) return rc;
    if (!any) return 0;
    if (!f.input.empty() && f.input.back() == '\r') f.input.pop_back();
    blank_zero_bytes(f.input);
    f.input_loaded = true;
    return 1;
}

int read_characters(FileEntry& f, std::size_t count, std::string& out) {
    out.clear();
    if (f.input_loaded) {
        const std::size_t n = std::min(count, f.input.size() - f.input_position);
        out.append(f.input, f.input_position, n);
        f.input_position += n;
        if (f.input_position >= f.input.size()) f.input_loaded = false;
    }
    if (f.mode == file_mode_serial) {
        const int timeout = serial_timeout_ms();
        while (out.size() < count) {
            if (!f.record.empty()) {
                // The line feed of a CR LF whose CR ended the last message
                // may come after that message was taken.
                if (f.skip_line_feed) {
                    f.skip_line_feed = false;
                    if (f.record.front() == '\n') {
                        f.record.erase(f.record.begin());
                        continue;
                    }
                }
                const std::size_t n = std::min(count - out.size(), f.record.size());
                out.append(f.record.data(), n);
                f.record.erase(f.record.begin(), f.record.begin() + static_cast<std::ptrdiff_t>(n));
                continue;
            }
            const int n = serial_read_some(f.fd, f.record, count - out.size(), timeout, interrupt_asked);
            if (n < 0) return report_error(err_serial_i_o_error);
            if (n == 0) {
                if (host.flags.interrupt_requested.load()) return report_error(err_user_interrupted_program);
                return report_error(err_serial_input_timeout);
            }
        }
        return static_cast<int>(out.size());
    }
    while (out.size() < count) {
        const int c = next_char(f);
        if (c == EOF) break;
        out.push_back(static_cast<char>(c));
    }
    if (std::ferror(f.stream) != 0) {
        std::clearerr(f.stream);
        return report_error(err_error_on_input_file);
    }
    if (const int rc = pipe_interrupted(f); rc < 0) return rc;
    return static_cast<int>(out.size());
}

void blank_zero_bytes(std::string& text) { std::replace(text.begin(), text.end(), '\0', ' '); }

bool at_end_of_file(FileEntry& f) {
    if (f.input_loaded && f.input_position < f.input.size()) return false;
    if (f.stream == nullptr) return true;
    const int c = next_char(f);
    if (c == EOF) {
        std::clearerr(f.stream);
        return true;
    }
    ungetc(c, f.stream);
    return false;
}

long long file_size(FileEntry& f) {
    if (f.mode == file_mode_serial) {
        const long long pending = serial_pending(f.fd);
        return pending < 0 ? -1 : pending + static_cast<long long>(f.record.size());
    }
    if (f.stream == nullptr) return -1;
    std::fflush(f.stream);
    struct stat st {};
    if (::fstat(::fileno(f.stream), &st) != 0) return -1;
    return static_cast<long long>(st.st_size);
}

int write_binary(FileEntry& f, const char* text, std::size_t length) {
    // A read may have left the stream reading: a seek makes writing legal.
    if (std::fseek(f.stream, 0, SEEK_CUR) != 0 || std::fwrite(text, 1, length, f.stream) != length ||
        std::fflush(f.stream) != 0) {
        std::clearerr(f.stream);
        return report_error(err_binary_file_write_error);
    }
    return 0;
}

int seek_binary(FileEntry& f, long long position) {
    return ::fseeko(f.stream, static_cast<off_t>(position), SEEK_SET) == 0 ? 0 : -1;
}

}  // namespace tl
