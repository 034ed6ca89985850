// serial_speed.cpp — the speed of a serial port, any rate, through the kernel's termios2.
//
// Kept apart: the kernel's termios header cannot be included together with
// the C library's <termios.h>.
#include <asm/ioctls.h>
#include <asm/termbits.h>

#include "exec/serial_port.h"

extern "C" int ioctl(int fd, unsigned long request, ...);

namespace tl {

int serial_set_speed(int fd, int baud) {
    struct termios2 t {};
    if (ioctl(fd, TCGETS2, &t) != 0) return -1;
    t.c_cflag &= ~static_cast<tcflag_t>(CBAUD | (CBAUD << IBSHIFT));
    t.c_cflag |= BOTHER | (BOTHER << IBSHIFT);
    t.c_ispeed = static_cast<speed_t>(baud);
    t.c_ospeed = static_cast<speed_t>(baud);
    return ioctl(fd, TCSETS2, &t) == 0 ? 0 : -1;
}

}  // namespace tl
