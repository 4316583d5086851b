// Tells the time of the lab, which may be set apart from the workstation's, to a GET only.
#include "lab/time_service.h"

namespace lab {

Reply TimeService::answer(const Call& call) {
    if (call.method != "GET")
        return {405, "the time is had by GET\n", "text/plain"};
    const std::string now = utc_text(policy_.now());
    events_.note("time", "", "time asked, told " + now);
    return {200, "{\"time\":\"" + now + "\"}"};
}

} // namespace lab
