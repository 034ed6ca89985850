// program_store.cpp — reading program files into the Program Buffer and walking its lines.
#include "exec/program_store.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <vector>

#include "exec/exec_state.h"
#include "exec/front_end.h"
#include "exec/memory_areas.h"
#include "exec/open_without_waiting.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/lang_state.h"

namespace tl {
namespace {

/// Reads the whole file; 0, or the errno of the failure to open or read it.
int read_file(const std::string& path, std::vector<char>& out, std::size_t limit) {
    std::FILE* f = open_without_waiting(path.c_str(), "rb");
    if (f == nullptr) return errno != 0 ? errno : EIO;
    out.clear();
    char chunk[65536];
    int failure = 0;
    errno = 0;
    for (;;) {
        std::size_t n = std::fread(chunk, 1, sizeof chunk, f);
        out.insert(out.end(), chunk, chunk + n);
        if (out.size() > limit) break;  // too large anyway; stop reading
        if (n < sizeof chunk) {
            if (std::ferror(f) != 0) failure = errno != 0 ? errno : EIO;
            break;
        }
    }
    std::fclose(f);
    return failure;
}

/// Shows the file that could not be read, as the system found it, on a line
/// of its own before the numbered report: "Cannot open /full/path: reason".
void show_unreadable_file(const std::string& path, int failure) {
    std::error_code ec;
    std::filesystem::path full = std::filesystem::absolute(path, ec);
    if (ec) full = path;
    console_print("\nCannot open %s: %s\n", full.lexically_normal().c_str(), std::strerror(failure));
}

bool ends_with_crlf(const char* text, std::uint32_t length) {
    return length >= 2 && text[length - 2] == '\r' && text[length - 1] == '\n';
}

}  // namespace

bool end_text_with_crlf() {
    char* text = areas.program.get();
    if (areas.program_length == 0 || ends_with_crlf(text, areas.program_length)) return true;
    if (areas.program_length + 3 > areas.program_size) return false;
    program_text_changed(areas.program_length);
    text[areas.program_length++] = '\r';
    text[areas.program_length++] = '\n';
    text[areas.program_length] = 0;
    return true;
}

int read_program_file(const std::string& path, ReadMode mode, std::uint32_t insert_at) {
    std::vector<char> file;
    const std::uint32_t size = areas.program_size;
    if (const int failure = read_file(path, file, size); failure != 0) {
        show_unreadable_file(path, failure);
        return report_error(err_unable_load_program);
    }
    char* text = areas.program.get();

    if (mode == read_load) {
        if (file.size() >= size - 1) return report_error(err_program_too_large_buffer);
        std::copy(file.begin(), file.end(), text);  // an empty file has no data pointer
        areas.program_length = static_cast<std::uint32_t>(file.size());
        text[areas.program_length] = 0;
        program_text_changed(0);
        return 0;
    }

    // Append and include build the new text aside, so a failure leaves the old one.
    const std::uint32_t old_length = areas.program_length;
    const std::uint32_t cut = mode == read_append ? old_length : (insert_at < old_length ? insert_at : old_length);
    std::vector<char> joined(text, text + cut);
    if (!joined.empty() && !ends_with_crlf(joined.data(), static_cast<std::uint32_t>(joined.size()))) {
        joined.push_back('\r');
        joined.push_back('\n');
    }
    joined.insert(joined.end(), file.begin(), file.end());
    if (mode == read_include) {
        if (!file.empty() && !ends_with_crlf(joined.data(), static_cast<std::uint32_t>(joined.size()))) {
            joined.push_back('\r');
            joined.push_back('\n');
        }
        joined.insert(joined.end(), text + cut, text + old_length);
    }
    if (joined.size() >= size - 1) return report_error(err_program_too_large_buffer);
    std::copy(joined.begin(), joined.end(), text);
    areas.program_length = static_cast<std::uint32_t>(joined.size());
    text[areas.program_length] = 0;
    program_text_changed(cut);
    return 0;
}

bool replace_program_text(std::string_view text) {
    if (text.size() >= areas.program_size) return false;
    std::memcpy(areas.program.get(), text.data(), text.size());
    areas.program_length = static_cast<std::uint32_t>(text.size());
    areas.program.get()[areas.program_length] = 0;
    program_text_changed(0);
    return true;
}

void program_text_changed(std::uint32_t offset) {
    if (offset < areas.program_image_valid) areas.program_image_valid = offset;
    ++areas.program_generation;
}

const char* program_image() {
    const std::uint32_t length = areas.program_length;
    if (areas.program_image && areas.program_image_valid >= length && areas.program_image_length == length)
        return areas.program_image.get();
    if (areas.program_image_size < areas.program_size + 2) {
        areas.program_image = std::make_unique<char[]>(areas.program_size + 2);
        areas.program_image_size = areas.program_size + 2;
        areas.program_image_valid = 0;
    }
    const char* text = areas.program.get();
    char* image = areas.program_image.get();
    // One character back: the CR of a CR LF pair that the change split.
    const std::uint32_t from = areas.program_image_valid > 0 ? areas.program_image_valid - 1 : 0;
    for (std::uint32_t i = from; i < length; ++i) {
        const char c = text[i];
        if (c == '\n') {
            image[i] = 0;
            if (i > 0 && text[i - 1] == '\r') image[i - 1] = 0;
        } else {
            image[i] = c;
        }
    }
    if (length > 0 && text[length - 1] == '\r') image[length - 1] = 0;  // a last line ending in CR alone
    image[length] = 0;
    image[length + 1] = 0;
    areas.program_image_valid = length;
    areas.program_image_length = length;
    return image;
}

int next_line(std::uint32_t offset, ProgramLine& line) {
    const char* text = areas.program.get();
    const std::uint32_t length = areas.program_length;
    if (offset >= length) return -1;
    const char* image = program_image();
    MemoryAreas::LineCacheEntry* cached = nullptr;
    if (exec.caches_enabled) {
        cached = &areas.line_cache[(offset * 2654435761u) >> 24 & (MemoryAreas::line_cache_size - 1)];
        if (cached->key == offset + 1 && cached->generation == areas.program_generation) {
            line.start = offset;
            line.next = cached->next;
            line.text = image + offset;
            line.length = static_cast<int>(cached->length);
            line.text_length = cached->text_length;
            return 0;
        }
    }
    const void* lf = std::memchr(text + offset, '\n', length - offset);
    const std::uint32_t end = lf != nullptr ? static_cast<std::uint32_t>(static_cast<const char*>(lf) - text) + 1 : length;
    line.start = offset;
    line.next = end;
    if (end - offset > max_line_bytes) {
        // Show the start of the offending line in the report.
        std::memcpy(areas.long_line, text + offset, max_line_bytes);
        areas.long_line[max_line_bytes] = 0;
        line.text = areas.long_line;
        line.length = max_line_bytes;
        lang.reporter.text = line.text;
        lang.reporter.statement_start = line.text;
        lang.reporter.error_column = 0;
        return report_error(err_statement_too_long_255);
    }
    std::uint32_t n = end - offset;
    if (n > 0 && text[offset + n - 1] == '\n') --n;
    if (n > 0 && text[offset + n - 1] == '\r') --n;
    line.text = image + offset;
    line.length = static_cast<int>(n);
    line.text_length = static_cast<std::uint32_t>(std::strlen(line.text));
    if (cached != nullptr) *cached = {offset + 1, areas.program_generation, end, n, line.text_length};
    return 0;
}

int read_statement_number(const char*& p, const char* line_start, std::uint32_t& number, bool allow_comma) {
    if (*p < '0' || *p > '9') return 0;
    const char* begin = p;
    std::uint64_t value = 0;  // ten digits fit
    int digits = 0;
    while (*p >= '0' && *p <= '9') {
        if (++digits > 10) {
            lang.reporter.error_column = static_cast<int>(begin - line_start);
            return report_error(err_statement_number_has_too_many);
        }
        value = value * 10 + static_cast<std::uint64_t>(*p - '0');
        ++p;
    }
    const char c = *p;
    const bool ends = c == 0 || c == ' ' || c == '\t' || c == ':' || c == '\r' || (c == '/' && p[1] == '/') ||
                      (allow_comma && c == ',');
    if (!ends || value == 0 || value > 2147483647) {
        lang.reporter.error_column = static_cast<int>(begin - line_start);
        return report_error(err_invalid_statement_number);
    }
    number = static_cast<std::uint32_t>(value);
    return 1;
}

namespace {

std::size_t index_slot(std::uint32_t number, std::size_t size) { return (number * 2654435761u) & (size - 1); }

void index_entry(std::uint32_t entry) {
    std::vector<std::int32_t>& slots = areas.statement_index;
    const std::uint32_t number = areas.statement_numbers[entry].number;
    for (std::size_t h = index_slot(number, slots.size());; h = (h + 1) & (slots.size() - 1)) {
        if (slots[h] == 0) {
            slots[h] = static_cast<std::int32_t>(entry) + 1;
            return;
        }
        // A repeated number keeps its first entry, as the search from entry 0 finds it.
        if (areas.statement_numbers[slots[h] - 1].number == number) return;
    }
}

/// Brings the index up to the table: entries added since are indexed; an
/// emptied table or a full index starts it again.
void update_statement_index() {
    const std::uint32_t count = areas.statement_number_count;
    std::vector<std::int32_t>& slots = areas.statement_index;
    bool rebuild = areas.statement_index_generation != areas.statement_numbers_generation ||
                   count < areas.statement_index_count || slots.empty();
    if (count * 2 >= slots.size()) {
        std::size_t size = 64;
        while (size <= count * 2u) size *= 2;
        slots.assign(size, 0);
        rebuild = true;
    } else if (rebuild) {
        std::fill(slots.begin(), slots.end(), 0);
    }
    if (rebuild) {
        areas.statement_index_count = 0;
        areas.statement_index_generation = areas.statement_numbers_generation;
    }
    for (std::uint32_t i = areas.statement_index_count; i < count; ++i) index_entry(i);
    areas.statement_index_count = count;
}

}  // namespace

int find_statement_entry(std::uint32_t number) {
    if (exec.caches_enabled) {
        if (areas.statement_index_count != areas.statement_number_count ||
            areas.statement_index_generation != areas.statement_numbers_generation || areas.statement_index.empty())
            update_statement_index();
        const std::vector<std::int32_t>& slots = areas.statement_index;
        for (std::size_t h = index_slot(number, slots.size());; h = (h + 1) & (slots.size() - 1)) {
            if (slots[h] == 0) return -1;
            if (areas.statement_numbers[slots[h] - 1].number == number) return slots[h] - 1;
        }
    }
    for (std::uint32_t i = 0; i < areas.statement_number_count; ++i) {
        if (areas.statement_numbers[i].number == number) return static_cast<int>(i);
    }
    return -1;
}

std::int64_t find_statement(std::uint32_t number) {
    const int i = find_statement_entry(number);
    if (i < 0) return report_error(err_statement_number_not_found);
    return areas.statement_numbers[i].program_offset;
}

void format_offset(std::uint32_t offset, char (&out)[16]) {
    if (offset < 0x10000) {
        std::snprintf(out, sizeof out, "    %4X", offset);
    } else {
        std::snprintf(out, sizeof out, "%4X%04X", offset >> 16, offset & 0xFFFF);
    }
}

namespace {

/// One row of the tables below the listing: a statement number and three offsets.
void print_offset_row(std::uint32_t number, std::uint32_t first, std::uint32_t second, std::uint32_t third) {
    char a[16], b[16], c[16];
    format_offset(first, a);
    format_offset(second, b);
    format_offset(third, c);
    console_print("%10i   %s    %s         %s\n", static_cast<int>(number), a, b, c);
}

}  // namespace

void list_program(std::uint32_t end) {
    if (areas.scan_only) return;
    char a[16];
    std::uint32_t offset = 0;
    if (end > areas.program_length) end = areas.program_length;
    while (offset < end) {
        const std::uint32_t start = offset;
        const char* text = areas.program.get();
        const void* lf = std::memchr(text + offset, '\n', areas.program_length - offset);
        offset = lf != nullptr ? static_cast<std::uint32_t>(static_cast<const char*>(lf) - text) + 1 : end;
        if (offset > end) offset = end;
        std::uint32_t n = offset - start;
        if (n > 0 && text[start + n - 1] == '\n') --n;
        if (n > 0 && text[start + n - 1] == '\r') --n;
        format_offset(start, a);
        console_print("%s  %.*s\r\n", a, static_cast<int>(n), text + start);
    }
    console_write("  stmt-num pgm-offset loop-offset loop-stmt-offset\n");
    for (std::uint32_t i = 0; i < areas.statement_number_count; ++i) {
        const StatementNumberEntry& e = areas.statement_numbers[i];
        print_offset_row(e.number, e.program_offset, e.loop_offset, e.loop_statement_offset);
    }
    console_write("\n  stmt-num pgm-offset data-offset         data length\n");
    for (std::uint32_t i = 0; i < areas.data_statement_count; ++i) {
        const DataStatementEntry& e = areas.data_statements[i];
        print_offset_row(e.number, e.program_offset, e.data_offset, e.data_length);
    }
}

}  // namespace tl
