// program_store.h — the program text in the Program Buffer: reading files, lines,
// statement numbers, finding a statement and the listing.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tl {

enum ReadMode : int {
    read_load = 0,     ///< the file replaces the text
    read_append = 1,   ///< the file goes behind the text
    read_include = 2,  ///< the file goes behind a given line
};

inline constexpr int max_line_bytes = 255;  ///< a line with its LF must be shorter than 256

/// One line of the program text.
struct ProgramLine {
    std::uint32_t start = 0;  ///< offset of the line in the Program Buffer
    std::uint32_t next = 0;   ///< offset of the following line
    /// The line without its LF and a trailing CR, NUL-terminated: a view of
    /// the line in the program image (see program_image), not a copy.
    const char* text = "";
    int length = 0;
    /// Characters of `text` before its first NUL: the statement text the
    /// scanner sees (shorter than `length` only for a line holding a NUL).
    std::uint32_t text_length = 0;
};

/// Reads `path` into the Program Buffer. Include inserts behind the line that
/// ends at `insert_at`. Errors: 107 when the file cannot be read, 120 when it
/// does not fit (the text is then as it was). Before 107 the full path tried and
/// the reason are shown on a line of their own. Returns 0 or the negated number.
[[nodiscard]] int read_program_file(const std::string& path, ReadMode mode, std::uint32_t insert_at = 0);

/// Makes sure the text ends in CR LF (no-op on an empty text); false when the
/// buffer has no room.
[[nodiscard]] bool end_text_with_crlf();

/// Replaces the program text by `text` as LOAD does with a file's bytes;
/// false (the text unchanged) when it does not fit the Program Buffer.
bool replace_program_text(std::string_view text);

/// Tells the program image that the text from `offset` on has changed (or
/// that the text was cut there). Every writer of the Program Buffer calls it.
void program_text_changed(std::uint32_t offset);

/// The program text with every line end (the LF and a CR before it) made a
/// NUL, brought up to date with the Program Buffer: a line can be scanned in
/// place at its own offset. It stays put while a program runs.
[[nodiscard]] const char* program_image();

/// The line starting at `offset`: 0, -1 at the end of the text, or -24
/// (reported) when the line with its LF is 256 bytes or longer.
[[nodiscard]] int next_line(std::uint32_t offset, ProgramLine& line);

/// Reads a statement number at `p` (1 to 10 digits followed by the end, a
/// blank, a tab, ":", CR, "//", or with `allow_comma` a ","). Returns 1 and
/// the number, 0 when `p` holds no digit, or a negated error: 229 for an 11th
/// digit, 9 for anything else wrong (0 or above 2147483647 included). The
/// error column is set relative to `line_start`; `p` is advanced past it.
[[nodiscard]] int read_statement_number(const char*& p, const char* line_start, std::uint32_t& number,
                                        bool allow_comma = false);

/// Offset of the line with statement number `number`, or -25 (reported).
[[nodiscard]] std::int64_t find_statement(std::uint32_t number);
/// Index of the Statement Number Table entry, or -1 (quiet).
[[nodiscard]] int find_statement_entry(std::uint32_t number);

/// Formats a program offset as in the listing ("    %4X" or "%4X%04X").
void format_offset(std::uint32_t offset, char (&out)[16]);

/// The "list" command: every line before `end` with its offset, then both tables.
void list_program(std::uint32_t end);

}  // namespace tl
