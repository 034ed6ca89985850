// window_launch.cpp — the display test and the hand-over to the window program.
#include "shell/window_launch.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "shell/command_line.h"

namespace tl::shell {
namespace {

bool set(const char* name) {
    const char* v = std::getenv(name);
    return v != nullptr && *v != 0;
}

/// Connects to the X display named in DISPLAY and disconnects again.
bool x_display_answers() {
    void* xcb = dlopen("libxcb.so.1", RTLD_NOW | RTLD_LOCAL);
    if (xcb == nullptr) return false;
    using Connect = void* (*)(const char*, int*);
    using HasError = int (*)(void*);
    using Disconnect = void (*)(void*);
    const auto connect = reinterpret_cast<Connect>(dlsym(xcb, "xcb_connect"));
    const auto has_error = reinterpret_cast<HasError>(dlsym(xcb, "xcb_connection_has_error"));
    const auto disconnect = reinterpret_cast<Disconnect>(dlsym(xcb, "xcb_disconnect"));
    bool ok = false;
    if (connect != nullptr && has_error != nullptr && disconnect != nullptr) {
        void* c = connect(nullptr, nullptr);
        ok = c != nullptr && has_error(c) == 0;
        if (c != nullptr) disconnect(c);
    }
    dlclose(xcb);
    return ok;
}

}  // namespace

XDisplayHold hold_x_display(int patience_ms) {
    XDisplayHold hold;
    if (set("QT_QPA_PLATFORM") && !std::string_view(std::getenv("QT_QPA_PLATFORM")).starts_with("xcb")) return hold;
    if (!set("DISPLAY")) return hold;
    hold.library = dlopen("libxcb.so.1", RTLD_NOW | RTLD_LOCAL);
    if (hold.library == nullptr) return hold;
    using Connect = void* (*)(const char*, int*);
    using HasError = int (*)(void*);
    using Disconnect = void (*)(void*);
    const auto connect = reinterpret_cast<Connect>(dlsym(hold.library, "xcb_connect"));
    const auto has_error = reinterpret_cast<HasError>(dlsym(hold.library, "xcb_connection_has_error"));
    const auto disconnect = reinterpret_cast<Disconnect>(dlsym(hold.library, "xcb_disconnect"));
    if (connect == nullptr || has_error == nullptr || disconnect == nullptr) {
        release_x_display(hold);
        return hold;
    }
    constexpr int pause_ms = 20;
    for (int waited = 0;; waited += pause_ms) {
        void* c = connect(nullptr, nullptr);
        if (c != nullptr && has_error(c) == 0) {
            hold.connection = c;
            return hold;
        }
        if (c != nullptr) disconnect(c);
        if (waited >= patience_ms) break;
        usleep(pause_ms * 1000);
    }
    release_x_display(hold);
    return hold;
}

void release_x_display(XDisplayHold& hold) {
    if (hold.connection != nullptr && hold.library != nullptr) {
        using Disconnect = void (*)(void*);
        const auto disconnect = reinterpret_cast<Disconnect>(dlsym(hold.library, "xcb_disconnect"));
        if (disconnect != nullptr) disconnect(hold.connection);
    }
    if (hold.library != nullptr) dlclose(hold.library);
    hold = XDisplayHold{};
}

bool display_available() {
    if (set("QT_QPA_PLATFORM")) {
        const std::string_view platform = std::getenv("QT_QPA_PLATFORM");
        if (!platform.starts_with("xcb")) return true;  // offscreen, wayland, vnc...: Qt decides
        return set("DISPLAY") && x_display_answers();
    }
    if (set("WAYLAND_DISPLAY")) return true;
    return set("DISPLAY") && x_display_answers();
}

void exec_window_program(const std::string& executable, char** argv) {
    const std::string path = folder_of(executable) + "/" + window_program_name;
    execv(path.c_str(), argv);
    std::fprintf(stderr, "tessaline: cannot start %s: %s\n", path.c_str(), std::strerror(errno));
}

}  // namespace tl::shell
