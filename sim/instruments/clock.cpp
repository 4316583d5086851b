// The board's clocks: a wait in paced time is one of the wall, and its rest is counted there.
#include "sim/instruments/clock.h"

#include <poll.h>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace sim {

namespace {

constexpr std::int64_t virtual_power_on = 1795000000; // the date then
// What the kernel counts in nanoseconds of 64 bits, less the years that it keeps for itself.
constexpr std::int64_t last_date = INT64_MAX / 1000000000 - std::int64_t{30} * 365 * 24 * 3600;

double wall_seconds() {
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

std::int64_t wall_date() {
    using namespace std::chrono;
    return duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
}

} // namespace

void Clock::pace(double speed) {
    double so_far = running();
    speed_ = speed;
    restart(so_far);
}

void Clock::restart(double already_running) {
    std::lock_guard lock(mutex_);
    slept_ = already_running;
    if (speed_ > 0)
        started_ = wall_seconds() - already_running / speed_;
}

double Clock::running() const {
    std::lock_guard lock(mutex_);
    return running_locked();
}

double Clock::running_locked() const {
    return is_virtual() ? slept_ : (wall_seconds() - started_) * speed_;
}

std::int64_t Clock::right_time() const {
    return is_virtual() ? virtual_power_on + static_cast<std::int64_t>(slept_) : wall_date();
}

std::time_t Clock::calendar() const {
    std::lock_guard lock(mutex_);
    return static_cast<std::time_t>(right_time() + ahead_);
}

bool Clock::set_calendar(const std::timespec& now) {
    std::lock_guard lock(mutex_);
    const auto date = static_cast<std::int64_t>(now.tv_sec);
    if (static_cast<double>(date) < running_locked() || date > last_date || now.tv_nsec < 0 ||
        now.tv_nsec >= 1000000000)
        return false;
    ahead_ = date - right_time();
    return true;
}

std::int64_t Clock::ahead() const {
    std::lock_guard lock(mutex_);
    return ahead_;
}

void Clock::set_ahead(std::int64_t seconds) {
    std::lock_guard lock(mutex_);
    ahead_ = seconds;
}

unsigned Clock::sleep(unsigned seconds, const sigset_t* mask) {
    return is_virtual() ? sleep_virtual(seconds, mask) : sleep_paced(seconds, mask);
}

unsigned Clock::sleep_virtual(unsigned seconds, const sigset_t* mask) {
    sigset_t before;
    if (mask)
        pthread_sigmask(SIG_SETMASK, mask, &before);
    unsigned left = on_sleep ? std::min(on_sleep(seconds), seconds) : 0;
    if (mask)
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
    std::lock_guard lock(mutex_);
    slept_ += seconds - left;
    return left;
}

// The mask changes and the wait begins in one step, so no signal falls between the two.
unsigned Clock::sleep_paced(unsigned seconds, const sigset_t* mask) const {
    const double wall = seconds / speed_;
    std::timespec wanted{};
    wanted.tv_sec = static_cast<std::time_t>(wall);
    wanted.tv_nsec = static_cast<long>((wall - static_cast<double>(wanted.tv_sec)) * 1e9);
    const double began = wall_seconds();
    if (ppoll(nullptr, 0, &wanted, mask) == 0)
        return 0;
    const double rest = wall - (wall_seconds() - began);
    return static_cast<unsigned>(std::ceil(std::max(rest, 0.0) * speed_));
}

} // namespace sim
