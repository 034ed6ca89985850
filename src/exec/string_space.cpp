// string_space.cpp — string storage with in-place reuse, compaction and temporaries.
#include "exec/string_space.h"

#include <cstring>
#include <memory>
#include <new>

#include "exec/front_end.h"
#include "exec/memory_areas.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/lang_state.h"
#include "longmath/long_space.h"

namespace tl {
namespace {

std::size_t capped(std::string_view v) { return v.size() < max_string_length ? v.size() : max_string_length; }

void copy_live(std::uint32_t& offset, char* block, std::uint32_t& next) {
    if (offset == 0) return;
    const char* text = areas.strings.at(offset);
    const std::size_t n = std::strlen(text);
    std::memcpy(block + next, text, n + 1);
    offset = next;
    next += static_cast<std::uint32_t>(n) + 1;
}

}  // namespace

const char* string_at(std::uint32_t offset) { return offset == 0 ? "" : areas.strings.at(offset); }

int houseclean(bool report) {
    if (areas.scan_only) return 0;
    ByteArea& s = areas.strings;
    std::unique_ptr<char[]> block(new (std::nothrow) char[s.size]());
    if (!block) return report_error(err_unable_allocate_storage_string_variables);
    std::uint32_t next = 1;
    begin_long_compaction();
    for (std::uint32_t i = 0; i < areas.variable_count; ++i) {
        VariableEntry& v = areas.variables[i];
        if (v.type == 3) copy_live(v.value.word, block.get(), next);
        if (v.type == 14) relocate_long(v.value.word);
    }
    for (std::uint32_t i = 0; i < areas.array_count; ++i) {
        ArrayEntry& a = areas.arrays[i];
        if (a.type != 3 || a.elements == nullptr) continue;
        const std::size_t n = a.element_count();
        for (std::size_t e = 0; e < n; ++e) copy_live(a.words()[e], block.get(), next);
    }
    std::memcpy(s.data.get(), block.get(), s.size);
    s.used = next;
    block.reset();
    if (report || lang.reporter.debug) {
        console_print("Var.  Name  Space Used:  %3u, max: %5u\n", areas.variable_names.used, areas.variable_names.size);
        console_print("Array Name  Space Used:  %3u, max: %5u\n", areas.array_names.used, areas.array_names.size);
        console_print("String      Space Used:  %3u, max: %5u\n", areas.strings.used, areas.strings.size);
        console_print("Temp String Space Used:  %3u, max: %5u\n", areas.temp_high_water, areas.temp_strings.size);
        console_print("Next Temp String offset: %3u, \n", areas.temp_strings.used);
    }
    for (std::uint32_t i = 0; i < areas.array_count; ++i) {
        ArrayEntry& a = areas.arrays[i];
        if (a.type != 14 || a.elements == nullptr) continue;
        const std::size_t n = a.element_count();
        for (std::size_t e = 0; e < n; ++e) relocate_long(a.words()[e]);
    }
    end_long_compaction();
    trim_long_space();
    return 0;
}

int store_string(std::uint32_t* target, std::string_view value, StoreMode mode) {
    const std::size_t n = capped(value);
    const std::size_t m = *target == 0 ? 0 : std::strlen(areas.strings.at(*target));
    if (mode != store_assign) {
        if (m == 0) return 3;
        char* dest = areas.strings.at(*target);
        if (n >= m) {
            std::memmove(dest, value.data(), m);
        } else if (mode == store_lset) {
            std::memmove(dest, value.data(), n);
            std::memset(dest + n, ' ', m - n);
        } else {
            std::memmove(dest + (m - n), value.data(), n);
            std::memset(dest, ' ', m - n);
        }
        return 3;
    }
    if (n == 0) {
        *target = 0;
        return 3;
    }
    if (n <= m) {
        char* dest = areas.strings.at(*target);
        std::memmove(dest, value.data(), n);
        dest[n] = 0;
        return 3;
    }
    // The value may live in the String Space itself; keep a copy across houseclean.
    char copy[max_string_length + 1];
    std::memcpy(copy, value.data(), n);
    ByteArea& s = areas.strings;
    if (s.used + n >= s.size) {
        if (int rc = houseclean(false); rc < 0) return rc;
        if (s.used + n >= s.size) return report_error(err_no_more_string_space);
    }
    std::memcpy(s.at(s.used), copy, n);
    *s.at(s.used + static_cast<std::uint32_t>(n)) = 0;
    *target = s.used;
    s.used += static_cast<std::uint32_t>(n) + 1;
    return 3;
}

std::int64_t new_temp_string(std::string_view text) {
    const std::size_t n = capped(text);
    if (n == 0) return 0;
    ByteArea& t = areas.temp_strings;
    if (t.used + n + 1 > t.size) return report_error(err_no_more_space_temporary_strings);
    const std::uint32_t offset = t.used;
    std::memmove(t.at(offset), text.data(), n);
    *t.at(offset + static_cast<std::uint32_t>(n)) = 0;
    t.used += static_cast<std::uint32_t>(n) + 1;
    return offset;
}

const char* temp_string_at(std::uint32_t offset) { return offset == 0 ? "" : areas.temp_strings.at(offset); }

std::uint32_t temp_string_mark() { return areas.temp_strings.used; }

void release_temp_strings(std::uint32_t mark) {
    if (areas.temp_strings.used > areas.temp_high_water) areas.temp_high_water = areas.temp_strings.used;
    if (mark <= areas.temp_strings.used) areas.temp_strings.used = mark;
}

}  // namespace tl
