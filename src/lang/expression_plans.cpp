// expression_plans.cpp — making and replaying plans of numeric expressions.
//
// The plan maker reads the text as get_item would in the evaluation modes
// (statement level, parentheses, parameter lists) and reduces the Items the
// way the evaluator's seven passes do, on operands that are tree nodes
// instead of values. Anything it does not follow exactly — strings, long
// numbers, other functions, names it would have to create, any syntax the
// evaluator would refuse — leaves the expression without a plan.
#include "lang/expression_plans.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "exec/exec_state.h"
#include "exec/memory_areas.h"
#include "lang/evaluator.h"
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

struct Node {
    PlanOp op = plan_constant;
    std::uint8_t count = 0;  // children, or the comparison slot of plan_compare
    std::uint8_t children = 0;
    std::uint32_t index = 0;
    double value = 0.0;
    std::int16_t child[max_parameters] = {};
};

enum SymbolKind : std::uint8_t { symbol_operand, symbol_operator, symbol_comparison, symbol_logical };

/// An Item of the symbolic table: an operand (a node; `text` while it is a
/// number constant still held as text) or an operator.
struct Symbol {
    SymbolKind kind = symbol_operand;
    bool text = false;
    bool written = false;  // a number constant as written (not parenthesised, no sign)
    char op = 0;
    int slot = 0;
    int node = -1;
};

/// The result of one (sub-)expression.
struct Operand {
    int node = -1;
    bool text = false;
};

struct PlanMaker {
    const char* p = nullptr;
    const char* end = nullptr;
    Node nodes[max_plan_steps];
    int node_count = 0;
    /// The whole expression is one number constant as written, with this text.
    bool sole_constant = false;
    char constant_text[max_number_text + 1] = {};

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

/// Replaces operand-operator-operand at `i` by a node of `op` over both operands.
bool combine(PlanMaker& m, Symbol* t, int& count, int i, PlanOp op, std::uint8_t slot = 0) {
    if (i == 0 || i + 1 >= count) return false;
    const Symbol& a = t[i - 1];
    const Symbol& b = t[i + 1];
    if (a.kind != symbol_operand || b.kind != symbol_operand) return false;
    Node n;
    n.op = op;
    n.count = slot;
    n.children = 2;
    n.child[0] = static_cast<std::int16_t>(a.node);
    n.child[1] = static_cast<std::int16_t>(b.node);
    const int node = m.add(n);
    if (node < 0) return false;
    t[i - 1] = Symbol{symbol_operand, false, false, 0, 0, node};
    remove_symbols(t, count, i, 2);
    return true;
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
    // Unary signs.
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
        if (op.op == '-') {
            if (is_sign(next)) {
                next.op = next.op == '+' ? '-' : '+';
            } else {
                if (next.kind != symbol_operand) return false;
                if (m.nodes[next.node].op == plan_constant) {
                    Node n = m.nodes[next.node];
                    n.value = -n.value;
                    next.node = m.add(n);
                } else {
                    Node n;
                    n.op = plan_negate;
                    n.children = 1;
                    n.child[0] = static_cast<std::int16_t>(next.node);
                    next.node = m.add(n);
                }
                if (next.node < 0) return false;
            }
        } else if (!is_sign(next) && next.kind != symbol_operand) {
            return false;
        }
        remove_symbols(t, count, i, 1);
    }
    // Power, then multiply and divide, then add and subtract: left to right.
    for (const char* group : {"^", "*/%", "+-"}) {
        for (int i = 0; i < count;) {
            const Symbol& op = t[i];
            if (op.kind != symbol_operator || std::strchr(group, op.op) == nullptr) {
                ++i;
                continue;
            }
            if (!combine(m, t, count, i, arithmetic_op(op.op))) return false;
        }
    }
    // Comparisons; one left last makes the expression fail as a whole.
    for (int i = 0; i < count;) {
        if (t[i].kind != symbol_comparison) {
            ++i;
            continue;
        }
        if (i == count - 1) return false;
        if (!combine(m, t, count, i, plan_compare, static_cast<std::uint8_t>(t[i].slot))) return false;
    }
    // NOT, then AND, OR, EOR and XOR.
    for (int i = 0; i < count; ++i) {
        Symbol& op = t[i];
        if (op.kind != symbol_logical || op.slot != logic_not) continue;
        if (i == count - 1 || t[i + 1].kind != symbol_operand) return false;
        Node n;
        n.op = plan_not;
        n.children = 1;
        n.child[0] = static_cast<std::int16_t>(t[i + 1].node);
        const int node = m.add(n);
        if (node < 0) return false;
        op = Symbol{symbol_operand, false, false, 0, 0, node};
        remove_symbols(t, count, i + 1, 1);
    }
    for (const int slot : {logic_and, logic_or, logic_eor, logic_xor}) {
        const PlanOp op = slot == logic_and ? plan_and : slot == logic_or ? plan_or : plan_differ;
        for (int i = 0; i < count;) {
            if (t[i].kind != symbol_logical || t[i].slot != slot) {
                ++i;
                continue;
            }
            if (!combine(m, t, count, i, op)) return false;
        }
    }
    return count == 1 && t[0].kind == symbol_operand;
}

