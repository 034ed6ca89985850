// long_space.h — the Long Number Space and the Temp Long Number Space.
//
// Each space is cut into 300-byte slots, one long number record per slot. A
// reference names a record: 0 is "none"; variable-space references are the
// slot index + 1; temporary references have temp_long_flag set. Temporaries
// are taken stack-wise and released by mark.
#pragma once

#include <cstdint>
#include <vector>

#include "longmath/long_number.h"

namespace tl {

inline constexpr std::uint32_t long_slot_bytes = 300;
inline constexpr std::uint32_t temp_long_flag = 0x80000000u;
/// Digits an empty slot record is prepared for.
inline constexpr int long_slot_digits = 256;

struct LongSpace {
    std::vector<LongNumber> slots;
    std::uint32_t size_bytes = 0;  ///< the setting rounded down to a multiple of 300
    std::uint32_t next_free = 0;   ///< variables: lowest slot that may be free; temps: stack top
    std::uint32_t high_water = 0;  ///< in slots
};

struct LongSpaces {
    LongSpace variables;
    LongSpace temps;
};

/// Allocates both spaces (sizes rounded down to multiples of 300 bytes), every
/// slot an empty long number of 256 digits. Reports 171 or 173 and returns
/// the negated number on failure. The two flags make an allocation fail (tests).
[[nodiscard]] int init_long_spaces(std::uint32_t long_bytes, std::uint32_t temp_bytes, bool fail_long = false,
                                   bool fail_temp = false);

/// Takes a free slot of the Long Number Space; returns its reference, or
/// reports 174 and returns -174 when the space is full.
[[nodiscard]] std::int64_t new_long_variable();
/// Gives a variable's or element's slot back (0 is ignored).
void free_long_variable(std::uint32_t ref);

/// Takes the next temporary; returns its reference, or reports 172 and
/// returns -172 when the space is full.
[[nodiscard]] std::int64_t new_temp_long();
std::uint32_t temp_long_mark();
void release_temp_longs(std::uint32_t mark);

/// The record a reference names (the reference must be valid).
LongNumber& long_at(std::uint32_t ref);

/// Releases the whole Long Number Space (CLEAR): every slot free, high water 0.
void clear_long_space();
/// Houseclean compaction: begin, relocate every live reference in table
/// order (each moves to the next slot from 0 and `ref` is updated), end.
/// Records that were not relocated are released.
void begin_long_compaction();
void relocate_long(std::uint32_t& ref);
void end_long_compaction();
/// Houseclean: from slot 0 up to the high-water mark, stops at the first free
/// slot, releases everything from there on and makes that the high-water mark.
void trim_long_space();

/// Bytes used (high-water mark) and size, for the memory report.
std::uint32_t long_space_used_bytes();
std::uint32_t long_space_size_bytes();
std::uint32_t temp_long_used_bytes();
std::uint32_t temp_long_size_bytes();
std::uint32_t temp_long_next_offset();
void reset_temp_long_high_water();

}  // namespace tl
