// The lists of the page: what a switch is called and how it is, in pages.
#include <algorithm>
#include <limits>

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
    add_refusal(text, entry);
    return text;
}

Json describe_texts(const std::vector<std::string>& texts) {
    Json list = Json::array();
    for (const auto& text : texts)
        list.push_back(Json::parse(text));
    return list;
}

Reply reply_page(const TextPage& page) {
    return reply_json({{"total", page.total}, {"entries", describe_texts(page.entries)}});
}

} // namespace

void add_refusal(Json& text, const SwitchOverview& entry) {
    if (entry.refused_at)
        text["refusal"] = describe_refusal(entry.refused_at, entry.refusal);
}

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

// --- Of one switch.

Reply page_reports(const Request& request) {
    return reply_page(
        request.parts.overview.list_reports(require_switch(request), read_page(request)));
}

Reply page_settings(const Request& request) {
    return reply_page(
        request.parts.overview.list_settings(require_switch(request), read_page(request)));
}

Reply page_actions(const Request& request) {
    return reply_page(
        request.parts.overview.list_actions(require_switch(request), read_page(request)));
}

Reply show_history(const Request& request) {
    return reply_json(describe_texts(request.parts.overview.list_history(
        require_switch(request), find_query(request, "port"), read_page(request).count)));
}

Reply show_checkins(const Request& request) {
    return reply_json(describe_texts(
        request.parts.overview.list_checkins(require_switch(request), read_page(request).count)));
}

Reply show_diagnostics(const Request& request) {
    return reply_json(
        describe_texts(request.parts.overview.list_diagnostics(require_switch(request))));
}

Reply show_way(const Request& request) {
    const std::string mac = require_switch(request);
    const auto seqno = parse_number<std::int64_t>(request.words[1], "config_seqno");
    Json events = Json::array();
    for (const auto& event : request.parts.overview.list_settings_events(mac, seqno))
        events.push_back(describe_event(event));
    const std::int64_t report = request.parts.overview.find_verdict(mac, seqno);
    return reply_json({{"events", events}, {"report", report ? Json(report) : Json(nullptr)}});
}

Reply page_events(const Request& request) {
    std::int64_t before = std::numeric_limits<std::int64_t>::max();
    if (const std::string text = find_query(request, "before"); !text.empty())
        before = parse_number<std::int64_t>(text, "before");
    Json list = Json::array();
    for (const auto& event : request.parts.overview.list_events_before(
             before, read_filter(request), read_page(request).count))
        list.push_back(describe_event(event));
    return reply_json(list);
}

} // namespace lab
