// stack_guard.cpp — stack bounds of the running thread and the nesting check.
#include "exec/stack_guard.h"

#include <pthread.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdint>

#include "exec/exec_state.h"
#include "exec/front_end.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"

namespace tl {

void init_stack_guard() {
    // The main thread's stack may grow to the resource limit below its top;
    // the top lies a little above this frame, so the limit found from here
    // is lower than the real one by no more than the frames above (far less
    // than the reserve). Asking the thread library instead reads the process
    // map, which is slow for the main thread.
    rlimit limit{};
    if (getpid() == static_cast<pid_t>(syscall(SYS_gettid)) && getrlimit(RLIMIT_STACK, &limit) == 0 &&
        limit.rlim_cur != RLIM_INFINITY && limit.rlim_cur > 2 * stack_reserve) {
        char here = 0;
        const auto top = reinterpret_cast<std::uintptr_t>(&here);
        if (top > limit.rlim_cur) {
            exec.stack_limit = top - limit.rlim_cur + stack_reserve;
            return;
        }
    }
    pthread_attr_t attr;
    if (pthread_getattr_np(pthread_self(), &attr) != 0) return;
    void* base = nullptr;
    std::size_t size = 0;
    if (pthread_attr_getstack(&attr, &base, &size) == 0 && base != nullptr && size > 2 * stack_reserve) {
        // The stack grows down towards `base`.
        exec.stack_limit = reinterpret_cast<std::uintptr_t>(base) + stack_reserve;
    }
    pthread_attr_destroy(&attr);
}

bool stack_nearly_full() {
    if (exec.stack_limit == 0) init_stack_guard();
    char here = 0;
    const auto address = reinterpret_cast<std::uintptr_t>(&here);
    return exec.stack_limit != 0 && address < exec.stack_limit;
}

int report_nesting_too_deep() {
    const int rc = report_error(err_already_reported);
    console_write("ERROR - Nesting too deep: too many GOSUB, FOR, WHILE or function calls are open.\n");
    return rc;
}

}  // namespace tl
