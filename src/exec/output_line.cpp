// output_line.cpp — building, padding, overflowing and writing out output lines.
#include "exec/output_line.h"

#include <cassert>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "exec/front_end.h"
#include "exec/string_space.h"
#include "exec/variables.h"
#include "lang/item.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/lang_state.h"

namespace tl {

namespace {

/// TAB arguments are clamped to this column; such a target always overflows.
inline constexpr double max_tab_target = 1 << 20;

FileEntry& entry_of(const PrintSession& s) {
    assert(s.file >= 0 && static_cast<std::size_t>(s.file) < areas.files.size());
    return areas.files[static_cast<std::size_t>(s.file)];
}

int report_at(const PrintSession& s, int error) {
    lang.reporter.error_column = s.item_column;
    return report_error(error);
}

/// The error of an item or TAB that does not fit a record, or 0 where the
/// line may simply be ended.
int record_overflow(const PrintSession& s, const FileEntry& f) {
    if (f.mode == file_mode_random) return report_at(s, err_attempt_read_write_beyond_random);
    if (f.mode == file_mode_serial) return report_at(s, err_attempt_read_write_beyond_serial);
    return 0;
}

/// Writes the buffered text out and empties the buffer; the column is kept.
int write_out(const PrintSession& s) {
    FileEntry& f = entry_of(s);
    const std::size_t length = f.write_index;
    f.write_index = 0;
    if (length == 0) return 0;
    if (s.file == 0) {
        console_write(std::string_view(f.line, length));
        return 0;
    }
    if (f.sink != nullptr) return f.sink(f, f.line, length);
    // A failed write leaves the stream's error flag set for CLOSE to find.
    if (f.stream != nullptr) std::fwrite(f.line, 1, length, f.stream);
    return 0;
}

/// The columns `text` takes: one per character. A UTF-8 sequence (such as the
/// micro sign of the "eng" format) is one character; a byte that is not part
/// of a well-formed sequence counts as one of its own.
std::uint32_t text_columns(std::string_view text) {
    std::uint32_t columns = 0;
    std::size_t i = 0;
    while (i < text.size()) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const std::size_t follow = lead >= 0xC2 && lead <= 0xDF ? 1 : lead >= 0xE0 && lead <= 0xEF ? 2
                                   : lead >= 0xF0 && lead <= 0xF4                                 ? 3
                                                                                                  : 0;
        std::size_t k = 1;
        while (k <= follow && i + k < text.size() && (static_cast<unsigned char>(text[i + k]) & 0xC0) == 0x80) ++k;
        i += k == follow + 1 ? k : 1;
        ++columns;
    }
    return columns;
}

/// The columns `text` takes on the line of `f`: characters, except in a
/// RANDOM or SERIAL record, whose length counts bytes.
std::uint32_t columns_on(const FileEntry& f, std::string_view text) {
    if (f.mode == file_mode_random || f.mode == file_mode_serial) return static_cast<std::uint32_t>(text.size());
    return text_columns(text);
}

/// Appends `text` to the line and advances the column by its characters. A
/// full buffer is written out on the way, except a RANDOM record, which
/// cannot grow.
int put_text(const PrintSession& s, std::string_view text) {
    FileEntry& f = entry_of(s);
    f.column += columns_on(f, text);
    while (!text.empty()) {
        std::size_t room = line_buffer_size - 1 - f.write_index;
        if (room == 0) {
            if (f.mode == file_mode_random) return report_at(s, err_attempt_read_write_beyond_random);
            if (int rc = write_out(s); rc < 0) return rc;
            room = line_buffer_size - 1;
        }
        const std::size_t n = text.size() < room ? text.size() : room;
        std::memcpy(f.line + f.write_index, text.data(), n);
        f.write_index += static_cast<std::uint32_t>(n);
        f.line[f.write_index] = 0;
        text.remove_prefix(n);
    }
    return 0;
}

int put_blanks(const PrintSession& s, std::uint32_t count) {
    constexpr std::string_view blanks = "                                ";
    while (count > 0) {
        const std::size_t n = count < blanks.size() ? count : blanks.size();
        if (int rc = put_text(s, blanks.substr(0, n)); rc < 0) return rc;
        count -= static_cast<std::uint32_t>(n);
    }
    return 0;
}

/// Appends a line feed; the next character starts column 0.
int put_line_feed(const PrintSession& s) {
    if (int rc = put_text(s, "\n"); rc < 0) return rc;
    entry_of(s).column = 0;
    return 0;
}

/// Ends a non-empty line and writes it out; the item that follows starts
/// the new line.
int start_new_line(const PrintSession& s) {
    FileEntry& f = entry_of(s);
    if (f.column > 0) {
        if (int rc = put_line_feed(s); rc < 0) return rc;
    }
    f.tab_target = -1;
    return write_out(s);
}

// ---- WRITE quoting -----------------------------------------------------------------

/// The escape of one string character in write mode, or an empty view.
std::string_view write_escape(char c) {
    switch (c) {
        case '"': return "\\\"";
        case '\\': return "\\\\";
        case '\r': return "\\r";
        case '\n': return "\\n";
        default: return {};
    }
}

/// Columns of a quoted string: its characters, the quotes and the escapes.
std::size_t quoted_length(const FileEntry& f, std::string_view text) {
    std::size_t n = 2 + columns_on(f, text);
    for (char c : text) n += write_escape(c).empty() ? 0 : 1;
    return n;
}

int put_quoted(const PrintSession& s, std::string_view text) {
    if (int rc = put_text(s, "\""); rc < 0) return rc;
    std::size_t plain = 0;  // start of the run of characters without escapes
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::string_view escape = write_escape(text[i]);
        if (escape.empty()) continue;
        if (int rc = put_text(s, text.substr(plain, i - plain)); rc < 0) return rc;
        if (int rc = put_text(s, escape); rc < 0) return rc;
        plain = i + 1;
    }
    if (int rc = put_text(s, text.substr(plain)); rc < 0) return rc;
    return put_text(s, "\"");
}

