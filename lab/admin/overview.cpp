// The lists of the page: what a switch is called and how it is, in pages.
#include <algorithm>

#include "lab/admin/handlers.h"
#include "lab/clock.h"
#include "lab/json_text.h"

namespace lab {

namespace {

constexpr std::int64_t longest_page = 500;

Page read_page(const Request& request) {
    Page page;
    if (const std::string from = find_query(request, "from"); !from.empty())
        page.from = parse_number<std::int64_t>(from, "from");
    if (const std::string count = find_query(request, "count"); !count.empty())
        page.count = std::min(parse_number<std::int64_t>(count, "count"), longest_page);
    return page;
}

Json describe_time(std::int64_t seconds) {
    return seconds ? Json(utc_text(seconds)) : Json(nullptr);
}

Json describe_refusal(std::int64_t time, const std::string& details) {
    Json refusal = {{"time", describe_time(time)}};
    if (const Json known = parse_json(details); known.is_object())
        refusal.update(known);
    return refusal;
}

Json describe_overview(const Request& request, const SwitchOverview& entry) {
    Json text = {
        {"mac", entry.mac},
        {"state", entry.state},
        {"name", entry.name},
        {"model", entry.model},
        {"firmware", entry.firmware},
        {"address", entry.address},
        {"last_seen", describe_time(entry.last_seen)},
        {"reported_seqno", entry.reported_seqno},
        {"pending", entry.pending},
        {"pending_seqno", entry.pending_seqno},
        {"reports", entry.reports},
        {"waiting_polls", request.parts.keeper.count_waiting(entry.mac)}};
    if (entry.refused_at)
        text["refusal"] = describe_refusal(entry.refused_at, entry.refusal);
    return text;
}

} // namespace

Reply show_overview(const Request& request) {
    const auto page = request.parts.overview.list_switches(
        {find_query(request, "search"), find_query(request, "state"), read_page(request),
         wall_seconds()});
    Json body = {
        {"states", page.states}, {"switches", Json::array()}, {"strangers", Json::array()}};
    for (const auto& entry : page.switches)
        body["switches"].push_back(describe_overview(request, entry));
    for (const auto& stranger : request.parts.overview.list_strangers()) {
        body["strangers"].push_back({{"mac", stranger.mac}});
        body["strangers"].back()["refusal"] = describe_refusal(stranger.time, stranger.refusal);
    }
    return reply_json(body);
}

Reply show_switch_overview(const Request& request) {
    const auto entry = request.parts.overview.find_switch(require_switch(request), wall_seconds());
    return reply_json(describe_overview(request, entry.value()));
}

} // namespace lab
