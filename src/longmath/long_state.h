// long_state.h — the long-number subsystem's process-wide state in one record.
#pragma once

#include <cstdint>
#include <vector>

#include "longmath/long_arith.h"
#include "longmath/long_mode.h"
#include "longmath/long_space.h"

namespace tl {

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
};

extern LongState long_state;

}  // namespace tl
