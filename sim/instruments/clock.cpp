// The board's clocks; see clock.h.
#include "sim/instruments/clock.h"

#include <cerrno>
#include <chrono>
#include <cmath>

namespace sim {

namespace {

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
    return is_virtual() ? slept_ : (wall_seconds() - started_) * speed_;
}

std::time_t Clock::calendar() const {
    std::lock_guard lock(mutex_);
    if (is_virtual())
        return static_cast<std::time_t>(calendar_base_ + static_cast<std::int64_t>(slept_));
    return static_cast<std::time_t>(wall_date() + calendar_offset_);
}

void Clock::set_calendar(std::time_t now) {
    std::lock_guard lock(mutex_);
    if (is_virtual())
        calendar_base_ = now - static_cast<std::int64_t>(slept_);
    else
        calendar_offset_ = now - wall_date();
}

unsigned Clock::sleep(unsigned seconds) {
    return is_virtual() ? sleep_virtual(seconds) : sleep_paced(seconds);
}

unsigned Clock::sleep_virtual(unsigned seconds) {
    unsigned left = on_sleep ? std::min(on_sleep(seconds), seconds) : 0;
    std::lock_guard lock(mutex_);
    slept_ += seconds - left;
    return left;
}

unsigned Clock::sleep_paced(unsigned seconds) const {
    double wall = seconds / speed_;
    timespec wanted{};
    wanted.tv_sec = static_cast<std::time_t>(wall);
    wanted.tv_nsec = static_cast<long>((wall - static_cast<double>(wanted.tv_sec)) * 1e9);
    timespec rest{};
    if (nanosleep(&wanted, &rest) == 0 || errno != EINTR)
        return 0;
    double unslept = static_cast<double>(rest.tv_sec) + static_cast<double>(rest.tv_nsec) / 1e9;
    return static_cast<unsigned>(std::ceil(unslept * speed_));
}

} // namespace sim