bool make_expression(PlanMaker& m, int mode, Operand& result, char& terminator, int depth);

/// "(p1, p2, ...)" after a function or array name: each parameter an operand.
/// Returns the count, or -1 when there is no plan.
int make_parameters(PlanMaker& m, Operand* params, int depth) {
    m.skip_blanks();
    if (m.peek() != '(') return -1;
    ++m.p;
    int count = 0;
    for (;;) {
        m.skip_blanks();
        char ended_on = 0;
        if (!make_expression(m, scan_in_parentheses | scan_separators, params[count], ended_on, depth + 1)) return -1;
        ++count;
        if (ended_on == ')') return count;
        if (count == max_parameters) return -1;
    }
}

/// A builtin function of one double that the plan computes itself.
bool planned_function(int slot, PlanOp& op) {
    switch (slot) {
        case fn_abs: op = plan_abs; return true;
        case fn_sgn: op = plan_sgn; return true;
        case fn_fix: op = plan_fix; return true;
        case fn_int: op = plan_int; return true;
        case fn_sqr: op = plan_sqr; return true;
        default: return false;
    }
}

/// A name in an expression, already read: its operand, or a statement keyword
/// that ends the expression (`ends` set). False when there is no plan.
bool make_name(PlanMaker& m, std::string_view name, Symbol& symbol, bool& ends, int depth) {
    NameCacheEntry* cached = cached_name(name);
    if (cached == nullptr) return false;
    const KeywordSlots& k = cached->slots;
    if (k.logical >= 0) {
        symbol = Symbol{symbol_logical, false, false, 0, k.logical, -1};
        return true;
    }
    if (k.command >= 0) return false;
    if (k.statement >= 0 && !is_shared_with_function(k.statement)) {
        ends = true;
        return true;
    }
    if (k.predefined >= 0) return false;
    Node n;
    if (k.function >= 0) {
        if (!planned_function(k.function, n.op)) return false;
        Operand arg[max_parameters];
        if (make_parameters(m, arg, depth) != 1 || arg[0].text) return false;
        n.children = 1;
        n.child[0] = static_cast<std::int16_t>(arg[0].node);
    } else if (find_user_function(name) >= 0 || k.special >= 0) {
        return false;
    } else {
        const char* after = m.p;
        m.skip_blanks();
        const bool element = m.peek() == '(';
        m.p = after;
        ArrayEntry* a = find_array_via(cached, name);
        if (element) {
            if (a == nullptr || a->type != kind_double) return false;
            Operand subscripts[max_parameters];
            const int count = make_parameters(m, subscripts, depth);
            if (count < 0 || count != a->dimensions) return false;
            n.op = plan_element;
            n.index = static_cast<std::uint32_t>(a - areas.arrays.get());
            n.children = static_cast<std::uint8_t>(count);
            n.count = static_cast<std::uint8_t>(count);
            for (int i = 0; i < count; ++i) n.child[i] = static_cast<std::int16_t>(subscripts[i].node);
        } else {
            if (a != nullptr) return false;
            const int index = find_variable_via(cached, name);
            if (index < 0 || areas.variables[index].type != kind_double) return false;
            n.op = plan_variable;
            n.index = static_cast<std::uint32_t>(index);
        }
    }
    const int node = m.add(n);
    if (node < 0) return false;
    symbol = Symbol{symbol_operand, false, false, 0, 0, node};
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
    const int node = m.add(n);
    if (node < 0) return false;
    m.p += r.length;
    symbol = Symbol{symbol_operand, true, true, 0, 0, node};
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
            s = Symbol{symbol_operator, false, false, c, 0, -1};
            ++m.p;
        } else if (c == '<' || c == '>' || c == '=') {
            for (const ComparisonForm& f : comparison_forms) {
                if (c != f.first || (f.second != 0 && m.peek(1) != f.second)) continue;
                s = Symbol{symbol_comparison, false, false, 0, f.slot, -1};
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
        } else if (c == '(') {
            ++m.p;
            Operand inner;
            char inner_end = 0;
            if (!make_expression(m, scan_in_parentheses, inner, inner_end, depth + 1)) return false;
            s = Symbol{symbol_operand, inner.text, false, 0, 0, inner.node};
        } else {
            return false;  // strings, "@", anything the scanner refuses
        }
        ++count;
    }
    if (depth == 0 && count == 1 && t[0].written) m.sole_constant = true;
    if (count == 0 || !reduce(m, t, count)) return false;
    result = Operand{t[0].node, t[0].text};
    return true;
}

