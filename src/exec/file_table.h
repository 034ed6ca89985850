// file_table.h — opening, closing, flushing and reading the files of the File Table.
//
// Entries 1 to NumberOfFiles are the BASIC file numbers. A sequential output
// file is line buffered: every finished line reaches the system at once, so
// a killed program loses at most the line it was writing. What a continued
// line (PRINT #n, "x";) still holds is written out by flush_all_files, which
// runs whenever a program or a typed line ends (END, an error, an
// interruption), and by CLOSE, CLEAR, RUN, LOAD and the end of the session.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "exec/memory_areas.h"
#include "exec/serial_port.h"

namespace tl {

/// What OPEN was asked for, after its parameters were checked.
struct OpenRequest {
    std::uint32_t mode = 0;          ///< FileMode
    int number = 0;                  ///< 1 .. NumberOfFiles
    const char* name = nullptr;      ///< file name or port
    std::uint32_t record_length = 0; ///< 0: the mode's default
    SerialSettings serial;           ///< SERIAL only
    int name_column = 0;             ///< carets of failures that concern the name
};

/// The mode letter of OPEN ("i", "o", "a", "r", "b", "s", letter case
/// ignored) as a FileMode, or 0.
[[nodiscard]] std::uint32_t mode_from_letter(const char* text);

/// Number of BASIC file numbers (the NumberOfFiles setting).
[[nodiscard]] int file_count();

/// Opens a file or serial port. The mode's record length rules: RANDOM 1 to
/// 32767 (required), SERIAL 1 to 32767 (255), BINARY 1 to 255 (255).
/// Reports 134, 135, 136 (after a line that says why), 137, 322-324 or 327
/// and returns the negated number; 0 on success.
[[nodiscard]] int open_file(const OpenRequest& request);

/// Closes file `number` (open or not): writes out what its line holds and
/// releases it. Returns 0, or the negated error of a failed write (reported).
[[nodiscard]] int close_file(int number);

/// Closes every file; failures are reported and passed over.
void close_all_files();

/// Writes out what every open file's line still holds and flushes the
/// streams. Returns 0, or the first negated error (each is reported).
int flush_all_files();

/// The File Table entry of an open file number, or null.
[[nodiscard]] FileEntry* open_entry(int number);

/// Reads the next line of a sequential input file or serial port into
/// entry.input (line end removed: LF, CR LF, or CR on a port). Returns 1,
/// 0 at the end of the file, or a negated error (140, 319, 320, 321; reported).
[[nodiscard]] int read_next_line(FileEntry& entry);

/// Reads up to `count` characters of a sequential input file, serial port or
/// BINARY file into `out` (after what the current INPUT # line still holds).
/// A port waits for all of them (321 when they do not come). Returns the
/// number read (0 at the end of a file), or a negated error (reported).
[[nodiscard]] int read_characters(FileEntry& entry, std::size_t count, std::string& out);

/// True when nothing is left to read from a sequential input file.
[[nodiscard]] bool at_end_of_file(FileEntry& entry);

/// Makes the zero bytes of text read from a text file or a port blanks: a
/// string cannot hold them, and the text after one would be lost.
void blank_zero_bytes(std::string& text);

/// Size in bytes of an open file (output flushed first); for a serial port
/// the bytes received and not yet read. Negative when the system cannot tell.
[[nodiscard]] long long file_size(FileEntry& entry);

/// Writes `length` bytes at a BINARY file's position; 331 on failure.
[[nodiscard]] int write_binary(FileEntry& entry, const char* text, std::size_t length);

/// Moves a BINARY file to byte `position` (0-based). Returns 0 or -1.
[[nodiscard]] int seek_binary(FileEntry& entry, long long position);

}  // namespace tl

namespace tl {

/// One parameter of OPEN, evaluated: a string or a number.
struct OpenValue {
    bool is_string = false;
    double number = 0.0;
    const char* text = "";
    int column = 0;
};

/// Checks parameter `index` of OPEN (mode, file number, name, then the
/// record length, or for "s" baud rate, parity, stop bits and record length)
/// and records it in `r`. Reports 131-134, 145, 322-324 or 327 and returns the
/// negated number; 0 when it fits.
[[nodiscard]] int open_parameter(OpenRequest& r, int index, const OpenValue& v);

/// After the last parameter: 232 for RANDOM without a record length, 135
/// for a number in use (reported, negated); else opens as open_file does.
[[nodiscard]] int finish_open(OpenRequest& r, int count, int number_column);

}  // namespace tl
