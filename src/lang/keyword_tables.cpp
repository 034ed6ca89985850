// keyword_tables.cpp — the names of the keyword tables and their case-blind lookup.
#include "lang/keyword_tables.h"

#include <array>

namespace tl {
namespace {

// ORDER: must match the cmd_ slot constants in keyword_tables.h.
constexpr std::array<const char*, 5> commands_names = {
    "list",  // 0
    "run",  // 1
    "houseclean",  // 2
    "clear",  // 3
    "load",  // 4
};
static_assert(commands_names.size() == cmd_count);

// ORDER: must match the fn_ slot constants in keyword_tables.h.
constexpr std::array<const char*, 57> functions_names = {
    "abs",  // 0
    "atn",  // 1
    "cos",  // 2
    "fix",  // 3
    "exp",  // 4
    "log",  // 5
    "sgn",  // 6
    "sin",  // 7
    "sqr",  // 8
    "cot",  // 9
    "rnd",  // 10
    "exponent",  // 11
    "chr$",  // 12
    "left$",  // 13
    "right$",  // 14
    "mid$",  // 15
    "hex$",  // 16
    "len",  // 17
    "cint",  // 18
    "str$",  // 19
    "int",  // 20
    "asc",  // 21
    "string$",  // 22
    "log10",  // 23
    "space$",  // 24
    "instr",  // 25
    "val",  // 26
    "tab",  // 27
    "mod",  // 28
    "read",  // 29
    "eof",  // 30
    "input",  // 31
    "open",  // 32
    "factorial",  // 33
    "long",  // 34
    "exp10",  // 35
    "short",  // 36
    "half",  // 37
    "acot",  // 38
    "root",  // 39
    "tan",  // 40
    "****",  // 41
    "hexconvert",  // 42
    "browseinputfile$",  // 43
    "browseoutputfile$",  // 44
    "formatdatetime$",  // 45
    "expanddatetime",  // 46
    "makedatetime",  // 47
    "setcolor",  // 48
    "messagebox",  // 49
    "inputdialog",  // 50
    "updatedialog",  // 51
    "tolower$",  // 52
    "toupper$",  // 53
    "browsecommports$",  // 54
    "filesize",  // 55
    "select",  // 56
};
static_assert(functions_names.size() == fn_count);

// ORDER: must match the sfn_ slot constants in keyword_tables.h.
constexpr std::array<const char*, 13> special_functions_names = {
    "longpi",  // 0
    "longe",  // 1
    "remainder",  // 2
    "cossame",  // 3
    "checkdegrees",  // 4
    "starttimer",  // 5
    "endtimer",  // 6
    "matherror",  // 7
    "workingdir$",  // 8
    "programdir$",  // 9
    "checkmouseclick",  // 10
    "inkey$",  // 11
    "choosefont$",  // 12
};
static_assert(special_functions_names.size() == sfn_count);

// ORDER: must match the stmt_ slot constants in keyword_tables.h.
constexpr std::array<const char*, 71> statements_names = {
    "beep",  // 0
    "rem",  // 1
    "data",  // 2
    "def",  // 3
    "dim",  // 4
    "end",  // 5
    "stop",  // 6
    "erase",  // 7
    "for",  // 8
    "next",  // 9
    "get",  // 10
    "put",  // 11
    "gosub",  // 12
    "return",  // 13
    "goto",  // 14
    "if",  // 15
    "then",  // 16
    "else",  // 17
    "input",  // 18
    "integer",  // 19
    "line",  // 20
    "mid$",  // 21
    "print",  // 22
    "write",  // 23
    "using",  // 24
    "swap",  // 25
    "while",  // 26
    "wend",  // 27
    "printall",  // 28
    "debug",  // 29
    "on",  // 30
    "break",  // 31
    "continue",  // 32
    "to",  // 33
    "step",  // 34
    "color",  // 35
    "debugprint",  // 36
    "cont",  // 37
    "read",  // 38
    "restore",  // 39
    "open",  // 40
    "close",  // 41
    "cls",  // 42
    "long",  // 43
    "float",  // 44
    "degrees",  // 45
    "radians",  // 46
    "randomize",  // 47
    "field",  // 48
    "lset",  // 49
    "rset",  // 50
    "help",  // 51
    "updatedatetime",  // 52
    "graph",  // 53
    "plot",  // 54
    "text",  // 55
    "shape",  // 56
    "chdir",  // 57
    "append",  // 58
    "include",  // 59
    "chain",  // 60
    "setdstrules",  // 61
    "settimezone",  // 62
    "delay",  // 63
    "spawn",  // 64
    "inputdialog",  // 65
    "updatedialog",  // 66
    "deleteshape",  // 67
    "sort",  // 68
    "updateregion",  // 69
    "changeshape",  // 70
};
static_assert(statements_names.size() == stmt_count);

// ORDER: must match the dbg_ slot constants in keyword_tables.h.
constexpr std::array<const char*, 19> debug_options_names = {
    "peekbcd",  // 0
    "optmul",  // 1
    "testdata",  // 2
    "step",  // 3
    "trace",  // 4
    "long",  // 5
    "round",  // 6
    "truncate",  // 7
    "detail",  // 8
    "timer",  // 9
    "dir",  // 10
    "off",  // 11
    "lnrat",  // 12
    "graph",  // 13
    "oldconvert",  // 14
    "matherrok",  // 15
    "testroutine",  // 16
    "zbox",  // 17
    "mousecheckforward",  // 18
};
static_assert(debug_options_names.size() == dbg_count);

// ORDER: must match the lop_ slot constants in keyword_tables.h.
constexpr std::array<const char*, 15> longmath_operations_names = {
    "atn",  // 0
    "sqr",  // 1
    "longpi",  // 2
    "longe",  // 3
    "sin",  // 4
    "exp",  // 5
    "log",  // 6
    "root",  // 7
    "power",  // 8
    "mult",  // 9
    "div",  // 10
    "factorial",  // 11
    "mod",  // 12
    "half",  // 13
    "convert",  // 14
};
static_assert(longmath_operations_names.size() == lop_count);

// ORDER: must match the gpar_ slot constants in keyword_tables.h.
constexpr std::array<const char*, 35> graph_parameters_names = {
    "width",  // 0
    "height",  // 1
    "portrait",  // 2
    "landscape",  // 3
    "print",  // 4
    "end",  // 5
    "hscale",  // 6
    "vscale",  // 7
    "hoffset",  // 8
    "voffset",  // 9
    "hmargin",  // 10
    "vmargin",  // 11
    "axisweight",  // 12
    "border",  // 13
    "noborder",  // 14
    "grid",  // 15
    "nogrid",  // 16
    "metafile",  // 17
    "listparms",  // 18
    "includexaxis",  // 19
    "includeyaxis",  // 20
    "hscaletype",  // 21
    "vscaletype",  // 22
    "axes",  // 23
    "noaxes",  // 24
    "equalscales",  // 25
    "bgcolor",  // 26
    "gridcolor",  // 27
    "clearance",  // 28
    "numberxaxis",  // 29
    "numberyaxis",  // 30
    "maximize",  // 31
    "axiscolor",  // 32
    "jpeg",  // 33
    "lockscreen",  // 34
};
static_assert(graph_parameters_names.size() == gpar_count);

// ORDER: must match the ppar_ slot constants in keyword_tables.h.
constexpr std::array<const char*, 11> plot_parameters_names = {
    "type",  // 0
    "linetype",  // 1
    "lineweight",  // 2
    "x",  // 3
    "y",  // 4
    "unsorted",  // 5
    "sortedx",  // 6
    "sortedy",  // 7
    "color",  // 8
    "average",  // 9
    "smooth",  // 10
};
static_assert(plot_parameters_names.size() == ppar_count);

// ORDER: must match the tpar_ slot constants in keyword_tables.h.
constexpr std::array<const char*, 19> text_parameters_names = {
    "xaxis",  // 0
    "yaxis",  // 1
    "h",  // 2
    "v",  // 3
    "x",  // 4
    "y",  // 5
    "boxed",  // 6
    "string",  // 7
    "color",  // 8
    "size",  // 9
    "datasize",  // 10
    "font",  // 11
    "bold",  // 12
    "italic",  // 13
    "normal",  // 14
    "angle",  // 15
    "x2",  // 16
    "y2",  // 17
    "justify",  // 18
};
static_assert(text_parameters_names.size() == tpar_count);

// ORDER: must match the spar_ slot constants in keyword_tables.h.
constexpr std::array<const char*, 53> shape_parameters_names = {
    "top",  // 0
    "left",  // 1
    "bottom",  // 2
    "right",  // 3
    "center",  // 4
    "hradius",  // 5
    "vradius",  // 6
    "radius",  // 7
    "startangle",  // 8
    "endangle",  // 9
    "linecolor",  // 10
    "lineweight",  // 11
    "fillcolor",  // 12
    "filltype",  // 13
    "hatch",  // 14
    "polypoints",  // 15
    "polycount",  // 16
    "rectangle",  // 17
    "ellipse",  // 18
    "arc",  // 19
    "chord",  // 20
    "pie",  // 21
    "polygon",  // 22
    "line",  // 23
    "linestart",  // 24
    "lineend",  // 25
    "polyline",  // 26
    "bezier",  // 27
    "ctlpt1",  // 28
    "ctlpt2",  // 29
    "beginpath",  // 30
    "endpath",  // 31
    "strokefill",  // 32
    "stroke",  // 33
    "closefigure",  // 34
    "smooth",  // 35
    "average",  // 36
    "text",  // 37
    "font",  // 38
    "characters",  // 39
    "bold",  // 40
    "italic",  // 41
    "charoutline",  // 42
    "rotate",  // 43
    "rotatecenter",  // 44
    "direction",  // 45
    "plotcharoutline",  // 46
    "mouseclick",  // 47
    "justify",  // 48
    "propfonts",  // 49
    "outline",  // 50
    "",  // 51
    "reset",  // 52
};
static_assert(shape_parameters_names.size() == spar_count);

// ORDER: must match the cspar_ slot constants in keyword_tables.h.
constexpr std::array<const char*, 32> changeshape_parameters_names = {
    "top",  // 0
    "left",  // 1
    "bottom",  // 2
    "right",  // 3
    "center",  // 4
    "hradius",  // 5
    "vradius",  // 6
    "radius",  // 7
    "startangle",  // 8
    "endangle",  // 9
    "linecolor",  // 10
    "lineweight",  // 11
    "fillcolor",  // 12
    "filltype",  // 13
    "hatch",  // 14
    "linestart",  // 15
    "lineend",  // 16
    "ctlpt1",  // 17
    "ctlpt2",  // 18
    "smooth",  // 19
    "average",  // 20
    "font",  // 21
    "characters",  // 22
    "bold",  // 23
    "italic",  // 24
    "rotate",  // 25
    "rotatecenter",  // 26
    "direction",  // 27
    "justify",  // 28
    "mouseclick",  // 29
    "polypoints",  // 30
    "polycount",  // 31
};
static_assert(changeshape_parameters_names.size() == cspar_count);

// ORDER: must match the cmp_ slot constants in keyword_tables.h.
constexpr std::array<const char*, 6> comparison_operators_names = {
    "=",  // 0
    "<",  // 1
    ">",  // 2
    "<=",  // 3
    ">=",  // 4
    "<>",  // 5
};
static_assert(comparison_operators_names.size() == cmp_count);

// ORDER: must match the logic_ slot constants in keyword_tables.h.
constexpr std::array<const char*, 5> logical_operators_names = {
    "and",  // 0
    "or",  // 1
    "eor",  // 2
    "xor",  // 3
    "not",  // 4
};
static_assert(logical_operators_names.size() == logic_count);

constexpr std::array<KeywordTable, table_count> tables = {{
    {commands_names.data(), 5, 12, "command"},
    {functions_names.data(), 57, 18, "function"},
    {special_functions_names.data(), 13, 16, "special function"},
    {statements_names.data(), 71, 15, "statement"},
    {debug_options_names.data(), 19, 13, "debug option"},
    {longmath_operations_names.data(), 15, 11, "LONGMATH operation"},
    {graph_parameters_names.data(), 35, 15, "GRAPH parameter"},
    {plot_parameters_names.data(), 11, 11, "PLOT parameter"},
    {text_parameters_names.data(), 19, 10, "TEXT parameter"},
    {shape_parameters_names.data(), 53, 16, "SHAPE parameter"},
    {changeshape_parameters_names.data(), 32, 16, "CHANGESHAPE parameter"},
    {comparison_operators_names.data(), 6, 8, "comparison operator"},
    {logical_operators_names.data(), 5, 8, "logical operator"},
}};

// Lookup index: an open-addressing hash of each table built at compile time.
// Names are inserted in slot order and a repeated name is skipped, so a probe
// returns exactly the slot a first-match search from slot 0 would return.
constexpr int index_size = 256;  // power of two, more than twice the largest table
static_assert(index_size > 2 * stmt_count && index_size > 2 * spar_count);

constexpr char lower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

constexpr unsigned hash_name(std::string_view s) {
    unsigned h = 2166136261u;
    for (char c : s) h = (h ^ static_cast<unsigned char>(lower(c))) * 16777619u;
    return h;
}

constexpr bool equal_lower(std::string_view word, const char* name) {
    std::size_t i = 0;
    for (; i < word.size(); ++i) {
        if (name[i] == 0 || lower(word[i]) != name[i]) return false;
    }
    return name[i] == 0;
}

constexpr bool matchable(const char* name) { return name[0] != 0 && name[0] != '*'; }

using TableIndex = std::array<short, index_size>;

constexpr TableIndex build_index(const KeywordTable& t) {
    TableIndex idx{};
    for (auto& e : idx) e = -1;
    for (int slot = 0; slot < t.count; ++slot) {
        const char* name = t.names[slot];
        if (!matchable(name)) continue;
        std::string_view sv{name};
        unsigned h = hash_name(sv) & (index_size - 1);
        bool repeated = false;
        while (idx[h] >= 0) {
            if (equal_lower(sv, t.names[idx[h]])) {
                repeated = true;
                break;
            }
            h = (h + 1) & (index_size - 1);
        }
        if (!repeated) idx[h] = static_cast<short>(slot);
    }
    return idx;
}

constexpr std::array<TableIndex, table_count> build_all() {
    std::array<TableIndex, table_count> all{};
    for (int i = 0; i < table_count; ++i) all[i] = build_index(tables[i]);
    return all;
}

constexpr std::array<TableIndex, table_count> indexes = build_all();

}  // namespace

const KeywordTable& keyword_table(Table table) { return tables[static_cast<int>(table)]; }

int find_keyword(Table table, std::string_view word) {
    if (word.empty() || word.size() > 60) return -1;
    const int t = static_cast<int>(table);
    const TableIndex& idx = indexes[t];
    unsigned h = hash_name(word) & (index_size - 1);
    while (idx[h] >= 0) {
        if (equal_lower(word, tables[t].names[idx[h]])) return idx[h];
        h = (h + 1) & (index_size - 1);
    }
    return -1;
}

const char* keyword_name(Table table, int slot) {
    const KeywordTable& t = keyword_table(table);
    return (slot >= 0 && slot < t.count) ? t.names[slot] : "";
}

}  // namespace tl
