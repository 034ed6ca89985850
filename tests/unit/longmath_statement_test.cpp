// Tests of the long-number statements that transcripts cannot pin down: the
// per-operation timers (their lines carry times) and the text store into a
// function argument and with the single-string flag.
#include <string>

#include "exec/exec_state.h"
#include "exec/longmath_statement.h"
#include "exec/run_loop.h"
#include "lang/error_table.h"
#include "lang/keyword_tables.h"
#include "lang/lang_state.h"
#include "lang/predefined_variables.h"
#include "exec/memory_areas.h"
#include "exec/variables.h"
#include "longmath/long_state.h"
#include "longmath/long_timing.h"
#include "test_support.h"

namespace tl::test {
namespace {

using LongStatements = CoreTest;

int count_of(const std::string& text, const std::string& part) {
    int n = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++n;
    return n;
}

TEST_F(LongStatements, TimerOfOneOperationPrintsOnlyItsLabel) {
    ASSERT_EQ(run_command_line("debug timer mult"), 0);
    EXPECT_TRUE(long_timer_on(lop_mult));
    fe.take();
    ASSERT_EQ(run_command_line("x = long(3) * long(4) / long(5)"), 0);
    std::string out = fe.take();
    EXPECT_EQ(count_of(out, "Mult Calc. Time: "), 1) << out;
    EXPECT_EQ(count_of(out, "Div Calc. Time: "), 0) << out;
    EXPECT_NE(out.find(" ms.\n"), std::string::npos);

    ASSERT_EQ(run_command_line("debug timer div"), 0);
    ASSERT_EQ(run_command_line("debug timer mult, off"), 0);
    fe.take();
    ASSERT_EQ(run_command_line("x = long(3) * long(4) / long(5)"), 0);
    out = fe.take();
    EXPECT_EQ(count_of(out, "Mult Calc. Time: "), 0) << out;
    EXPECT_EQ(count_of(out, "Div Calc. Time: "), 1) << out;

    ASSERT_EQ(run_command_line("debug off"), 0);
    EXPECT_FALSE(long_state.mode.timing);
    fe.take();
    ASSERT_EQ(run_command_line("x = long(3) * long(4) / long(5)"), 0);
    EXPECT_EQ(fe.take().find("Calc. Time"), std::string::npos);
}

TEST_F(LongStatements, LabelsBelongToTheirOperations) {
    EXPECT_EQ(long_timer_operation("PI Calc. Time:"), lop_longpi);
    EXPECT_EQ(long_timer_operation("E  Calc. Time:"), lop_longe);
    EXPECT_EQ(long_timer_operation("LN stage  Calc. Time:"), lop_log);
    EXPECT_EQ(long_timer_operation("long_convert_in Time:      "), lop_convert);
    EXPECT_EQ(long_timer_operation("old long-to-double Calc. Time: "), lop_convert);
    EXPECT_EQ(long_timer_operation("\"^\"   Calc. Time: "), lop_power);
    EXPECT_EQ(long_timer_operation("Factorial Calc. Time: "), lop_factorial);
    EXPECT_EQ(long_timer_operation("Something else"), -1);
}

TEST_F(LongStatements, TimerSyntaxOnlyWhenPassedOver) {
    ASSERT_EQ(run_command_line("if 0 then debug timer sqr"), 0);
    EXPECT_FALSE(long_timer_on(lop_sqr));
    fe.take();
    EXPECT_LT(run_command_line("if 0 then debug timer nosuch"), 0);
    EXPECT_NE(fe.take().find("ERROR - Invalid DEBUG function."), std::string::npos);
}

TEST_F(LongStatements, StoreIntoArgumentAndSingleStringFlag) {
    Item arg;
    arg.kind = kind_argument;
    const std::string fits(255, '7');
    EXPECT_EQ(store_long_text(arg, fits, false), kind_string);
    EXPECT_EQ(std::string(lang.scan.buffer), fits);
    EXPECT_EQ(store_long_text(arg, fits + "7", false), -err_long_output_too_long_string);

    ASSERT_EQ(run_command_line("dim a$(3)"), 0);
    ASSERT_EQ(run_command_line("a$(2) = \"old\""), 0);
    Item array;
    array.kind = kind_string_array;
    array.array = &areas.arrays[0];
    fe.take();
    EXPECT_EQ(store_long_text(array, fits + "8", true), -err_long_output_too_long_string);
    EXPECT_EQ(store_long_text(array, fits + "8", false), kind_string);
    ASSERT_EQ(run_command_line("print a$(1); len(a$(2))"), 0);
    EXPECT_NE(fe.take().find("8            0"), std::string::npos);

    Item number;
    number.kind = kind_double;
    EXPECT_EQ(store_long_text(number, "1", false), -err_long_first_item_dest_string);
}

TEST_F(LongStatements, FloatKeepsFloatingptlengthCurrent) {
    ASSERT_EQ(run_command_line("float 64"), 0);
    EXPECT_EQ(lang.predefined[pre_floatingptlength].number, 64);
    ASSERT_EQ(run_command_line("integer"), 0);
    ASSERT_EQ(run_command_line("float 40"), 0);
    ASSERT_EQ(run_command_line("float"), 0);
    EXPECT_EQ(long_state.mode.precision, 40);
    EXPECT_FALSE(long_state.mode.integer_mode);
    fe.take();
    EXPECT_LT(run_command_line("float 1e7"), 0);
    EXPECT_NE(fe.take().find("ERROR - Invalid floating point length"), std::string::npos);
    EXPECT_EQ(long_state.mode.precision, 40);
}

// The operations timed by their callers print one label, whether the builtin
// function or the LONG statement runs them.
TEST_F(LongStatements, BuiltinsAndTheLongStatementPrintOneTimingLine) {
    // The text before the time: the label, then the "%8.3f" field's blanks.
    auto label_of = [&](const char* line, const std::string& label) {
        fe.take();
        EXPECT_EQ(run_command_line(line), 0) << fe.output;
        const std::string out = fe.take();
        const std::size_t at = out.find(label);
        if (at == std::string::npos) return std::string("(none) ") + out;
        return out.substr(at, out.find_first_of("0123456789", at) - at);
    };
    for (const char* timer : {"debug timer half", "debug timer root", "debug timer factorial", "debug timer mult"})
        ASSERT_EQ(run_command_line(timer), 0);
    // Times below 10 ms: the label, one blank, then the number's 3 blanks.
    EXPECT_EQ(label_of("long m$, mult, 3, 4", "Mult"), "Mult Calc. Time:     ");
    EXPECT_EQ(label_of("x = half(long(3))", "Half"), "Half Calc. Time:     ");
    EXPECT_EQ(label_of("long h$, half, 3", "Half"), "Half Calc. Time:     ");
    EXPECT_EQ(label_of("x = root(long(3), 3)", "ROOT"), "ROOT Calc. Time:     ");
    EXPECT_EQ(label_of("long r$, root, 3, 3", "ROOT"), "ROOT Calc. Time:     ");
    EXPECT_EQ(label_of("x = factorial(long(30))", "Factorial"), "Factorial Calc. Time:     ");
    EXPECT_EQ(label_of("long f$, factorial, 30", "Factorial"), "Factorial Calc. Time:     ");
}

// Every timed operation prints its line in one format: the label, a blank,
// then the time in a field of 8.
TEST_F(LongStatements, EveryTimingLineHasOneFormat) {
    for (const char* op : {"atn", "sqr", "longpi", "longe", "sin", "exp", "log", "root", "power", "mult", "div",
                           "factorial", "mod", "half"}) {
        ASSERT_EQ(run_command_line((std::string("debug timer ") + op).c_str()), 0);
    }
    fe.take();
    for (const char* line : {"long a$, atn, 0.5", "long a$, sqr, 2", "long a$, longpi", "long a$, longe",
                             "long a$, sin, 1", "long a$, exp, 2", "long a$, log, 2", "long a$, root, 2, 3",
                             "long a$, power, 2, 1.5", "long a$, mod, 7, 3", "long a$, half, 3",
                             "long a$, factorial, 20", "x = sqr(long(2)) + half(long(3)) + root(long(5), 3)",
                             "x = long(2) ^ long(1.5) + sin(long(1)) + exp(long(1)) + log(long(3)) + atn(long(2))"}) {
        ASSERT_EQ(run_command_line(line), 0) << line << fe.output;
    }
    const std::string out = fe.take();
    int lines = 0;
    for (std::size_t at = out.find("Calc. Time:"); at != std::string::npos; at = out.find("Calc. Time:", at + 1)) {
        const std::size_t end = out.find('\n', at);
        const std::string tail = out.substr(at + 11, end - at - 11);  // after "Calc. Time:"
        const std::size_t begin = out.rfind('\n', at) + 1;
        const std::string label = out.substr(begin, at - begin);
        if (label.rfind("Div       ", 0) == 0 || label.rfind("LN stage", 0) == 0) continue;  // the debug display's
        EXPECT_EQ(tail.size(), 1u + 1u + 8u + 4u) << "'" << out.substr(begin, end - begin) << "'";
        EXPECT_EQ(tail.substr(tail.size() - 4), " ms.") << tail;
        ++lines;
    }
    EXPECT_GE(lines, 20);
}

// Under DEBUG long every function shows the intermediate values it names.
TEST_F(LongStatements, TheFunctionsShowTheirNamedDumps) {
    auto labels_of = [&](const char* line) {
        fe.take();
        EXPECT_EQ(run_command_line(line), 0) << fe.output;
        const std::string out = fe.take();
        std::string labels = " ";
        for (std::size_t at = out.find("\n"); at != std::string::npos; at = out.find("\n", at + 1)) {
            const std::size_t colon = out.find(": blks=", at);
            if (colon == std::string::npos || colon > at + 6) continue;
            std::string label = out.substr(at + 1, colon - at - 1);
            while (!label.empty() && label.back() == ' ') label.pop_back();
            if (labels.find(" " + label + " ") == std::string::npos) labels += label + " ";
        }
        return labels;
    };
    auto has_all = [](const std::string& labels, std::initializer_list<const char*> names) {
        std::string missing;
        for (const char* n : names) {
            if (labels.find(std::string(" ") + n + " ") == std::string::npos) missing += std::string(n) + " ";
        }
        return missing;
    };
    ASSERT_EQ(run_command_line("debug long"), 0);
    EXPECT_EQ(has_all(labels_of("x = sqr(long(2))"), {"dd", "ds", "ddn", "dd2", "dsn", "qu1", "qux", "dif", "haf", "new"}), "");
    EXPECT_EQ(has_all(labels_of("x = sin(long(1.5))"), {"x1", "trm1", "term", "sin1", "cos1", "sin2", "cos2", "s1c2",
                                                        "c1s2", "sa+b", "c1c2", "s1s2", "ca+b", "sine"}),
              "");
    EXPECT_EQ(has_all(labels_of("x = exp(long(5))"), {"cln", "clg", "man", "nlg", "nln", "x1", "trm1", "term"}), "");
    EXPECT_EQ(has_all(labels_of("x = log(long(5))"), {"x sm", "chr", "chre", "ln10", "sum"}), "");
    EXPECT_EQ(has_all(labels_of("x = atn(long(0.3))"), {"x1", "powr", "term"}), "");
    // The display changes no result.
    for (const char* line : {"print sin(long(1.5))", "print sqr(long(2))", "print atn(long(0.3))"}) {
        ASSERT_EQ(run_command_line("debug long off"), 0);
        fe.take();
        ASSERT_EQ(run_command_line(line), 0);
        const std::string plain = fe.take();
        ASSERT_EQ(run_command_line("debug long"), 0);
        fe.take();
        ASSERT_EQ(run_command_line(line), 0);
        const std::string shown = fe.take();
        EXPECT_EQ(shown.substr(shown.rfind('\n', shown.size() - 2) + 1), plain) << line;
    }
}

// The peek values are doubles also in the long-default mode.
TEST_F(LongStatements, PeekValuesAreSetInTheLongDefaultMode) {
    ASSERT_EQ(run_command_line("long"), 0);
    ASSERT_EQ(run_command_line("debug lnrat"), 0);
    ASSERT_EQ(run_command_line("long m$, mult, 1234567, 1000"), 0);
    for (const char* name : {"peekbcdlength", "peekbcdsign", "peekbcdexponent", "peekbcdfirst8", "peekbcdlast8",
                             "peekbcdnextlast8"}) {
        const int i = find_variable(name);
        ASSERT_GE(i, 0) << name;
        EXPECT_EQ(variable_at(i).type, 2u) << name;
    }
    EXPECT_EQ(variable_at(find_variable("peekbcdlength")).value.number, 7);
    EXPECT_EQ(variable_at(find_variable("peekbcdexponent")).value.number, 10);
    EXPECT_EQ(variable_at(find_variable("peekbcdfirst8")).value.number, 12345670);
    fe.take();
    ASSERT_EQ(run_command_line("debug peekbcd long(\"-1e-30\")"), 0);
    ASSERT_EQ(run_command_line("print peekbcdsign; peekbcdexponent"), 0);
    EXPECT_EQ(fe.take(), "           -1          -29\n");
    // New variables are still long ones.
    ASSERT_EQ(run_command_line("y = 1"), 0);
    EXPECT_EQ(variable_at(find_variable("y")).type, 14u);
}

// A "//" comment ends every statement of the long numbers, as it ends others.
TEST_F(LongStatements, ACommentEndsTheStatement) {
    for (const char* line : {"long // c", "long off // c", "long y // c", "long z, w// c", "long q$, mult, 2, 3 // c",
                             "float 20 // c", "float // c", "integer // c", "float 30 // c", "debug long off // c",
                             "dim a(3) // c"}) {
        fe.take();
        EXPECT_EQ(run_command_line(line), 0) << line << "\n" << fe.output;
    }
    EXPECT_EQ(long_state.mode.precision, 30);
    EXPECT_GE(find_variable("w"), 0);
    // Text after the mark is not run.
    ASSERT_EQ(run_command_line("long v // , u"), 0);
    EXPECT_LT(find_variable("u"), 0);
    fe.take();
    EXPECT_LT(run_command_line("long v2 / c"), 0);  // a single "/" is no comment
}

// At the prompt "long(...)" starts an expression, whose answer is shown.
TEST_F(LongStatements, LongWithAParenthesisIsTheFunction) {
    fe.take();
    ASSERT_EQ(run_command_line("long(1) / 7"), 0) << fe.output;
    EXPECT_NE(fe.take().find(".14285714285714285714285714285714285714285714285714\n"), std::string::npos);
    ASSERT_EQ(run_command_line("long(3) + 1"), 0) << fe.output;
    EXPECT_NE(fe.take().find("\n4.\n"), std::string::npos);
    // With a blank it is read as a declaration.
    EXPECT_LT(run_command_line("long (3) + 1"), 0);
}

}  // namespace
}  // namespace tl::test
