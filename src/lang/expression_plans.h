// expression_plans.h — numeric expressions met before, replayed without scanning.
//
// An expression of doubles and strings (variables and array elements of both,
// number and string constants, parentheses, the arithmetic, comparison,
// logical and joining operators, abs, sgn, fix, int, sqr, len, asc, chr$,
// mid$, left$, right$ and instr) is turned into a short postfix plan the first
// time the evaluator meets it at a place in the program. Evaluating it there
// again reads the values and computes the result from the plan, which the
// evaluator's passes would give bit for bit. Wherever the evaluator would
// raise an error (a division by zero, a subscript out of range, a result that
// is not finite) the plan gives up before any effect and the text is
// evaluated as usual, so every message stays the evaluator's own.
#pragma once

#include <cstdint>
#include <memory>

namespace tl {

enum PlanOp : std::uint8_t {
    plan_constant,
    plan_variable,
    plan_element,
    plan_negate,
    plan_add,
    plan_subtract,
    plan_multiply,
    plan_divide,
    plan_remainder,
    plan_power,
    plan_compare,  ///< `count` holds the comparison slot
    plan_not,
    plan_and,
    plan_or,
    plan_differ,  ///< EOR and XOR
    plan_abs,
    plan_sgn,
    plan_fix,
    plan_int,
    plan_sqr,
    // Strings.
    plan_text_constant,  ///< `index` is the text's offset in the plan's pool, `length` its length
    plan_text_variable,
    plan_text_element,
    plan_join,
    plan_text_compare,  ///< `count` holds the comparison slot
    plan_len,
    plan_asc,
    plan_chr,
    plan_mid,  ///< `count` parameters (2 or 3)
    plan_left,
    plan_right,
    plan_instr,  ///< `count` parameters (2 or 3)
};

struct PlanStep {
    double value = 0.0;       ///< plan_constant
    std::uint32_t index = 0;  ///< plan_variable, plan_element: the table index
    PlanOp op = plan_constant;
    std::uint8_t count = 0;  ///< subscripts, parameters or the comparison slot
    std::uint16_t length = 0;  ///< plan_text_constant
};

inline constexpr int max_plan_steps = 40;

/// What the evaluator does with temporary string space while it evaluates
/// the expression, in its own order: a plan replays the same bookkeeping
/// (without copying any text), so that the space used, its high-water mark
/// and running out of it are the evaluator's own.
enum PlanEventType : std::uint8_t {
    event_hold,        ///< a text of `size` bytes (with its NUL) is held
    event_hold_step,   ///< the string of step `step` is held
    event_join_check,  ///< joining needs a full string of room
    event_mark,        ///< a function call or element reference starts
    event_release,     ///< ... and gives back what its parameters held
};

struct PlanEvent {
    PlanEventType type = event_hold;
    std::uint8_t step = 0;
    std::uint16_t size = 0;
};

inline constexpr int max_plan_events = 64;

/// What a plan depends on besides its text: the program and the name tables.
struct PlanStamp {
    std::uint32_t program_generation = 0;
    std::uint32_t tables_generation = 0;
    std::uint32_t variable_count = 0;
    std::uint32_t array_count = 0;
    std::uint32_t functions_generation = 0;
    bool operator==(const PlanStamp&) const = default;
};

/// The stamp of the program and the name tables as they are now.
[[nodiscard]] PlanStamp current_stamp();

struct ExpressionPlan {
    std::uint32_t key = 0;  ///< program offset of the scan position + 1; 0: unused
    std::uint8_t mode = 0;  ///< the evaluation mode
    bool usable = false;    ///< false: the expression has no plan (under this stamp)
    PlanStamp stamp;
    std::uint16_t length = 0;  ///< characters from the scan position to where the evaluation leaves it
    std::uint16_t room = 0;    ///< characters from the scan position to the end of the statement text
    char terminator = 0;       ///< lang.scan.terminator after the evaluation
    /// The expression is one number constant: its result is this text (kind
    /// 16), and the step is its double.
    bool numeric_text = false;
    char text[24] = {};
    /// The result is a string; `sole_name` when the expression is one string
    /// variable or element (the caller may write back to it).
    bool string_result = false;
    bool sole_name = false;
    std::uint8_t event_count = 0;
    PlanEvent events[max_plan_events];
    /// No step makes or reads a string: the steps run on doubles alone, and
    /// the events, whose sizes are all known, come down to these figures
    /// relative to the space used before: the most any hold needs, the
    /// highest use at a release plus one (0: no release), and the use at the end.
    bool numbers_only = false;
    std::uint32_t space_needed = 0;
    std::uint32_t space_peak = 0;
    std::uint32_t space_after = 0;
    std::uint16_t pool_used = 0;
    char pool[256] = {};  ///< texts of the string constants
    std::uint8_t step_count = 0;
    PlanStep steps[max_plan_steps];
};

inline constexpr std::uint32_t plan_cache_size = 512;  // a power of two

/// Gives back a plan table.
struct PlanTableFree {
    void operator()(ExpressionPlan* table) const;
};

/// plan_cache_size empty plans (all their bytes zero). The table is large and
/// mostly unused: its memory is taken from the system only as plans are made.
using PlanTable = std::unique_ptr<ExpressionPlan[], PlanTableFree>;
[[nodiscard]] PlanTable new_plan_table();

/// Evaluates the expression at the scan position from its plan, making the
/// plan first if the place is new. Returns kind_double (or kind_numeric_text
/// for a lone number constant) with the result placed as evaluate_expression
/// places it, or 0 when the expression has no plan or
/// the plan gave up; nothing has changed then and the caller evaluates the text.
[[nodiscard]] int run_expression_plan(int mode);

/// The subscript list "(s1, s2, ...)" at the scan position when every
/// subscript has a plan of doubles that uses no temporary string space and
/// gives a value: the values in `values` (max_parameters of room) and the
/// place behind the ")" in `end`. Returns the count, or 0 (the caller then
/// parses the list as usual). Changes nothing: finish_subscript_plans leaves
/// the scanner as evaluating the list would.
[[nodiscard]] int run_subscript_plans(double* values, const char*& end);
void finish_subscript_plans(const char* end, int count, const double* values);

}  // namespace tl
