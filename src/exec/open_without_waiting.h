// open_without_waiting.h — opening a named file without waiting for a device or a pipe.
#pragma once

#include <cstdio>

namespace tl {

/// Opens `path` as std::fopen does with `mode` ("rb", "wb", "ab", "r+b" or
/// "w+b"), except that the open itself never waits: a named pipe with no
/// program at its other end would otherwise hold it, beyond Ctrl+C, Stop and
/// SIGTERM. Writing to such a pipe fails with ENXIO; reading it finds its end.
/// The descriptor is not inherited by programs started with SPAWN.
/// nullptr with errno set on failure.
[[nodiscard]] std::FILE* open_without_waiting(const char* path, const char* mode);

}  // namespace tl
