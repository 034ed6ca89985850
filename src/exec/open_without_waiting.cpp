// open_without_waiting.cpp — opening a named file without waiting for a device or a pipe.
#include "exec/open_without_waiting.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace tl {

std::FILE* open_without_waiting(const char* path, const char* mode) {
    int flags = O_RDONLY;
    const bool update = std::strchr(mode, '+') != nullptr;
    switch (mode[0]) {
        case 'w': flags = (update ? O_RDWR : O_WRONLY) | O_CREAT | O_TRUNC; break;
        case 'a': flags = (update ? O_RDWR : O_WRONLY) | O_CREAT | O_APPEND; break;
        default: flags = update ? O_RDWR : O_RDONLY; break;
    }
    const int fd = ::open(path, flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666);
    if (fd < 0) return nullptr;
    const int status = ::fcntl(fd, F_GETFL);
    std::FILE* stream = status != -1 && ::fcntl(fd, F_SETFL, status & ~O_NONBLOCK) == 0 ? ::fdopen(fd, mode) : nullptr;
    if (stream == nullptr) {
        const int error = errno;
        ::close(fd);
        errno = error;
    }
    return stream;
}

}  // namespace tl
