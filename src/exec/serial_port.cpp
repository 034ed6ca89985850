// serial_port.cpp — opening a serial port raw, reading with a timeout, writing, listing ports.
#include "exec/serial_port.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <grp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace tl {
namespace {

/// The sentence for a port that could not be opened.
std::string open_problem(const std::string& device, int error) {
    if (error == EACCES || error == EPERM) {
        struct stat st {};
        if (::stat(device.c_str(), &st) == 0) {
            const group* g = ::getgrgid(st.st_gid);
            const std::string group = g != nullptr ? g->gr_name : std::to_string(st.st_gid);
            return "No permission to open " + device + ": it belongs to the group \"" + group +
                   "\". Add your user to that group (sudo usermod -aG " + group +
                   " $USER), then log out and in again.";
        }
    }
    if (error == ENOENT) return "There is no serial port " + device + ".";
    if (error == EBUSY) return device + " is in use by another program.";
    return "Cannot open " + device + ": " + std::strerror(error) + ".";
}

int configure(int fd, const SerialSettings& s) {
    termios t {};
    if (::tcgetattr(fd, &t) != 0) return -1;
    ::cfmakeraw(&t);
    t.c_cflag |= CLOCAL | CREAD;
    t.c_cflag &= ~static_cast<tcflag_t>(CSIZE | PARENB | PARODD | CMSPAR | CSTOPB | CRTSCTS);
    t.c_cflag |= CS8;
    switch (s.parity) {
        case parity_even: t.c_cflag |= PARENB; break;
        case parity_odd: t.c_cflag |= PARENB | PARODD; break;
        case parity_mark: t.c_cflag |= PARENB | PARODD | CMSPAR; break;
        case parity_space: t.c_cflag |= PARENB | CMSPAR; break;
        default: break;
    }
    if (s.stop_bits == 2) t.c_cflag |= CSTOPB;
    t.c_iflag &= ~static_cast<tcflag_t>(IXON | IXOFF | IXANY);
    t.c_cc[VMIN] = 0;
    t.c_cc[VTIME] = 0;
    if (::tcsetattr(fd, TCSANOW, &t) != 0) return -1;
    return serial_set_speed(fd, s.baud);
}

}  // namespace

std::string serial_device_path(const char* name) {
    const auto lower = [](char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); };
    if (lower(name[0]) == 'c' && lower(name[1]) == 'o' && lower(name[2]) == 'm' &&
        std::isdigit(static_cast<unsigned char>(name[3]))) {
        const char* p = name + 3;
        long n = 0;
        while (std::isdigit(static_cast<unsigned char>(*p)) && n < 1000) n = n * 10 + (*p++ - '0');
        if (*p == ':') ++p;
        if (*p == 0 && n >= 1) return "/dev/ttyS" + std::to_string(n - 1);
    }
    return name;
}

int serial_open(const std::string& device, const SerialSettings& settings, std::string& problem) {
    const int fd = ::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        problem = open_problem(device, errno);
        return -1;
    }
    if (!::isatty(fd)) {
        ::close(fd);
        problem = device + " is not a serial port.";
        return -1;
    }
    if (configure(fd, settings) != 0) {
        problem = "Cannot set up " + device + ": " + std::strerror(errno) + ".";
        ::close(fd);
        return -1;
    }
    return fd;
}

int serial_read_some(int fd, std::vector<char>& buffer, std::size_t limit, int timeout_ms, bool (*interrupted)()) {
    constexpr int slice_ms = 20;
    for (int waited = 0;;) {
        pollfd p{fd, POLLIN, 0};
        const int wait = std::min(slice_ms, timeout_ms - waited);
        const int r = ::poll(&p, 1, wait < 0 ? 0 : wait);
        if (r < 0 && errno != EINTR) return -1;
        if (r > 0) {
            if ((p.revents & POLLIN) != 0) {
                char chunk[256];
                const std::size_t want = std::min(limit, sizeof chunk);
                const ssize_t n = ::read(fd, chunk, want);
                if (n > 0) {
                    buffer.insert(buffer.end(), chunk, chunk + n);
                    return static_cast<int>(n);
                }
                if (n < 0 && errno != EAGAIN && errno != EINTR) return -1;
            } else if ((p.revents & (POLLERR | POLLNVAL)) != 0) {
                return -1;
            }
            // A hang-up with nothing to read: wait on as for silence.
            if ((p.revents & POLLHUP) != 0) ::usleep(slice_ms * 1000);
        }
        waited += wait < 0 ? 0 : wait;
        if (waited >= timeout_ms) return 0;
        if (interrupted != nullptr && interrupted()) return 0;
    }
}

int serial_write(int fd, const char* data, std::size_t length) {
    while (length > 0) {
        const ssize_t n = ::write(fd, data, length);
        if (n < 0) {
            if (errno == EINTR) continue;
            if (errno == EAGAIN) {
                pollfd p{fd, POLLOUT, 0};
                if (::poll(&p, 1, 1000) <= 0) return -1;
                continue;
            }
            return -1;
        }
        data += n;
        length -= static_cast<std::size_t>(n);
    }
    return 0;
}

long long serial_pending(int fd) {
    int n = 0;
    if (::ioctl(fd, FIONREAD, &n) != 0) return -1;
    return n;
}

std::vector<std::string> list_serial_ports() {
    std::vector<std::string> ports;
    std::error_code ec;
    for (const auto& e : std::filesystem::directory_iterator("/sys/class/tty", ec)) {
        const std::string name = e.path().filename().string();
        const auto starts = [&](const char* p) { return name.rfind(p, 0) == 0; };
        if (starts("ttyS")) {
            // Every possible 8250 port has an entry; only those with a UART count.
            std::ifstream type(e.path() / "type");
            int t = 0;
            if (!(type >> t) || t == 0) continue;
        } else if (!starts("ttyUSB") && !starts("ttyACM") && !starts("ttyAMA") && !starts("rfcomm")) {
            continue;
        }
        const std::string device = "/dev/" + name;
        if (std::filesystem::exists(device, ec)) ports.push_back(device);
    }
    std::sort(ports.begin(), ports.end());
    return ports;
}

}  // namespace tl
