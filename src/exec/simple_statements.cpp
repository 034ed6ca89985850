// simple_statements.cpp — DEGREES, RADIANS and RANDOMIZE.
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "exec/commands.h"
#include "exec/exec_state.h"
#include "exec/statements.h"
#include "lang/error_table.h"
#include "lang/evaluator.h"
#include "lang/item.h"
#include "lang/lang_state.h"
#include "lang/random_numbers.h"
#include "lang/scanner.h"
#include "longmath/long_convert.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

/// A seed from the clock (never 0, which is not a valid seed).
std::uint32_t clock_seed() {
    const auto ticks = std::chrono::system_clock::now().time_since_epoch().count();
    const auto t = static_cast<std::uint64_t>(ticks);
    const auto seed = static_cast<std::uint32_t>(t ^ (t >> 32));
    return seed == 0 ? 1 : seed;
}

bool is_timer_word(const char* text, std::size_t length) {
    if (length != 5) return false;
    for (std::size_t i = 0; i < 5; ++i) {
        char c = text[i];
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        if (c != "timer"[i]) return false;
    }
    return true;
}

/// The bare word TIMER as the whole operand.
bool take_timer_word() {
    const char* p = lang.scan.position;
    const char* q = p;
    while (q < lang.scan.end && ((*q >= 'a' && *q <= 'z') || (*q >= 'A' && *q <= 'Z'))) ++q;
    if (!is_timer_word(p, static_cast<std::size_t>(q - p))) return false;
    const char* after = q;
    while (after < lang.scan.end && (*after == ' ' || *after == '\t')) ++after;
    if (after < lang.scan.end && *after != ':' && *after != 0) return false;
    lang.scan.position = q;
    return true;
}

int set_angle_unit(bool degrees) {
    if (!at_statement_end()) return error_at_column(err_extra_characters_on_line, scan_column());
    if (!passing_over()) lang.degrees = degrees;
    return 0;
}

}  // namespace

int do_degrees() { return set_angle_unit(true); }
int do_radians() { return set_angle_unit(false); }

/// RANDOMIZE n | TIMER | "timer"
int do_randomize() {
    if (at_statement_end()) return error_at_column(err_randomize_missing_number_timer, scan_column());
    if (take_timer_word()) {
        if (!passing_over()) seed_random(clock_seed());
        return 0;
    }
    const int column = scan_column();
    const int kind = evaluate_expression(0);
    if (kind < 0) return kind;
    double x = 0.0;
    switch (kind) {
        case kind_string:
            if (!is_timer_word(lang.scan.buffer, std::strlen(lang.scan.buffer)))
                return error_at_column(err_randomize_missing_number_timer, column);
            if (!passing_over()) seed_random(clock_seed());
            return 0;
        case kind_double: x = lang.scan.result; break;
        case kind_numeric_text: x = std::strtod(lang.scan.buffer, nullptr); break;
        case kind_long:
            if (long_to_double(long_state.work, x, false) < 0) x = HUGE_VAL;
            break;
        default: return error_at_column(err_randomize_missing_number_timer, column);
    }
    if (passing_over()) return 0;
    std::uint32_t seed = 0;
    if (!random_seed_of(x, seed)) return error_at_column(err_randomize_number_out_range, column);
    seed_random(seed);
    return 0;
}

}  // namespace tl
