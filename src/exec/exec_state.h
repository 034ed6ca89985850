// exec_state.h — the state of a running program: position, blocks, skip mode, jumps.
#pragma once

#include <cstdint>
#include <vector>

#include "exec/program_store.h"
#include "exec/sort_statement.h"
#include "lang/item.h"
#include "longmath/long_number.h"

namespace tl {

enum BlockType : int {
    block_none = 0,
    block_gosub = 1,
    block_while = 2,
    block_if = 3,
    block_for = 4,
};

/// Where execution stands and which blocks are open. FOR, WHILE, IF and GOSUB
/// save the parts they change and restore them on every way out.
struct ExecPosition {
    /// Offset of the current line in the Program Buffer.
    std::uint32_t line_offset = 0;
    /// Offset of the line after it (where the run loop goes next).
    std::uint32_t next_offset = 0;
    /// Where in its line the run loop is to resume; -1 for none.
    std::int32_t resume_in_line = -1;
};

struct BlockState {
    int block_type = block_none;
    bool inside_for = false;
    bool inside_while = false;
    bool inside_gosub = false;
    bool inside_if = false;
    bool if_condition = false;
    bool else_seen = false;
    /// Loop identification of the innermost open FOR or WHILE: its line's
    /// program offset and the offset of its statement in that line.
    std::uint32_t loop_offset = 0;
    std::uint32_t loop_statement_offset = 0;
    /// A FOR or WHILE is the innermost loop (outside all loops the
    /// identification is 0, 0, which a loop at offset 0, column 0 also has).
    bool in_loop = false;
    bool while_begun_in_line = false;
};

struct ExecState {
    /// The scanner's caches and the statement-number index are used (off with
    /// TESSALINE_NO_CACHE=1 at start-up: every look-up then goes the long way).
    bool caches_enabled = true;
    ExecPosition position;
    BlockState block;

    bool skip = false;         ///< statements are scanned, not executed
    bool forced_skip = false;  ///< a block entered while skipping
    bool check_mode = false;   ///< the check pass

    bool next_reached = false;
    bool wend_reached = false;
    /// Line offset of the NEXT or WEND and the position behind it in its line.
    std::uint32_t end_line_offset = 0;
    std::int32_t end_in_line = 0;

    bool return_reached = false;
    Item return_value;

    bool break_pending = false;
    bool continue_pending = false;

    std::uint32_t jump_target = 0;  ///< statement number, 0 for none
    int target_column = 0;          ///< column of the statement number of GOTO/GOSUB/ON
    bool program_ended = false;
    bool interrupted = false;  ///< the user's interruption ended the last run or check
    bool chain_pending = false;
    bool chain_keep_data = false;
    char chain_file[261] = {};

    bool trace = false;
    bool announce = false;  ///< the first stepping wait prints the banner
    bool paused = false;    ///< stopped at a statement (CONT may continue)
    bool program_has_errors = true;
    bool program_messages = true;

    /// Number of the line being executed, for messages and trace.
    std::uint32_t statement_number = 0;
    /// Offset where the line typed at the prompt starts (behind the program).
    std::uint32_t command_line_offset = 0;
    bool running_command_line = false;
    /// The current program file name.
    char program_file[261] = {};

    /// The line buffer of the innermost run loop.
    ProgramLine* current_line = nullptr;
    /// A command typed at the stepping prompt, and how deep such commands nest.
    char pending_command[256] = {};
    int stepping_command_depth = 0;
    /// A command line replaced the program (run or load with a name).
    bool program_replaced = false;
    /// The last run or load from the command line ended with an error.
    bool last_run_failed = false;
    /// Statements left before the run is ended as if interrupted; 0 means
    /// no limit. Hosts that must not wait forever (the fuzzer) set it.
    std::uint64_t statement_budget = 0;
    /// Lowest stack address the interpreter may use (0 until learned).
    std::uintptr_t stack_limit = 0;
    /// The text of a string RETURN value, and a long one.
    char return_text[256] = {};
    LongNumber return_long;
    /// The SORT in progress.
    SortContext sort;
    /// READ position in the Data Statement Table: the entry, and the offset
    /// of the next item in its data list (-1 once the list is used up).
    std::uint32_t data_entry = 0;
    std::int32_t data_offset = 0;
};

extern ExecState exec;

/// True while statements are passed over: in skip mode (an untaken branch, a
/// loop not run, the rest of a body after BREAK) and in the whole check pass.
/// A statement passed over is scanned and its syntax and types are checked;
/// its values are not judged (no range checks, no conversions of texts) and
/// nothing changes. Every statement asks this one question.
[[nodiscard]] inline bool passing_over() { return exec.skip || exec.check_mode; }

}  // namespace tl
