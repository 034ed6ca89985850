// sort_statement.cpp — SORT: reorders the rows of an array in place by up to
// three key columns.
//
// The rows go through the C library's qsort. Stability is added, unless
// "unstable" is given, by a tie-break column: the lowest column that is no
// key gives its values up for the duration of the sort and holds each row's
// original row number instead, which the comparison uses last.
//
// Two comparison rules are deliberate and relied on by programs:
//  - doubles compare by their difference truncated toward zero, so keys that
//    differ by less than 1 are equal;
//  - a key column that is also the tie-break column (every column is a key)
//    compares its saved doubles reversed, so it sorts descending, and
//    "descending" makes it ascending. A one-dimensional double array is such
//    a case.
#include "exec/sort_statement.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <new>

#include "exec/arrays.h"
#include "exec/commands.h"
#include "exec/exec_state.h"
#include "exec/memory_areas.h"
#include "exec/statements.h"
#include "exec/string_space.h"
#include "exec/variables.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/evaluator.h"
#include "lang/item.h"
#include "lang/lang_state.h"
#include "lang/scanner.h"
#include "longmath/long_arith.h"
#include "longmath/long_convert.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

enum SortParameter : int {
    sort_count,
    sort_keycol1,
    sort_keycol2,
    sort_keycol3,
    sort_descending,
    sort_case,
    sort_unstable,
    sort_parameter_count
};

// ORDER: SortParameter.
constexpr const char* sort_parameter_names[sort_parameter_count] = {"count",      "keycol1", "keycol2", "keycol3",
                                                                    "descending", "case",    "unstable"};

bool takes_value(int p) { return p <= sort_keycol3; }

/// Everything the statement text says, before the array is touched.
struct SortRequest {
    ArrayEntry* array = nullptr;
    int fixed_count = 0;
    double fixed[max_parameters] = {};
    int fixed_columns[max_parameters] = {};
    bool given[sort_parameter_count] = {};
    double value[sort_parameter_count] = {};
    int column[sort_parameter_count] = {};        ///< of the parameter word
    int value_column[sort_parameter_count] = {};  ///< of its value
    int name_column = 0;
};

/// The array with exactly this name (letter case counts), or null.
ArrayEntry* find_array_exact(std::string_view name) {
    for (std::uint32_t i = 0; i < areas.array_count; ++i) {
        if (name == array_name(areas.arrays[i])) return &areas.arrays[i];
    }
    return nullptr;
}

/// An evaluated numeric value as a double; false for anything else.
bool number_of(int kind, const Item* item, double& out) {
    switch (kind) {
        case kind_double: out = item != nullptr ? item->number : lang.scan.result; return true;
        case kind_numeric_text: {
            char* end = nullptr;
            out = std::strtod(item != nullptr ? item_text(*item) : lang.scan.buffer, &end);
            return end != nullptr && *end == 0;
        }
        case kind_long:
            return long_to_double(item != nullptr ? long_at(item->word) : long_state.work, out, false) >= 0;
        default: return false;
    }
}

int parse_fixed_indices(SortRequest& rq) {
    const int column = scan_column();
    Item items[max_parameters];
    const std::uint32_t string_mark = temp_string_mark();
    const std::uint32_t long_mark = temp_long_mark();
    const int count = parse_parameter_list(items);
    int rc = count;
    if (count == 0) rc = error_at_column(err_missing_parameter_list_function_subscripts, column);
    for (int i = 0; rc > 0 && i < count; ++i) {
        rq.fixed_columns[i] = items[i].column;
        if (!number_of(static_cast<int>(items[i].kind), &items[i], rq.fixed[i]))
            rc = error_at_column(err_array_index_numeric, items[i].column);
    }
    release_temp_strings(string_mark);
    release_temp_longs(long_mark);
    if (rc < 0) return rc;
    rq.fixed_count = count;
    return 0;
}

int parse_parameters(SortRequest& rq) {
    while (!at_statement_end()) {
        if (*lang.scan.position != ',') return error_at_column(err_invalid_sort_parameter, scan_column());
        ++lang.scan.position;
        const std::string_view word = peek_name();
        const int column = scan_column();
        int which = -1;
        for (int i = 0; i < sort_parameter_count; ++i) {
            if (names_equal(word, sort_parameter_names[i])) which = i;
        }
        if (which < 0) return error_at_column(err_invalid_sort_parameter, column);
        lang.scan.position += word.size();
        rq.given[which] = true;
        rq.column[which] = column;
        if (!takes_value(which)) continue;
        skip_blanks();
        if (lang.scan.position >= lang.scan.end || *lang.scan.position != '=')
            return error_at_column(err_missing_equal_sign, scan_column());
        ++lang.scan.position;
        skip_blanks();
        const int value_column = scan_column();
        const std::uint32_t string_mark = temp_string_mark();
        const std::uint32_t long_mark = temp_long_mark();
        const int kind = evaluate_expression(scan_separators);
        const bool numeric = kind > 0 && number_of(kind, nullptr, rq.value[which]);
        release_temp_strings(string_mark);
        release_temp_longs(long_mark);
        if (kind < 0) return kind;
        if (!numeric) return error_at_column(err_invalid_value_sort_parameter, value_column);
        rq.value[which] = std::trunc(rq.value[which]);
        rq.value_column[which] = value_column;
        // The separator ended the expression and was consumed: put a comma back.
        if (lang.scan.terminator == ',') --lang.scan.position;
    }
    if (rq.given[sort_keycol3] && !rq.given[sort_keycol2])
        return error_at_column(err_invalid_sort_parameter, rq.column[sort_keycol3]);
    return 0;
}

