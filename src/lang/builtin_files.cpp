// builtin_files.cpp — the file and serial-port functions: open, eof, filesize,
// input, read and browsecommports$.
//
//   open(mode, n, name [, ...])   as the OPEN statement; the result is n
//   eof(n [, "line"])             1 at the end of the file (of the current line), else 0
//   filesize(n)                   bytes in the file (on a port: received, not yet read)
//   input(n [, count])            the next count characters (1 when not given)
//   read(n)                       the next byte as a number, -1 at the end
//   read(n, count [, position])   up to count bytes ("" at the end); BINARY: from byte position (1-based)
//   browsecommports$(title)       the port the user picks in the window
#include <cmath>
#include <cstdio>
#include <string>

#include "exec/file_table.h"
#include "exec/front_end.h"
#include "exec/port_chooser.h"
#include "exec/serial_port.h"
#include "exec/string_space.h"
#include "lang/builtin_support.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/lang_state.h"
#include "lang/scanner.h"

namespace tl {
namespace {

/// A file-number parameter naming an open file: 125 when it is no valid
/// number, 128 when the file is not open. `entry` is set on success.
int open_file_parameter(Item& p, FileEntry*& entry) {
    double n = 0.0;
    const int r = double_parameter(p, n);
    if (r < 0) return r;
    n = std::trunc(n);
    if (!(n >= 1.0 && n <= file_count())) return fail_at(err_invalid_file_number, p);
    entry = open_entry(static_cast<int>(n));
    if (entry == nullptr) return fail_at(err_file_number_does_not_represent, p);
    return 0;
}

bool only_blanks_left(const FileEntry& f) {
    for (std::size_t i = f.input_position; i < f.input.size(); ++i) {
        if (f.input[i] != ' ' && f.input[i] != '\t') return false;
    }
    return true;
}

/// A whole count in [low, high] (297 otherwise).
int count_parameter(Item& p, double low, double high, double& out) {
    if (int r = double_parameter(p, out); r < 0) return r;
    if (!(out >= low && out <= high) || out != std::trunc(out)) return fail_at(err_invalid_value_parameter, p);
    return 0;
}

/// Up to `count` bytes of a BINARY file; a zero byte, which a string cannot
/// hold, ends the text before it (read(n) returns it).
int binary_text(FileEntry& f, std::size_t count) {
    char text[max_string_length + 1];
    std::size_t n = 0;
    std::fseek(f.stream, 0, SEEK_CUR);
    while (n < count) {
        const int c = std::fgetc(f.stream);
        if (c == EOF) break;
        if (c == 0) {
            std::ungetc(c, f.stream);
            break;
        }
        text[n++] = static_cast<char>(c);
    }
    if (std::ferror(f.stream) != 0) {
        std::clearerr(f.stream);
        return report_error(err_error_on_input_file);
    }
    std::clearerr(f.stream);
    return text_result(text, n);
}

}  // namespace

int fn_open_handler(Item* p, int count) {
    OpenRequest r;
    for (int i = 0; i < count; ++i) {
        OpenValue v;
        v.column = p[i].column;
        if (p[i].kind == kind_string) {
            v.is_string = true;
            v.text = item_text(p[i]);
        } else if (double_parameter(p[i], v.number) < 0) {
            return -(i == 0 ? err_invalid_mode_open : err_invalid_type_expecting_number);
        }
        if (int rc = open_parameter(r, i, v); rc < 0) return rc;
    }
    if (int rc = finish_open(r, count, p[1].column); rc < 0) return rc;
    return double_result(r.number);
}

int fn_eof_handler(Item* p, int count) {
    bool line_test = false;
    if (count == 2) {
        const char* which = nullptr;
        if (int r = string_parameter(p[1], which); r < 0) return r;
        line_test = (which[0] == 'l' || which[0] == 'L') && (which[1] == 'i' || which[1] == 'I') &&
                    (which[2] == 'n' || which[2] == 'N') && (which[3] == 'e' || which[3] == 'E') && which[4] == 0;
        if (!line_test) return fail_at(err_invalid_parameter, p[1]);
    }
    FileEntry* f = nullptr;
    if (int r = open_file_parameter(p[0], f); r < 0) return r;
    if (f->mode == file_mode_output || f->mode == file_mode_append) return fail_at(err_file_not_open_input, p[0]);
    if (f->mode != file_mode_input && f->mode != file_mode_binary) return fail_at(err_invalid_file_type_function_eof, p[0]);
    if (line_test) {
        // The values of the current line are used up.
        const bool used_up = !f->input_loaded || only_blanks_left(*f);
        return double_result(used_up ? 1.0 : 0.0);
    }
    return double_result(at_end_of_file(*f) ? 1.0 : 0.0);
}

int fn_filesize_handler(Item* p, int) {
    FileEntry* f = nullptr;
    if (int r = open_file_parameter(p[0], f); r < 0) return r;
    const long long size = file_size(*f);
    if (size < 0) return fail_at(f->mode == file_mode_serial ? err_serial_i_o_error : err_error_on_input_file, p[0]);
    return double_result(static_cast<double>(size));
}

int fn_input_handler(Item* p, int count) {
    FileEntry* f = nullptr;
    if (int r = open_file_parameter(p[0], f); r < 0) return r;
    double n = 1;
    if (count > 2) return report_error(err_incorrect_number_parameters);
    if (count == 2) {
        if (int r = count_parameter(p[1], 1, max_string_length, n); r < 0) return r;
    }
    if (f->mode == file_mode_binary) return binary_text(*f, static_cast<std::size_t>(n));
    if (f->mode == file_mode_random) return fail_at(err_file_was_opened_different_mode, p[0]);
    if (f->mode != file_mode_input && f->mode != file_mode_serial) return fail_at(err_file_not_open_input, p[0]);
    std::string text;
    lang.reporter.error_column = p[0].column;
    const int got = read_characters(*f, static_cast<std::size_t>(n), text);
    if (got < 0) return got;
    if (got == 0) return fail_at(err_end_file_on_input, p[0]);
    blank_zero_bytes(text);
    return text_result(text.data(), text.size());
}

int fn_read_handler(Item* p, int count) {
    FileEntry* f = nullptr;
    if (int r = open_file_parameter(p[0], f); r < 0) return r;
    if (count > 3) return report_error(err_incorrect_number_parameters);
    lang.reporter.error_column = p[0].column;
    if (f->mode == file_mode_random) return fail_at(err_file_was_opened_different_mode, p[0]);
    if (f->mode != file_mode_input && f->mode != file_mode_serial && f->mode != file_mode_binary)
        return fail_at(err_file_not_open_input, p[0]);
    if (count == 3) {
        if (f->mode != file_mode_binary) return fail_at(err_file_was_opened_different_mode, p[2]);
        double position = 0;
        if (int r = count_parameter(p[2], 1, 9.0e15, position); r < 0) return r;
        if (seek_binary(*f, static_cast<long long>(position) - 1) < 0) return fail_at(err_error_on_input_file, p[2]);
    }
    if (count == 1) {
        if (f->mode == file_mode_binary) {
            std::fseek(f->stream, 0, SEEK_CUR);
            const int c = std::fgetc(f->stream);
            std::clearerr(f->stream);
            return double_result(c == EOF ? -1.0 : static_cast<double>(c));
        }
        std::string one;
        const int got = read_characters(*f, 1, one);
        if (got < 0) return got;
        return double_result(got == 0 ? -1.0 : static_cast<double>(static_cast<unsigned char>(one[0])));
    }
    double n = 0;
    if (int r = count_parameter(p[1], 0, f->mode == file_mode_binary ? f->record_length : max_string_length, n); r < 0)
        return r;
    if (f->mode == file_mode_binary) return binary_text(*f, static_cast<std::size_t>(n));
    std::string text;
    const int got = read_characters(*f, static_cast<std::size_t>(n), text);
    if (got < 0) return got;
    blank_zero_bytes(text);
    return text_result(text.data(), text.size());
}

int fn_browsecommports_handler(Item* p, int) {
    const char* title = nullptr;
    if (int r = string_parameter(p[0], title); r < 0) return r;
    if (host.front_end == nullptr || host.front_end->console_mode())
        return report_error(err_statement_not_valid_console_mode);
    if (host.port_chooser == nullptr) return report_error(err_invalid_function_call);
    std::string chosen;
    if (!host.port_chooser->choose_port(title, list_serial_ports(), chosen))
        return report_error(err_user_cancelled_comm_port_selection);
    return text_result(chosen.data(), chosen.size());
}

}  // namespace tl
