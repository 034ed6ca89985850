// scan_caches.cpp — the name cache of the scanner (the number cache is used in scanner.cpp).
#include "lang/scan_caches.h"

#include <cstring>

#include "exec/arrays.h"
#include "exec/exec_state.h"
#include "exec/memory_areas.h"
#include "exec/variables.h"
#include "lang/keyword_tables.h"
#include "lang/lang_state.h"
#include "lang/predefined_variables.h"

namespace tl {
namespace {

/// True when the entry still holds `name` (a call made while a name was being
/// scanned may have given its slot to another name).
bool holds(const NameCacheEntry& e, std::string_view name) {
    if (e.length != name.size()) return false;
    for (std::size_t i = 0; i < name.size(); ++i) {
        char c = name[i];
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        if (c != e.name[i]) return false;
    }
    return true;
}

void refresh_tables(NameCacheEntry& e, std::string_view name) {
    if (e.tables_known && e.tables_generation == areas.name_tables_generation &&
        e.variable_count == areas.variable_count && e.array_count == areas.array_count)
        return;
    e.variable = find_variable(name);
    const ArrayEntry* a = find_array(name);
    e.array = a == nullptr ? -1 : static_cast<std::int32_t>(a - areas.arrays.get());
    e.tables_generation = areas.name_tables_generation;
    e.variable_count = areas.variable_count;
    e.array_count = areas.array_count;
    e.tables_known = true;
}

}  // namespace

KeywordSlots look_up_keyword_slots(std::string_view name) {
    KeywordSlots k;
    k.logical = static_cast<std::int16_t>(find_keyword(Table::logical_operators, name));
    k.command = static_cast<std::int16_t>(find_keyword(Table::commands, name));
    k.statement = static_cast<std::int16_t>(find_keyword(Table::statements, name));
    k.predefined = static_cast<std::int16_t>(find_predefined(name));
    k.function = static_cast<std::int16_t>(find_keyword(Table::functions, name));
    k.special = static_cast<std::int16_t>(find_keyword(Table::special_functions, name));
    return k;
}

NameCacheEntry* cached_name(std::string_view name) {
    if (!exec.caches_enabled || name.empty() || name.size() > cached_text_max) return nullptr;
    char lower[cached_text_max + 1];
    std::uint32_t h = 2166136261u;
    for (std::size_t i = 0; i < name.size(); ++i) {
        char c = name[i];
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        lower[i] = c;
        h = (h ^ static_cast<unsigned char>(c)) * 16777619u;
    }
    NameCacheEntry& e = lang.caches.names[h & (name_cache_size - 1)];
    if (e.length == name.size() && std::memcmp(e.name, lower, name.size()) == 0) return &e;
    // A new name takes the slot over.
    e = NameCacheEntry{};
    std::memcpy(e.name, lower, name.size());
    e.length = static_cast<std::uint8_t>(name.size());
    e.slots = look_up_keyword_slots(std::string_view(lower, name.size()));
    return &e;
}

int find_variable_via(NameCacheEntry* entry, std::string_view name) {
    if (entry == nullptr || !holds(*entry, name)) return find_variable(name);
    refresh_tables(*entry, name);
    return entry->variable;
}

ArrayEntry* find_array_via(NameCacheEntry* entry, std::string_view name) {
    if (entry == nullptr || !holds(*entry, name)) return find_array(name);
    refresh_tables(*entry, name);
    return entry->array < 0 ? nullptr : &areas.arrays[entry->array];
}

}  // namespace tl
