// How long the wall waits for a peer that says nothing. The switch waits for minutes, and up to
// half an hour; a test has no time for that.
#pragma once

#include <mutex>
#include <optional>
#include <string>

#include "sim/instruments/clock.h"

namespace sim {

class Patience {
  public:
    // Transfers that begin from now on, to a URL that begins so, end after so many milliseconds of
    // the wall.
    void cut(const std::string& url_prefix, long milliseconds);
    void restore(); // every transfer has its own time again

    std::optional<long> milliseconds(const std::string& url) const;

    // Where transfers to that URL are cut, lets the time pass that one had been given; in virtual
    // time only.
    void wait_out(const std::string& url, double seconds, Clock& clock) const;

  private:
    mutable std::mutex mutex_;
    std::optional<long> cut_;
    std::string prefix_;
};

// Of the process; a new board has all of it.
Patience& patience();

} // namespace sim
