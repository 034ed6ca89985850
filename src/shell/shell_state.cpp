// shell_state.cpp — the one instance of the shell's process-wide state.
#include "shell/shell_state.h"

namespace tl::shell {

ShellState shell_state;

}  // namespace tl::shell
