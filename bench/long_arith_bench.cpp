// long_arith_bench.cpp — long multiply and divide at growing precisions.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <random>
#include <string>

#include "longmath/long_arith.h"
#include "longmath/long_convert.h"
#include "longmath/long_state.h"

namespace {

using tl::LongNumber;

/// A random number with `digits` significant digits, parsed at that precision.
LongNumber random_operand(std::mt19937_64& rng, int digits) {
    std::string text(static_cast<std::size_t>(digits), '0');
    for (char& c : text) c = static_cast<char>('0' + rng() % 10);
    text[0] = static_cast<char>('1' + rng() % 9);
    text.back() = '7';
    LongNumber n;
    if (tl::long_from_text("." + text, n, false) != 0) std::abort();
    return n;
}

void set_precision(int digits) {
    tl::long_state = tl::LongState{};
    tl::long_state.mode.precision = digits;
}

void BM_LongMultiply(benchmark::State& state) {
    const int digits = static_cast<int>(state.range(0));
    set_precision(digits);
    std::mt19937_64 rng(1);
    const LongNumber a = random_operand(rng, digits);
    const LongNumber b = random_operand(rng, digits);
    LongNumber r;
    for (auto _ : state) {
        if (tl::long_multiply(a, b, r) != 0) state.SkipWithError("multiply failed");
        benchmark::DoNotOptimize(r.blocks.data());
    }
}

void BM_LongDivide(benchmark::State& state) {
    const int digits = static_cast<int>(state.range(0));
    set_precision(digits);
    std::mt19937_64 rng(2);
    LongNumber a = random_operand(rng, digits);
    LongNumber b = random_operand(rng, digits);
    LongNumber q;
    for (auto _ : state) {
        if (tl::long_divide(a, b, q) != 0) state.SkipWithError("divide failed");
        benchmark::DoNotOptimize(q.blocks.data());
    }
}

BENCHMARK(BM_LongMultiply)->Arg(50)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_LongDivide)->Arg(50)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
