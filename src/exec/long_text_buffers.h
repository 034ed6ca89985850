// long_text_buffers.h — reused text buffers for long numbers on their way to and from text.
//
// These live apart from ExecState, which is saved and restored around every
// line typed at the prompt: a buffer that once held a million digits must not
// be copied with it. Each buffer is sized from the text that is written into
// it, grown when needed and given back when it grew large.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "longmath/long_number.h"

namespace tl {

struct LongTextBuffers {
    /// PRINT, WRITE and the variable displays.
    std::vector<char> print;
    /// The result text of a LONG operation.
    std::vector<char> result;
    /// An operand read from a whole string array.
    std::vector<char> operand;
};

extern LongTextBuffers long_text_buffers;

/// A buffer larger than this is given back by trim_text_buffer.
inline constexpr std::size_t large_text_buffer = std::size_t{1} << 20;

/// Makes `buffer` hold at least `size` bytes. Returns 0, or reports 159
/// "LONGMATH - Memory allocation failed." and returns its negation.
[[nodiscard]] int reserve_text_buffer(std::vector<char>& buffer, std::size_t size);

/// Gives the memory of `buffer` back when it has grown above large_text_buffer.
void trim_text_buffer(std::vector<char>& buffer);

/// The plain text of `n` (as long_to_string writes it) in `buffer`, sized
/// from that text. Returns 0 with `out` viewing the text, or a negated,
/// reported error (147, 159).
[[nodiscard]] int long_plain_text(const LongNumber& n, std::vector<char>& buffer, std::string_view& out);

}  // namespace tl