// ---- the comparison ---------------------------------------------------

double double_at(const char* row, std::size_t offset) {
    double x = 0.0;
    std::memcpy(&x, row + offset, sizeof x);
    return x;
}

std::uint32_t word_at(const char* row, std::size_t offset) {
    std::uint32_t w = 0;
    std::memcpy(&w, row + offset, sizeof w);
    return w;
}

/// Original row number held in the tie-break column of a row.
std::size_t row_number(const char* row) {
    const SortContext& c = exec.sort;
    if (c.type == kind_double) return static_cast<std::size_t>(double_at(row, c.tie_offset));
    return word_at(row, c.tie_offset);
}

int sign_of_difference(double a, double b) {
    const double d = std::trunc(a - b);
    return d > 0.0 ? 1 : (d < 0.0 ? -1 : 0);
}

int compare_texts(std::uint32_t a, std::uint32_t b) {
    const char* s = string_at(a);
    const char* t = string_at(b);
    if (exec.sort.case_sensitive) return std::strcmp(s, t);
    for (;; ++s, ++t) {
        int x = static_cast<unsigned char>(*s);
        int y = static_cast<unsigned char>(*t);
        if (x >= 'A' && x <= 'Z') x += 'a' - 'A';
        if (y >= 'A' && y <= 'Z') y += 'a' - 'A';
        if (x != y || x == 0) return x - y;
    }
}

int compare_longs(std::uint32_t a, std::uint32_t b) {
    const LongNumber& x = a != 0 ? long_at(a) : exec.sort.empty_long;
    const LongNumber& y = b != 0 ? long_at(b) : exec.sort.empty_long;
    return long_compare(x, y);
}

int compare_words(std::uint32_t a, std::uint32_t b) {
    return exec.sort.type == kind_string ? compare_texts(a, b) : compare_longs(a, b);
}

int compare_key(const char* a, const char* b, int k) {
    const SortContext& c = exec.sort;
    if (c.stabilise && c.key_is_tie[k]) {
        const std::size_t ra = row_number(a);
        const std::size_t rb = row_number(b);
        if (c.type == kind_double) return sign_of_difference(c.saved_doubles[rb], c.saved_doubles[ra]);  // reversed
        return compare_words(c.saved_words[ra], c.saved_words[rb]);
    }
    const std::size_t offset = c.key_offset[k];
    if (c.type == kind_double) return sign_of_difference(double_at(a, offset), double_at(b, offset));
    return compare_words(word_at(a, offset), word_at(b, offset));
}

int compare_rows(const void* pa, const void* pb) {
    const char* a = static_cast<const char*>(pa);
    const char* b = static_cast<const char*>(pb);
    const SortContext& c = exec.sort;
    int r = 0;
    for (int k = 0; k < c.key_count && r == 0; ++k) r = compare_key(a, b, k);
    if (r == 0 && c.stabilise) {
        const std::size_t ra = row_number(a);
        const std::size_t rb = row_number(b);
        r = ra > rb ? 1 : (ra < rb ? -1 : 0);
    }
    r = r > 0 ? 1 : (r < 0 ? -1 : 0);
    return c.descending ? -r : r;
}

// ---- the sort ---------------------------------------------------------

