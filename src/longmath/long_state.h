// long_state.h — the long-number subsystem's process-wide state in one record.
#pragma once

#include <vector>

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
};

extern LongState long_state;

}  // namespace tl
