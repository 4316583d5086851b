// The events of the lab: a plain line on standard output for a person, a record for a script.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <string>
#include <vector>

#include "lab/store.h"

namespace lab {

struct EventFilter {
    std::int64_t after = 0;
    std::string kind; // empty: every kind
    std::string mac;  // empty: every switch and none
};

class EventLog {
  public:
    EventLog(Store& store, bool quiet) : store_(store), quiet_(quiet) {}

    // Counts the kind, too. `mac` is empty for what concerns no switch.
    void note(const std::string& kind, const std::string& mac, const std::string& text);
    void note(
        const std::string& kind, const std::string& mac, const std::string& text,
        const nlohmann::json& details);

    // Returns at once when an event is there, else after the first one or the time-out.
    std::vector<EventRecord> wait(const EventFilter& filter, std::chrono::milliseconds timeout);
    std::int64_t last() { return store_.find_last_event(); }
    bool stopped() const { return stopping_; }
    void stop(); // ends every wait, now and later

  private:
    Store& store_;
    const bool quiet_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::atomic<bool> stopping_ = false;
};

} // namespace lab
