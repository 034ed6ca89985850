// port_chooser.h — the serial-port chooser that a window host shows for browsecommports$.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tl {

/// Implemented by a host that can let the user pick a serial port (the
/// window); installed in host.port_chooser. Console mode installs none.
class PortChooser {
public:
    virtual ~PortChooser() = default;

    /// Shows `ports` (device paths, possibly none) under `title` and waits,
    /// keeping the window live. Returns true with the choice in `chosen`, or
    /// false when the user cancelled.
    virtual bool choose_port(std::string_view title, const std::vector<std::string>& ports, std::string& chosen) = 0;
};

}  // namespace tl
