// The time API: a switch whose clock is wrong sets it from here.
#pragma once

#include "lab/events.h"
#include "lab/http.h"
#include "lab/policy.h"

namespace lab {

class TimeService {
  public:
    TimeService(EventLog& events, const PolicyBox& policy) : events_(events), policy_(policy) {}

    static bool serves(const Call& call) { return call.path == "/time"; }
    Reply answer(const Call& call);

  private:
    EventLog& events_;
    const PolicyBox& policy_;
};

} // namespace lab
