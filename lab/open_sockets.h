// The connections of a listener, so that closing it can end them, and so that a peer that sends or
// reads at a snail's pace cannot keep others out.
#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <optional>

namespace lab {

class OpenSockets {
  public:
    using Clock = std::chrono::steady_clock;

    explicit OpenSockets(Clock::duration patience) : patience_(patience) {}

    bool add(int socket); // false: the listener is closing
    void remove(int socket);

    // The peer is waited for, to send its request or to take the reply; or the lab is at work.
    void wait_for_peer(int socket);
    void work(int socket);

    void end_slow(); // those whose peers have been waited for longer than the patience
    void end_all();
    void reopen();
    bool closing() const;

  private:
    const Clock::duration patience_;
    mutable std::mutex mutex_;
    std::map<int, std::optional<Clock::time_point>> waiting_since_; // nullopt: the lab is at work
    bool closing_ = false;
};

} // namespace lab
