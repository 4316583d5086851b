// The connection keeper: long-polls that an action ends.
#pragma once

#include "lab/events.h"
#include "lab/http.h"
#include "lab/policy.h"

#include <condition_variable>
#include <map>
#include <mutex>

namespace lab {

class KeeperService {
  public:
    KeeperService(Store& store, EventLog& events, const PolicyBox& policy)
        : store_(store), events_(events), policy_(policy) {}

    Reply listen(const Call& call);
    int64_t push(const std::string& mac, const std::string& document); // the action's number
    int64_t waiting(const std::string& mac) const;                     // empty: of all switches
    void stop(); // answers every long-poll, now and later

  private:
    Reply wait_for_action(const std::string& mac, const Call& call);
    Reply answer(const ActionRecord& action, const std::string& mac, int port);

    Store& store_;
    EventLog& events_;
    const PolicyBox& policy_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::map<std::string, uint64_t> latest_; // the number of a switch's latest poll
    std::map<std::string, int64_t> waiting_;
    bool stopping_ = false;
};

} // namespace lab
