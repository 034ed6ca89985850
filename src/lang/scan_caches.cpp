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
#include "lang/user_functions.h"

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
    // Two slots per name: two names that meet in one slot do not drive each
    // other out. A new name takes the slot that was filled longer ago.
    h ^= h >> 15;
    const std::size_t first = h & (name_cache_size - 2);
    NameCacheEntry* const pair = &lang.caches.names[first];
    for (int i = 0; i < 2; ++i) {
        NameCacheEntry& e = pair[i];
        if (e.length == name.size() && std::memcmp(e.name, lower, name.size()) == 0) return &e;
    }
    NameCacheEntry& e = pair[pair[0].serial <= pair[1].serial ? 0 : 1];
    e = NameCacheEntry{};
    std::memcpy(e.name, lower, name.size());
    e.length = static_cast<std::uint8_t>(name.size());
    e.slots = look_up_keyword_slots(std::string_view(lower, name.size()));
    e.serial = ++lang.caches.next_serial;
    return &e;
}

namespace {

/// The place record for a position in the program image, with its key; null
/// when the position is elsewhere or the caches are off.
NamePlace* place_for(const char* p, const char* end, std::uint32_t& key) {
    const char* image = areas.program_image.get();
    if (!exec.caches_enabled || image == nullptr || p < image || p >= image + areas.program_length ||
        end - p > 0xFFFF || areas.program_image_valid < areas.program_length ||
        areas.program_image_length != areas.program_length)
        return nullptr;
    std::vector<NamePlace>& places = lang.caches.places;
    if (places.empty()) places.resize(name_place_cache_size);
    key = static_cast<std::uint32_t>(p - image) + 1;
    return &places[(key * 2654435761u) >> 22 & (name_place_cache_size - 1)];
}

}  // namespace

NameCacheEntry* name_at_place(const char* p, const char* end, std::size_t& length) {
    // A place is only recorded from an up-to-date image, and any change of
    // the text changes the generation: the key and generation say it all.
    const std::vector<NamePlace>& places = lang.caches.places;
    const std::uintptr_t offset =
        reinterpret_cast<std::uintptr_t>(p) - reinterpret_cast<std::uintptr_t>(areas.program_image.get());
    if (places.empty() || !exec.caches_enabled || offset >= areas.program_length) return nullptr;
    const auto key = static_cast<std::uint32_t>(offset) + 1;
    const NamePlace& place = places[(key * 2654435761u) >> 22 & (name_place_cache_size - 1)];
    if (place.key != key || place.program_generation != areas.program_generation || place.room != end - p)
        return nullptr;
    NameCacheEntry* const entry = place.entry;
    if (entry == nullptr || entry->serial != place.serial) return nullptr;
    length = place.length;
    return entry;
}

void note_name_place(std::string_view name, const char* end, NameCacheEntry* entry) {
    std::uint32_t key = 0;
    NamePlace* place = place_for(name.data(), end, key);
    if (place == nullptr || entry == nullptr) return;
    place->key = key;
    place->program_generation = areas.program_generation;
    place->room = static_cast<std::uint16_t>(end - name.data());
    place->length = static_cast<std::uint8_t>(name.size());
    place->serial = entry->serial;
    place->entry = entry;
}

int find_user_function_via(NameCacheEntry* entry, std::string_view name) {
    if (entry == nullptr || !holds(*entry, name)) return find_user_function(name);
    if (!entry->function_known || entry->functions_generation != lang.functions.generation) {
        entry->user_function = find_user_function(name);
        entry->functions_generation = lang.functions.generation;
        entry->function_known = true;
    }
    return entry->user_function;
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
