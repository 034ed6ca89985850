// statement_allocation_test.cpp — statements that repeat (a loop's steps) take
// no memory from the heap once they run: every operator new is counted.
#include <atomic>
#include <cstdlib>
#include <new>
#include <string>

#include "exec/run_loop.h"
#include "test_support.h"

namespace {

std::atomic<long> allocations{0};

}  // namespace

void* operator new(std::size_t size) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
    throw std::bad_alloc();
}

void operator delete(void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }

namespace tl::test {
namespace {

using StatementAllocation = CoreTest;

/// Heap allocations made while `line` runs at the prompt.
long allocations_of(RecordingFrontEnd& fe, const std::string& line) {
    fe.output.reserve(1 << 16);
    const long before = allocations.load();
    const int rc = run_command_line(line.c_str());
    const long made = allocations.load() - before;
    EXPECT_EQ(rc, 0) << line << "\n" << fe.output;
    return made;
}

/// The allocations of a loop of `steps` steps, after one run that warms up
/// the buffers it reuses.
long loop_allocations(RecordingFrontEnd& fe, const std::string& head, int steps) {
    const std::string line = head + std::to_string(steps) + " step s: next";
    (void)allocations_of(fe, line);
    return allocations_of(fe, line);
}

TEST_F(StatementAllocation, ALoopTakesNoMemoryPerStep) {
    ASSERT_EQ(run_command_line("long i, s"), 0);
    ASSERT_EQ(run_command_line("s = long(\"0.5\")"), 0);
    const long few = loop_allocations(fe, "for i = long(1) to ", 10);
    const long many = loop_allocations(fe, "for i = long(1) to ", 2000);
    EXPECT_EQ(many, few) << "a long FOR step allocates";

    ASSERT_EQ(run_command_line("t = 0.5"), 0);
    const long double_few = loop_allocations(fe, "for j = 1 to ", 10);
    const long double_many = loop_allocations(fe, "for j = 1 to ", 2000);
    EXPECT_EQ(double_many, double_few) << "a FOR step allocates";
}

}  // namespace
}  // namespace tl::test
