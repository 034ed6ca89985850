// stack_guard.h — keeps deep nesting (GOSUB, loops, function calls) off the end of the native stack.
#pragma once

#include <cstddef>

namespace tl {

/// Bytes kept free below the deepest point the interpreter may reach.
inline constexpr std::size_t stack_reserve = 256 * 1024;

/// Learns the current thread's stack bounds (called by the first check).
void init_stack_guard();

/// True when less than `stack_reserve` bytes of stack are left.
[[nodiscard]] bool stack_nearly_full();

/// Reports that the program nests too deeply (statement echo, caret and the
/// message) and returns the negated "already reported" number.
[[nodiscard]] int report_nesting_too_deep();

}  // namespace tl
