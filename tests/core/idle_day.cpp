// Stands before the agent's poll(), and only the agent's: libcurl looks at its sockets as ever.
#include "tests/core/idle_day.h"

#include <poll.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <thread>

extern "C" int __real_poll(pollfd* files, nfds_t count, int milliseconds);

namespace {

constexpr std::int64_t day = 24 * 60 * 60 * 1000; // milliseconds
constexpr int second = 1000;

std::atomic<std::int64_t> left = 0;
std::atomic<int> waited = 0;

// Whether the wait is part of the day, which has passed with it.
bool passes(int milliseconds) {
    if (left <= 0)
        return false;
    ++waited;
    if (milliseconds < second)
        return false;
    left -= milliseconds;
    return true;
}

} // namespace

IdleDay::IdleDay() {
    waited = 0;
    left = day;
}
IdleDay::~IdleDay() { left = 0; }

bool IdleDay::wait_for_end() const {
    for (int tenths = 0; tenths < 100 && left > 0; ++tenths)
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    return left <= 0;
}

int IdleDay::waits() const { return waited; }

extern "C" int __wrap_poll(pollfd* files, nfds_t count, int milliseconds) {
    return passes(milliseconds) ? 0 : __real_poll(files, count, milliseconds);
}
