// pump_ticker.h — says when it is time to pump the window's events again.
//
// The run loop offers to pump events before every statement; doing it every
// time would spend a tight loop's time in the pump. While a command runs, a
// helper thread raises a flag every few milliseconds, and the pump does its
// work only when it finds the flag raised: one relaxed load per statement.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace tl::gui {

class PumpTicker {
public:
    explicit PumpTicker(std::chrono::milliseconds period = std::chrono::milliseconds(10)) : period_(period) {}
    ~PumpTicker() { stop(); }
    PumpTicker(const PumpTicker&) = delete;
    PumpTicker& operator=(const PumpTicker&) = delete;

    /// Starts ticking (the first tick is due at once).
    void start();
    /// Stops ticking and waits for the helper thread.
    void stop();
    /// True, once, when a tick has come since the last call.
    bool due() {
        if (!due_.load(std::memory_order_relaxed)) return false;
        due_.store(false, std::memory_order_relaxed);
        return true;
    }

private:
    std::chrono::milliseconds period_;
    std::atomic<bool> due_{false};
    std::mutex mutex_;
    std::condition_variable wake_;
    bool running_ = false;
    std::thread thread_;
};

}  // namespace tl::gui
