// expression_plans.cpp — making and replaying plans of expressions.
//
// The plan maker reads the text as get_item would in the evaluation modes
// (statement level, parentheses, parameter lists) and reduces the Items the
// way the evaluator's seven passes do, on operands that are tree nodes
// instead of values; the kind of every operand (double, number text, string)
// is known from the text and the tables. Anything it does not follow exactly
// — long numbers, other functions, names it would have to create, any syntax
// or type the evaluator would refuse — leaves the expression without a plan.
#include "lang/expression_plans.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "exec/exec_state.h"
#include "exec/memory_areas.h"
#include "exec/string_space.h"
#include "lang/evaluator.h"
#include "lang/expression_passes.h"
#include "lang/keyword_tables.h"
#include "lang/lang_state.h"
#include "lang/number_text.h"
#include "lang/numeric_operands.h"
#include "lang/scan_caches.h"
#include "lang/scan_names.h"
#include "lang/scanner.h"
#include "lang/user_functions.h"

namespace tl {
namespace {

// ---- making a plan --------------------------------------------------------

/// The kind of an operand: a double, a number constant still held as text
/// (a double wherever a number is needed), or a string.
enum ValueKind : std::uint8_t { value_double, value_number_text, value_string };

struct Node {
    PlanOp op = plan_constant;
    std::uint8_t count = 0;  // subscripts, parameters or the comparison slot
    std::uint8_t children = 0;
    std::uint16_t length = 0;
    std::uint32_t index = 0;
    double value = 0.0;
    std::int16_t child[max_parameters] = {};
    /// A number constant held as text: the length of its text, and whether
    /// the text starts with "-" (a sign taken by it turns that).
    std::uint16_t text_length = 0;
    bool negative_text = false;
};

/// An event of the evaluator's temporary string space, by node.
struct MakerEvent {
    PlanEventType type = event_hold;
    int node = -1;
    std::uint16_t size = 0;
};

enum SymbolKind : std::uint8_t { symbol_operand, symbol_operator, symbol_comparison, symbol_logical };

/// An Item of the symbolic table: an operand (a node) or an operator.
struct Symbol {
    SymbolKind kind = symbol_operand;
    ValueKind value = value_double;
    bool written = false;  // a number constant as written (no sign, no parentheses)
    bool name = false;     // a string variable or element as written
    char op = 0;
    int slot = 0;
    int node = -1;
};

Symbol operand(int node, ValueKind value) {
    Symbol s;
    s.value = value;
    s.node = node;
    return s;
}

Symbol operator_symbol(SymbolKind kind, char op, int slot) {
    Symbol s;
    s.kind = kind;
    s.op = op;
    s.slot = slot;
    return s;
}

/// The result of one (sub-)expression.
struct Operand {
    int node = -1;
    ValueKind value = value_double;
};

struct PlanMaker {
    const char* p = nullptr;
    const char* end = nullptr;
    ExpressionPlan* plan = nullptr;  // for its text pool
    Node nodes[max_plan_steps];
    int node_count = 0;
    /// The whole expression is one number constant as written, with this
    /// text, or one string variable or element.
    bool sole_constant = false;
    bool sole_name = false;
    char constant_text[max_number_text + 1] = {};
    MakerEvent events[max_plan_events];
    int event_count = 0;
    bool events_full = false;
    int step_of[max_plan_steps] = {};

    void event(PlanEventType type, int node = -1, std::size_t size = 0) {
        if (event_count == max_plan_events) {
            events_full = true;
            return;
        }
        events[event_count++] = MakerEvent{type, node, static_cast<std::uint16_t>(size)};
    }
    /// The evaluator holds the operand's text in temporary space (strings and number texts).
    void hold(int node, ValueKind value) {
        if (value == value_string) event(event_hold_step, node);
        if (value == value_number_text) event(event_hold, -1, nodes[node].text_length + 1u);
    }

