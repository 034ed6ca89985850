// Tests of the output line: print zones, ";", TAB, overflow at the width,
// WRITE quoting, format and tab-width choice, RANDOM and SERIAL records,
// file streams and long numbers cut into pieces.
#include "exec/output_line.h"

#include <cstdio>
#include <string>

#include "exec/string_space.h"
#include "exec/variables.h"
#include "lang/error_table.h"
#include "lang/item.h"
#include "lang/lang_state.h"
#include "test_support.h"

namespace tl::test {
namespace {

/// Drives the output line the way the statement's item loop does.
class OutputLineTest : public CoreTest {
protected:
    PrintSession s;
    bool written = false;

    void print(int file = 0) { start_statement(file, false); }
    void write(int file = 0) { start_statement(file, true); }
    void start_statement(int file, bool write_mode) {
        begin_print(s, file, write_mode);
        written = false;
    }
    /// One item followed by `separator` (',' ';' or 0 for the last item).
    int item(std::uint32_t kind, double x, std::string_view text, char separator) {
        begin_print_item(s);
        const int rc = write_print_item(s, kind, x, text);
        finish_print_item(s, separator == ';');
        written = true;
        return rc;
    }
    int number(double x, char separator = 0) { return item(kind_double, x, {}, separator); }
    int text(std::string_view t, char separator = 0) { return item(kind_string, 0, t, separator); }
    int tab(double n) {
        begin_print_item(s);
        return set_tab_target(s, n);
    }
    int end() { return end_print_line(s, written); }

