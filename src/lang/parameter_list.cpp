// parameter_list.cpp — parse_parameter_list: "(p1, p2, ...)" of function calls and subscripts.
#include <cstdint>

#include "exec/string_space.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/evaluator.h"
#include "lang/lang_state.h"
#include "lang/scan_names.h"
#include "lang/scanner.h"
#include "longmath/long_convert.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"

namespace tl {

int parse_parameter_list(Item* params) {
    ScanState& s = lang.scan;
    skip_blanks();
    if (s.position >= s.end || *s.position != '(') return scan_error(err_parameter_list_start_left_paren, scan_column());
    ++s.position;
    int count = 0;
    for (;;) {
        skip_blanks();
        const int column = scan_column();
        const int k = evaluate_expression(scan_in_parentheses | scan_separators);
        if (k < 0) return report_error(err_pass_evaluate_expression);
        const char ended_on = s.terminator;
        if (k == 0) {
            if (count == 0 && ended_on == ')') return 0;  // "()"
            return scan_error(err_missing_parameter, column);
        }
        Item& p = params[count];
        p = Item{};
        p.kind = static_cast<std::uint32_t>(k);
        p.column = column;
        switch (k) {
            case kind_double: p.number = s.result; break;
            case kind_string:
            case kind_numeric_text: {
                lang.reporter.error_column = column;
                const std::int64_t offset = new_temp_string(s.buffer);
                if (offset < 0) return static_cast<int>(offset);
                p.word = static_cast<std::uint32_t>(offset);
                if (k == kind_string) {
                    p.array = s.sole_reference.array;
                    p.extra = s.sole_reference.word;
                }
                break;
            }
            case kind_long: {
                lang.reporter.error_column = column;
                const std::int64_t ref = new_temp_long();
                if (ref < 0) return static_cast<int>(ref);
                p.word = static_cast<std::uint32_t>(ref);
                long_copy(long_state.work, long_at(p.word));
                break;
            }
            case kind_string_array:
            case kind_double_array: p.array = s.sole_reference.array; break;
            default: return report_error(err_pass_evaluate_expression);
        }
        ++count;
        if (ended_on == ')') return count;
        if (count == max_parameters) return scan_error(err_too_many_parameters, scan_column());
    }
}

}  // namespace tl
