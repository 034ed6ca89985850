// line_editor.cpp — loading libedit's readline interface on demand.
#include "shell/line_editor.h"

#include <dlfcn.h>

#include <initializer_list>

namespace tl::shell {
namespace {

template <typename T>
bool find(void* library, const char* name, T& out) {
    out = reinterpret_cast<T>(dlsym(library, name));
    return out != nullptr;
}

const LineEditor* load_line_editor() {
    static LineEditor editor{};
    void* library = nullptr;
    for (const char* name : {TESSALINE_LIBEDIT_SONAME, "libedit.so.2", "libedit.so"}) {
        library = dlopen(name, RTLD_NOW | RTLD_LOCAL);
        if (library != nullptr) break;
    }
    if (library == nullptr) return nullptr;
    const bool complete = find(library, "readline", editor.readline) &&
                          find(library, "using_history", editor.using_history) &&
                          find(library, "stifle_history", editor.stifle_history) &&
                          find(library, "read_history", editor.read_history) &&
                          find(library, "write_history", editor.write_history) &&
                          find(library, "add_history", editor.add_history) &&
                          find(library, "rl_catch_signals", editor.catch_signals);
    return complete ? &editor : nullptr;
}

}  // namespace

const LineEditor* line_editor() {
    static const LineEditor* const editor = load_line_editor();
    return editor;
}

}  // namespace tl::shell
