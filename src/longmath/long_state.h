// long_state.h — the long-number subsystem's process-wide state in one record.
#pragma once

#include <cstdint>
#include <deque>
#include <vector>

#include "longmath/long_arith.h"
#include "longmath/long_mode.h"
#include "longmath/long_space.h"

namespace tl {

/// The elementary functions' part of the long-number state. Its special
/// members are out of line: the whole state is reset by assignment, and
/// inlining all of it makes the optimiser warn about the temporary.
struct LongFunctionState {
    LongFunctionState();
    ~LongFunctionState();
    LongFunctionState(LongFunctionState&&) noexcept;
    LongFunctionState& operator=(LongFunctionState&&) noexcept;
    LongFunctionState(const LongFunctionState&) = delete;
    LongFunctionState& operator=(const LongFunctionState&) = delete;

    /// Working records of the elementary functions, taken stack-wise (the
    /// records keep their blocks between calls, so a warm call allocates nothing).
    std::deque<LongNumber> function_records;
    std::size_t function_top = 0;
    /// Work done by the elementary functions' own loops since the last check.
    std::uint32_t function_work = 0;
    /// Fixed-point series sums and product columns (grown, never shrunk).
    std::vector<std::int64_t> fixed_sum;
    std::vector<std::uint64_t> fixed_columns;
    /// Cached constants and the digits they hold (0: not computed).
    LongNumber cached_ln10;
    LongNumber cached_pi;
    LongNumber cached_e;
    LongNumber cached_atn10;  ///< arctan(1/10), for the arctangent's argument adjustment
    int cached_atn10_digits = 0;
    int cached_ln10_digits = 0;
    int cached_pi_digits = 0;
    int cached_e_digits = 0;
};

struct LongState {
    LongSpaces spaces;
    LongMode mode;
    /// Long result of the last evaluation (the long work register).
    LongNumber work;
    /// Target of double-to-long conversion and of Mod.
    LongNumber scratch;
    /// Remainder of the last integer-mode division.
    LongNumber remainder;
    /// Compaction target while a houseclean relocates long numbers.
    std::vector<LongNumber> compacted;
    std::uint32_t compacted_count = 0;

    /// The run loop's interruption check (null: never interrupt) and the work
    /// done since multiply and divide last called it.
    LongInterruptCheck interrupt_check = nullptr;
    std::uint32_t multiply_work = 0;
    std::uint32_t divide_work = 0;
    /// Trial-quotient corrections of the last division.
    int high_guesses = 0;
    int low_guesses = 0;
    /// Reused work areas of multiply and divide (grown, never shrunk).
    std::vector<std::uint64_t> product_columns;
    std::vector<std::uint32_t> division_rest;
    std::vector<std::uint32_t> division_divisor;
    /// Argument of the last long sin() call (the special function "cossame").
    LongNumber last_sine_argument;
    /// Result of an operation whose target is also one of its operands.
    LongNumber alias_result;

    /// Working records, scratch arrays and cached constants of the elementary functions.
    LongFunctionState functions;
};

extern LongState long_state;

}  // namespace tl
