// The check-in service: examines, keeps the report, acknowledges and delivers settings.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "lab/events.h"
#include "lab/http.h"
#include "lab/policy.h"

namespace lab {

class CheckinService {
  public:
    CheckinService(Store& store, EventLog& events, const PolicyBox& policy)
        : store_(store), events_(events), policy_(policy) {}

    // Several times the report of the largest switch with every address in its table.
    static constexpr std::size_t longest_body = 8 << 20;
    Reply answer(const Call& call);

  private:
    std::variant<Verified, Rejection> examine_call(const Call& call);
    Reply reject(const Call& call, const Rejection& rejection);
    Reply accept(const Call& call, const Verified& verified, const nlohmann::json& report);
    void note_report(
        const Call& call, const std::string& mac, const nlohmann::json& report, std::int64_t seqno,
        std::int64_t id);
    Reply deliver(const std::string& mac, std::int64_t seqno);

    Store& store_;
    EventLog& events_;
    const PolicyBox& policy_;
};

} // namespace lab
