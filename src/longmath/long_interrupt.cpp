// long_interrupt.cpp — the interruption check polled by long multiply and divide.
#include "longmath/long_arith.h"
#include "longmath/long_blocks.h"
#include "longmath/long_state.h"

namespace tl {

void set_long_interrupt_check(LongInterruptCheck check) { long_state.interrupt_check = check; }

int long_poll_interrupt(std::uint32_t& counter, std::uint32_t work, std::uint32_t limit) {
    counter += work;
    if (counter < limit) return 0;
    counter = 0;
    if (long_state.interrupt_check == nullptr) return 0;
    const int rc = long_state.interrupt_check();
    return rc < 0 ? rc : 0;
}

}  // namespace tl