    void set_double(const char* name, double value) {
        int i = find_variable(name);
        if (i < 0) {
            ASSERT_EQ(create_variable(name, false), 2);
            i = find_variable(name);
        }
        variable_at(i).value.number = value;
    }
    void set_string(const char* name, std::string_view value) {
        int i = find_variable(name);
        if (i < 0) {
            ASSERT_EQ(create_variable(name, false), 3);
            i = find_variable(name);
        }
        ASSERT_EQ(store_string(&variable_at(i).value.word, value, store_assign), 3);
    }
    FileEntry& open_file(int file, std::uint32_t mode, std::uint32_t width) {
        FileEntry& f = areas.files[static_cast<std::size_t>(file)];
        f.open = 1;
        f.mode = mode;
        f.width = width;
        return f;
    }
};

TEST_F(OutputLineTest, CommaMovesToTheNextZoneSemicolonDoesNot) {
    print();
    EXPECT_EQ(number(1, ','), 0);
    EXPECT_EQ(number(2), 0);
    EXPECT_EQ(end(), 0);
    const std::string line = fe.take();
    EXPECT_EQ(line, std::string(12, ' ') + "1" + " " + std::string(12, ' ') + "2\n");
    EXPECT_EQ(line.find_first_not_of(' ', 13), 26u);  // the second zone starts at column 14

    print();
    EXPECT_EQ(number(1, ';'), 0);
    EXPECT_EQ(number(2), 0);
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(fe.take(), std::string(12, ' ') + "1" + std::string(12, ' ') + "2\n");

    print();
    EXPECT_EQ(text("a", ','), 0);
    EXPECT_EQ(text("b", ','), 0);
    EXPECT_EQ(text("c"), 0);
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(fe.take(), "a" + std::string(13, ' ') + "b" + std::string(13, ' ') + "c\n");
}

TEST_F(OutputLineTest, TrailingSemicolonKeepsTheLineOpenAcrossStatements) {
    print();
    EXPECT_EQ(text("a", ';'), 0);
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(fe.take(), "a");  // shown at once, without a line end
    print();
    EXPECT_EQ(text("b", ','), 0);  // continues the line: no zone padding
    EXPECT_EQ(text("c"), 0);
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(fe.take(), "b" + std::string(12, ' ') + "c\n");

    print();
    EXPECT_EQ(text("d", ';'), 0);
    EXPECT_EQ(end(), 0);
    print();  // a bare PRINT ends the open line
    EXPECT_EQ(end(), 0);
    print();
    EXPECT_EQ(end(), 0);  // and another prints an empty line
    EXPECT_EQ(fe.take(), "d\n\n");
}

TEST_F(OutputLineTest, TabPlacesTheNextItem) {
    print();
    EXPECT_EQ(tab(20), 0);
    EXPECT_EQ(text("x"), 0);
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(fe.take(), std::string(19, ' ') + "x\n");

    // A target behind the column ends the line first; one at it adds nothing.
    print();
    EXPECT_EQ(text("abcdef", ';'), 0);
    EXPECT_EQ(tab(3.9), 0);
    EXPECT_EQ(text("x", ';'), 0);
    EXPECT_EQ(tab(4), 0);
    EXPECT_EQ(text("y"), 0);
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(fe.take(), "abcdef\n  xy\n");

    // TAB(0) and below ask for no position; the next item goes to a zone.
    print();
    EXPECT_EQ(text("ab", ';'), 0);
    EXPECT_EQ(tab(0), 0);
    EXPECT_EQ(text("c"), 0);
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(fe.take(), "ab" + std::string(12, ' ') + "c\n");

    // A huge argument is clamped and overflows to a new line.
    print();
    EXPECT_EQ(text("a", ';'), 0);
    EXPECT_EQ(tab(1e300), 0);
    EXPECT_EQ(text("b"), 0);
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(fe.take(), "a\nb\n");
}

TEST_F(OutputLineTest, ItemPassingTheWidthStartsANewLine) {
    const std::string a(30, 'a'), b(30, 'b'), c(30, 'c');
    print();
    EXPECT_EQ(text(a, ','), 0);
    EXPECT_EQ(text(b, ','), 0);  // 42 + 30 fits
    EXPECT_EQ(text(c), 0);       // 84 + 30 does not: no padding on the new line
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(fe.take(), a + std::string(12, ' ') + b + "\n" + c + "\n");

    print();
    EXPECT_EQ(text(std::string(70, 'x'), ';'), 0);
    EXPECT_EQ(text("0123456789"), 0);  // exactly 80 still fits
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(fe.take(), std::string(70, 'x') + "0123456789\n");

    // Text longer than the line buffer passes through in pieces.
    const std::string digits(3000, '7');
    print();
    EXPECT_EQ(item(kind_long, 0, digits, 0), 0);
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(fe.take(), digits + "\n");
}

TEST_F(OutputLineTest, WriteQuotesStringsAndTrimsNumbers) {
    write();
    EXPECT_EQ(text("a", ','), 0);
    EXPECT_EQ(number(2, ';'), 0);
    EXPECT_EQ(number(1.0 / 3.0, ','), 0);
    EXPECT_EQ(text("q\"b\\c\r\nd"), 0);
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(fe.take(), "\"a\",2,0.3333333333333333,\"q\\\"b\\\\c\\r\\nd\"\n");

    // Numeric text and short long numbers are written as they are.
    write();
    EXPECT_EQ(item(kind_numeric_text, 0, "  1.5", ','), 0);
    EXPECT_EQ(item(kind_long, 0, "-12.5", 0), 0);
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(fe.take(), "  1.5,-12.5\n");

    // The comma counts towards the width.
    write();
    EXPECT_EQ(text(std::string(76, 'x'), ','), 0);  // 78 with the quotes
    EXPECT_EQ(number(12), 0);                        // 78 + 1 + 2 > 80
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(fe.take(), "\"" + std::string(76, 'x') + "\"\n12\n");
}

TEST_F(OutputLineTest, WriteCutsLongNumbersIntoQuotedPieces) {
    std::string digits;
    for (int i = 0; i < 200; ++i) digits += static_cast<char>('0' + i % 10);
    write();
    EXPECT_EQ(text("n", ','), 0);
    EXPECT_EQ(item(kind_long, 0, digits, ','), 0);
    EXPECT_EQ(number(1), 0);
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(fe.take(), "\"n\"\nLength=200\n\"" + digits.substr(0, 78) + "\"\n\"" + digits.substr(78, 78) +
                             "\"\n\"" + digits.substr(156) + "\",1\n");

    // On a narrower file line the pieces are two shorter than the width.
    std::FILE* stream = std::tmpfile();
    ASSERT_NE(stream, nullptr);
    open_file(1, 0, 12).stream = stream;
    write(1);
    EXPECT_EQ(item(kind_long, 0, digits.substr(0, 25), 0), 0);
    EXPECT_EQ(end(), 0);
    std::rewind(stream);
    char buffer[128] = {};
    const std::size_t n = std::fread(buffer, 1, sizeof buffer - 1, stream);
    EXPECT_EQ(std::string(buffer, n), "Length=25\n\"0123456789\"\n\"0123456789\"\n\"01234\"\n");
    std::fclose(stream);
}

TEST_F(OutputLineTest, FormatAndTabWidthComeFromVariables) {
    print();
    EXPECT_EQ(std::string(s.format), "%13.6g");
    set_string("printformat$$", "%6.2f");
    print();
    EXPECT_EQ(number(3.14159, ','), 0);
    EXPECT_EQ(number(-2), 0);
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(fe.take(), "  3.14" + std::string(8, ' ') + " -2.00\n");

    // An empty or unusable user format falls back to the default silently.
    for (const char* bad : {"", "%s", "%d%f", "%*f"}) {
        set_string("printformat$$", bad);
        print();
        EXPECT_STREQ(s.format, "%13.6g") << bad;
    }
    write();
    EXPECT_STREQ(s.format, "%22.16g");

    const struct {
        double printtabs;
        std::uint32_t width;
    } widths[] = {{20, 20}, {7.9, 7}, {1, 1}, {79.5, 79}, {0, 14}, {0.5, 14}, {80, 14}, {-3, 14}, {1e300, 14}};
    for (const auto& w : widths) {
        set_double("printtabs", w.printtabs);
        print();
        EXPECT_EQ(areas.files[0].tab_width, w.width) << w.printtabs;
    }
    set_double("printtabs", 20);
    print();
    EXPECT_EQ(text("a", ','), 0);
    EXPECT_EQ(text("b"), 0);
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(fe.take(), "a" + std::string(19, ' ') + "b\n");

    // A broken default tab width is not trusted either.
    set_double("printtabs", 0);
    lang.predefined[pre_defaultprinttabs].number = 500;
    print();
    EXPECT_EQ(areas.files[0].tab_width, 14u);
}

TEST_F(OutputLineTest, UsingSelectsAndChecksTheFormat) {
    print();
    EXPECT_EQ(select_using_format(s, "max"), 0);
    EXPECT_TRUE(s.using_format);
    EXPECT_EQ(number(0.1), 0);
    EXPECT_EQ(end(), 0);
    char expected[64];
    std::snprintf(expected, sizeof expected, "%23.18g\n", 0.1);
    EXPECT_EQ(fe.take(), expected);

    print();
    EXPECT_EQ(select_using_format(s, "engA"), 0);
    EXPECT_EQ(number(0.0022, ';'), 0);
    EXPECT_EQ(select_using_format(s, "##.##"), 0);  // a later USING in the line
    EXPECT_EQ(number(-1.5), 0);
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(fe.take(), "   2.20 m-A   -1.50\n");

    for (const char* bad : {"", "%s", "%n", "%5.2f %e"}) {
        print();
        lang.reporter.error_column = -1;
        s.item_column = 6;
        EXPECT_EQ(select_using_format(s, bad), -73) << bad;
        EXPECT_EQ(lang.reporter.error_column, 6);
        EXPECT_EQ(fe.take(), "ERROR - Invalid Format string for PRINT USING.\n");
    }
}

TEST_F(OutputLineTest, RandomRecordIsPaddedAndNeverWrittenByPrint) {
    FileEntry& f = open_file(1, file_mode_random, 10);
    print(1);
    EXPECT_EQ(text("ab", ';'), 0);
    EXPECT_EQ(number(7), -236);  // 2 + 13 > 10
    EXPECT_EQ(fe.take(), "ERROR - Attempt to read/write beyond RANDOM record length.\n");
    EXPECT_EQ(std::string(f.line, f.write_index), "ab");  // the line built so far stays

    f.column = f.write_index = 0;
    f.continue_line = false;
    print(1);
    EXPECT_EQ(text("ab", ';'), 0);
    EXPECT_EQ(text("cd"), 0);
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(std::string(f.line, 10), "abcd      ");
    EXPECT_EQ(f.column, 0u);
    EXPECT_EQ(fe.take(), "");

    print(1);  // a record may be filled exactly; TAB behind the column fails
    EXPECT_EQ(text("0123456789", ';'), 0);
    EXPECT_EQ(tab(2), -236);
    f.column = f.write_index = 0;
    f.continue_line = false;
    print(1);  // and a record left open by ";" is not padded
    EXPECT_EQ(text("xy", ';'), 0);
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(f.write_index, 2u);
}

int sink_calls = 0;
std::string sink_text;
int recording_sink(FileEntry&, const char* text, std::size_t length) {
    ++sink_calls;
    sink_text.append(text, length);
    return 0;
}
int failing_sink(FileEntry&, const char*, std::size_t) { return report_error(err_serial_i_o_error); }

TEST_F(OutputLineTest, SerialLinesGoToTheSink) {
    sink_calls = 0;
    sink_text.clear();
    FileEntry& f = open_file(2, file_mode_serial, 8);
    f.sink = recording_sink;
    print(2);
    EXPECT_EQ(text("abc", ','), 0);
    EXPECT_EQ(text("de"), -318);  // 14 + 2 > 8
    EXPECT_EQ(fe.take(), "ERROR - Attempt to read/write beyond SERIAL record length.\n");
    f.column = f.write_index = 0;
    print(2);
    EXPECT_EQ(text("abc", ';'), 0);
    EXPECT_EQ(text("de"), 0);
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(sink_text, "abcde\n");
    EXPECT_EQ(sink_calls, 1);

    f.sink = failing_sink;
    print(2);
    EXPECT_EQ(text("x"), 0);
    EXPECT_EQ(end(), -320);
    EXPECT_EQ(fe.take(), "ERROR - SERIAL I/O error.\n");
}

TEST_F(OutputLineTest, FileLinesGoToTheStream) {
    std::FILE* stream = std::tmpfile();
    ASSERT_NE(stream, nullptr);
    open_file(1, 0, 10).stream = stream;
    print(1);
    EXPECT_EQ(text("a", ','), 0);
    EXPECT_EQ(text("b"), 0);  // 14 + 1 > 10: a new line
    EXPECT_EQ(end(), 0);
    print(1);  // a continued file line that reaches the width is ended
    EXPECT_EQ(text("0123456789", ';'), 0);
    EXPECT_EQ(end(), 0);
    print(1);
    EXPECT_EQ(text("z", ';'), 0);
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(fe.take(), "");
    std::rewind(stream);
    char buffer[64] = {};
    const std::size_t n = std::fread(buffer, 1, sizeof buffer - 1, stream);
    EXPECT_EQ(std::string(buffer, n), "a\nb\n0123456789\nz");
    std::fclose(stream);
}

}  // namespace
}  // namespace tl::test
