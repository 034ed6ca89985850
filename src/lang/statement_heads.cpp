// statement_heads.cpp — the head cache: the first Item of a statement by its place.
#include "lang/statement_heads.h"

#include <cstring>
#include <string_view>

#include "exec/exec_state.h"
#include "exec/memory_areas.h"
#include "lang/lang_state.h"
#include "lang/scan_names.h"
#include "lang/scanner.h"

namespace tl {
namespace {

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// The cache slot of the statement at the scan position, with its key and
/// room, or null when the position is not in the program image (a line typed
/// elsewhere) or the caches are off.
StatementHead* head_slot(std::uint32_t& key, std::uint16_t& room) {
    const ScanState& s = lang.scan;
    if (!exec.caches_enabled || s.defining_function || s.evaluating_function) return nullptr;
    const char* image = areas.program_image.get();
    const char* p = s.position;
    if (image == nullptr || p < image || p >= image + areas.program_length) return nullptr;
    const std::ptrdiff_t r = s.end - p;
    if (r <= 0 || r > 0xFFFF) return nullptr;
    key = static_cast<std::uint32_t>(p - image) + 1;
    room = static_cast<std::uint16_t>(r);
    return &lang.caches.heads[(key * 2654435761u) >> 23 & (statement_head_cache_size - 1)];
}

/// Records what get_item found at `p` (it returned `kind` with `item`), when
/// it is a keyword, a variable or an array element found in tables that did
/// not change while it was scanned.
void record_head(StatementHead& h, std::uint32_t key, std::uint16_t room, const char* p, int kind, const Item& item,
                 const PlanStamp& before) {
    h.key = 0;
    if (!is_letter(*p) || areas.program_image_valid < areas.program_length ||
        areas.program_image_length != areas.program_length)
        return;
    const PlanStamp after = current_stamp();
    if (!(after == before)) return;  // met again, it is found in the tables as they are then
    std::size_t length = 0;
    while (length <= static_cast<std::size_t>(max_name_chars) && p + length < lang.scan.end &&
           is_name_char(p[length]))
        ++length;
    if (length > static_cast<std::size_t>(max_name_chars)) return;
    if (kind == kind_statement) {
        if (lang.scan.position != p + length) return;
        h.kind = HeadKind::keyword;
        h.index = item.word;
    } else if (kind == kind_double || kind == kind_string || kind == kind_long) {
        if (item.array != nullptr) {
            h.kind = HeadKind::element;
            h.index = static_cast<std::uint32_t>(item.array - areas.arrays.get());
        } else if (item.extra != 0 && lang.scan.position == p + length) {
            h.kind = HeadKind::variable;
            h.index = item.extra - 1;
        } else {
            return;
        }
    } else {
        return;
    }
    h.key = key;
    h.room = room;
    h.stamp = after;
    h.length = static_cast<std::uint8_t>(length);
}

}  // namespace

int scan_statement_head(Item& item) {
    ScanState& s = lang.scan;
    skip_blanks();
    std::uint32_t key = 0;
    std::uint16_t room = 0;
    StatementHead* h = head_slot(key, room);
    if (h == nullptr) return get_item(item, scan_statement_position);
    const char* const p = s.position;
    const PlanStamp stamp = current_stamp();
    if (h->key != key || h->room != room || !(h->stamp == stamp)) {
        const int kind = get_item(item, scan_statement_position);
        if (kind > 0) record_head(*h, key, room, p, kind, item, stamp);
        return kind;
    }
    // As get_item leaves it: the name read and remembered, the Item filled.
    item = Item{};
    item.column = scan_column();
    std::memcpy(s.name, p, h->length);
    s.name[h->length] = 0;
    s.name_element = nullptr;
    s.position = p + h->length;
    switch (h->kind) {
        case HeadKind::keyword:
            item.kind = kind_statement;
            item.word = h->index;
            return kind_statement;
        case HeadKind::variable: return fetch_variable(item, static_cast<int>(h->index), scan_statement_position);
        case HeadKind::element:
            return scan_element_item(item, scan_statement_position, std::string_view(p, h->length),
                                     &areas.arrays[h->index]);
        case HeadKind::none: break;
    }
    s.position = p;
    return get_item(item, scan_statement_position);
}

}  // namespace tl