    int add(const Node& n) {
        if (node_count == max_plan_steps) return -1;
        nodes[node_count] = n;
        return node_count++;
    }
    bool at_end() const { return p >= end || *p == 0; }
    char peek(std::ptrdiff_t ahead = 0) const { return p + ahead < end ? p[ahead] : 0; }
    void skip_blanks() {
        while (p < end && (*p == ' ' || *p == '\t')) ++p;
    }
};

bool is_sign(const Symbol& s) { return s.kind == symbol_operator && (s.op == '+' || s.op == '-'); }

void remove_symbols(Symbol* t, int& count, int at, int n) {
    for (int i = at; i + n < count; ++i) t[i] = t[i + n];
    count -= n;
}

/// A node of `op` over `n` operands.
int add_node(PlanMaker& m, PlanOp op, const Operand* operands, int n, std::uint8_t count = 0) {
    Node node;
    node.op = op;
    node.count = count;
    node.children = static_cast<std::uint8_t>(n);
    for (int i = 0; i < n; ++i) node.child[i] = static_cast<std::int16_t>(operands[i].node);
    return m.add(node);
}

/// Replaces operand-operator-operand at `i` by a node of `op` giving `result`.
bool combine(PlanMaker& m, Symbol* t, int& count, int i, PlanOp op, ValueKind result, std::uint8_t slot = 0) {
    const Operand both[2] = {{t[i - 1].node, t[i - 1].value}, {t[i + 1].node, t[i + 1].value}};
    const int node = add_node(m, op, both, 2, slot);
    if (node < 0) return false;
    t[i - 1] = operand(node, result);
    remove_symbols(t, count, i, 2);
    return true;
}

/// Both neighbours of the operator at `i` are operands.
bool has_operands(const Symbol* t, int count, int i) {
    return i > 0 && i + 1 < count && t[i - 1].kind == symbol_operand && t[i + 1].kind == symbol_operand;
}

PlanOp arithmetic_op(char c) {
    switch (c) {
        case '^': return plan_power;
        case '*': return plan_multiply;
        case '/': return plan_divide;
        case '%': return plan_remainder;
        case '+': return plan_add;
        default: return plan_subtract;
    }
}

/// The evaluator's passes over the symbolic table; false wherever a pass
/// would report an error.
bool reduce(PlanMaker& m, Symbol* t, int& count) {
    // Unary signs: a sign turns the next one, or is taken by a number.
    for (int i = 0; i < count;) {
        Symbol& op = t[i];
        if (op.kind != symbol_operator) {
            ++i;
            continue;
        }
        const bool sign = is_sign(op);
        const bool unary = sign && (i == 0 || t[i - 1].kind != symbol_operand);
        if (i == count - 1) return false;
        Symbol& next = t[i + 1];
        if (next.kind == symbol_operator && !is_sign(next)) return false;
        if (!unary) {
            ++i;
            continue;
        }
        const bool number = next.kind == symbol_operand && next.value != value_string;
        if (op.op == '-') {
            if (is_sign(next)) {
                next.op = next.op == '+' ? '-' : '+';
            } else {
                if (!number) return false;
                if (m.nodes[next.node].op == plan_constant) {
                    Node n = m.nodes[next.node];
                    n.value = -n.value;
                    if (next.value == value_number_text) {
                        // The text turns too, into a new temporary text.
                        n.text_length = static_cast<std::uint16_t>(n.negative_text ? n.text_length - 1 : n.text_length + 1);
                        n.negative_text = !n.negative_text;
                        m.event(event_hold, -1, n.text_length + 1u);
                    }
                    next.node = m.add(n);
                } else {
                    const Operand one{next.node, next.value};
                    next.node = add_node(m, plan_negate, &one, 1);
                }
                if (next.node < 0) return false;
            }
        } else if (!is_sign(next) && !number) {
            return false;
        }
        remove_symbols(t, count, i, 1);
    }
    // Power, then multiply and divide, then add and subtract (or join): left to right.
    for (const char* group : {"^", "*/%", "+-"}) {
        for (int i = 0; i < count;) {
            const Symbol& op = t[i];
            if (op.kind != symbol_operator || std::strchr(group, op.op) == nullptr) {
                ++i;
                continue;
            }
            if (!has_operands(t, count, i)) return false;
            const bool left_string = t[i - 1].value == value_string;
            const bool right_string = t[i + 1].value == value_string;
            if (op.op == '+' && left_string && right_string) {
                m.event(event_join_check);
                if (!combine(m, t, count, i, plan_join, value_string)) return false;
                m.event(event_hold_step, t[i - 1].node);
                continue;
            }
            if (left_string || right_string) return false;
            if (!combine(m, t, count, i, arithmetic_op(op.op), value_double)) return false;
        }
    }
    // Comparisons; one left last makes the expression fail as a whole.
    for (int i = 0; i < count;) {
        if (t[i].kind != symbol_comparison) {
            ++i;
            continue;
        }
        if (!has_operands(t, count, i)) return false;
        const bool left_string = t[i - 1].value == value_string;
        if (left_string != (t[i + 1].value == value_string)) return false;
        const PlanOp op = left_string ? plan_text_compare : plan_compare;
        if (!combine(m, t, count, i, op, value_double, static_cast<std::uint8_t>(t[i].slot))) return false;
    }
    // NOT, then AND, OR, EOR and XOR; strings are true when not empty.
    for (int i = 0; i < count; ++i) {
        Symbol& op = t[i];
        if (op.kind != symbol_logical || op.slot != logic_not) continue;
        if (i == count - 1 || t[i + 1].kind != symbol_operand) return false;
        const Operand one{t[i + 1].node, t[i + 1].value};
        const int node = add_node(m, plan_not, &one, 1);
        if (node < 0) return false;
        op = operand(node, value_double);
        remove_symbols(t, count, i + 1, 1);
    }
    for (const int slot : {logic_and, logic_or, logic_eor, logic_xor}) {
        const PlanOp op = slot == logic_and ? plan_and : slot == logic_or ? plan_or : plan_differ;
        for (int i = 0; i < count;) {
            if (t[i].kind != symbol_logical || t[i].slot != slot) {
                ++i;
                continue;
            }
            if (!has_operands(t, count, i) || !combine(m, t, count, i, op, value_double)) return false;
        }
    }
    return count == 1 && t[0].kind == symbol_operand;
}

bool make_expression(PlanMaker& m, int mode, Operand& result, char& terminator, int depth);

/// "(p1, p2, ...)" after a function or array name. Returns the count, or -1
/// when there is no plan.
int make_parameters(PlanMaker& m, Operand* params, int depth) {
    m.skip_blanks();
    if (m.peek() != '(') return -1;
    ++m.p;
    int count = 0;
    for (;;) {
        m.skip_blanks();
        char ended_on = 0;
        if (!make_expression(m, scan_in_parentheses | scan_separators, params[count], ended_on, depth + 1)) return -1;
        m.hold(params[count].node, params[count].value);
        ++count;
        if (ended_on == ')') return count;
        if (count == max_parameters) return -1;
    }
}

/// A builtin function the plan computes itself: its step, its parameter
/// kinds ('n' a number, 's' a string; upper case when the parameter may be
/// left out at the front or back) and the kind of its result.
struct PlannedFunction {
    int slot;
    PlanOp op;
    const char* parameters;
    ValueKind result;
};

constexpr PlannedFunction planned_functions[] = {
    {fn_sgn, plan_sgn, "n", value_double},       {fn_fix, plan_fix, "n", value_double},
    {fn_int, plan_int, "n", value_double},       {fn_sqr, plan_sqr, "n", value_double},
    {fn_len, plan_len, "s", value_double},       {fn_asc, plan_asc, "s", value_double},
    {fn_chr_s, plan_chr, "n", value_string},     {fn_mid_s, plan_mid, "snN", value_string},
    {fn_left_s, plan_left, "sn", value_string},  {fn_right_s, plan_right, "sn", value_string},
    {fn_instr, plan_instr, "Nss", value_double},
};

/// A call of a planned function, its parameters read; false when it has none
/// or the evaluator would refuse the parameters.
bool make_call(PlanMaker& m, int slot, Node& n, ValueKind& result, int depth) {
    if (slot == fn_abs) {  // abs keeps a number text as text; only doubles here
        Operand arg[max_parameters];
        m.event(event_mark);
        if (make_parameters(m, arg, depth) != 1 || arg[0].value != value_double) return false;
        m.event(event_release);
        n.op = plan_abs;
        n.children = 1;
        n.child[0] = static_cast<std::int16_t>(arg[0].node);
        result = value_double;
        return true;
    }
    const PlannedFunction* f = nullptr;
    for (const PlannedFunction& candidate : planned_functions)
        if (candidate.slot == slot) f = &candidate;
    if (f == nullptr) return false;
    Operand args[max_parameters];
    m.event(event_mark);
    const int count = make_parameters(m, args, depth);
    m.event(event_release);
    const int most = static_cast<int>(std::strlen(f->parameters));
    int optional = 0;
    for (const char* q = f->parameters; *q != 0; ++q) optional += (*q == 'N') ? 1 : 0;
    if (count < most - optional || count > most) return false;
    // An optional parameter in front is the one left out when fewer are given.
    const int skip = (count < most && f->parameters[0] == 'N') ? 1 : 0;
    for (int i = 0; i < count; ++i) {
        const char want = f->parameters[i + skip];
        const bool is_string = args[i].value == value_string;
        if ((want == 's') != is_string) return false;
        n.child[i] = static_cast<std::int16_t>(args[i].node);
    }
    n.op = f->op;
    n.children = static_cast<std::uint8_t>(count);
    n.count = static_cast<std::uint8_t>(count);
    result = f->result;
    return true;
}

/// A name in an expression, already read: its operand, or a statement keyword
/// that ends the expression (`ends` set). False when there is no plan.
bool make_name(PlanMaker& m, std::string_view name, Symbol& symbol, bool& ends, int depth) {
    NameCacheEntry* cached = cached_name(name);
    if (cached == nullptr) return false;
    const KeywordSlots& k = cached->slots;
    if (k.logical >= 0) {
        symbol = operator_symbol(symbol_logical, 0, k.logical);
        return true;
    }
    if (k.command >= 0) return false;
    if (k.statement >= 0 && !is_shared_with_function(k.statement)) {
        ends = true;
        return true;
    }
    if (k.predefined >= 0) return false;
    Node n;
    ValueKind value = value_double;
    bool is_name = false;
    if (k.function >= 0) {
        if (!make_call(m, k.function, n, value, depth)) return false;
    } else if (find_user_function_via(cached, name) >= 0 || k.special >= 0) {
        return false;
    } else {
        const char* after = m.p;
        m.skip_blanks();
        const bool element = m.peek() == '(';
        m.p = after;
        ArrayEntry* a = find_array_via(cached, name);
        is_name = true;
        if (element) {
            if (a == nullptr || (a->type != kind_double && a->type != kind_string)) return false;
            Operand subscripts[max_parameters];
            m.event(event_mark);
            const int count = make_parameters(m, subscripts, depth);
            m.event(event_release);
            if (count < 0 || count != a->dimensions) return false;
            for (int i = 0; i < count; ++i) {
                if (subscripts[i].value == value_string) return false;
                n.child[i] = static_cast<std::int16_t>(subscripts[i].node);
            }
            value = a->type == kind_string ? value_string : value_double;
            n.op = value == value_string ? plan_text_element : plan_element;
            n.index = static_cast<std::uint32_t>(a - areas.arrays.get());
            n.children = static_cast<std::uint8_t>(count);
            n.count = static_cast<std::uint8_t>(count);
        } else {
            if (a != nullptr) return false;
            const int index = find_variable_via(cached, name);
            if (index < 0) return false;
            const std::uint32_t type = areas.variables[index].type;
            if (type != kind_double && type != kind_string) return false;
            value = type == kind_string ? value_string : value_double;
            n.op = value == value_string ? plan_text_variable : plan_variable;
            n.index = static_cast<std::uint32_t>(index);
        }
    }
    const int node = m.add(n);
    if (node < 0) return false;
    symbol = operand(node, value);
    symbol.name = is_name && value == value_string;
    m.hold(node, value);
    return true;
}

/// A number constant: an operand held as text whose double is known.
bool make_number(PlanMaker& m, Symbol& symbol) {
    char* const text = m.constant_text;  // the last one read
    const NumberText r = read_number_text(m.p, m.end, text);
    if (r.error != 0) return false;
    int digits = 0;
    if (!is_decimal_number(text, digits) || digits >= long_text_digits) return false;
    Node n;
    n.value = std::strtod(text, nullptr);
    if (!std::isfinite(n.value)) return false;
    n.text_length = static_cast<std::uint16_t>(r.length);
    const int node = m.add(n);
    if (node < 0) return false;
    m.hold(node, value_number_text);
    m.p += r.length;
    symbol = operand(node, value_number_text);
    symbol.written = true;
    return true;
}

/// A string constant, its escapes read as the scanner reads them, into the pool.
bool make_string(PlanMaker& m, Symbol& symbol) {
    ExpressionPlan& plan = *m.plan;
    const std::size_t start = plan.pool_used;
    std::size_t n = 0;
    ++m.p;  // the opening quote
    for (;;) {
        if (m.at_end()) return false;
        char c = *m.p;
        if (c == '"') {
            ++m.p;
            break;
        }
        if (c == '\\') {
            ++m.p;
            if (m.at_end()) return false;
            c = escaped_character(*m.p);
        }
        if (n >= scan_buffer_size - 2 || start + n >= sizeof plan.pool) return false;
        plan.pool[start + n++] = c;
        ++m.p;
    }
    // A NUL from "\0"-like text would end the scanner's copy there.
    const void* nul = std::memchr(plan.pool + start, 0, n);
    if (nul != nullptr) n = static_cast<std::size_t>(static_cast<const char*>(nul) - (plan.pool + start));
    plan.pool_used = static_cast<std::uint16_t>(start + n);
    Node node;
    node.op = plan_text_constant;
    node.index = static_cast<std::uint32_t>(start);
    node.length = static_cast<std::uint16_t>(n);
    const int added = m.add(node);
    if (added < 0) return false;
    if (n > 0) m.event(event_hold, -1, n + 1);
    symbol = operand(added, value_string);
    return true;
}

struct ComparisonForm {
    char first;
    char second;
    int slot;
};

// The two-character forms come first, as in the scanner.
constexpr ComparisonForm comparison_forms[] = {{'<', '=', cmp_le}, {'>', '=', cmp_ge}, {'<', '>', cmp_ne},
                                               {'=', 0, cmp_eq},   {'<', 0, cmp_lt},   {'>', 0, cmp_gt}};

/// Collects the Items of one expression as collect_items does and reduces them.
bool make_expression(PlanMaker& m, int mode, Operand& result, char& terminator, int depth) {
    if (depth > 8) return false;
    const bool in_parentheses = (mode & scan_in_parentheses) != 0;
    Symbol t[max_expression_items + 1];
    int count = 0;
    for (;;) {
        m.skip_blanks();
        const bool at_end = m.at_end();
        const char c = at_end ? 0 : *m.p;
        if (count == max_expression_items &&
            !(at_end || c == ':' || (in_parentheses && c == ')') ||
              ((mode & scan_separators) != 0 && (c == ',' || c == ';'))))
            return false;
        if (in_parentheses) {
            if (at_end || c == ':') return false;
            if (c == ')') {
                ++m.p;
                terminator = ')';
                break;
            }
        }
        if (at_end || c == ':') {
            terminator = c;
            break;
        }
        if ((mode & scan_separators) != 0 && (c == ',' || c == ';')) {
            ++m.p;
            terminator = c;
            break;
        }
        if (c == '?' || (c == '/' && m.peek(1) == '/')) {  // PRINT or REM: the statement ends here
            if (in_parentheses) return false;
            terminator = 0;
            break;
        }
        Symbol& s = t[count];
        if (c == '+' || c == '-' || c == '*' || c == '/' || c == '^' || c == '%') {
            s = operator_symbol(symbol_operator, c, 0);
            ++m.p;
        } else if (c == '<' || c == '>' || c == '=') {
            for (const ComparisonForm& f : comparison_forms) {
                if (c != f.first || (f.second != 0 && m.peek(1) != f.second)) continue;
                s = operator_symbol(symbol_comparison, 0, f.slot);
                m.p += f.second != 0 ? 2 : 1;
                break;
            }
        } else if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z')) {
            const char* begin = m.p;
            while (m.p < m.end && is_name_char(*m.p)) {
                if (m.p - begin == max_name_chars) return false;
                ++m.p;
            }
            bool ends = false;
            if (!make_name(m, std::string_view(begin, static_cast<std::size_t>(m.p - begin)), s, ends, depth))
                return false;
            if (ends) {  // a statement keyword (THEN, TO, STEP, ...) is left for the statement
                if (in_parentheses) return false;
                m.p = begin;
                terminator = 0;
                break;
            }
        } else if ((c >= '0' && c <= '9') || c == '.') {
            if (!make_number(m, s)) return false;
        } else if (c == '"') {
            if (!make_string(m, s)) return false;
        } else if (c == '(') {
            ++m.p;
            Operand inner;
            char inner_end = 0;
            if (!make_expression(m, scan_in_parentheses, inner, inner_end, depth + 1)) return false;
            m.hold(inner.node, inner.value);
            s = operand(inner.node, inner.value);
        } else {
            return false;  // "@", anything the scanner refuses
        }
        ++count;
    }
    if (depth == 0 && count == 1) {
        m.sole_constant = t[0].written;
        m.sole_name = t[0].name;
    }
    if (count == 0 || !reduce(m, t, count)) return false;
    result = Operand{t[0].node, t[0].value};
    return true;
}

/// Writes the steps of `node` and its children in postfix order.
bool emit(const PlanMaker& m, int node, ExpressionPlan& plan) {
    const Node& n = m.nodes[node];
    for (int i = 0; i < n.children; ++i)
        if (!emit(m, n.child[i], plan)) return false;
    if (plan.step_count == max_plan_steps) return false;
    const_cast<PlanMaker&>(m).step_of[node] = plan.step_count;
    PlanStep& step = plan.steps[plan.step_count++];
    step.op = n.op;
    step.count = n.count;
    step.index = n.index;
    step.value = n.value;
    step.length = n.length;
    return true;
}

/// Makes the plan of the expression at `start` (false: none).
bool make_plan(const char* start, int mode, ExpressionPlan& plan) {
    PlanMaker m;
    m.p = start;
    m.end = lang.scan.end;
    m.plan = &plan;
    plan.pool_used = 0;
    Operand result;
    char terminator = 0;
    if (!make_expression(m, mode, result, terminator, 0)) return false;
    // A whole expression that is a number constant stays numeric text; one
    // that was changed (a sign, parentheses) is left to the evaluator.
    plan.numeric_text = result.value == value_number_text;
    if (plan.numeric_text) {
        const std::size_t n = std::strlen(m.constant_text);
        if (!m.sole_constant || n >= sizeof plan.text) return false;
        std::memcpy(plan.text, m.constant_text, n + 1);
    }
    plan.string_result = result.value == value_string;
    plan.sole_name = plan.string_result && m.sole_name;
    plan.step_count = 0;
    if (!emit(m, result.node, plan)) return false;
    // One string element alone is left to the evaluator (it names the element for write-back).
    if (plan.sole_name && plan.steps[plan.step_count - 1].op != plan_text_variable) return false;
    if (m.events_full) return false;
    plan.event_count = static_cast<std::uint8_t>(m.event_count);
    plan.numbers_only = !plan.string_result;  // a lone number constant too: its text is held at a known size
    for (int i = 0; i < m.event_count; ++i) {
        const MakerEvent& e = m.events[i];
        plan.events[i] = PlanEvent{e.type, static_cast<std::uint8_t>(e.node >= 0 ? m.step_of[e.node] : 0), e.size};
        if (e.type == event_hold_step || e.type == event_join_check) plan.numbers_only = false;
    }
    for (int i = 0; i < plan.step_count; ++i)
        if (plan.steps[i].op >= plan_text_constant) plan.numbers_only = false;
    if (plan.numbers_only) {
        // The space figures of the events, from a start of 0.
        std::uint32_t used = 0;
        std::uint32_t marks[max_plan_events];
        int depth = 0;
        plan.space_needed = plan.space_peak = 0;
        for (int i = 0; i < plan.event_count; ++i) {
            const PlanEvent& e = plan.events[i];
            if (e.type == event_hold && e.size > 1) {
                used += e.size;
                if (used > plan.space_needed) plan.space_needed = used;
            } else if (e.type == event_mark) {
                marks[depth++] = used;
            } else if (e.type == event_release) {
                if (used + 1 > plan.space_peak) plan.space_peak = used + 1;
                used = marks[--depth];
            }
        }
        plan.space_after = used;
    }
    plan.length = static_cast<std::uint16_t>(m.p - start);
    plan.terminator = terminator;
    return true;
}

// ---- replaying a plan -------------------------------------------------------

/// A value on the replay stack: a double, or a string of `length` characters
/// at `text` (no NUL inside; not terminated).
struct Value {
    // No member initialisers: the replay stacks are left unfilled until used.
    double number;
    const char* text;
    std::size_t length;
};

Value number_value(double number) { return Value{number, nullptr, 0}; }

/// Where joined and made strings live while a plan is replayed.
struct Scratch {
    char texts[max_plan_steps][max_string_length + 1];
    int used = 0;
};

bool truth(const Value& v) { return v.text != nullptr ? v.length > 0 : v.number != 0.0; }

Value text_value(const char* text) {
    std::size_t n = std::strlen(text);
    if (n > max_string_length) n = max_string_length;  // as the scanner's copy keeps it
    return Value{0.0, text, n};
}

int text_order(const Value& a, const Value& b) {
    const std::size_t n = a.length < b.length ? a.length : b.length;
    const int c = std::memcmp(a.text, b.text, n);
    if (c != 0) return c < 0 ? -1 : 1;
    return a.length == b.length ? 0 : (a.length < b.length ? -1 : 1);
}

/// An element's place from the subscripts on the stack; false when out of range.
bool element_offset(const ArrayEntry& a, const Value* subscripts, int count, std::int64_t& offset) {
    if (a.dimensions != count) return false;
    offset = 0;
    for (int d = 0; d < count; ++d) {
        const double s = subscripts[d].number;
        if (!(s >= 0.0 && s < static_cast<double>(a.sizes[d]))) return false;
        offset = offset * a.sizes[d] + static_cast<std::int64_t>(s);
    }
    return true;
}

/// The string functions; false where the function would report an error.
bool string_function(const PlanStep& step, Value* args, Value& out, Scratch& scratch) {
    switch (step.op) {
        case plan_len: out = number_value(static_cast<double>(args[0].length)); return true;
        case plan_asc:
            if (args[0].length == 0) return false;
            out = number_value(static_cast<double>(static_cast<unsigned char>(args[0].text[0])));
            return true;
        case plan_chr: {
            const double code = std::trunc(args[0].number);
            if (!(code >= 0.0 && code <= 255.0)) return false;
            char* text = scratch.texts[scratch.used++];
            text[0] = static_cast<char>(static_cast<unsigned char>(code));
            out = Value{0.0, text, code == 0.0 ? 0u : 1u};  // a NUL ends the text at once
            return true;
        }
        case plan_mid: {
            const double start = std::trunc(args[1].number);
            const double n = step.count == 3 ? std::trunc(args[2].number) : static_cast<double>(max_string_length);
            if (!(start >= 1.0) || n < 0.0) return false;
            const std::size_t length = args[0].length;
            if (start > static_cast<double>(length)) {
                out = Value{0.0, args[0].text, 0};
                return true;
            }
            const auto from = static_cast<std::size_t>(start) - 1;
            const std::size_t rest = length - from;
            out = Value{0.0, args[0].text + from, n < static_cast<double>(rest) ? static_cast<std::size_t>(n) : rest};
            return true;
        }
        case plan_left:
        case plan_right: {
            const double n = std::trunc(args[1].number);
            if (n < 0.0 || std::isnan(n)) return false;
            const std::size_t length = args[0].length;
            const std::size_t take = n < static_cast<double>(length) ? static_cast<std::size_t>(n) : length;
            out = Value{0.0, step.op == plan_right ? args[0].text + (length - take) : args[0].text, take};
            return true;
        }
        case plan_instr: {
            const double start = step.count == 3 ? std::trunc(args[0].number) : 1.0;
            const Value& s = args[step.count - 2];
            const Value& t = args[step.count - 1];
            if (std::isnan(start)) return false;
            out = number_value(0.0);
            if (start < 1.0 || start > static_cast<double>(s.length) || s.length == 0) return true;
            const auto from = static_cast<std::size_t>(start) - 1;
            if (t.length > s.length - from) return true;
            for (std::size_t i = from; i + t.length <= s.length; ++i) {
                if (std::memcmp(s.text + i, t.text, t.length) == 0) {
                    out.number = static_cast<double>(i + 1);
                    return true;
                }
            }
            return true;
        }
        default: return false;
    }
}

/// A plan of doubles alone: its value in `out`; false where the evaluator
/// would report an error.
bool replay_numbers(const ExpressionPlan& plan, double& out) {
    double stack[max_plan_steps];
    double* end = stack;  // one past the value on top of the stack
    const PlanStep* step = plan.steps;
    const PlanStep* const last = step + plan.step_count;
    for (; step != last; ++step) {
        switch (step->op) {
            case plan_constant: *end++ = step->value; break;
            case plan_variable: *end++ = areas.variables[step->index].value.number; break;
            case plan_element: {
                const ArrayEntry& a = areas.arrays[step->index];
                if (a.type != kind_double || a.dimensions != step->count) return false;
                end -= step->count;
                std::int64_t offset = 0;
                for (int d = 0; d < step->count; ++d) {
                    const double s = end[d];
                    if (!(s >= 0.0 && s < static_cast<double>(a.sizes[d]))) return false;
                    offset = offset * a.sizes[d] + static_cast<std::int64_t>(s);
                }
                *end++ = a.doubles()[offset];
                break;
            }
            case plan_negate: end[-1] = -end[-1]; break;
            case plan_not: end[-1] = end[-1] != 0.0 ? 0.0 : 1.0; break;
            case plan_abs: end[-1] = std::fabs(end[-1]); break;
            case plan_sgn: end[-1] = end[-1] > 0.0 ? 1.0 : (end[-1] < 0.0 ? -1.0 : 0.0); break;
            case plan_fix: end[-1] = std::trunc(end[-1]); break;
            case plan_int: end[-1] = std::floor(end[-1]); break;
            case plan_sqr:
                if (end[-1] < 0.0) return false;
                end[-1] = std::sqrt(end[-1]);
                break;
            case plan_add:
                end[-2] += end[-1];
                --end;
                break;
            case plan_subtract:
                end[-2] -= end[-1];
                --end;
                break;
            case plan_multiply: {
                const double r = end[-2] * end[-1];
                if (!std::isfinite(r)) return false;
                end[-2] = r;
                --end;
                break;
            }
            case plan_divide: {
                if (end[-1] == 0.0) return false;
                const double r = end[-2] / end[-1];
                if (!std::isfinite(r)) return false;
                end[-2] = r;
                --end;
                break;
            }
            case plan_remainder: {
                if (end[-1] == 0.0) return false;
                const double r = std::fmod(end[-2], end[-1]);
                if (!std::isfinite(r)) return false;
                end[-2] = r;
                --end;
                break;
            }
            case plan_power: {
                const double r = std::pow(end[-2], end[-1]);
                if (!std::isfinite(r)) return false;
                end[-2] = r;
                --end;
                break;
            }
            case plan_compare: {
                const double a = end[-2];
                const double b = end[-1];
                end[-2] = comparison_holds(step->count, double_order(a, b)) ? 1.0 : 0.0;
                --end;
                break;
            }
            case plan_and:
                end[-2] = end[-2] != 0.0 && end[-1] != 0.0 ? 1.0 : 0.0;
                --end;
                break;
            case plan_or:
                end[-2] = end[-2] != 0.0 || end[-1] != 0.0 ? 1.0 : 0.0;
                --end;
                break;
            case plan_differ:
                end[-2] = (end[-2] != 0.0) != (end[-1] != 0.0) ? 1.0 : 0.0;
                --end;
                break;
            default: return false;  // a string step: not a plan of doubles
        }
    }
    out = stack[0];
    return true;
}

/// The plan's value in `out` and the length of each step's string in `lengths`;
/// false where the evaluator would report an error.
bool replay(const ExpressionPlan& plan, Value& out, std::size_t* lengths, Scratch& scratch) {
    // Values on the stack are read member by member: a copy of a whole Value
    // just written member by member stalls the processor on every step.
    Value stack[max_plan_steps];
    int sp = 0;
    for (int i = 0; i < plan.step_count; lengths[i++] = stack[sp - 1].length) {
        const PlanStep& step = plan.steps[i];
        switch (step.op) {
            case plan_constant: stack[sp++] = number_value(step.value); continue;
            case plan_variable: stack[sp++] = number_value(areas.variables[step.index].value.number); continue;
            case plan_text_constant: stack[sp++] = Value{0.0, plan.pool + step.index, step.length}; continue;
            case plan_text_variable:
                stack[sp++] = text_value(string_at(areas.variables[step.index].value.word));
                continue;
            case plan_element:
            case plan_text_element: {
                const ArrayEntry& a = areas.arrays[step.index];
                sp -= step.count;
                std::int64_t offset = 0;
                if (!element_offset(a, stack + sp, step.count, offset)) return false;
                if (step.op == plan_element) {
                    if (a.type != kind_double) return false;
                    stack[sp++] = number_value(a.doubles()[offset]);
                } else {
                    if (a.type != kind_string) return false;
                    stack[sp++] = text_value(string_at(a.words()[offset]));
                }
                continue;
            }
            case plan_negate: stack[sp - 1].number = -stack[sp - 1].number; continue;
            case plan_not: stack[sp - 1] = number_value(truth(stack[sp - 1]) ? 0.0 : 1.0); continue;
            case plan_abs: stack[sp - 1].number = std::fabs(stack[sp - 1].number); continue;
            case plan_sgn: {
                const double x = stack[sp - 1].number;
                stack[sp - 1].number = x > 0.0 ? 1.0 : (x < 0.0 ? -1.0 : 0.0);
                continue;
            }
            case plan_fix: stack[sp - 1] = number_value(std::trunc(stack[sp - 1].number)); continue;
            case plan_int: stack[sp - 1] = number_value(std::floor(stack[sp - 1].number)); continue;
            case plan_sqr:
                if (stack[sp - 1].number < 0.0) return false;
                stack[sp - 1] = number_value(std::sqrt(stack[sp - 1].number));
                continue;
            case plan_len:
            case plan_asc:
            case plan_chr:
            case plan_mid:
            case plan_left:
            case plan_right:
            case plan_instr: {
                const int n = step.op == plan_mid || step.op == plan_instr ? step.count
                              : step.op == plan_left || step.op == plan_right ? 2
                                                                              : 1;
                sp -= n;
                Value result{};
                if (!string_function(step, stack + sp, result, scratch)) return false;
                stack[sp++] = result;
                continue;
            }
            default: break;
        }
        const Value& b = stack[--sp];
        Value& a = stack[sp - 1];
        switch (step.op) {
            case plan_join: {
                // As the evaluator joins: the whole left text, of the right what fits.
                const std::size_t n = a.length;
                const std::size_t m = n + b.length > max_string_length ? max_string_length - n : b.length;
                char* text = scratch.texts[scratch.used++];
                std::memcpy(text, a.text, n);
                std::memcpy(text + n, b.text, m);
                a = Value{0.0, text, n + m};
                continue;
            }
            case plan_text_compare: a = number_value(comparison_holds(step.count, text_order(a, b)) ? 1.0 : 0.0); continue;
            case plan_and: a = number_value(truth(a) && truth(b) ? 1.0 : 0.0); continue;
            case plan_or: a = number_value(truth(a) || truth(b) ? 1.0 : 0.0); continue;
            case plan_differ: a = number_value(truth(a) != truth(b) ? 1.0 : 0.0); continue;
            default: break;
        }
        const double x = a.number;
        const double y = b.number;
        double r = 0.0;
        switch (step.op) {
            case plan_add: r = x + y; break;
            case plan_subtract: r = x - y; break;
            case plan_multiply: r = x * y; break;
            case plan_divide:
                if (y == 0.0) return false;
                r = x / y;
                break;
            case plan_remainder:
                if (y == 0.0) return false;
                r = std::fmod(x, y);
                break;
            case plan_power: r = std::pow(x, y); break;
            default: r = comparison_holds(step.count, double_order(x, y)) ? 1.0 : 0.0; break;
        }
        // Sums and differences may overflow quietly; the others are errors.
        if (step.op >= plan_multiply && step.op <= plan_power && !std::isfinite(r)) return false;
        a = number_value(r);
    }
    out = stack[0];
    return true;
}

/// The evaluator's use of temporary string space for the expression, from
/// the events and the values of the steps. False when it would run out (it
/// reports that itself); otherwise the space and its high-water mark are
/// left as the evaluator leaves them.
bool account_temporary_space(const ExpressionPlan& plan, const std::size_t* lengths) {
    ByteArea& t = areas.temp_strings;
    std::uint32_t used = t.used;
    std::uint32_t high = areas.temp_high_water;
    std::uint32_t marks[max_plan_events];
    int depth = 0;
    for (int i = 0; i < plan.event_count; ++i) {
        const PlanEvent& e = plan.events[i];
        switch (e.type) {
            case event_hold:
            case event_hold_step: {
                const std::size_t n = e.type == event_hold ? e.size : lengths[e.step] + 1;
                if (n <= 1) break;  // an empty text takes no space
                if (used + n > t.size) return false;
                used += static_cast<std::uint32_t>(n);
                break;
            }
            case event_join_check:
                if (used + scan_buffer_size > t.size) return false;
                break;
            case event_mark: marks[depth++] = used; break;
            case event_release:
                if (used > high) high = used;
                used = marks[--depth];
                break;
        }
    }
    t.used = used;
    areas.temp_high_water = high;
    return true;
}

/// True while plans may answer evaluations: caches on, and no state in which
/// the evaluator does more than compute (checking, definitions, debug
/// listings, scan-only and long-default modes).
[[gnu::always_inline]] inline bool plans_allowed() {
    const ScanState& s = lang.scan;
    return exec.caches_enabled && !exec.check_mode && !s.defining_function && !s.evaluating_function &&
           !lang.reporter.debug && !areas.scan_only && !areas.long_default;
}

/// Where the plan of the expression at `p` evaluated in `mode` is kept, with
/// its key and room; false for a place outside the program image.
[[gnu::always_inline]] inline bool plan_place(const char* p, int mode, std::uint32_t& key, std::uint16_t& room,
                                              std::size_t& slot) {
    const char* image = areas.program_image.get();
    if (image == nullptr || p < image || p >= image + areas.program_length) return false;
    const std::ptrdiff_t r = lang.scan.end - p;
    if (r <= 0 || r > 0xFFFF) return false;
    key = static_cast<std::uint32_t>(p - image) + 1;
    room = static_cast<std::uint16_t>(r);
    slot = ((key * 4u + static_cast<std::uint32_t>(mode)) * 2654435761u) >> 23 & (plan_cache_size - 1);
    return true;
}

/// True when `plan` was made for this place and mode under `stamp`.
[[gnu::always_inline]] inline bool plan_made_for(const ExpressionPlan& plan, std::uint32_t key, int mode,
                                                 std::uint16_t room, const PlanStamp& stamp) {
    return plan.key == key && plan.mode == mode && plan.room == room && plan.stamp == stamp;
}

}  // namespace

