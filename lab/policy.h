// What can be set while the lab runs.
#pragma once

#include <cstdint>
#include <mutex>

#include "lab/clock.h"

namespace lab {

struct Policy {
    std::int64_t window = 300;     // seconds a timestamp may lie off either way; 0: any
    std::int64_t clock_offset = 0; // seconds by which the lab's idea of time differs
    double redeliver_seconds = 10; // least time between two deliveries of one document
    std::int64_t redeliver_tries =
        10;                     // deliveries before a document counts as refused; 0: no limit
    double poll_seconds = 1500; // a long-poll without an action is answered after this
    double first_checkin_seconds = 60; // who polls that long and never checked in is told of
};

class PolicyBox {
  public:
    explicit PolicyBox(const Policy& policy) : policy_(policy) {}

    Policy get() const {
        const std::lock_guard lock(mutex_);
        return policy_;
    }
    void set(const Policy& policy) {
        const std::lock_guard lock(mutex_);
        policy_ = policy;
    }
    std::int64_t now() const { return wall_seconds() + get().clock_offset; }

  private:
    mutable std::mutex mutex_;
    Policy policy_;
};

} // namespace lab
