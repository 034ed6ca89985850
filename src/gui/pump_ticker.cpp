// pump_ticker.cpp — the helper thread of the event pump's throttle.
#include "gui/pump_ticker.h"

namespace tl::gui {

void PumpTicker::start() {
    due_ = true;
    std::lock_guard lock(mutex_);
    if (running_) return;
    running_ = true;
    thread_ = std::thread([this] {
        std::unique_lock lock(mutex_);
        while (running_) {
            if (wake_.wait_for(lock, period_, [this] { return !running_; })) break;
            due_.store(true, std::memory_order_relaxed);
        }
    });
}

void PumpTicker::stop() {
    {
        std::lock_guard lock(mutex_);
        if (!running_) return;
        running_ = false;
    }
    wake_.notify_all();
    thread_.join();
}

}  // namespace tl::gui