PlanStamp current_stamp() {
    return PlanStamp{areas.program_generation, areas.name_tables_generation, areas.variable_count, areas.array_count,
                     lang.functions.generation};
}

void PlanTableFree::operator()(ExpressionPlan* table) const { std::free(table); }

PlanTable new_plan_table() {
    // calloc: the zero pages of a fresh block cost nothing until written.
    return PlanTable(static_cast<ExpressionPlan*>(std::calloc(plan_cache_size, sizeof(ExpressionPlan))));
}

int run_subscript_plans(double* values, const char*& end) {
    ScanState& s = lang.scan;
    const PlanTable& plans = lang.caches.plans;
    if (!plans || s.skipping || !plans_allowed()) return 0;
    const char* p = s.position;
    while (p < s.end && (*p == ' ' || *p == '\t')) ++p;
    if (p >= s.end || *p != '(') return 0;
    ++p;
    constexpr int mode = scan_in_parentheses | scan_separators;
    const PlanStamp stamp = current_stamp();
    int count = 0;
    for (;;) {
        while (p < s.end && (*p == ' ' || *p == '\t')) ++p;
        std::uint32_t key = 0;
        std::uint16_t room = 0;
        std::size_t slot = 0;
        if (!plan_place(p, mode, key, room, slot)) return 0;
        const ExpressionPlan& plan = plans[slot];
        if (!plan_made_for(plan, key, mode, room, stamp) || !plan.usable || !plan.numbers_only || plan.numeric_text ||
            plan.space_needed != 0 || plan.space_peak != 0 || plan.space_after != 0)
            return 0;
        if (!replay_numbers(plan, values[count])) return 0;
        ++count;
        p += plan.length;
        if (plan.terminator == ')') break;
        if (plan.terminator != ',' || count == max_parameters) return 0;
    }
    end = p;
    return count;
}

