// long_state.h — the long-number subsystem's process-wide state in one record.
#pragma once

#include <vector>

#include "longmath/long_space.h"

namespace tl {

struct LongState {
    LongSpaces spaces;
    /// Compaction target while a houseclean relocates long numbers.
    std::vector<LongNumber> compacted;
    std::uint32_t compacted_count = 0;
};

extern LongState long_state;

}  // namespace tl
