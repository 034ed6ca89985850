// long_debug.cpp — the long-number debug dump, its short form and the peek values.
#include <cstdio>
#include <string>

#include "exec/front_end.h"
#include "exec/named_variables.h"
#include "longmath/long_blocks.h"
#include "longmath/long_convert.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

void append_group(std::string& line, std::uint32_t block) {
    char group[16];
    std::snprintf(group, sizeof group, "%08u ", block);
    line += group;
}

void append_groups(std::string& out, const LongNumber& n, int from, int to) {
    for (int i = from; i < to; ++i) {
        append_group(out, n.blocks[static_cast<std::size_t>(i)]);
        if ((i - from) % 8 == 7 && i + 1 < to) out += '\n';
    }
}

}  // namespace

void long_debug_dump(const char* label, const LongNumber& n, int mode) {
    if (!long_state.mode.debug_display) return;
    char header[128];
    const int header_length = std::snprintf(header, sizeof header, "%-4s: blks=%4d sign= %+2d len=%4d exp=%4d, norm=%d ",
                                            label, n.blks, n.sgn, n.len, n.exp, n.nrm);
    std::string out = "\n";
    out += header;
    const int blks = n.blks;
    if (mode == 1) {
        // A fresh line, 8 groups a line; long numbers lose their middle lines.
        out += '\n';
        const int lines = (blks + 7) / 8;
        if (lines <= 5) {
            append_groups(out, n, 0, blks);
        } else {
            append_groups(out, n, 0, 16);
            out += "\n- - - - - - - -\n";
            const int last_start = (lines - 2) * 8;
            append_groups(out, n, last_start, blks);
        }
    } else {
        const int first_line = header_length < 80 ? (80 - header_length) / 9 : 0;
        if (blks <= first_line + 16) {
            const int on_first = blks < first_line ? blks : first_line;
            append_groups(out, n, 0, on_first);
            if (on_first < blks) {
                out += '\n';
                append_groups(out, n, on_first, blks);
            }
        } else {
            append_groups(out, n, 0, 2);
            out += "- - - - \n";
            append_groups(out, n, blks - 8, blks);
        }
    }
    out += '\n';
    console_write(out);
}

int long_short_form(const LongNumber& n, char* buffer, std::size_t size) {
    return std::snprintf(buffer, size, "blks=%4d sgn= %s len=%4d exp=%4d, nrm=%d", n.blks, n.sgn == -1 ? "-" : "+", n.len,
                         n.exp, n.nrm);
}

void long_peek_values(const LongNumber& n) {
    if (!long_state.mode.peek_values) return;
    const std::uint32_t* b = n.blocks.data();
    const int blks = n.blks;
    double last8 = 0;
    double next_last8 = 0;
    if (n.len > 8 && n.len <= 24) {
        // Short numbers: the second block, and the third when there is one.
        last8 = b[1];
        next_last8 = n.len > 16 && blks > 2 ? b[2] : 0;
        set_named_double("peeknextlast8", 0);
    } else if (n.len > 24 && blks >= 3) {
        const int r = n.len % 8;
        if (r == 0) {
            last8 = b[blks - 1];
            next_last8 = b[blks - 2];
        } else {
            // Shift the last three blocks left by r digits so that the last
            // 8 digits of the number fill one block.
            const std::uint64_t scale = long_pow10[r];
            std::uint64_t v = static_cast<std::uint64_t>(b[blks - 1]) * scale;
            std::uint64_t carry = v / long_base;
            v = static_cast<std::uint64_t>(b[blks - 2]) * scale + carry;
            last8 = static_cast<double>(v % long_base);
            carry = v / long_base;
            v = static_cast<std::uint64_t>(b[blks - 3]) * scale + carry;
            next_last8 = static_cast<double>(v % long_base);
        }
    }
    set_named_double("peekbcdlength", n.len);
    set_named_double("peekbcdsign", n.sgn);
    set_named_double("peekbcdexponent", n.exp);
    set_named_double("peekbcdfirst8", b[0]);
    set_named_double("peekbcdlast8", last8);
    set_named_double("peekbcdnextlast8", next_last8);
}

}  // namespace tl
