// file_statements.cpp — OPEN, CLOSE, FIELD, GET, PUT and the "#" forms of PRINT, WRITE, INPUT and LINE INPUT.
//
//   OPEN mode, [#]n, name [, record length]
//   OPEN "s", [#]n, port [, baud [, parity [, stop bits [, record length]]]]
//   OPEN name FOR INPUT|OUTPUT|APPEND|RANDOM|BINARY|SERIAL AS [#]n [LEN = length]
//   CLOSE [[#]n [, [#]n ...]]
//   FIELD #n, width AS var$ [, width AS var$ ...]
//   GET #n [, record]          PUT #n [, record]           (RANDOM)
//   GET #n, var [, var ...]    PUT #n, byte [, byte ...]   (BINARY: single bytes)
//   PRINT #n, ...   WRITE #n, ...   INPUT #n, var, ...   LINE INPUT #n, var$
#include "exec/file_statements.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <sys/statvfs.h>

#include "exec/commands.h"
#include "exec/exec_state.h"
#include "exec/file_table.h"
#include "exec/front_end.h"
#include "exec/statement_targets.h"
#include "exec/statements.h"
#include "exec/string_space.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/evaluator.h"
#include "lang/lang_state.h"
#include "lang/scanner.h"

namespace tl {
namespace {

constexpr double max_record_number = 16777216.0;
/// Variables the FIELD statements of one file may define.
constexpr std::size_t max_fields = 64;
constexpr std::size_t max_file_targets = 64;

int fail(int column, int error) { return error_at_column(error, column); }

/// Statements passed over are not looked into: the files they name may
/// not be open.
bool passed_over() {
    if (!exec.skip) return false;
    skip_statement_text();
    return true;
}

bool at_char(char c) {
    skip_blanks();
    return lang.scan.position < lang.scan.end && *lang.scan.position == c;
}

bool take_char(char c) {
    if (!at_char(c)) return false;
    ++lang.scan.position;
    return true;
}

/// Evaluates one expression (ended by "," or ";" with `mode` scan_separators)
/// into `v`. Returns its kind (0 when empty) or a negated error.
int evaluate_value(int mode, OpenValue& v, std::string& text) {
    skip_blanks();
    v.column = scan_column();
    const int kind = evaluate_expression(mode);
    if (kind <= 0) return kind;
    v.is_string = kind == kind_string;
    if (kind == kind_double) v.number = lang.scan.result;
    if (kind == kind_numeric_text) v.number = std::strtod(lang.scan.buffer, nullptr);
    if (kind == kind_string) {
        text = lang.scan.buffer;
        v.text = text.c_str();
    }
    if (kind != kind_double && kind != kind_numeric_text && kind != kind_string) v.number = std::nan("");
    return kind;
}

/// A file number at the scan position ("#" optional), evaluated up to a
/// separator or the end of the statement. Errors: 125 for anything but a
/// number, 127 out of range. Returns the number or a negated error.
int scan_file_number(int& column) {
    take_char('#');
    OpenValue v;
    std::string text;
    skip_blanks();
    column = scan_column();
    int kind = kind_double;
    const char* p = lang.scan.position;
    if (p < lang.scan.end && *p >= '0' && *p <= '9') {
        // A number written as digits ends at the first other character, so
        // that "#1 x" is told to want its separator.
        char* end = nullptr;
        v.number = std::strtod(p, &end);
        lang.scan.position = end;
        lang.scan.terminator = 0;
        if (take_char(',')) lang.scan.terminator = ',';
        else if (take_char(';')) lang.scan.terminator = ';';
    } else {
        kind = evaluate_value(scan_separators, v, text);
    }
    if (kind < 0) return kind;
    if (kind == 0 || v.is_string || std::isnan(v.number)) return fail(column, err_invalid_file_number);
    const double n = std::trunc(v.number);
    if (!(n >= 1.0 && n <= file_count())) return fail(column, err_file_number_1_number_files);
    return static_cast<int>(n);
}

/// "#n" followed by "," (or ";" when `semicolon`): the open file's entry.
int scan_open_file(FileEntry*& f, bool semicolon, bool may_end) {
    int column = 0;
    if (!at_char('#')) return fail(scan_column(), err_invalid_file_number);
    const int n = scan_file_number(column);
    if (n < 0) return n;
    const char t = lang.scan.terminator;
    if (!(t == ',' || (semicolon && t == ';') || (may_end && t == 0 && at_statement_end())))
        return fail(scan_column(), err_file_number_followed_by_semicolon);
    f = open_entry(n);
    if (f == nullptr) return fail(column, err_file_number_does_not_represent);
    lang.reporter.error_column = column;
    return n;
}

/// Reading statements and functions: 328 for BINARY, 141 for files not
/// opened for reading. Returns 0 or the negated error.
int check_readable(const FileEntry& f, int column) {
    if (f.mode == file_mode_binary) return fail(column, err_invalid_operation_binary_file);
    if (f.mode != file_mode_input && f.mode != file_mode_serial) return fail(column, err_file_not_open_input);
    return 0;
}

/// OPEN name FOR mode AS [#]n [LEN = length]
int open_for_form(OpenRequest& r, const OpenValue& name) {
    struct ModeWord {
        const char* word;
        std::uint32_t mode;
    };
    constexpr ModeWord words[] = {{"input", file_mode_input},   {"output", file_mode_output},
                                  {"append", file_mode_append}, {"random", file_mode_random},
                                  {"binary", file_mode_binary}, {"serial", file_mode_serial}};
    skip_blanks();
    const int mode_column = scan_column();
    for (const ModeWord& w : words) {
        if (take_word(w.word)) r.mode = w.mode;
    }
    if (r.mode == 0) return fail(mode_column, err_invalid_mode_open);
    if (int rc = open_parameter(r, 2, name); rc < 0) return rc;
    if (!take_word("as")) return fail(scan_column(), err_invalid_file_number_open);
    take_char('#');
    skip_blanks();
    OpenValue number;
    number.column = scan_column();
    // The number is written as digits (so that LEN may follow it) or as an
    // expression up to the end of the statement.
    if (lang.scan.position < lang.scan.end && *lang.scan.position >= '0' && *lang.scan.position <= '9') {
        char* end = nullptr;
        number.number = std::strtod(lang.scan.position, &end);
        lang.scan.position = end;
    } else {
        std::string text;
        const int kind = evaluate_value(0, number, text);
        if (kind < 0) return kind;
        if (kind == 0) return fail(number.column, err_invalid_file_number_open);
    }
    if (int rc = open_parameter(r, 1, number); rc < 0) return rc;
    int count = 3;
    if (take_word("len")) {
        if (!take_char('=')) return fail(scan_column(), err_missing_equal_sign);
        OpenValue length;
        std::string text;
        const int kind = evaluate_value(0, length, text);
        if (kind < 0) return kind;
        if (kind == 0) return fail(length.column, err_invalid_logical_record_length_open);
        if (int rc = open_parameter(r, r.mode == file_mode_serial ? 6 : 3, length); rc < 0) return rc;
        count = 4;
    }
    if (!at_statement_end()) return fail(scan_column(), err_invalid_statement);
    if (exec.skip) return 0;
    return finish_open(r, count, number.column);
}

/// GET and PUT of single bytes on a BINARY file.
int binary_bytes(FileEntry& f, bool put) {
    // PUT writes its bytes once all are known good: a faulty one leaves the
    // file as it was (but for the blocks of a very long list before it).
    char bytes[256];
    std::size_t held = 0;
    for (;;) {
        if (put) {
            OpenValue v;
            std::string text;
            const int kind = evaluate_value(scan_separators, v, text);
            if (kind < 0) return kind;
            if (kind == 0) return fail(v.column, err_missing_parameter);
            if (v.is_string || std::isnan(v.number)) return fail(v.column, err_invalid_type_expecting_number);
            if (!(v.number >= 0 && v.number <= 255) || v.number != std::trunc(v.number))
                return fail(v.column, err_invalid_value_parameter);
            const bool last = lang.scan.terminator != ',';
            if (last && !at_statement_end()) return fail(scan_column(), err_missing_comma);
            if (!exec.skip) {
                bytes[held++] = static_cast<char>(static_cast<unsigned char>(v.number));
                if (held == sizeof bytes || last) {
                    if (int rc = write_binary(f, bytes, held); rc < 0) return rc;
                    held = 0;
                }
            }
            if (last) return 0;
            continue;
        }
        VariableTarget t;
        if (int rc = scan_target(t, err_string_numeric_variable); rc < 0) return rc;
        if (t.type != kind_double) return fail(t.column, err_incorrect_data_type_looking_number);
        const int more = next_target_separator();
        if (more < 0) return more;
        if (!exec.skip) {
            std::fseek(f.stream, 0, SEEK_CUR);
            const int c = std::fgetc(f.stream);
            if (c == EOF && std::ferror(f.stream) != 0) {
                std::clearerr(f.stream);
                return fail(t.column, err_error_on_input_file);
            }
            if (c == EOF) std::clearerr(f.stream);
            *t.number = c == EOF ? -1.0 : static_cast<double>(c);
        }
        if (more == 0) return 0;
    }
}

/// The record number after GET #n / PUT #n: the next record when none.
int record_number(FileEntry& f, long long& record) {
    record = 0;
    if (lang.scan.terminator != ',') return 0;
    OpenValue v;
    std::string text;
    const int kind = evaluate_value(0, v, text);
    if (kind < 0) return kind;
    if (kind == 0 || v.is_string || std::isnan(v.number)) return fail(v.column, err_invalid_record_number);
    const double n = std::trunc(v.number);
    if (!(n >= 1.0 && n <= max_record_number)) return fail(v.column, err_invalid_record_number);
    record = static_cast<long long>(n);
    (void)f;
    return 0;
}

/// Position of the next record (after the last one read or written).
long long next_record(FileEntry& f) {
    const long long at = ::ftello(f.stream);
    if (at < 0) return 1;
    return at / static_cast<long long>(f.record_length) + 1;
}

int random_get(FileEntry& f, long long record) {
    const long long length = f.record_length;
    if (::fseeko(f.stream, static_cast<off_t>((record - 1) * length), SEEK_SET) != 0)
        return report_error(err_random_file_seek_error);
    const std::size_t got = std::fread(f.record.data(), 1, f.record.size(), f.stream);
    if (std::ferror(f.stream) != 0) {
        std::clearerr(f.stream);
        return report_error(err_random_file_read_error);
    }
    // A record beyond the end, or its missing part, reads as blanks; so do
    // zero bytes, which no string can hold.
    std::memset(f.record.data() + got, ' ', f.record.size() - got);
    std::replace(f.record.begin(), f.record.end(), '\0', ' ');
    if (got < f.record.size()) {
        std::clearerr(f.stream);
        ::fseeko(f.stream, static_cast<off_t>(record * length), SEEK_SET);
    }
    for (const FieldEntry& field : f.fields) {
        const int rc = store_string(field.word, std::string_view(f.record.data() + field.offset, field.width), store_assign);
        if (rc < 0) return rc;
    }
    return 0;
}

/// Writes blanks from byte `from` up to byte `to` of a RANDOM file. A gap
/// larger than the room left on the disk is refused before anything is
/// written; a long one can be stopped with Ctrl+C or Stop.
int fill_gap(FileEntry& f, long long from, long long to) {
    struct statvfs disk {};
    if (::fstatvfs(::fileno(f.stream), &disk) == 0) {
        const unsigned long long room = static_cast<unsigned long long>(disk.f_bavail) * disk.f_frsize;
        if (static_cast<unsigned long long>(to - from) > room) {
            console_write("\nRecords before this one of file #" + std::to_string(&f - areas.files.data()) + " (" +
                          f.name + ") would need " + std::to_string(to - from) + " bytes, more than the disk has free.");
            return report_error(err_random_file_write_error);
        }
    }
    if (::fseeko(f.stream, static_cast<off_t>(from), SEEK_SET) != 0) return report_error(err_random_file_seek_error);
    static constexpr std::size_t chunk = 65536;
    static const std::string blanks(chunk, ' ');
    for (long long left = to - from; left > 0;) {
        const std::size_t n = left < static_cast<long long>(chunk) ? static_cast<std::size_t>(left) : chunk;
        if (std::fwrite(blanks.data(), 1, n, f.stream) != n) {
            std::clearerr(f.stream);
            return report_error(err_random_file_write_error);
        }
        left -= static_cast<long long>(n);
        if (left > 0) {
            pump_events();
            if (host.flags.interrupt_requested.load()) return report_error(err_user_interrupted_program);
        }
    }
    return 0;
}

int random_put(FileEntry& f, long long record) {
    std::vector<char>& r = f.record;
    if (!f.fields.empty()) {
        for (const FieldEntry& field : f.fields) {
            const char* text = string_at(*field.word);
            const std::size_t n = std::min<std::size_t>(std::strlen(text), field.width);
            std::memcpy(r.data() + field.offset, text, n);
            std::memset(r.data() + field.offset + n, ' ', field.width - n);
        }
    } else {
        // The record that PRINT # built (padded to its width by the line end).
        const std::size_t n = std::min<std::size_t>(std::strlen(f.line), r.size());
        std::memcpy(r.data(), f.line, n);
        std::memset(r.data() + n, ' ', r.size() - n);
    }
    const long long length = f.record_length;
    // Records skipped over are filled with blanks.
    const long long size = file_size(f);
    if (size >= 0 && size < (record - 1) * length) {
        if (const int rc = fill_gap(f, size, (record - 1) * length); rc < 0) return rc;
    }
    if (::fseeko(f.stream, static_cast<off_t>((record - 1) * length), SEEK_SET) != 0)
        return report_error(err_random_file_seek_error);
    if (std::fwrite(r.data(), 1, r.size(), f.stream) != r.size() || std::fflush(f.stream) != 0) {
        std::clearerr(f.stream);
        return report_error(err_random_file_write_error);
    }
    return 0;
}

int get_put(bool put) {
    if (passed_over()) return 0;
    FileEntry* f = nullptr;
    const int n = scan_open_file(f, false, true);
    if (n < 0) return n;
    const int column = lang.reporter.error_column;
    if (f->mode == file_mode_binary) {
        if (lang.scan.terminator != ',') return fail(scan_column(), err_missing_parameter);
        return binary_bytes(*f, put);
    }
    if (f->mode != file_mode_random) return fail(column, err_file_was_opened_different_mode);
    long long record = 0;
    if (int rc = record_number(*f, record); rc < 0) return rc;
    if (!at_statement_end()) return fail(scan_column(), err_invalid_statement);
    if (exec.skip) return 0;
    if (record == 0) record = next_record(*f);
    return put ? random_put(*f, record) : random_get(*f, record);
}

/// One value of the current line of `f` into `t`; a new line is read when
/// the current one is used up. 139 at the end of the file.
int input_value(FileEntry& f, const VariableTarget& t) {
    if (!f.input_loaded) {
        const int got = read_next_line(f);
        if (got < 0) return got;
        if (got == 0) return fail(t.column, err_end_file_on_input);
    }
    const char* list = f.input.data();
    const char* end = list + f.input.size();
    const char* pos = list + f.input_position;
    ValueItem item;
    bool more = false;
    int error_at = 0;
    const int fault = read_value_item(list, end, pos, item, more, error_at);
    if (fault != 0) {
        f.input_loaded = false;
        return fail(t.column, fault);
    }
    f.input_position = static_cast<std::size_t>(pos - list);
    if (!more) f.input_loaded = false;
    if (const int unfit = entry_fault(t.type, item); unfit != 0) return fail(t.column, unfit);
    const std::string_view text = entry_text(item);
    return t.type == kind_string ? store_text(t, text) : store_number_text(t, text);
}

int line_value(FileEntry& f, const VariableTarget& t) {
    if (!f.input_loaded) {
        const int got = read_next_line(f);
        if (got < 0) return got;
        if (got == 0) return fail(t.column, err_end_file_on_input);
    }
    std::string_view rest(f.input);
    rest.remove_prefix(f.input_position);
    f.input_loaded = false;
    if (rest.size() > max_string_length) rest = rest.substr(0, max_string_length);
    return store_text(t, rest);
}

}  // namespace

int do_open() {
    if (passed_over()) return 0;
    OpenRequest r;
    OpenValue first;
    std::string name;
    const int kind = evaluate_value(scan_separators, first, name);
    if (kind < 0) return kind;
    if (kind == 0) return fail(first.column, err_invalid_mode_open);
    if (lang.scan.terminator != ',') {
        if (!take_word("for")) return fail(scan_column(), err_invalid_mode_open);
        return open_for_form(r, first);
    }
    if (int rc = open_parameter(r, 0, first); rc < 0) return rc;
    // The texts of the parameters stay alive until the file is open.
    std::string texts[7];
    int count = 1;
    int number_column = 0;
    for (;;) {
        OpenValue v;
        if (count == 1) take_char('#');
        const int k = evaluate_value(scan_separators, v, texts[count]);
        if (k < 0) return k;
        if (k == 0) return fail(v.column, err_missing_parameter);
        if (count == 1) number_column = v.column;
        if (count >= 7) return fail(v.column, err_incorrect_number_parameters);
        lang.reporter.error_column = v.column;
        if (int rc = open_parameter(r, count, v); rc < 0) return rc;
        ++count;
        if (lang.scan.terminator != ',') break;
    }
    if (count < 3) return fail(scan_column(), err_missing_parameter);
    if (!at_statement_end()) return fail(scan_column(), err_invalid_statement);
    if (exec.skip) return 0;
    return finish_open(r, count, number_column);
}

int do_close() {
    if (passed_over()) return 0;
    if (at_statement_end()) {
        if (exec.skip) return 0;
        int first = 0;
        for (int n = 1; n <= file_count(); ++n) {
            const int rc = close_file(n);
            if (first == 0) first = rc;
        }
        return first;
    }
    for (;;) {
        take_char('#');
        OpenValue v;
        std::string text;
        const int kind = evaluate_value(scan_separators, v, text);
        if (kind < 0) return kind;
        const double n = std::trunc(v.number);
        if (kind == 0 || v.is_string || !(n >= 1.0 && n <= file_count())) return fail(v.column, err_invalid_file_number_close);
        if (!exec.skip) {
            if (int rc = close_file(static_cast<int>(n)); rc < 0) return rc;
        }
        if (lang.scan.terminator != ',') return at_statement_end() ? 0 : fail(scan_column(), err_missing_comma);
    }
}

int do_field() {
    if (typed_at_prompt()) return fail(0, err_statement_not_valid_command_line);
    if (passed_over()) return 0;
    if (!at_char('#')) return fail(scan_column(), err_invalid_file_number);
    int number_column = 0;
    const int n = scan_file_number(number_column);
    if (n < 0) return n;
    if (lang.scan.terminator != ',') return fail(scan_column(), err_file_number_followed_by_semicolon);
    FileEntry* f = open_entry(n);
    if (!exec.skip) {
        if (f == nullptr) return fail(number_column, err_field_definition_file_number_not);
        if (f->mode != file_mode_random) return fail(number_column, err_field_definition_does_not_refer);
    }
    FieldEntry fields[max_fields];
    std::size_t count = 0;
    std::uint32_t offset = 0;
    for (;;) {
        skip_blanks();
        const int width_column = scan_column();
        Item width_item;
        const int wk = get_item(width_item, scan_no_shorthands);
        if (wk < 0) return wk;
        double width = 0;
        if (wk == kind_double) width = lang.scan.result;
        else if (wk == kind_numeric_text || wk == scan_number_constant) width = std::strtod(lang.scan.buffer, nullptr);
        else return fail(width_column, err_invalid_field_width);
        if (width_item.kind == kind_double) width = width_item.number;
        if (!(width >= 1.0) || width != std::trunc(width)) return fail(width_column, err_invalid_field_width);
        if (width > static_cast<double>(max_string_length)) return fail(width_column, err_field_extends_beyond_maximum_string);
        if (lang.scan.position >= lang.scan.end || (*lang.scan.position != ' ' && *lang.scan.position != '\t'))
            return fail(scan_column(), err_expecting_space_tab);
        if (!take_word("as")) return fail(scan_column(), err_expecting_as);
        if (at_statement_end() || at_char(',')) return fail(scan_column(), err_missing_string_variable_name);
        VariableTarget t;
        if (int rc = scan_target(t, err_string_variable); rc < 0) return rc;
        if (t.type != kind_string || std::strchr(t.name, '(') != nullptr) return fail(t.column, err_string_variable);
        if (count == max_fields) return fail(t.column, err_too_many_field_statements);
        const auto w = static_cast<std::uint32_t>(width);
        if (f != nullptr && offset + w > f->record_length) return fail(width_column, err_attempt_read_write_beyond_random);
        fields[count++] = FieldEntry{t.word, offset, w};
        offset += w;
        const int more = next_target_separator();
        if (more < 0) return more;
        if (more == 0) break;
    }
    if (exec.skip) return 0;
    // A variable defined again moves to its new place; new ones are added.
    std::size_t added = 0;
    for (std::size_t i = 0; i < count; ++i) {
        bool known = false;
        for (const FieldEntry& old : f->fields) known = known || old.word == fields[i].word;
        added += known ? 0 : 1;
    }
    if (f->fields.size() + added > max_fields) return fail(0, err_too_many_field_statements);
    try {
        for (std::size_t i = 0; i < count; ++i) {
            auto same = [&](const FieldEntry& e) { return e.word == fields[i].word; };
            f->fields.erase(std::remove_if(f->fields.begin(), f->fields.end(), same), f->fields.end());
            f->fields.push_back(fields[i]);
        }
    } catch (const std::bad_alloc&) {
        return report_error(err_unable_allocate_storage_field);
    }
    // The variables start as the blanks of an empty record.
    for (std::size_t i = 0; i < count; ++i) {
        const FieldEntry& field = fields[i];
        const std::string blanks(field.width, ' ');
        if (int rc = store_string(field.word, blanks, store_assign); rc < 0) return rc;
    }
    return 0;
}

int do_get() { return get_put(false); }
int do_put() { return get_put(true); }

int start_print_to_file(bool write_mode) {
    FileEntry* f = nullptr;
    const int n = scan_open_file(f, true, true);
    if (n < 0) return n;
    const int column = lang.reporter.error_column;
    if (f->mode == file_mode_input) return fail(column, err_file_was_opened_different_mode);
    if (f->mode != file_mode_binary) return n;
    if (write_mode) return fail(column, err_write_not_valid_binary_files);
    // BINARY: the bytes of each string at the file's position, nothing between them.
    if (lang.scan.terminator == 0) return 0;
    for (;;) {
        skip_blanks();
        const int item_column = scan_column();
        const int kind = evaluate_expression(scan_separators);
        if (kind < 0) return kind;
        if (kind == 0) break;
        if (kind != kind_string) return fail(item_column, err_invalid_type_expecting_string);
        const std::size_t length = std::strlen(lang.scan.buffer);
        if (length > f->record_length) return fail(item_column, err_string_too_long_binary_file);
        if (!exec.skip) {
            if (int rc = write_binary(*f, lang.scan.buffer, length); rc < 0) return rc;
        }
        const char t = lang.scan.terminator;
        if (t != ';' && t != ',') break;
    }
    return 0;
}

int do_input_from_file(bool line_input) {
    if (passed_over()) return 0;
    FileEntry* f = nullptr;
    const int n = scan_open_file(f, false, false);
    if (n < 0) return n;
    if (int rc = check_readable(*f, lang.reporter.error_column); rc < 0) return rc;
    VariableTarget targets[max_file_targets];
    std::size_t count = 0;
    const int not_variable = line_input ? err_line_input_requires_string_variable : err_string_numeric_variable;
    for (;;) {
        VariableTarget& t = targets[count];
        if (int rc = scan_target(t, not_variable); rc < 0) return rc;
        if (line_input && t.type != kind_string) return fail(t.column, not_variable);
        ++count;
        const int more = line_input ? (at_statement_end() ? 0 : fail(scan_column(), err_too_many_parameters))
                                    : next_target_separator();
        if (more < 0) return more;
        if (more == 0) break;
        if (count == max_file_targets) return fail(scan_column(), err_too_many_parameters);
    }
    if (exec.skip) return 0;
    for (std::size_t i = 0; i < count; ++i) {
        const int rc = line_input ? line_value(*f, targets[i]) : input_value(*f, targets[i]);
        if (rc < 0) return rc;
    }
    return 0;
}

}  // namespace tl
