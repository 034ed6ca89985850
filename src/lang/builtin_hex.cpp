// builtin_hex.cpp — hex$: numbers as hexadecimal text in four fill modes.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "lang/builtin_support.h"
#include "lang/error_table.h"
#include "lang/lang_state.h"
#include "lang/scanner.h"
#include "longmath/long_blocks.h"
#include "longmath/long_convert.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"

namespace tl {

int fn_hex_handler(Item* p, int count) {
    double n = 0.0;
    double fill = -1.0;
    int r = double_parameter(p[0], n);
    if (r >= 0 && count == 2) r = double_parameter(p[1], fill);
    if (r < 0) return r;
    if (fill != -1.0 && fill != 0.0 && fill != 1.0 && fill != 2.0) return fail_at(err_hexs_invalid_fill_value, p[1]);
    char text[32];
    if (fill == 2.0) {  // the bits of the double itself
        std::uint64_t bits = 0;
        std::memcpy(&bits, &n, sizeof bits);
        std::snprintf(text, sizeof text, "%04X%04X%04X%04X", static_cast<unsigned>(bits >> 48),
                      static_cast<unsigned>((bits >> 32) & 0xFFFF), static_cast<unsigned>((bits >> 16) & 0xFFFF),
                      static_cast<unsigned>(bits & 0xFFFF));
        return text_result(text, std::strlen(text));
    }
    if (!(n >= -2147483648.0 && n <= 4294967295.0)) return fail_at(err_hexs_number_out_range_integers, p[0]);
    if (n < 0.0) n += 4294967296.0;  // two's complement
    if (n >= 4294967296.0) n = 4294967295.0;  // a tiny negative number rounds up to 2^32 when added
    const auto v = static_cast<std::uint32_t>(n);
    const unsigned high = v >> 16;
    const unsigned low = v & 0xFFFF;
    if (fill == -1.0) {
        std::snprintf(text, sizeof text, "%X", v);
    } else if (fill == 0.0) {
        std::snprintf(text, sizeof text, "%04X%04X", high, low);
    } else if (v < 65536) {
        std::snprintf(text, sizeof text, "    %4X", low);
    } else {
        std::snprintf(text, sizeof text, "%4X%04X", high, low);
    }
    return text_result(text, std::strlen(text));
}

}  // namespace tl