void finish_subscript_plans(const char* end, int count, const double* values) {
    // As the evaluator leaves its last subscript.
    ScanState& s = lang.scan;
    s.position = end;
    s.terminator = ')';
    s.constant_text[0] = 0;
    s.sole_reference = {};
    s.result = values[count - 1];
    lang.caches.plan_replays += static_cast<std::uint64_t>(count);
}

int run_expression_plan(int mode) {
    ScanState& s = lang.scan;
    if ((mode & ~(scan_in_parentheses | scan_separators)) != 0 || !plans_allowed()) return 0;
    // Plans are kept for places in the program text, which the run loop scans
    // in the program image.
    const char* p = s.position;
    std::uint32_t key = 0;
    std::uint16_t room = 0;
    std::size_t slot = 0;
    if (!plan_place(p, mode, key, room, slot)) return 0;
    PlanTable& plans = lang.caches.plans;
    if (!plans) plans = new_plan_table();
    if (!plans) return 0;
    ExpressionPlan& plan = plans[slot];
    const PlanStamp stamp = current_stamp();
    if (!plan_made_for(plan, key, mode, room, stamp)) {
        // A plan is made only from an image that is up to date: any later
        // change of the text changes the generation in its stamp.
        if (areas.program_image_valid < areas.program_length || areas.program_image_length != areas.program_length)
            return 0;
        plan.key = key;
        plan.mode = static_cast<std::uint8_t>(mode);
        plan.room = room;
        plan.stamp = stamp;
        plan.usable = make_plan(p, mode, plan);
    }
    if (!plan.usable) return 0;
    // A statement passed over evaluates for syntax and types only: functions
    // give dummies and no value is an error. An expression of doubles then
    // cannot fail and its space use is fixed; others go the long way.
    if (s.skipping && !plan.numbers_only) return 0;
    if (plan.numeric_text) {
        ByteArea& t = areas.temp_strings;
        if (t.used + plan.space_needed > t.size) return 0;
        t.used += plan.space_after;
        // As the evaluator leaves a constant: its text, known as this double.
        std::memcpy(s.buffer, plan.text, sizeof plan.text);
        std::memcpy(s.constant_text, plan.text, sizeof plan.text);
        s.constant_value = plan.steps[0].value;
        s.sole_reference = {};
        s.position = p + plan.length;
        s.terminator = plan.terminator;
        ++lang.caches.plan_replays;
        return kind_numeric_text;
    }
    if (plan.numbers_only) {
        ByteArea& t = areas.temp_strings;
        double value = 0.0;
        if (t.used + plan.space_needed > t.size) return 0;
        // Passed over, the expression is not computed (as the evaluator,
        // which takes every function's value as a dummy there).
        if (!s.skipping && !replay_numbers(plan, value)) return 0;
        if (plan.space_peak != 0 && t.used + plan.space_peak - 1 > areas.temp_high_water)
            areas.temp_high_water = t.used + plan.space_peak - 1;
        t.used += plan.space_after;
        s.position = p + plan.length;
        s.terminator = plan.terminator;
        s.constant_text[0] = 0;
        s.sole_reference = {};
        s.result = value;
        ++lang.caches.plan_replays;
        return kind_double;
    }
    Scratch scratch;
    std::size_t lengths[max_plan_steps];
    Value value{};
    if (!replay(plan, value, lengths, scratch) || !account_temporary_space(plan, lengths)) return 0;
    s.position = p + plan.length;
    s.terminator = plan.terminator;
    s.constant_text[0] = 0;
    s.sole_reference = {};
    ++lang.caches.plan_replays;
    if (!plan.string_result) {
        s.result = value.number;
        return kind_double;
    }
    std::memmove(s.buffer, value.text, value.length);
    s.buffer[value.length] = 0;
    // One string variable: the caller may write back to it.
    if (plan.sole_name) s.sole_reference = ValueReference{nullptr, plan.steps[0].index + 1};
    return kind_string;
}

}  // namespace tl
