// long_functions_bench.cpp — the long elementary functions at growing precisions.
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "longmath/long_convert.h"
#include "longmath/long_functions.h"
#include "longmath/long_state.h"

namespace {

using tl::LongNumber;

LongNumber number(const char* text) {
    LongNumber n;
    if (tl::long_from_text(text, n, false) != 0) std::abort();
    return n;
}

void set_precision(int digits) {
    tl::long_state = tl::LongState{};
    tl::long_state.mode.precision = digits;
}

/// Runs `f` with the constants forgotten before every call, so that each
/// iteration computes everything it needs.
template <typename F>
void run(benchmark::State& state, F f) {
    set_precision(static_cast<int>(state.range(0)));
    LongNumber r;
    for (auto _ : state) {
        tl::clear_long_constants();
        if (f(r) != 0) state.SkipWithError("the function failed");
        benchmark::DoNotOptimize(r.blocks.data());
    }
}

void BM_Pi(benchmark::State& state) { run(state, [](LongNumber& r) { return tl::long_pi(r); }); }
void BM_E(benchmark::State& state) { run(state, [](LongNumber& r) { return tl::long_e(r); }); }
void BM_Sqrt2(benchmark::State& state) {
    const LongNumber two = number("2");
    run(state, [&](LongNumber& r) { return tl::long_sqrt(two, r); });
}
void BM_Ln2(benchmark::State& state) {
    const LongNumber two = number("2");
    run(state, [&](LongNumber& r) { return tl::long_log(two, r); });
}
void BM_Exp1(benchmark::State& state) {
    const LongNumber one = number("1");
    run(state, [&](LongNumber& r) { return tl::long_exp(one, r); });
}
void BM_Sin1(benchmark::State& state) {
    const LongNumber one = number("1");
    run(state, [&](LongNumber& r) { return tl::long_sin(one, false, r); });
}
void BM_Atn1(benchmark::State& state) {
    const LongNumber x = number("0.7");
    run(state, [&](LongNumber& r) { return tl::long_atn(x, false, r); });
}

BENCHMARK(BM_Pi)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_E)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Sqrt2)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Ln2)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Exp1)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Sin1)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Atn1)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
