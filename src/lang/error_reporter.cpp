// error_reporter.cpp — statement echo, caret line and "ERROR - " message.
#include "lang/error_reporter.h"

#include <cstring>

#include "exec/front_end.h"
#include "lang/error_table.h"
#include "lang/lang_state.h"

namespace tl {
namespace {

constexpr int max_echo_length = 255;

bool is_pass_through(int number) {
    if (number == 0) return true;
    if (number == err_already_reported) return false;
    return error_messages[static_cast<std::size_t>(number)][0] == '-';
}

int report(int number) {
    ReporterState& r = lang.reporter;
    if (number != err_already_reported && (number < 0 || number >= error_count)) number = err_invalid_statement;
    const int result = number == 0 ? -1 : -number;
    if (is_pass_through(number) && !r.debug) return result;
    if (r.reporting) return result;
    r.reporting = true;

    if (!r.no_echo && r.text != nullptr) {
        char echo[max_echo_length + 2];
        std::size_t n = strnlen(r.text, max_echo_length + 1);
        std::memcpy(echo, r.text, n);
        echo[n] = 0;
        if (!r.display_after_step && !r.display_after_trace) console_write("\n");
        console_write(echo);
        console_write("\n");
        int column = r.error_column;
        if (r.statement_start != nullptr && r.statement_start >= r.text) {
            column += static_cast<int>(r.statement_start - r.text);
        }
        char caret[260];
        console_write(caret_line(r.text, column, caret));
    }
    if (number != err_already_reported) {
        const char* message = error_messages[static_cast<std::size_t>(number)];
        if (message[0] == '-') ++message;
        console_print("ERROR - %s\n", message);
    }
    r.reporting = false;
    return result;
}

}  // namespace

std::string_view caret_line(const char* text, int column, char (&buffer)[260]) {
    const int length = static_cast<int>(strnlen(text, max_echo_length));
    if (column < 0 || column > length) column = length;
    while (column < length && (text[column] == ' ' || text[column] == '\t')) ++column;
    int i = 0;
    for (; i < column; ++i) buffer[i] = text[i] == '\t' ? '\t' : ' ';
    buffer[i++] = '*';
    buffer[i++] = '\n';
    buffer[i] = 0;
    return std::string_view(buffer, static_cast<std::size_t>(i));
}

int report_error(int number) { return report(number); }

int report_error_no_echo(int number) {
    lang.reporter.no_echo = true;
    int result = report(number);
    lang.reporter.no_echo = false;
    return result;
}

}  // namespace tl