/// Writes the steps of `node` and its children in postfix order.
bool emit(const PlanMaker& m, int node, ExpressionPlan& plan) {
    const Node& n = m.nodes[node];
    for (int i = 0; i < n.children; ++i)
        if (!emit(m, n.child[i], plan)) return false;
    if (plan.step_count == max_plan_steps) return false;
    PlanStep& step = plan.steps[plan.step_count++];
    step.op = n.op;
    step.count = n.count;
    step.index = n.index;
    step.value = n.value;
    return true;
}

/// Makes the plan of the expression at `start` (false: none).
bool make_plan(const char* start, int mode, ExpressionPlan& plan) {
    PlanMaker m;
    m.p = start;
    m.end = lang.scan.end;
    Operand result;
    char terminator = 0;
    if (!make_expression(m, mode, result, terminator, 0)) return false;
    // A whole expression that is a number constant stays numeric text; one
    // that was changed (a sign, parentheses) is left to the evaluator.
    plan.numeric_text = result.text;
    if (result.text) {
        const std::size_t n = std::strlen(m.constant_text);
        if (!m.sole_constant || n >= sizeof plan.text) return false;
        std::memcpy(plan.text, m.constant_text, n + 1);
    }
    plan.step_count = 0;
    if (!emit(m, result.node, plan)) return false;
    plan.length = static_cast<std::uint16_t>(m.p - start);
    plan.terminator = terminator;
    return true;
}

// ---- replaying a plan -------------------------------------------------------

bool truth(double x) { return x != 0.0; }

