// The connection keeper: long-polls that an action ends.
#pragma once

#include <condition_variable>
#include <map>
#include <mutex>

#include "lab/events.h"
#include "lab/http.h"
#include "lab/policy.h"

namespace lab {

class KeeperService {
  public:
    KeeperService(Store& store, EventLog& events, const PolicyBox& policy)
        : store_(store), events_(events), policy_(policy) {}

    Reply listen(const Call& call);
    std::int64_t push(const std::string& mac, const std::string& document); // the action's number
    std::int64_t count_waiting(const std::string& mac) const; // empty: of all switches
    void stop(); // answers every long-poll, now and later

  private:
    Reply wait_for_action(const std::string& mac, const Call& call);
    void note_late_checkin(const std::string& mac); // once a switch
    Reply answer(const ActionRecord& action, const std::string& mac, int port);

    Store& store_;
    EventLog& events_;
    const PolicyBox& policy_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    struct Polls {
        std::uint64_t latest = 0; // the number of the latest
        std::int64_t count = 0;
    };
    std::uint64_t last_number_ = 0;
    std::map<std::string, Polls> waiting_; // by MAC, while there are any
    bool stopping_ = false;
};

} // namespace lab
