// Tests of the output line: print zones, ";", TAB, the width, WRITE, the
// choice of format and zone width, RANDOM and SERIAL records, file streams.
#include "exec/output_line.h"

#include <cstdio>
#include <initializer_list>
#include <string>

#include "exec/string_space.h"
#include "exec/variables.h"
#include "lang/error_table.h"
#include "lang/item.h"
#include "lang/lang_state.h"
#include "test_support.h"

namespace tl::test {
namespace {

/// One element of a statement: a TAB (kind 0) or an item, and the separator after it.
struct Piece {
    std::uint32_t kind;
    double x;
    const char* text;
    char separator;
};
Piece num(double x, char sep = 0) { return {kind_double, x, "", sep}; }
Piece str(const char* t, char sep = 0) { return {kind_string, 0, t, sep}; }
Piece lng(const char* t, char sep = 0) { return {kind_long, 0, t, sep}; }
Piece tab(double n) { return {kind_none, n, "", 0}; }

class OutputLineTest : public CoreTest {
protected:
    PrintSession s;

    /// Runs one PRINT (or WRITE) the way the item loop does; returns the first error or 0.
    int statement(int file, bool write_mode, std::initializer_list<Piece> pieces, const char* using_format = nullptr) {
        begin_print(s, file, write_mode);
        if (using_format != nullptr) {
            if (int rc = select_using_format(s, using_format); rc < 0) return rc;
        }
        bool written = false;
        for (const Piece& p : pieces) {
            begin_print_item(s);
            if (p.kind == kind_none) {
                if (int rc = set_tab_target(s, p.x); rc < 0) return rc;
                continue;
            }
            const int rc = write_print_item(s, p.kind, p.x, p.text);
            finish_print_item(s, p.separator == ';');
            written = true;
            if (rc < 0) return rc;
        }
        return end_print_line(s, written);
    }
    int print(std::initializer_list<Piece> pieces, const char* using_format = nullptr) {
        return statement(0, false, pieces, using_format);
    }
    int write(std::initializer_list<Piece> pieces) { return statement(0, true, pieces); }

