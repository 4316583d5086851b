// The board's two clocks: how long it has been running, and what date it believes it is.
#pragma once

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
    void set_calendar(std::time_t now);

    // Sleeps simulated seconds; returns the unslept rest, rounded up, when a signal cut it short.
    unsigned sleep(unsigned seconds);

    // In virtual time: called in every sleep, before time passes, with its seconds; returns how
    // many of them are to be left unslept.
    std::function<unsigned(unsigned)> on_sleep;

  private:
    unsigned sleep_virtual(unsigned seconds);
    unsigned sleep_paced(unsigned seconds) const;

    double speed_ = 0;
    double started_ = 0; // wall seconds at power-on, less what had already passed
    mutable std::mutex mutex_;
    double slept_ = 0;                        // virtual time
    std::int64_t calendar_offset_ = 0;        // paced: set clock less wall clock
    std::int64_t calendar_base_ = 1795000000; // virtual: date at power-on
};

} // namespace sim
