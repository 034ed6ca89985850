// console_session.cpp — Console mode's command loop and its closing prompt.
#include "shell/console_session.h"

namespace tl::shell {

void run_command_line(const std::string& line) { (void)line; }

void run_console_loop(FrontEnd& front_end) {
    std::string line;
    for (;;) {
        if (!front_end.read_line(command_prompt, line)) {
            front_end.write("\n");  // end of input left the cursor after the prompt
            return;
        }
        if (line.empty()) return;
        run_command_line(line);
    }
}

void wait_before_exit(FrontEnd& front_end) {
    console_write("Press <enter> to terminate program.\n");
    std::string ignored;
    (void)front_end.read_line("", ignored);
}

}  // namespace tl::shell
