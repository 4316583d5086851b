// What has happened: the event log, which can be waited on, and the counters.
#include <algorithm>
#include <chrono>

#include "lab/json_text.h"

#include "lab/admin/handlers.h"

namespace lab {

namespace {

constexpr double longest_wait_seconds = 60;

std::chrono::milliseconds read_timeout(const Request& request) {
    const std::string timeout = find_query(request, "timeout");
    if (timeout.empty())
        return {};
    const double seconds = parse_number<double>(timeout, "timeout");
    return std::chrono::milliseconds(
        static_cast<std::int64_t>(std::min(seconds, longest_wait_seconds) * 1000));
}

} // namespace

Json describe_event(const EventRecord& event) {
    Json entry = {
        {"id", event.id},
        {"time", utc_text(event.time)},
        {"kind", event.kind},
        {"mac", event.mac},
        {"text", event.text}};
    if (const Json details = parse_json(event.details); details.is_object())
        entry.update(details);
    return entry;
}

EventFilter read_filter(const Request& request) {
    EventFilter filter;
    filter.kind = find_query(request, "kind");
    if (const std::string after = find_query(request, "after"); !after.empty())
        filter.after = parse_number<std::int64_t>(after, "after");
    if (const std::string mac = find_query(request, "mac"); !mac.empty())
        filter.mac = read_mac(mac);
    return filter;
}

Reply wait_for_events(const Request& request) {
    const auto timeout = read_timeout(request);
    const EventFilter filter = read_filter(request);
    Json list = Json::array();
    std::int64_t last = 0;
    for (const auto& event : request.parts.events.wait(filter, timeout)) {
        list.push_back(describe_event(event));
        last = event.id;
    }
    if (list.empty()) // nothing skipped, and a way to ask where the log ends
        last = std::min(filter.after, request.parts.events.last());
    return reply_json({{"events", list}, {"last", last}});
}

Reply show_stats(const Request& request) {
    return reply_json(
        {{"counters", request.parts.store.list_counters()},
         {"waiting_polls", request.parts.keeper.count_waiting("")}});
}

} // namespace lab
