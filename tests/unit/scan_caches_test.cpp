// Tests of the look-up caches: the name cache (keywords, variables, arrays),
// the number-constant cache, the statement-number index and the element
// reference text. Each cached answer must be the one the direct look-up gives,
// also after the tables or the program text change under it.
#include <cstdio>
#include <cstring>
#include <string>

#include "exec/arrays.h"
#include "exec/exec_state.h"
#include "exec/memory_areas.h"
#include "exec/program_store.h"
#include "exec/run_loop.h"
#include "exec/variables.h"
#include "lang/keyword_tables.h"
#include "lang/scan_caches.h"
#include "lang/scanner.h"
#include "scan_test_support.h"

namespace tl::test {
namespace {

class ScanCachesTest : public ScanTest {
protected:
    void TearDown() override {
        exec.caches_enabled = true;
        ScanTest::TearDown();
    }
    /// Runs `program` as the loaded program and returns what it printed.
    std::string run(const std::string& program) {
        fe.take();
        EXPECT_TRUE(replace_program_text(program));
        (void)run_command_line("run");
        return fe.take();
    }
    std::string command(const std::string& line) {
        fe.take();
        (void)run_command_line(line.c_str());
        return fe.take();
    }
    /// The output of `program` with the caches on and off; both must agree.
    std::string run_both_ways(const std::string& program) {
        exec.caches_enabled = true;
        const std::string cached = run(program);
        const std::string cached_again = run(program);  // the second run meets warm caches
        start();
        exec.caches_enabled = false;
        const std::string direct = run(program);
        exec.caches_enabled = true;
        EXPECT_EQ(cached, direct) << program;
        EXPECT_EQ(cached_again, direct) << program;
        return direct;
    }
};

TEST_F(ScanCachesTest, ProgramsPrintTheSameWithAndWithoutCaches) {
    const char* programs[] = {
        "s = 0\r\nfor i = 1 to 10\r\n  s = s + i * 0.5 - i / 4\r\nnext\r\nprint s\r\n",
        "x = -0.5: y = - -2.5: z = -1e3\r\nprint x; y; z; -x\r\n",
        "print 1; 0.50; 1e2; 12345678901234567890\r\n",
        "dim a(5)\r\nfor i = 0 to 4: a(i) = i * i: next\r\nprint a(2) + a(4); len(\"abc\"); pi > 3\r\n",
        "n = 3\r\n10 gosub 100\r\nif n < 10 then goto 10\r\nprint n: end\r\n100 n = n * 2: return\r\n",
        "a$ = \"x\": for k = 1 to 3: a$ = a$ + chr$(64 + k): next: print a$; instr(a$, \"B\")\r\n",
    };
    for (const char* p : programs) run_both_ways(p);
    // Not merely equal: the values themselves.
    EXPECT_NE(run_both_ways(programs[0]).find("13.75"), std::string::npos);
    EXPECT_NE(run_both_ways(programs[1]).find("-0.5"), std::string::npos);
    EXPECT_NE(run_both_ways(programs[2]).find("12345678901234567890"), std::string::npos);
    EXPECT_NE(run_both_ways(programs[4]).find("12"), std::string::npos);
}

TEST_F(ScanCachesTest, ANumberChangedAtTheSamePlaceIsReadAgain) {
    exec.caches_enabled = true;
    EXPECT_NE(run("x = 12: print x\r\n").find("12"), std::string::npos);
    // Same offset, same first characters, a different constant.
    EXPECT_NE(run("x = 15: print x\r\n").find("15"), std::string::npos);
    EXPECT_NE(run("x = 1: print x\r\n").find(" 1\n"), std::string::npos);
    EXPECT_NE(run("x = 19: print x\r\n").find("19"), std::string::npos);
    EXPECT_NE(run("x = 1.5e2: print x\r\n").find("150"), std::string::npos);
}

TEST_F(ScanCachesTest, ANegatedConstantKeepsItsValueAndText) {
    EXPECT_DOUBLE_EQ(value_of("-0.5 * 2"), -1.0);
    EXPECT_DOUBLE_EQ(value_of("-0.5 * 2"), -1.0);  // now from the cache
    EXPECT_DOUBLE_EQ(value_of("- -4 + 1"), 5.0);
    EXPECT_DOUBLE_EQ(value_of("- -4 + 1"), 5.0);
}

TEST_F(ScanCachesTest, TheLastConstantIsKnownByItsTextOnly) {
    exec.caches_enabled = true;  // also when the suite runs with the caches off
    std::string program = "x = 0.25\r\n";
    run(program);
    double v = 0;
    EXPECT_TRUE(known_number_text("0.25", v));
    EXPECT_EQ(v, 0.25);
    EXPECT_FALSE(known_number_text("0.250", v));
    EXPECT_FALSE(known_number_text("", v));
    exec.caches_enabled = false;
    EXPECT_FALSE(known_number_text("0.25", v));
}

TEST_F(ScanCachesTest, VariablesMadeAfterAMissAreFound) {
    exec.caches_enabled = true;
    EXPECT_EQ(command("print qq"), "            0\n");
    EXPECT_EQ(command("qq = 4"), "Result: qq =                       4  ************\n");
    EXPECT_EQ(command("print qq"), "            4\n");
}

TEST_F(ScanCachesTest, ClearAndEraseDoNotLeaveStaleEntries) {
    command("first = 1: second = 2");
    EXPECT_EQ(command("print first; second"), "            1            2\n");
    command("clear");
    // The same count of variables again, in the other order.
    command("second = 20: first = 10");
    EXPECT_EQ(command("print first; second"), "           10           20\n");
    EXPECT_EQ(find_variable("first"), 1);

    command("dim p(3): dim q(3): q(1) = 5");
    EXPECT_EQ(command("print q(1)"), "            5\n");
    command("erase p");
    command("dim p(2): p(1) = 7");  // p is now the second entry, q the first
    EXPECT_EQ(command("print q(1); p(1)"), "            5            7\n");
}

TEST_F(ScanCachesTest, StatementHeadsFollowTheTablesAndTheText) {
    // A statement's first name is taken from the head cache after the first
    // round; it must be found again when the tables change under it.
    const std::string erased = run_both_ways(
        "dim n(3)\r\nfor k = 1 to 3\r\n  n(k) = k * 10: t = n(k)\r\n  print t\r\n"
        "  erase n: dim n(2), m(4)\r\n  m(k) = k\r\nnext\r\nprint \"not reached\"\r\n");
    // n(2) after the DIM of n(2) in the first round.
    EXPECT_NE(erased.find("10\n\nn(2)\n\n  n(k) = k * 10: t = n(k)\n    *\nERROR - Subscript out of range"),
              std::string::npos)
        << erased;
    EXPECT_EQ(erased.find("not reached"), std::string::npos) << erased;

    // First passed over, then run: an element, a variable and a keyword.
    EXPECT_NE(run_both_ways("dim n(4)\r\nfor k = 1 to 3\r\n  if k > 1 then n(k) = k: s = s + k: print k;\r\n"
                            "next\r\nprint: print n(2) + n(3); s\r\n")
                  .find("            2            3\n            5            5\n"),
              std::string::npos);

    // A name that is an argument inside a definition and a variable outside it.
    EXPECT_NE(run_both_ways("def f(a)\r\n  y = a * 2\r\n  return y\r\ndef end\r\na = 5\r\n"
                            "for k = 1 to 3: y = f(k) + a: next\r\nprint y; a\r\n")
                  .find("11            5"),
              std::string::npos);

    // Keywords in any letter case, an assignment to a whole array refused.
    const std::string mixed = run_both_ways(
        "dim q(2)\r\nFor k = 1 TO 2: Print k;: NEXT: print\r\nfor k = 1 to 2\r\n  q = k\r\nnext\r\n");
    EXPECT_NE(mixed.find("1            2"), std::string::npos) << mixed;
    EXPECT_NE(mixed.find("\n  q = k\n  *\nERROR - Invalid Statement.\n"), std::string::npos) << mixed;

    // Another program at the same places: a variable where a keyword was.
    exec.caches_enabled = true;
    EXPECT_NE(run("next_ = 1\r\nfor k = 1 to 2: print k;: next: print\r\n").find("\n            1            2\n"),
              std::string::npos);
    EXPECT_NE(run("next_ = 1\r\nfor k = 1 to 2: next_ = k: next\r\nprint next_\r\n").find("\n            2\n"),
              std::string::npos);
    EXPECT_NE(run("nextx = 1\r\nfor k = 1 to 2: nextx = k: next\r\nprint nextx\r\n").find("\n            2\n"),
              std::string::npos);
}

TEST_F(ScanCachesTest, LinesAreSplitAgainWhenTheTextChanges) {
    // Lines cut by NUL bytes, lines ended by CR alone, and a program replaced
    // by one whose lines end at other places.
    run_both_ways(std::string("for k = 1 to 2\r\n  print k; \"a", 27) + "\0b\"\r\nnext\r\nprint \"end\"\r\n");
    run_both_ways("for k = 1 to 2\r  print k\rnext\r\nprint \"end\"\n");
    exec.caches_enabled = true;
    EXPECT_NE(run("for k = 1 to 2\r\nprint k;\r\nnext: print\r\n").find("\n            1            2\n"),
              std::string::npos);
    EXPECT_NE(run("for k = 1 to 2\r\nprint k * 10;\r\nnext: print\r\n").find("\n           10           20\n"),
              std::string::npos);
    EXPECT_NE(run("for k = 1 to 2\r\nprint k\r\n:next\r\n").find("\n            1\n            2\n"),
              std::string::npos);
}

TEST_F(ScanCachesTest, TheNameCacheGivesTheTableSlots) {
    exec.caches_enabled = true;
    const char* names[] = {"print", "PRINT", "and", "list", "mid$", "pi", "sin", "longpi", "inkey$", "zz", "printformat$$"};
    for (const char* n : names) {
        NameCacheEntry* e = cached_name(n);
        ASSERT_NE(e, nullptr) << n;
        const KeywordSlots direct = look_up_keyword_slots(n);
        EXPECT_EQ(e->slots.logical, direct.logical) << n;
        EXPECT_EQ(e->slots.command, direct.command) << n;
        EXPECT_EQ(e->slots.statement, direct.statement) << n;
        EXPECT_EQ(e->slots.predefined, direct.predefined) << n;
        EXPECT_EQ(e->slots.function, direct.function) << n;
        EXPECT_EQ(e->slots.special, direct.special) << n;
    }
    EXPECT_EQ(cached_name("print")->slots.statement, stmt_print);
    EXPECT_EQ(cached_name("Sin")->slots.function, fn_sin);
    EXPECT_EQ(cached_name(std::string(cached_text_max + 1, 'a')), nullptr);
    exec.caches_enabled = false;
    EXPECT_EQ(cached_name("print"), nullptr);
}

TEST_F(ScanCachesTest, StatementIndexAgreesWithTheSearch) {
    auto fill = [](std::initializer_list<std::uint32_t> numbers) {
        areas.statement_number_count = 0;
        ++areas.statement_numbers_generation;
        for (std::uint32_t n : numbers) {
            StatementNumberEntry& e = areas.statement_numbers[areas.statement_number_count];
            e = StatementNumberEntry{};
            e.number = n;
            e.program_offset = areas.statement_number_count * 10;
            ++areas.statement_number_count;
        }
    };
    auto check = [](std::uint32_t number) {
        exec.caches_enabled = false;
        const int direct = find_statement_entry(number);
        exec.caches_enabled = true;
        EXPECT_EQ(find_statement_entry(number), direct) << number;
        return direct;
    };
    fill({10, 20, 30, 20, 5});  // a repeated number gives its first entry
    EXPECT_EQ(check(20), 1);
    EXPECT_EQ(check(5), 4);
    EXPECT_EQ(check(7), -1);
    fill({30, 10, 20, 40, 50});  // the same count, other entries
    EXPECT_EQ(check(10), 1);
    EXPECT_EQ(check(40), 3);
    // Entries added one by one, as the check pass records them.
    fill({});
    for (std::uint32_t i = 1; i <= 300; ++i) {
        areas.statement_numbers[areas.statement_number_count++] = StatementNumberEntry{i * 7, i, 0, 0};
        EXPECT_EQ(check(i * 7), static_cast<int>(i - 1));
        EXPECT_EQ(check(i * 7 + 1), -1);
    }
}

TEST_F(ScanCachesTest, GotoFindsLinesAfterTheProgramChanges) {
    EXPECT_NE(run("goto 20\r\n10 print \"ten\": end\r\n20 print \"twenty\"\r\n").find("twenty"), std::string::npos);
    EXPECT_NE(run("goto 20\r\n20 print \"now first\": end\r\n10 print \"ten\"\r\n").find("now first"),
              std::string::npos);
}

TEST_F(ScanCachesTest, ElementReferencesReadAsPrintfWritesThem) {
    const double dims[] = {5, 5, 5};
    ASSERT_EQ(dimension_array("arr", 3, dims, false), kind_double);
    const ArrayEntry& a = *find_array("arr");
    char out[160];
    const double ints[] = {0, -1, 2147483647.0};
    format_element_reference(a, 3, ints, out, sizeof out);
    EXPECT_STREQ(out, "arr(0,-1,2147483647)");
    const double fractions[] = {2.9, -0.5};
    format_element_reference(a, 2, fractions, out, sizeof out);
    EXPECT_STREQ(out, "arr(2,0)");
    const double large[] = {1e10, 3};
    format_element_reference(a, 2, large, out, sizeof out);
    EXPECT_STREQ(out, "arr(1e+10,3)");
    char small[6];
    format_element_reference(a, 1, ints, small, sizeof small);
    EXPECT_STREQ(small, "arr(0");  // cut as snprintf cuts
}

}  // namespace
}  // namespace tl::test
