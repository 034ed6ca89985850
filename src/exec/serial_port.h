// serial_port.h — serial ports through POSIX termios: naming, opening, reading with a timeout.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tl {

// ORDER: the parity words of OPEN "s": "no", "even", "odd", "mark", "space".
enum SerialParity : int { parity_none = 0, parity_even, parity_odd, parity_mark, parity_space };

struct SerialSettings {
    int baud = 9600;
    int parity = parity_none;
    int stop_bits = 1;  ///< 1 or 2
};

/// Seconds a read waits when the double variable "serialtimeout" is missing or not above 0.
inline constexpr double default_serial_timeout = 10.0;

/// The device of a port name: "COMn" or "COMn:" (letter case ignored) is
/// /dev/ttyS<n-1>; anything else is used as it is.
[[nodiscard]] std::string serial_device_path(const char* name);

/// Opens and sets up a port (8 data bits, no flow control, raw). Returns the
/// descriptor, or -1 with `problem` set to a sentence for the user: a device
/// that exists but may not be opened names its group and what to do.
[[nodiscard]] int serial_open(const std::string& device, const SerialSettings& settings, std::string& problem);

/// Sets the speed; any rate from 50 to 256000 (serial_speed.cpp). Returns 0 or -1.
[[nodiscard]] int serial_set_speed(int fd, int baud);

/// Waits up to `timeout_ms` for bytes and appends what is there (at most
/// `limit` bytes) to `buffer`. Returns the number read, 0 on timeout, or -1
/// on an I/O error. `interrupted` is polled every few milliseconds; when it
/// returns true the wait ends with 0.
[[nodiscard]] int serial_read_some(int fd, std::vector<char>& buffer, std::size_t limit, int timeout_ms,
                                   bool (*interrupted)());

/// Writes all bytes. Returns 0 or -1.
[[nodiscard]] int serial_write(int fd, const char* data, std::size_t length);

/// Bytes received and not yet read, or -1.
[[nodiscard]] long long serial_pending(int fd);

/// The serial ports that exist on this system, sorted (the devices under
/// /dev named ttyUSB*, ttyACM*, ttyAMA*, rfcomm*, and ttyS* with a UART).
[[nodiscard]] std::vector<std::string> list_serial_ports();

}  // namespace tl
