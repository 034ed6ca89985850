// long_space.cpp — slot allocation in the two long-number spaces.
#include "longmath/long_space.h"

#include <new>

#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "longmath/long_convert.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

LongSpace& vars() { return long_state.spaces.variables; }
LongSpace& temps() { return long_state.spaces.temps; }

void make_empty(LongNumber& n) {
    n.owner[0] = 0;
    n.blocks.assign(long_slot_digits / long_block_digits, 0);
    n.len = 1;
    n.blks = 1;
    n.sgn = 0;
    n.exp = 1;
    n.nrm = 1;
}

bool set_up(LongSpace& space, std::uint32_t bytes) {
    space.size_bytes = bytes - bytes % long_slot_bytes;
    space.next_free = 0;
    space.high_water = 0;
    try {
        space.slots.assign(space.size_bytes / long_slot_bytes, LongNumber{});
        for (LongNumber& n : space.slots) make_empty(n);
    } catch (const std::bad_alloc&) {
        space.slots.clear();
        return false;
    }
    return true;
}

}  // namespace

int init_long_spaces(std::uint32_t long_bytes, std::uint32_t temp_bytes, bool fail_long, bool fail_temp) {
    if (fail_long || !set_up(vars(), long_bytes)) return report_error(err_unable_allocate_storage_long_variables);
    if (fail_temp || !set_up(temps(), temp_bytes)) return report_error(err_unable_allocate_storage_temporary_long);
    return 0;
}

std::int64_t new_long_variable() {
    LongSpace& s = vars();
    const auto count = static_cast<std::uint32_t>(s.slots.size());
    for (std::uint32_t i = s.next_free; i < count; ++i) {
        if (s.slots[i].owner[0] == 0) {
            make_empty(s.slots[i]);
            s.slots[i].owner[0] = 1;
            s.next_free = i + 1;
            if (i + 1 > s.high_water) s.high_water = i + 1;
            return static_cast<std::int64_t>(i) + 1;
        }
    }
    return report_error(err_not_enough_long_storage);
}

void free_long_variable(std::uint32_t ref) {
    if (ref == 0 || (ref & temp_long_flag) != 0) return;
    LongSpace& s = vars();
    const std::uint32_t i = ref - 1;
    if (i >= s.slots.size()) return;
    s.slots[i].owner[0] = 0;
    if (i < s.next_free) s.next_free = i;
}

std::int64_t new_temp_long() {
    LongSpace& s = temps();
    if (s.next_free >= s.slots.size()) return report_error(err_not_enough_temp_long_storage);
    const std::uint32_t i = s.next_free++;
    if (s.next_free > s.high_water) s.high_water = s.next_free;
    LongNumber& n = s.slots[i];
    n.owner[0] = 1;
    long_set_zero(n);
    return static_cast<std::int64_t>(i | temp_long_flag);
}

std::uint32_t temp_long_mark() { return temps().next_free; }

void release_temp_longs(std::uint32_t mark) {
    LongSpace& s = temps();
    if (mark > s.next_free) return;
    for (std::uint32_t i = mark; i < s.next_free; ++i) s.slots[i].owner[0] = 0;
    s.next_free = mark;
}

LongNumber& long_at(std::uint32_t ref) {
    if ((ref & temp_long_flag) != 0) return temps().slots[ref & ~temp_long_flag];
    return vars().slots[ref - 1];
}

void clear_long_space() {
    LongSpace& s = vars();
    for (LongNumber& n : s.slots) n.owner[0] = 0;
    s.next_free = 0;
    s.high_water = 0;
}

void begin_long_compaction() {
    long_state.compacted.clear();
    long_state.compacted.reserve(vars().high_water);
}

void relocate_long(std::uint32_t& ref) {
    if (ref == 0 || (ref & temp_long_flag) != 0) return;
    LongSpace& s = vars();
    const std::uint32_t i = ref - 1;
    if (i >= s.slots.size() || s.slots[i].owner[0] == 0) return;
    long_state.compacted.push_back(std::move(s.slots[i]));
    s.slots[i] = LongNumber{};
    ref = static_cast<std::uint32_t>(long_state.compacted.size());
}

void end_long_compaction() {
    LongSpace& s = vars();
    const std::size_t live = long_state.compacted.size();
    for (std::size_t i = 0; i < s.slots.size(); ++i) {
        if (i < live) {
            s.slots[i] = std::move(long_state.compacted[i]);
        } else {
            make_empty(s.slots[i]);
        }
    }
    long_state.compacted.clear();
    s.next_free = static_cast<std::uint32_t>(live);
}

void trim_long_space() {
    LongSpace& s = vars();
    std::uint32_t i = 0;
    while (i < s.high_water && s.slots[i].owner[0] != 0) ++i;
    for (std::uint32_t j = i; j < s.high_water; ++j) s.slots[j].owner[0] = 0;
    s.high_water = i;
    if (s.next_free > i) s.next_free = i;
}

std::uint32_t long_space_used_bytes() { return vars().high_water * long_slot_bytes; }
std::uint32_t long_space_size_bytes() { return vars().size_bytes; }
std::uint32_t temp_long_used_bytes() { return temps().high_water * long_slot_bytes; }
std::uint32_t temp_long_size_bytes() { return temps().size_bytes; }
std::uint32_t temp_long_next_offset() { return temps().next_free * long_slot_bytes; }
void reset_temp_long_high_water() { temps().high_water = temps().next_free; }

}  // namespace tl
