// scan_test_support.h — a fixture that points the scanner at a statement text.
#pragma once

#include <string>

#include "lang/evaluator.h"
#include "lang/lang_state.h"
#include "lang/scanner.h"
#include "test_support.h"

namespace tl::test {

class ScanTest : public CoreTest {
protected:
    std::string line;

    /// Makes `text` the current statement (the fixture keeps the text alive).
    void on(const std::string& text) {
        line = text;
        begin_statement(line.c_str());
    }
    int scan(const std::string& text, Item& item, int mode = 0) {
        on(text);
        return get_item(item, mode);
    }
    int eval(const std::string& text, int mode = 0) {
        on(text);
        return evaluate_expression(mode);
    }
    /// Evaluates and returns the double result (the kind must be 2).
    double value_of(const std::string& text) {
        const int k = eval(text);
        EXPECT_EQ(k, kind_double) << text << "\n" << fe.output;
        return lang.scan.result;
    }
    /// Evaluates and returns the text result (the kind must be 3).
    std::string text_of(const std::string& text) {
        const int k = eval(text);
        EXPECT_EQ(k, kind_string) << text << "\n" << fe.output;
        return lang.scan.buffer;
    }
    /// The report printed for a failure at `column` of `text` with `message`.
    static std::string report(const std::string& text, int column, const std::string& message) {
        return "\n" + text + "\n" + std::string(static_cast<std::size_t>(column), ' ') + "*\nERROR - " + message + "\n";
    }
};

}  // namespace tl::test
