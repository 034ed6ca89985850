// sort_statement.h — the SORT statement and what its row comparison reads.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "longmath/long_number.h"

namespace tl {

/// The keys of the sort in progress. The C library's qsort passes its
/// comparison no context, so the comparison reads this record (in `exec`).
struct SortContext {
    std::uint32_t type = 0;    ///< element type: 2, 3 or 14
    int key_count = 1;         ///< keys in use, 1..3
    std::size_t key_offset[3] = {0, 0, 0};  ///< byte offset of each key in a row
    bool key_is_tie[3] = {false, false, false};
    bool stabilise = true;
    std::size_t tie_offset = 0;  ///< byte offset of the tie-break column
    bool descending = false;
    bool case_sensitive = false;
    /// The tie-break column's own values, indexed by original row number
    /// (doubles, or String Space offsets / long references in the low word).
    /// Grown as needed and then reused.
    std::vector<double> saved_doubles;
    std::vector<std::uint32_t> saved_words;
    /// What an empty long element compares as.
    LongNumber empty_long;
};

/// SORT array [(fixed indices)] [, parameter] ...; the scan position is
/// behind the keyword. Returns 0 or a negated, reported error.
[[nodiscard]] int do_sort();

}  // namespace tl
