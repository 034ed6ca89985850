// statement_heads.h — the first Item of a statement met before at a place in the program.
//
// A statement starts with a keyword, a variable or an array element. What the
// name at its start stands for is the same every time the statement runs while
// the program text, the name tables and the user-function table are unchanged,
// so a statement met again at the same place skips reading the name and the
// look-up order and goes straight to the keyword, the variable or the element.
#pragma once

#include <cstddef>
#include <cstdint>

#include "lang/expression_plans.h"
#include "lang/item.h"

namespace tl {

enum class HeadKind : std::uint8_t { none, keyword, variable, element };

struct StatementHead {
    std::uint32_t key = 0;  ///< program offset + 1 of the statement's first character; 0: unused
    PlanStamp stamp;        ///< the program and the tables the head was found in
    std::uint16_t room = 0;  ///< characters from the head to the end of the statement text
    std::uint8_t length = 0;  ///< characters of the name
    HeadKind kind = HeadKind::none;
    std::uint32_t index = 0;  ///< keyword slot, Variable Table index or Array Table index
};

inline constexpr std::size_t statement_head_cache_size = 512;  // a power of two

/// get_item(item, scan_statement_position), with the name at the statement's
/// start taken from the head cache when the place was met before. Returns
/// what get_item returns, with the same Item, scan position and scanner state.
[[nodiscard]] int scan_statement_head(Item& item);

}  // namespace tl
