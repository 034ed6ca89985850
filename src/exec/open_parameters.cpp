// open_parameters.cpp — the parameters of OPEN (statement and function) checked one by one.
//
//   mode, file number, name [, record length]
//   "s", file number, port [, baud rate [, parity [, stop bits [, record length]]]]
#include <cctype>
#include <cmath>
#include <cstring>

#include "exec/file_table.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/lang_state.h"

namespace tl {
namespace {

// ORDER: SerialParity.
constexpr const char* parity_words[] = {"no", "even", "odd", "mark", "space"};

constexpr double max_baud = 256000.0;
constexpr double min_baud = 50.0;
constexpr double max_record = 32767.0;
constexpr double max_binary_record = 255.0;

int fail(int column, int error) {
    lang.reporter.error_column = column;
    return report_error(error);
}

bool same_word(const char* text, const char* word) {
    for (; *text != 0 && *word != 0; ++text, ++word) {
        if (std::tolower(static_cast<unsigned char>(*text)) != *word) return false;
    }
    return *text == 0 && *word == 0;
}

/// A whole number in [low, high], else `error`.
int whole(const OpenValue& v, double low, double high, int error, double& out) {
    if (v.is_string || v.number != std::trunc(v.number) || !(v.number >= low && v.number <= high))
        return fail(v.column, error);
    out = v.number;
    return 0;
}

int record_length(OpenRequest& r, const OpenValue& v) {
    double n = 0;
    const bool binary = r.mode == file_mode_binary;
    if (int rc = whole(v, 1.0, binary ? max_binary_record : max_record,
                       binary ? err_invalid_record_length_binary_file : err_invalid_logical_record_length_open, n);
        rc < 0)
        return rc;
    r.record_length = static_cast<std::uint32_t>(n);
    return 0;
}

}  // namespace

int open_parameter(OpenRequest& r, int index, const OpenValue& v) {
    double n = 0;
    switch (index) {
        case 0:
            r.mode = v.is_string ? mode_from_letter(v.text) : 0;
            return r.mode == 0 ? fail(v.column, err_invalid_mode_open) : 0;
        case 1:
            if (int rc = whole(v, 1.0, file_count(), err_invalid_file_number_open, n); rc < 0) return rc;
            r.number = static_cast<int>(n);
            return 0;
        case 2:
            if (!v.is_string || v.text[0] == 0 || std::strlen(v.text) > 260)
                return fail(v.column, err_invalid_file_specification_open);
            r.name = v.text;
            r.name_column = v.column;
            return 0;
        default: break;
    }
    if (r.mode != file_mode_serial) {
        if (index > 3) return report_error(err_incorrect_number_parameters);
        return record_length(r, v);
    }
    switch (index) {
        case 3:
            if (int rc = whole(v, min_baud, max_baud, err_invalid_baud_rate_serial_open, n); rc < 0) return rc;
            r.serial.baud = static_cast<int>(n);
            return 0;
        case 4:
            for (int i = 0; i < 5; ++i) {
                if (v.is_string && same_word(v.text, parity_words[i])) {
                    r.serial.parity = i;
                    return 0;
                }
            }
            return fail(v.column, err_invalid_patiry_serial_open);
        case 5:
            // 1.5 stop bits cannot be set through termios.
            if (v.is_string || (v.number != 1.0 && v.number != 2.0)) return fail(v.column, err_invalid_stop_bits_serial_open);
            r.serial.stop_bits = static_cast<int>(v.number);
            return 0;
        case 6: return record_length(r, v);
        default: return report_error(err_incorrect_number_parameters);
    }
}

int finish_open(OpenRequest& r, int count, int number_column) {
    if (r.mode == file_mode_random && count < 4) return fail(r.name_column, err_record_length_required_random_files);
    if (areas.files[static_cast<std::size_t>(r.number)].open != 0) return fail(number_column, err_file_number_use);
    return open_file(r);
}

}  // namespace tl
