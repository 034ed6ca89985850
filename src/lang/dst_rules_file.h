// dst_rules_file.h — the daylight-saving rules file read by SETDSTRULES.
#pragma once

#include <string>
#include <string_view>

#include "lang/time_zone.h"

namespace tl {

/// The name of the rules file SETDSTRULES reads when given no file.
inline constexpr const char* dst_rules_file_name = "dstrules.txt";

/// What is wrong with a rules text: the line (1-based; 0 for the text as a
/// whole, such as a line that is missing) and a short description.
struct DstRulesFault {
    int line = 0;
    std::string what;
};

/// Reads a rules text (format in docs/datetime.md) into `out`. Returns true,
/// or false with `fault` filled (then `out` is unchanged).
[[nodiscard]] bool parse_dst_rules(std::string_view text, ZoneRule& out, DstRulesFault& fault);

}  // namespace tl