int sort_rows(const SortRequest& rq) {
    const ArrayEntry& a = *rq.array;
    const int f = rq.fixed_count;
    if (f > a.dimensions - 1) return error_at_column(err_too_many_indices, rq.fixed_columns[f - 1]);
    double subscripts[max_array_dimensions] = {};
    int columns[max_array_dimensions] = {};
    for (int i = 0; i < f; ++i) {
        subscripts[i] = rq.fixed[i];
        columns[i] = rq.fixed_columns[i];
    }
    const std::int64_t first = address_element(a, a.dimensions, subscripts, f > 0 ? columns : nullptr);
    if (first < 0) return static_cast<int>(first);

    const std::size_t width = a.type == kind_double ? sizeof(double) : sizeof(std::uint32_t);
    std::size_t rows = static_cast<std::size_t>(a.sizes[f]);
    if (rq.given[sort_count]) {
        const double n = rq.value[sort_count];
        if (n < 0.0) return error_at_column(err_invalid_value_sort_parameter, rq.value_column[sort_count]);
        if (n > 0.0 && n < static_cast<double>(rows)) rows = static_cast<std::size_t>(n);
    }
    if (rows < 2)
        return error_at_column(err_have_at_least_2_rows,
                               rq.given[sort_count] ? rq.value_column[sort_count] : rq.name_column);
    std::size_t row_elements = 1;
    for (int d = f + 1; d < a.dimensions; ++d) row_elements *= static_cast<std::size_t>(a.sizes[d]);
    const std::size_t row_bytes = row_elements * width;

    SortContext& c = exec.sort;
    c.type = a.type;
    c.descending = rq.given[sort_descending];
    c.case_sensitive = rq.given[sort_case];
    c.stabilise = !rq.given[sort_unstable];
    int key_column[3] = {0, 0, 0};  // unused keys count as column 0
    c.key_count = 1;
    std::size_t column_count = 1;
    std::size_t column_bytes = 0;
    if (f + 1 < a.dimensions) {  // a column dimension: up to three keys
        column_count = static_cast<std::size_t>(a.sizes[f + 1]);
        column_bytes = row_bytes / column_count;
        const int keys[3] = {sort_keycol1, sort_keycol2, sort_keycol3};
        for (int k = 0; k < 3; ++k) {
            if (!rq.given[keys[k]]) continue;
            const double v = rq.value[keys[k]];
            if (!(v >= 0.0 && v < static_cast<double>(column_count)))
                return error_at_column(err_invalid_value_sort_parameter, rq.value_column[keys[k]]);
            key_column[k] = static_cast<int>(v);
        }
        c.key_count = rq.given[sort_keycol3] ? 3 : (rq.given[sort_keycol2] ? 2 : 1);
    }
    std::size_t tie_column = column_count - 1;
    for (std::size_t col = 0; col < column_count; ++col) {
        if (static_cast<int>(col) != key_column[0] && static_cast<int>(col) != key_column[1] &&
            static_cast<int>(col) != key_column[2]) {
            tie_column = col;
            break;
        }
    }
    for (int k = 0; k < 3; ++k) {
        c.key_offset[k] = static_cast<std::size_t>(key_column[k]) * column_bytes;
        c.key_is_tie[k] = static_cast<std::size_t>(key_column[k]) == tie_column;
    }
    c.tie_offset = tie_column * column_bytes;

    char* base = static_cast<char*>(a.elements) + static_cast<std::size_t>(first) * width;
    if (c.stabilise) {
        try {
            if (a.type == kind_double) {
                if (c.saved_doubles.size() < rows) c.saved_doubles.resize(rows);
            } else if (c.saved_words.size() < rows) {
                c.saved_words.resize(rows);
            }
        } catch (const std::bad_alloc&) {
            return error_at_column(err_unable_allocate_array_storage, 0);
        }
        for (std::size_t r = 0; r < rows; ++r) {
            char* slot = base + r * row_bytes + c.tie_offset;
            if (a.type == kind_double) {
                c.saved_doubles[r] = double_at(slot, 0);
                const double n = static_cast<double>(r);
                std::memcpy(slot, &n, sizeof n);
            } else {
                c.saved_words[r] = word_at(slot, 0);
                const auto n = static_cast<std::uint32_t>(r);
                std::memcpy(slot, &n, sizeof n);
            }
        }
    }
    std::qsort(base, rows, row_bytes, compare_rows);
    if (c.stabilise) {
        for (std::size_t r = 0; r < rows; ++r) {
            char* row = base + r * row_bytes;
            const std::size_t original = row_number(row);
            if (a.type == kind_double) {
                std::memcpy(row + c.tie_offset, &c.saved_doubles[original], sizeof(double));
            } else {
                std::memcpy(row + c.tie_offset, &c.saved_words[original], sizeof(std::uint32_t));
            }
        }
    }
    return 0;
}

}  // namespace

int do_sort() {
    SortRequest rq;
    const std::string_view name = peek_name();
    const int name_column = scan_column();
    rq.name_column = name_column;
    lang.scan.position += name.size();
    const bool passing = passing_over();
    if (!passing) {
        rq.array = name.empty() ? nullptr : find_array_exact(name);
        if (rq.array == nullptr) return error_at_column(err_expecting_array, name_column);
    } else if (name.empty()) {
        return error_at_column(err_expecting_array, name_column);
    }
    skip_blanks();
    if (lang.scan.position < lang.scan.end && *lang.scan.position == '(') {
        const int rc = parse_fixed_indices(rq);
        if (rc < 0) return rc;
    }
    const int rc = parse_parameters(rq);
    if (rc < 0 || passing) return rc;
    return sort_rows(rq);
}

}  // namespace tl