/// WRITE of a long number longer than the line: its length on a line of its
/// own, then quoted pieces one per line; the last piece is left open for the
/// line end of the statement.
int put_long_in_pieces(const PrintSession& s, std::string_view text) {
    FileEntry& f = entry_of(s);
    if (f.column > 0) {
        if (int rc = put_line_feed(s); rc < 0) return rc;
    }
    // The length is the number's digit count: not its sign, point or exponent.
    unsigned digits = 0;
    for (const char c : text) {
        if (c == 'e' || c == 'E') break;
        if (c >= '0' && c <= '9') ++digits;
    }
    char length_line[32];
    const int n = std::snprintf(length_line, sizeof length_line, "Length=%u", digits);
    if (int rc = put_text(s, std::string_view(length_line, static_cast<std::size_t>(n))); rc < 0) return rc;
    std::uint32_t piece = f.width > 3 ? f.width - 2 : 1;
    if (piece > max_write_piece) piece = max_write_piece;
    while (!text.empty()) {
        if (int rc = put_line_feed(s); rc < 0) return rc;
        const std::size_t length = text.size() < piece ? text.size() : piece;
        if (int rc = put_text(s, "\""); rc < 0) return rc;
        if (int rc = put_text(s, text.substr(0, length)); rc < 0) return rc;
        if (int rc = put_text(s, "\""); rc < 0) return rc;
        text.remove_prefix(length);
    }
    return 0;
}

// ---- format choice ----------------------------------------------------------------

bool usable_format(const char* format) {
    return format[0] != 0 && (format[0] != '%' || is_valid_c_number_format(format));
}

void copy_format(PrintSession& s, std::string_view format) {
    const std::size_t n = format.size() < sizeof s.format - 1 ? format.size() : sizeof s.format - 1;
    std::memcpy(s.format, format.data(), n);
    s.format[n] = 0;
}

/// The text of the string variable `name`, or null when there is none.
const char* string_variable(const char* name) {
    const int i = find_variable(name);
    if (i < 0 || variable_at(i).type != kind_string) return nullptr;
    return string_at(variable_at(i).value.word);
}

bool usable_tab_width(double width) { return width >= 1 && width < tab_width_limit; }

}  // namespace

void begin_print(PrintSession& s, int file, bool write_mode) {
    s.file = file;
    s.write_mode = write_mode;
    s.using_format = false;
    s.item_column = 0;
    FileEntry& f = entry_of(s);

    const char* format = write_mode ? write_number_format : string_variable("printformat$$");
    if (format == nullptr || !usable_format(format)) format = lang.predefined[pre_defaultprintformat].text.data();
    if (!usable_format(format)) format = fallback_print_format;
    copy_format(s, format);

    double width = lang.predefined[pre_defaultprinttabs].number;
    if (const int i = find_variable("printtabs"); i >= 0 && variable_at(i).type == kind_double) {
        const double user = std::trunc(variable_at(i).value.number);
        if (usable_tab_width(user)) width = user;
    }
    width = std::trunc(width);
    f.tab_width = static_cast<std::uint32_t>(usable_tab_width(width) ? width : fallback_tab_width);
}

