// long_convert_in.cpp — a long number from an evaluated Item.
#include "exec/string_space.h"
#include "lang/item.h"
#include "longmath/long_convert.h"
#include "longmath/long_space.h"
#include "longmath/long_timing.h"

namespace tl {

int long_convert_in(const Item& item, LongNumber& dest, bool report) {
    const auto start = long_timer_start();
    int rc;
    switch (item.kind) {
        case kind_long: {
            const LongNumber& src = long_at(item.word);
            long_copy(src, dest);
            rc = 0;
            break;
        }
        case kind_integer:
        case kind_double: rc = long_from_double(item.number, dest, report); break;
        default: rc = long_from_text(temp_string_at(item.word), dest, report); break;
    }
    long_timer_report("long_convert_in Time:      ", start);
    return rc;
}

}  // namespace tl
