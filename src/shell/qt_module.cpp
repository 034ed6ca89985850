// qt_module.cpp — loading the Qt module beside the executable.
#include "shell/qt_module.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cstdio>
#include <string>

// Defined only when the module is linked in (see load_module).
extern "C" const tl::shell::QtServices* tessaline_qt_services() __attribute__((weak));

namespace tl::shell {
namespace {

/// The folder of the running executable, with a final "/" (empty if unknown).
std::string executable_folder() {
    char path[4096];
    const ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
    if (n <= 0) return {};
    const std::string exe(path, static_cast<std::size_t>(n));
    const std::size_t slash = exe.rfind('/');
    return slash == std::string::npos ? std::string() : exe.substr(0, slash + 1);
}

const QtServices* load_module() {
    // A program that has the module linked in (the tests) uses it directly.
    if (tessaline_qt_services != nullptr) return tessaline_qt_services();
    const std::string path = executable_folder() + "libtessaline_qt.so";
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        std::fprintf(stderr, "The Qt module could not be loaded: %s\n", dlerror());
        return nullptr;
    }
    using Entry = const QtServices* (*)();
    const auto entry = reinterpret_cast<Entry>(dlsym(handle, qt_module_entry));
    if (entry == nullptr) {
        std::fprintf(stderr, "The Qt module %s has no entry point.\n", path.c_str());
        return nullptr;
    }
    return entry();
}

}  // namespace

const QtServices* qt_services() {
    static const QtServices* const services = load_module();
    return services;
}

}  // namespace tl::shell
