// builtin_datetime.cpp — the date-time functions makedatetime and formatdatetime$.
#include "exec/string_space.h"
#include "lang/builtin_support.h"
#include "lang/datetime_state.h"
#include "lang/datetime_text.h"
#include "lang/datetime_value.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/scanner.h"

namespace tl {

/// makedatetime: the moment now, or (year, month, day [, hour [, minute [, second]]])
/// as local time in the zone in force. The all-zero date 0, 0, 0 gives the
/// no-date value defaultzerodatetime.
int fn_makedatetime_handler(Item* p, int count) {
    if (count == 0) return double_result(datetime_now());
    if (count < 3) return report_error(err_incorrect_number_parameters);
    double fields[6] = {};
    for (int i = 0; i < count; ++i) {
        if (const int r = double_parameter(p[i], fields[i]); r < 0) return r;
    }
    bool all_zero = true;
    for (double f : fields) all_zero = all_zero && f == 0.0;
    if (all_zero) return double_result(no_date_value());
    double value = 0;
    const int fault = make_datetime_value(fields, current_zone(), value);
    if (fault >= 0) return fail_at(err_parameter_out_range, p[fault < count ? fault : 0]);
    return double_result(value);
}

/// formatdatetime$: now, or (value [, format]) in the default layout or under
/// the format's codes. The no-date value gives an empty string.
int fn_formatdatetime_handler(Item* p, int count) {
    double value = 0;
    if (count == 0) {
        value = datetime_now();
    } else {
        if (const int r = double_parameter(p[0], value); r < 0) return r;
        if (!is_datetime_value(value)) return fail_at(err_parameter_out_range, p[0]);
    }
    std::string_view format = default_datetime_format;
    if (count == 2) {
        const char* text = nullptr;
        if (const int r = string_parameter(p[1], text); r < 0) return r;
        format = text;
    }
    if (count > 0 && value == no_date_value()) return text_result("", 0);
    char out[max_string_length + 1];
    std::size_t bad_at = 0;
    const int n = format_datetime(value, current_zone(), format, out, sizeof out, bad_at);
    if (n == datetime_format_too_long) return fail_at(err_string_too_long, p[1]);
    if (n < 0) return fail_at(err_invalid_value_parameter, p[1]);
    return text_result(out, static_cast<std::size_t>(n));
}

}  // namespace tl