    int variable(const char* name) {
        const int i = find_variable(name);
        if (i >= 0) return i;
        EXPECT_GT(create_variable(name, false), 0);
        return find_variable(name);
    }
    FileEntry& open_file(int file, std::uint32_t mode, std::uint32_t width) {
        FileEntry& f = areas.files[static_cast<std::size_t>(file)];
        f.open = 1;
        f.mode = mode;
        f.width = width;
        return f;
    }
    static std::string read_all(std::FILE* stream) {
        std::rewind(stream);
        char buffer[256] = {};
        std::string text(buffer, std::fread(buffer, 1, sizeof buffer, stream));
        std::fseek(stream, 0, SEEK_END);  // ready for more writing
        return text;
    }
};

const std::string b12(12, ' ');

TEST_F(OutputLineTest, ZonesSemicolonsAndOpenLines) {
    EXPECT_EQ(print({num(1, ','), num(2)}), 0);  // the 2's field starts at column 14
    EXPECT_EQ(print({num(1, ';'), num(2)}), 0);
    EXPECT_EQ(print({str("a", ','), str("b", ','), str("c")}), 0);
    EXPECT_EQ(fe.take(), b12 + "1 " + b12 + "2\n" + b12 + "1" + b12 + "2\na" + std::string(13, ' ') + "b" +
                             std::string(13, ' ') + "c\n");

    EXPECT_EQ(print({str("a", ';')}), 0);
    EXPECT_EQ(fe.take(), "a");  // shown at once, the line stays open
    EXPECT_EQ(print({str("b", ','), str("c")}), 0);  // continues: no zone move for "b"
    EXPECT_EQ(print({str("d", ';')}), 0);
    EXPECT_EQ(print({}), 0);  // a bare PRINT ends the open line ...
    EXPECT_EQ(print({}), 0);  // ... or prints an empty one
    EXPECT_EQ(fe.take(), "b" + b12 + "c\nd\n\n");
}

TEST_F(OutputLineTest, TabPositions) {
    EXPECT_EQ(print({tab(20), str("x")}), 0);
    EXPECT_EQ(print({str("abcdef", ';'), tab(3.9), str("x", ';'), tab(4), str("y")}), 0);  // behind: new line
    EXPECT_EQ(print({str("ab", ';'), tab(0), str("c")}), 0);  // no position: the zone rule applies
    EXPECT_EQ(print({str("a", ';'), tab(1e300), str("b")}), 0);
    EXPECT_EQ(fe.take(), std::string(19, ' ') + "x\nabcdef\n  xy\nab" + b12 + "c\na\nb\n");
}

TEST_F(OutputLineTest, TheWidthEndsTheLine) {
    const std::string a(30, 'a'), b(30, 'b'), x(70, 'x'), digits(3000, '7');
    EXPECT_EQ(print({str(a.c_str(), ','), str(b.c_str(), ','), str("c")}), 0);  // 84 + 1 > 80
    EXPECT_EQ(print({str(x.c_str(), ';'), str("0123456789")}), 0);            // exactly 80 fits
    EXPECT_EQ(print({lng(digits.c_str())}), 0);  // longer than the buffer: passed through
    EXPECT_EQ(fe.take(), a + b12 + b + "\nc\n" + x + "0123456789\n" + digits + "\n");
}

TEST_F(OutputLineTest, WriteQuotesAndSeparates) {
    EXPECT_EQ(write({str("a", ','), num(2, ';'), num(1.0 / 3.0, ','), str("q\"b\\c\r\nd")}), 0);
    EXPECT_EQ(write({{kind_numeric_text, 0, "  1.5", ','}, lng("-12.5")}), 0);
    const std::string x(76, 'x');
    EXPECT_EQ(write({str(x.c_str(), ','), num(12)}), 0);  // 78 + "," + 2 > 80
    EXPECT_EQ(fe.take(), "\"a\",2,0.3333333333333333,\"q\\\"b\\\\c\\r\\nd\"\n  1.5,-12.5\n\"" + x + "\"\n12\n");
}

TEST_F(OutputLineTest, WriteCutsLongNumbersIntoQuotedPieces) {
    std::string digits;
    for (int i = 0; i < 200; ++i) digits += static_cast<char>('0' + i % 10);
    EXPECT_EQ(write({str("n", ','), lng(digits.c_str(), ','), num(1)}), 0);
    EXPECT_EQ(fe.take(), "\"n\"\nLength=200\n\"" + digits.substr(0, 78) + "\"\n\"" + digits.substr(78, 78) +
                             "\"\n\"" + digits.substr(156) + "\",1\n");

    std::FILE* stream = std::tmpfile();  // pieces are two shorter than a narrow line
    ASSERT_NE(stream, nullptr);
    open_file(1, 0, 12).stream = stream;
    EXPECT_EQ(statement(1, true, {lng(digits.substr(0, 25).c_str())}), 0);
    EXPECT_EQ(read_all(stream), "Length=25\n\"0123456789\"\n\"0123456789\"\n\"01234\"\n");
    areas.files[1].stream = nullptr;  // closed here, not by the reset
    std::fclose(stream);
}

TEST_F(OutputLineTest, FormatAndZoneWidthComeFromVariables) {
    const int format = variable("printformat$$");
    ASSERT_EQ(store_string(&variable_at(format).value.word, "%6.2f", store_assign), 3);
    EXPECT_EQ(print({num(3.14159, ','), num(-2)}), 0);
    EXPECT_EQ(fe.take(), "  3.14" + std::string(8, ' ') + " -2.00\n");
    for (const char* unusable : {"", "%s", "%d%f", "%*f"}) {
        ASSERT_EQ(store_string(&variable_at(format).value.word, unusable, store_assign), 3);
        begin_print(s, 0, false);
        EXPECT_STREQ(s.format, "%13.6g") << unusable;
    }
    begin_print(s, 0, true);
    EXPECT_STREQ(s.format, "%22.16g");

    const int tabs = variable("printtabs");
    const struct {
        double printtabs;
        std::uint32_t width;
    } widths[] = {{20, 20}, {7.9, 7}, {1, 1}, {79.5, 79}, {0, 14}, {0.5, 14}, {80, 14}, {-3, 14}, {1e300, 14}};
    for (const auto& w : widths) {
        variable_at(tabs).value.number = w.printtabs;
        begin_print(s, 0, false);
        EXPECT_EQ(areas.files[0].tab_width, w.width) << w.printtabs;
    }
    variable_at(tabs).value.number = 0;
    lang.predefined[pre_defaultprinttabs].number = 500;  // a broken default is not trusted either
    begin_print(s, 0, false);
    EXPECT_EQ(areas.files[0].tab_width, 14u);
}

TEST_F(OutputLineTest, UsingFormats) {
    EXPECT_EQ(print({num(0.1)}, "MAX"), 0);
    EXPECT_EQ(print({num(0.0022, ';'), num(-1.5)}, "engA"), 0);
    char expected[64];
    std::snprintf(expected, sizeof expected, "%23.18g\n   2.20 m-A     -1.50   A   \n", 0.1);
    EXPECT_EQ(fe.take(), expected);
    for (const char* bad : {"", "%s", "%n", "%5.2f %e"}) {
        begin_print(s, 0, false);
        s.item_column = 6;
        EXPECT_EQ(select_using_format(s, bad), -73) << bad;
        EXPECT_FALSE(s.using_format);
        EXPECT_EQ(lang.reporter.error_column, 6);
        EXPECT_EQ(fe.take(), "ERROR - Invalid Format string for PRINT USING.\n");
    }
}

TEST_F(OutputLineTest, RandomRecords) {
    FileEntry& f = open_file(1, file_mode_random, 10);
    EXPECT_EQ(statement(1, false, {str("ab", ';'), num(7)}), -236);  // 2 + 13 > 10
    EXPECT_EQ(fe.take(), "ERROR - Attempt to read/write beyond RANDOM record length.\n");
    EXPECT_EQ(std::string(f.line, f.write_index), "ab");  // what was built stays

    f.column = f.write_index = 0;
    EXPECT_EQ(statement(1, false, {str("ab", ';'), str("cd")}), 0);
    EXPECT_EQ(std::string(f.line), "abcd      ");  // padded, kept for PUT, not written
    EXPECT_EQ(f.column, 0u);
    EXPECT_EQ(statement(1, false, {str("0123456789", ';'), tab(2)}), -236);  // full, then TAB behind
    EXPECT_NE(fe.take(), "");
    f.column = f.write_index = 0;
    f.continue_line = false;
    EXPECT_EQ(statement(1, false, {str("xy", ';')}), 0);  // left open: not padded
    EXPECT_EQ(f.write_index, 2u);
    EXPECT_EQ(fe.take(), "");
}

std::string sink_text;
int recording_sink(FileEntry&, const char* text, std::size_t length) {
    sink_text.append(text, length);
    return 0;
}
int failing_sink(FileEntry&, const char*, std::size_t) { return report_error(err_serial_i_o_error); }

TEST_F(OutputLineTest, SerialLinesGoToTheSink) {
    sink_text.clear();
    FileEntry& f = open_file(2, file_mode_serial, 8);
    f.sink = recording_sink;
    EXPECT_EQ(statement(2, false, {str("abc", ','), str("de")}), -318);  // 14 + 2 > 8
    EXPECT_EQ(fe.take(), "ERROR - Attempt to read/write beyond SERIAL record length.\n");
    f.column = f.write_index = 0;
    EXPECT_EQ(statement(2, false, {str("abc", ';'), str("de")}), 0);
    EXPECT_EQ(sink_text, "abcde\n");
    f.sink = failing_sink;
    EXPECT_EQ(statement(2, false, {str("x")}), -320);
    EXPECT_EQ(fe.take(), "ERROR - SERIAL I/O error.\n");
}

TEST_F(OutputLineTest, FileLinesGoToTheStream) {
    std::FILE* stream = std::tmpfile();
    ASSERT_NE(stream, nullptr);
    open_file(1, 0, 10).stream = stream;
    EXPECT_EQ(statement(1, false, {str("a", ','), str("b")}), 0);  // 14 + 1 > 10
    EXPECT_EQ(statement(1, false, {str("0123456789", ';')}), 0);   // continued at the width: ended
    EXPECT_EQ(read_all(stream), "a\nb\n0123456789\n");
    EXPECT_EQ(statement(1, false, {str("z", ';')}), 0);
    EXPECT_EQ(fe.take(), "");
    EXPECT_EQ(read_all(stream), "a\nb\n0123456789\nz");
    areas.files[1].stream = nullptr;  // closed here, not by the reset
    std::fclose(stream);
}

}  // namespace
}  // namespace tl::test
