// How the lab is set up: its ports, and the policy that can be changed while it runs.
#include "lab/admin/handlers.h"

namespace lab {

namespace {

constexpr std::int64_t widest_offset = std::int64_t{100} * 366 * 24 * 60 * 60; // a hundred years
constexpr std::int64_t longest_pause = 366 * 24 * 60 * 60;                     // a year

Json describe_policy(const Policy& policy) {
    return {
        {"window", policy.window},
        {"clock_offset", policy.clock_offset},
        {"redeliver_seconds", policy.redeliver_seconds},
        {"redeliver_tries", policy.redeliver_tries},
        {"poll_seconds", policy.poll_seconds},
        {"first_checkin_seconds", policy.first_checkin_seconds}};
}

} // namespace

Reply show_ports(const Request& request) { return {200, request.parts.ports()}; }

Reply show_policy(const Request& request) {
    return reply_json(describe_policy(request.parts.policy.get()));
}

Reply set_policy(const Request& request) {
    const Json body = parse_object(request);
    Policy policy = request.parts.policy.get();
    refuse_other_members(
        body, {"window", "clock_offset", "redeliver_seconds", "redeliver_tries", "poll_seconds",
               "first_checkin_seconds"});
    take_number<std::int64_t>(body, "window", 0, widest_offset, policy.window);
    take_number<std::int64_t>(
        body, "clock_offset", -widest_offset, widest_offset, policy.clock_offset);
    take_number<double>(body, "redeliver_seconds", 0, longest_pause, policy.redeliver_seconds);
    take_number<std::int64_t>(body, "redeliver_tries", 0, longest_pause, policy.redeliver_tries);
    take_number<double>(body, "poll_seconds", 0, longest_pause, policy.poll_seconds);
    take_number<double>(
        body, "first_checkin_seconds", 0, longest_pause, policy.first_checkin_seconds);
    request.parts.policy.set(policy);
    return reply_json(describe_policy(policy));
}

} // namespace lab
