// scan_caches.h — what the scanner remembers between passes over the same text:
// the keyword slots of a name, its variable and array entries, and the value
// of a number constant at a place in the Program Buffer.
//
// Every entry gives exactly what the look-up it replaces would give; the
// look-ups are used directly while exec.caches_enabled is off.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "lang/expression_plans.h"
#include "lang/statement_heads.h"

namespace tl {

struct ArrayEntry;

/// Slots of one name in the fixed tables, -1 where the name is absent.
struct KeywordSlots {
    std::int16_t logical = -1;
    std::int16_t command = -1;
    std::int16_t statement = -1;
    std::int16_t predefined = -1;
    std::int16_t function = -1;
    std::int16_t special = -1;
};

/// Longest name (and number text) kept; longer ones are looked up each time.
inline constexpr std::size_t cached_text_max = 23;
inline constexpr std::size_t name_cache_size = 512;    // a power of two
inline constexpr std::size_t number_cache_size = 256;  // a power of two

struct NameCacheEntry {
    char name[cached_text_max + 1] = {};  ///< lower case
    std::uint8_t length = 0;              ///< 0: unused
    KeywordSlots slots;
    /// The variable and array found for the name while the tables were as
    /// recorded here (counts and areas.name_tables_generation).
    bool tables_known = false;
    std::uint32_t tables_generation = 0;
    std::uint32_t variable_count = 0;
    std::uint32_t array_count = 0;
    std::int32_t variable = -1;
    std::int32_t array = -1;
    /// The user-defined function of the name while the function table was
    /// in generation `functions_generation`.
    bool function_known = false;
    std::uint32_t functions_generation = 0;
    std::int32_t user_function = -1;
    /// Given anew whenever the entry takes another name (places check it).
    std::uint32_t serial = 0;
};

/// A name met at a place in the program text: its length and the name-cache
/// entry that held it, so that meeting it there again skips reading and
/// hashing the name.
struct NamePlace {
    std::uint32_t key = 0;  ///< program offset + 1 of the name's first character; 0: unused
    std::uint32_t program_generation = 0;
    std::uint16_t room = 0;  ///< characters from the name to the end of the statement text
    std::uint8_t length = 0;
    std::uint32_t serial = 0;
    NameCacheEntry* entry = nullptr;
};

inline constexpr std::size_t name_place_cache_size = 1024;  // a power of two

/// A number constant read at a Program Buffer offset: its text with the
/// character that ended it, so a hit is checked against the text itself.
struct NumberCacheEntry {
    std::uint32_t offset = 0;  ///< program offset + 1; 0: unused
    std::uint8_t length = 0;   ///< characters of the constant
    char text[cached_text_max + 2] = {};  ///< the constant and the character after it (0 at the end)
    /// The constant converts to `value` as a double operand (see make_numeric).
    bool is_double = false;
    double value = 0.0;
};

struct ScanCaches {
    std::array<NameCacheEntry, name_cache_size> names{};
    std::array<NumberCacheEntry, number_cache_size> numbers{};
    /// Plans of numeric expressions by place (plan_cache_size entries once used).
    PlanTable plans;
    /// The first Item of statements by place.
    std::array<StatementHead, statement_head_cache_size> heads{};
    /// Names by place (name_place_cache_size entries once used).
    std::vector<NamePlace> places;
    std::uint32_t next_serial = 0;
    /// Evaluations answered from a plan (for tests and measurements).
    std::uint64_t plan_replays = 0;
};

/// The keyword slots of `name`, straight from the tables.
[[nodiscard]] KeywordSlots look_up_keyword_slots(std::string_view name);

/// The cache entry of `name` with its keyword slots filled, or null when the
/// caches are off or the name is too long to keep.
[[nodiscard]] NameCacheEntry* cached_name(std::string_view name);

/// The name-cache entry of the name starting at `p` in the program image,
/// when this place was met before and the entry still holds the name; its
/// length in `length`. Null otherwise (read the name and use note_name_place).
[[nodiscard]] NameCacheEntry* name_at_place(const char* p, const char* end, std::size_t& length);
/// Records that the name `name` (starting in the program image, read up to
/// `end`) has the cache entry `entry`.
void note_name_place(std::string_view name, const char* end, NameCacheEntry* entry);

/// find_user_function through an entry of cached_name (null: direct look-up).
[[nodiscard]] int find_user_function_via(NameCacheEntry* entry, std::string_view name);

/// find_variable / find_array through an entry of cached_name (null: direct look-up).
[[nodiscard]] int find_variable_via(NameCacheEntry* entry, std::string_view name);
[[nodiscard]] ArrayEntry* find_array_via(NameCacheEntry* entry, std::string_view name);

}  // namespace tl