/// The plan's value in `out`; false where the evaluator would report an error.
bool replay(const ExpressionPlan& plan, double& out) {
    double stack[max_plan_steps];
    int sp = 0;
    for (int i = 0; i < plan.step_count; ++i) {
        const PlanStep& step = plan.steps[i];
        switch (step.op) {
            case plan_constant: stack[sp++] = step.value; continue;
            case plan_variable: stack[sp++] = areas.variables[step.index].value.number; continue;
            case plan_element: {
                const ArrayEntry& a = areas.arrays[step.index];
                if (a.type != kind_double || a.dimensions != step.count) return false;
                sp -= step.count;
                std::int64_t offset = 0;
                for (int d = 0; d < step.count; ++d) {
                    const double s = stack[sp + d];
                    if (!(s >= 0.0 && s < static_cast<double>(a.sizes[d]))) return false;
                    offset = offset * a.sizes[d] + static_cast<std::int64_t>(s);
                }
                stack[sp++] = a.doubles()[offset];
                continue;
            }
            case plan_negate: stack[sp - 1] = -stack[sp - 1]; continue;
            case plan_not: stack[sp - 1] = truth(stack[sp - 1]) ? 0.0 : 1.0; continue;
            case plan_abs: stack[sp - 1] = std::fabs(stack[sp - 1]); continue;
            case plan_sgn: {
                const double x = stack[sp - 1];
                stack[sp - 1] = x > 0.0 ? 1.0 : (x < 0.0 ? -1.0 : 0.0);
                continue;
            }
            case plan_fix: stack[sp - 1] = std::trunc(stack[sp - 1]); continue;
            case plan_int: stack[sp - 1] = std::floor(stack[sp - 1]); continue;
            case plan_sqr:
                if (stack[sp - 1] < 0.0) return false;
                stack[sp - 1] = std::sqrt(stack[sp - 1]);
                continue;
            default: break;
        }
        const double b = stack[--sp];
        const double a = stack[sp - 1];
        double r = 0.0;
        switch (step.op) {
            case plan_add: r = a + b; break;
            case plan_subtract: r = a - b; break;
            case plan_multiply: r = a * b; break;
            case plan_divide:
                if (b == 0.0) return false;
                r = a / b;
                break;
            case plan_remainder:
                if (b == 0.0) return false;
                r = std::fmod(a, b);
                break;
            case plan_power: r = std::pow(a, b); break;
            case plan_compare: {
                const int order = a < b ? -1 : (a > b ? 1 : 0);
                bool v = order != 0;
                switch (step.count) {
                    case cmp_eq: v = order == 0; break;
                    case cmp_lt: v = order < 0; break;
                    case cmp_gt: v = order > 0; break;
                    case cmp_le: v = order <= 0; break;
                    case cmp_ge: v = order >= 0; break;
                    default: break;
                }
                r = v ? 1.0 : 0.0;
                break;
            }
            case plan_and: r = truth(a) && truth(b) ? 1.0 : 0.0; break;
            case plan_or: r = truth(a) || truth(b) ? 1.0 : 0.0; break;
            default: r = truth(a) != truth(b) ? 1.0 : 0.0; break;
        }
        // Sums and differences may overflow quietly; the others are errors.
        if (step.op >= plan_multiply && step.op <= plan_power && !std::isfinite(r)) return false;
        stack[sp - 1] = r;
    }
    out = stack[0];
    return true;
}

PlanStamp current_stamp() {
    return PlanStamp{areas.program_generation, areas.name_tables_generation, areas.variable_count, areas.array_count,
                     lang.functions.generation};
}

}  // namespace

int run_expression_plan(int mode) {
    ScanState& s = lang.scan;
    if (!exec.caches_enabled || (mode & ~(scan_in_parentheses | scan_separators)) != 0 || s.skipping ||
        s.defining_function || s.evaluating_function || lang.reporter.debug || areas.scan_only || areas.long_default)
        return 0;
    // Plans are kept for places in the program text, which the run loop scans
    // in the program image.
    const char* image = areas.program_image.get();
    const char* p = s.position;
    if (image == nullptr || p < image || p >= image + areas.program_length ||
        areas.program_image_valid < areas.program_length || areas.program_image_length != areas.program_length)
        return 0;
    const std::ptrdiff_t room = s.end - p;
    if (room <= 0 || room > 0xFFFF) return 0;
    const auto key = static_cast<std::uint32_t>(p - image) + 1;
    std::vector<ExpressionPlan>& plans = lang.caches.plans;
    if (plans.empty()) plans.resize(plan_cache_size);
    ExpressionPlan& plan = plans[((key * 4u + static_cast<std::uint32_t>(mode)) * 2654435761u) >> 23 &
                                 (plan_cache_size - 1)];
    const PlanStamp stamp = current_stamp();
    if (plan.key != key || plan.mode != mode || plan.room != room || !(plan.stamp == stamp)) {
        plan.key = key;
        plan.mode = static_cast<std::uint8_t>(mode);
        plan.room = static_cast<std::uint16_t>(room);
        plan.stamp = stamp;
        plan.usable = make_plan(p, mode, plan);
    }
    if (!plan.usable) return 0;
    if (plan.numeric_text) {
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
    double value = 0.0;
    if (!replay(plan, value)) return 0;
    s.position = p + plan.length;
    s.terminator = plan.terminator;
    s.result = value;
    s.constant_text[0] = 0;
    s.sole_reference = {};
    ++lang.caches.plan_replays;
    return kind_double;
}

}  // namespace tl
