// The board's two clocks: how long it has been running, and what date it believes it is.
#pragma once

#include <signal.h>

#include <cstdint>
#include <ctime>
#include <functional>
#include <mutex>

namespace sim {

// Virtual: time stands still but for sleeps, which pass at once; for tests within one process.
// Paced: running time passes `speed` times as fast as on the wall, so a sleep of 300 s at speed 100
// takes 3 s. The calendar keeps the wall's pace in either case, for a cloud checks it.
class Clock {
  public:
    Clock() = default;
    void pace(double speed); // leaves virtual time
    bool is_virtual() const { return speed_ == 0; }

    double running() const; // simulated seconds since power-on
    void restart(double already_running = 0);

    std::time_t calendar() const;
    // False, and the calendar goes on as it was, for a date that Linux refuses: one before the
    // board was switched on, or within thirty years of the last that the kernel can count to.
    bool set_calendar(const std::timespec& now);

    // How far the calendar is ahead of the right time, in seconds; negative when it is behind.
    std::int64_t ahead() const;
    void set_ahead(std::int64_t seconds);

    // Sleeps simulated seconds; returns the unslept rest, rounded up, when a signal cut it short.
    // Where there is a `mask`, it is the thread's signal mask for the wait, and only for it.
    unsigned sleep(unsigned seconds, const sigset_t* mask = nullptr);

    // In virtual time the wait itself: called in every sleep, before time passes, with its seconds;
    // returns how many of them are to be left unslept.
    std::function<unsigned(unsigned)> on_sleep;

  private:
    unsigned sleep_virtual(unsigned seconds, const sigset_t* mask);
    unsigned sleep_paced(unsigned seconds, const sigset_t* mask) const;
    double running_locked() const;
    std::int64_t right_time() const;

    double speed_ = 0;
    double started_ = 0; // wall seconds at power-on, less what had already passed
    mutable std::mutex mutex_;
    double slept_ = 0; // virtual time
    std::int64_t ahead_ = 0;
};

} // namespace sim
