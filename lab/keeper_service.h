// The connection keeper: long-polls that an action ends.
#pragma once

#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "lab/events.h"
#include "lab/http.h"
#include "lab/policy.h"

namespace lab {

class KeeperService {
  public:
    KeeperService(Store& store, EventLog& events, const PolicyBox& policy);
    ~KeeperService() { stop(); }
    KeeperService(const KeeperService&) = delete;
    KeeperService& operator=(const KeeperService&) = delete;

    Reply listen(const Call& call);
    std::int64_t push(const std::string& mac, const std::string& document); // the action's number
    std::int64_t count_waiting(const std::string& mac) const; // empty: of all switches
    void stop(); // answers every long-poll, now and later

  private:
    using Clock = std::chrono::steady_clock;
    struct Poll {
        std::unique_ptr<Waiter> waiter;
        int port = 0;
        Clock::time_point end;
        std::optional<Clock::time_point> late; // when a switch without a check-in is told of
    };

    void begin(const std::string& mac, Poll poll);
    std::unique_ptr<Waiter> replace(const std::string& mac, Poll& poll);
    void hand_out(const std::string& mac);
    Reply make_answer(const ActionRecord& action, const std::string& mac, int port);
    void watch();
    std::vector<Poll> take_ended();
    void note_late_checkin(const std::string& mac); // once a switch

    Store& store_;
    EventLog& events_;
    const PolicyBox& policy_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::map<std::string, Poll> waiting_; // by MAC
    bool stopping_ = false;
    std::thread watching_;
};

} // namespace lab