int select_using_format(PrintSession& s, std::string_view format) {
    if (names_equal(format, "max")) {
        const char* max = lang.predefined[pre_printformatmax].text.data();
        copy_format(s, usable_format(max) ? max : fallback_max_format);
    } else {
        if (format.empty() || format.size() >= sizeof s.format) return report_at(s, err_invalid_format_string_print_using);
        copy_format(s, format);
        if (!usable_format(s.format)) {
            copy_format(s, fallback_print_format);
            return report_at(s, err_invalid_format_string_print_using);
        }
    }
    s.using_format = true;
    return 0;
}

void begin_print_item(PrintSession& s) {
    FileEntry& f = entry_of(s);
    if (!f.continue_line) f.tab_target = -1;
}

int set_tab_target(PrintSession& s, double tab_argument) {
    FileEntry& f = entry_of(s);
    const double target = std::trunc(tab_argument) - 1;
    if (!(target >= 0)) {  // also NaN
        f.tab_target = -1;
        f.continue_line = false;
        return 0;
    }
    f.tab_target = static_cast<std::int32_t>(target < max_tab_target ? target : max_tab_target);
    f.continue_line = true;
    if (static_cast<std::uint32_t>(f.tab_target) >= f.column) return 0;
    if (int rc = record_overflow(s, f); rc < 0) return rc;
    if (int rc = put_line_feed(s); rc < 0) return rc;
    return write_out(s);
}

int write_print_item(PrintSession& s, std::uint32_t kind, double number, std::string_view text) {
    FileEntry& f = entry_of(s);
    char number_text[number_text_size];
    const bool is_long = kind == kind_long || kind == kind_string_array;
    const bool quoted = s.write_mode && kind == kind_string;
    if (kind == kind_double) {
        const int n = format_number(s.format, number, number_text, sizeof number_text);
        if (n < 0) return report_at(s, -n);
        text = std::string_view(number_text, static_cast<std::size_t>(n));
        if (s.write_mode) {
            while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
        }
    }
    const std::size_t length = quoted ? quoted_length(f, text) : columns_on(f, text);
    const bool to_record = f.mode == file_mode_random || f.mode == file_mode_serial;
    // A record buffer has no room for the length line and pieces that WRITE
    // gives a long number, and a short one would read back as a double.
    if (s.write_mode && is_long && f.mode == file_mode_random)
        return report_at(s, err_cannot_write_longmath_number_random);

    if (s.write_mode && is_long && length > f.width && !to_record) return put_long_in_pieces(s, text);

    assert(f.tab_width > 0 && "begin_print sets the zone width");
    std::uint32_t padding = 0;
    if (s.write_mode || f.continue_line) {
        if (f.tab_target >= 0 && static_cast<std::uint32_t>(f.tab_target) > f.column)
            padding = static_cast<std::uint32_t>(f.tab_target) - f.column;
    } else if (f.column % f.tab_width != 0) {
        padding = f.tab_width - f.column % f.tab_width;
    }
    bool comma = s.write_mode && f.column != 0;
    if (f.column + padding + (comma ? 1 : 0) + length > f.width) {
        if (int rc = record_overflow(s, f); rc < 0) return rc;
        if (int rc = start_new_line(s); rc < 0) return rc;
        padding = 0;
        comma = false;
    }
    // The comma stays next to the item before it; blanks up to a TAB
    // position follow it.
    if (comma) {
        if (int rc = put_text(s, ","); rc < 0) return rc;
    }
    if (int rc = put_blanks(s, padding); rc < 0) return rc;
    return quoted ? put_quoted(s, text) : put_text(s, text);
}

void finish_print_item(PrintSession& s, bool semicolon) { entry_of(s).continue_line = semicolon; }

int end_print_line(PrintSession& s, bool any_item_written) {
    FileEntry& f = entry_of(s);
    if (!any_item_written) f.continue_line = false;
    if (f.mode == file_mode_random) {
        if (f.continue_line) return 0;
        // The record is complete: blanks to the width, kept for PUT; the
        // next PRINT builds a new record from its start.
        const std::uint32_t end = f.width < line_buffer_size ? f.width : line_buffer_size - 1;
        if (f.write_index < end) std::memset(f.line + f.write_index, ' ', end - f.write_index);
        f.line[end] = 0;
        f.column = 0;
        f.write_index = 0;
        return 0;
    }
    if (!f.continue_line || (s.file != 0 && f.column >= f.width)) {
        if (int rc = put_line_feed(s); rc < 0) return rc;
    }
    return write_out(s);
}

}  // namespace tl
