// long_mode.h — the global long-number mode: floating-point precision or integer mode.
#pragma once

namespace tl {

/// Entries of the LONGMATH operations table (the names DEBUG "timer" takes).
inline constexpr int long_operation_count = 15;

struct LongMode {
    bool integer_mode = false;  ///< integer mode keeps every integer digit and drops fractions
    int precision = 50;         ///< digits kept in floating-point mode
    int saved_precision = 50;   ///< last precision given explicitly
    bool rounding = true;       ///< round to nearest at the precision limit, else truncate
    bool optmul = false;        ///< keep every partial product in multiplication
    bool debug_display = false; ///< the long-number debug display (DEBUG "long")
    bool oldconvert = false;    ///< long-to-double through the C library
    bool matherrok = false;     ///< math errors set an indicator instead of stopping
    bool timing = false;        ///< some operation's timer is on (any entry of `timed`)
    /// Per-operation timers, by the index of the LONGMATH operations table
    /// (atn, sqr, longpi, longe, sin, exp, log, root, power, mult, div,
    /// factorial, mod, half, convert): the operation prints its "Calc. Time".
    bool timed[long_operation_count] = {};
    bool peek_values = false;   ///< publish a number's internals into the peek variables (DEBUG "lnrat")
};

}  // namespace tl
