// Tests of the program store: reading files in the three modes, lines and statement numbers.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "exec/memory_areas.h"
#include "exec/program_store.h"
#include "shell_test_support.h"
#include "test_support.h"

namespace tl::test {
namespace {

class ProgramStoreTest : public CoreTest {
protected:
    ScratchDir scratch;  // its own folder: the tests run in parallel processes
    std::string dir = scratch.path();

    std::string file(const std::string& name, const std::string& text) {
        const std::string path = dir + "/" + name;
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }
    std::string text() const { return std::string(areas.program.get(), areas.program_length); }
    int number_of(const char* line, std::uint32_t& n, bool comma = false) {
        const char* p = line;
        return read_statement_number(p, line, n, comma);
    }
};

TEST_F(ProgramStoreTest, AppendAndIncludeJoinWithCrLf) {
    ASSERT_EQ(read_program_file(file("a.bas", "one\ntwo"), read_load), 0);
    EXPECT_EQ(text(), "one\ntwo");
    ASSERT_EQ(read_program_file(file("b.bas", "three"), read_append), 0);
    EXPECT_EQ(text(), "one\ntwo\r\nthree");
    // Include goes behind the line that ends at offset 4 ("one\n"); the text
    // before it gets a CR LF of its own (an empty line), the file one too.
    ASSERT_EQ(read_program_file(file("c.bas", "inc"), read_include, 4), 0);
    EXPECT_EQ(text(), "one\n\r\ninc\r\ntwo\r\nthree");
}

TEST_F(ProgramStoreTest, FailuresLeaveTheTextAsItWas) {
    ASSERT_EQ(read_program_file(file("a.bas", "keep\r\n"), read_load), 0);
    EXPECT_EQ(read_program_file(dir + "/missing.bas", read_append), -107);
    EXPECT_EQ(read_program_file(dir, read_load), -107);  // a folder cannot be read
    EXPECT_EQ(text(), "keep\r\n");
    const std::string big(areas.program_size, 'x');
    EXPECT_EQ(read_program_file(file("big.bas", big), read_append), -120);
    EXPECT_EQ(read_program_file(file("big.bas", big), read_load), -120);
    const std::string fits(areas.program_size - 2, 'y');
    EXPECT_EQ(read_program_file(file("fits.bas", fits), read_load), 0);
    EXPECT_EQ(areas.program_length, areas.program_size - 2);
    const std::string output = fe.take();
    EXPECT_NE(output.find("Unable to load program."), std::string::npos);
    EXPECT_NE(output.find("Program too large for buffer."), std::string::npos);
}

TEST_F(ProgramStoreTest, LinesDropTheirLineEndsAndLongLinesAreRefused) {
    ASSERT_EQ(read_program_file(file("a.bas", "a\r\n\nb" + std::string(300, 'c') + "\nlast"), read_load), 0);
    ProgramLine line;
    ASSERT_EQ(next_line(0, line), 0);
    EXPECT_STREQ(line.text, "a");
    EXPECT_EQ(line.next, 3u);
    ASSERT_EQ(next_line(line.next, line), 0);
    EXPECT_EQ(line.length, 0);
    EXPECT_EQ(next_line(line.next, line), -24);
    EXPECT_NE(fe.take().find("Statement too long (>255)"), std::string::npos);
    EXPECT_EQ(next_line(areas.program_length - 4, line), 0);
    EXPECT_STREQ(line.text, "last");
    EXPECT_EQ(next_line(areas.program_length, line), -1);
}

TEST_F(ProgramStoreTest, StatementNumbers) {
    std::uint32_t n = 0;
    EXPECT_EQ(number_of("10 print", n), 1);
    EXPECT_EQ(n, 10u);
    EXPECT_EQ(number_of("20:x", n), 1);
    EXPECT_EQ(number_of("30//note", n), 1);
    EXPECT_EQ(number_of("40\tx", n), 1);
    EXPECT_EQ(number_of("2147483647", n), 1);
    EXPECT_EQ(n, 2147483647u);
    EXPECT_EQ(number_of("print", n), 0);
    EXPECT_EQ(number_of("5,6", n), -9);
    EXPECT_EQ(number_of("5,6", n, true), 1);
    EXPECT_EQ(number_of("10x", n), -9);
    EXPECT_EQ(number_of("0", n), -9);
    EXPECT_EQ(number_of("2147483648", n), -9);
    EXPECT_EQ(number_of("12345678901", n), -229);
    EXPECT_EQ(number_of("10/2", n), -9);
}

TEST_F(ProgramStoreTest, ListingOffsets) {
    char out[16];
    format_offset(0x2B, out);
    EXPECT_STREQ(out, "      2B");
    format_offset(0xFFFF, out);
    EXPECT_STREQ(out, "    FFFF");
    format_offset(0x12345, out);
    EXPECT_STREQ(out, "   12345");  // "%4X%04X": high half blank-padded, low half zero-padded
}

}  // namespace
}  // namespace tl::test

namespace tl::test {
namespace {

/// The lines of `text` as the run loop must see them: split at LF, one CR
/// before the LF taken off, and a last CR of the text too.
std::vector<std::string> reference_lines(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t at = 0;
    while (at < text.size()) {
        std::size_t lf = text.find('\n', at);
        const std::size_t end = lf == std::string::npos ? text.size() : lf;
        std::string line = text.substr(at, end - at);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line.substr(0, line.find('\0')));
        at = lf == std::string::npos ? text.size() : lf + 1;
    }
    return lines;
}

std::vector<std::string> image_lines() {
    std::vector<std::string> lines;
    ProgramLine line;
    for (std::uint32_t at = 0; next_line(at, line) == 0; at = line.next) lines.emplace_back(line.text);
    return lines;
}

TEST_F(ProgramStoreTest, TheImageFollowsEveryChangeOfTheText) {
    // Random edits at random places (appends, cuts, rewrites of a tail), some
    // splitting a CR LF pair, each announced from where it starts: the lines
    // read in place must be those of the text as it now is.
    std::mt19937 rng(42);
    const char alphabet[] = {'a', 'b', ' ', ':', '\r', '\n', '\n', '\r', 'x', '\0'};
    std::string text = "10 print 1\r\n20 goto 10\r\n";
    ASSERT_TRUE(replace_program_text(text));
    for (int round = 0; round < 400; ++round) {
        const std::size_t from = text.empty() ? 0 : rng() % (text.size() + 1);
        std::string tail;
        const std::size_t n = rng() % 12;
        for (std::size_t i = 0; i < n; ++i) tail += alphabet[rng() % sizeof alphabet];
        text = text.substr(0, from) + tail;
        if (text.size() + 2 >= areas.program_size) text.clear();
        std::memcpy(areas.program.get(), text.data(), text.size());
        areas.program_length = static_cast<std::uint32_t>(text.size());
        areas.program.get()[text.size()] = 0;
        program_text_changed(static_cast<std::uint32_t>(text.empty() ? 0 : std::min(from, text.size())));
        if (rng() % 3 == 0) continue;  // several changes before the next read
        ASSERT_EQ(image_lines(), reference_lines(text)) << round;
    }
}

}  // namespace
}  // namespace tl::test
