// expression_plans.h — numeric expressions met before, replayed without scanning.
//
// An expression of doubles (double variables and array elements, number
// constants, parentheses, the arithmetic, comparison and logical operators,
// abs, sgn, fix, int and sqr) is turned into a short postfix plan the first
// time the evaluator meets it at a place in the program. Evaluating it there
// again reads the values and computes the result from the plan, which the
// evaluator's passes would give bit for bit. Wherever the evaluator would
// raise an error (a division by zero, a subscript out of range, a result that
// is not finite) the plan gives up before any effect and the text is
// evaluated as usual, so every message stays the evaluator's own.
#pragma once

#include <cstdint>

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
};

struct PlanStep {
    double value = 0.0;       ///< plan_constant
    std::uint32_t index = 0;  ///< plan_variable, plan_element: the table index
    PlanOp op = plan_constant;
    std::uint8_t count = 0;  ///< plan_element: subscripts; plan_compare: the slot
};

inline constexpr int max_plan_steps = 40;

/// What a plan depends on besides its text: the program and the name tables.
struct PlanStamp {
    std::uint32_t program_generation = 0;
    std::uint32_t tables_generation = 0;
    std::uint32_t variable_count = 0;
    std::uint32_t array_count = 0;
    std::uint32_t functions_generation = 0;
    bool operator==(const PlanStamp&) const = default;
};

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
    std::uint8_t step_count = 0;
    PlanStep steps[max_plan_steps];
};

inline constexpr std::uint32_t plan_cache_size = 512;  // a power of two

/// Evaluates the expression at the scan position from its plan, making the
/// plan first if the place is new. Returns kind_double (or kind_numeric_text
/// for a lone number constant) with the result placed as evaluate_expression
/// places it, or 0 when the expression has no plan or
/// the plan gave up; nothing has changed then and the caller evaluates the text.
[[nodiscard]] int run_expression_plan(int mode);

}  // namespace tl
