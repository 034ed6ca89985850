// long_mode.h — the global long-number mode: floating-point precision or integer mode.
#pragma once

namespace tl {

struct LongMode {
    bool integer_mode = false;  ///< integer mode keeps every integer digit and drops fractions
    int precision = 50;         ///< digits kept in floating-point mode
    int saved_precision = 50;   ///< last precision given explicitly
    bool rounding = true;       ///< round to nearest at the precision limit, else truncate
    bool optmul = false;        ///< keep every partial product in multiplication
    bool debug_display = false; ///< the long-number debug display (DEBUG "long")
    bool oldconvert = false;    ///< long-to-double through the C library
    bool matherrok = false;     ///< math errors set an indicator instead of stopping
    bool timing = false;        ///< print the "Calc. Time" lines
    bool peek_values = false;   ///< publish a number's internals into the peek variables (DEBUG "lnrat")
};

}  // namespace tl
