// long_text_buffers.cpp — sizing and reuse of the long-number text buffers.
#include "exec/long_text_buffers.h"

#include <new>
#include <stdexcept>

#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "longmath/long_convert.h"

namespace tl {

LongTextBuffers long_text_buffers;

int reserve_text_buffer(std::vector<char>& buffer, std::size_t size) {
    if (buffer.size() >= size) return 0;
    try {
        buffer.resize(size);
    } catch (const std::bad_alloc&) {
        return report_error(err_long_memory_allocation_failed);
    } catch (const std::length_error&) {
        return report_error(err_long_memory_allocation_failed);
    }
    return 0;
}

void trim_text_buffer(std::vector<char>& buffer) {
    if (buffer.capacity() > large_text_buffer) std::vector<char>().swap(buffer);
}

int long_plain_text(const LongNumber& n, std::vector<char>& buffer, std::string_view& out) {
    if (int rc = reserve_text_buffer(buffer, long_text_size(n)); rc < 0) return rc;
    const int length = long_to_string(n, buffer.data(), buffer.size(), true);
    if (length < 0) return length;
    out = std::string_view(buffer.data(), static_cast<std::size_t>(length));
    return 0;
}

}  // namespace tl
