// string_space.h — string values in the String Space, temporary strings, houseclean.
#pragma once

#include <cstdint>
#include <string_view>

namespace tl {

inline constexpr std::size_t max_string_length = 255;

enum StoreMode : int {
    store_assign = 0,  ///< replace the value
    store_lset = 1,    ///< left-justify into the existing length
    store_rset = 2,    ///< right-justify into the existing length
};

/// Copies `src` into `dest` of `size` bytes, cut to fit and NUL-terminated.
inline void copy_text(char* dest, std::size_t size, std::string_view src) {
    const std::size_t n = src.size() < size - 1 ? src.size() : size - 1;
    src.copy(dest, n);
    dest[n] = 0;
}

/// The text at a String Space offset (offset 0 is the empty string).
const char* string_at(std::uint32_t offset);

/// Stores `value` (cut at 255 characters) into the string named by `*target`.
/// Assign: empty gives offset 0; a value no longer than the old one is written
/// in place; a longer one goes to the end of the space, after a houseclean if
/// needed. LSET/RSET keep the old length and place. Returns 3, or reports 109
/// (or 3 from a failed houseclean) and returns the negated number.
[[nodiscard]] int store_string(std::uint32_t* target, std::string_view value, StoreMode mode);

/// Compacts the String Space in table order (variables, then arrays) and the
/// long-number space; prints the short usage report when `report` is set or
/// the debug state is on.
/// Returns 0, or reports 3 when the second block cannot be had.
[[nodiscard]] int houseclean(bool report);

/// Copies `text` (cut at 255 characters) into the Temporary String Space.
/// Returns its offset (0 for an empty text), or reports 14 and returns -14.
[[nodiscard]] std::int64_t new_temp_string(std::string_view text);
/// The text at a temporary offset.
const char* temp_string_at(std::uint32_t offset);

/// Marks for stack-wise release of temporaries.
std::uint32_t temp_string_mark();
/// Raises the high-water mark to the current top, then releases to `mark`.
void release_temp_strings(std::uint32_t mark);

}  // namespace tl
