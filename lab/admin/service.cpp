// The admin interface: a table of requests and a function for each.
#include "lab/admin/service.h"

#include "lab/mac.h"
#include "lab/request_head.h"
#include "lab/settings_document.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

namespace lab {

namespace {

using Json = nlohmann::ordered_json;

constexpr double longest_wait_seconds = 60;
constexpr size_t longest_credential = 115; // a switch stores 127 characters, 12 of them its MAC

// Thrown by whatever finds a request wanting, answered as {"error": reason}.
struct Refusal {
    int status;
    std::string reason;
};

struct Request {
    const Call& call;
    AdminParts& parts;
    std::vector<std::string> words; // what stands for the "*" of the route's pattern
};

Reply reply(const Json& body, int status = 200) {
    return {status, body.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n"};
}

std::string query(const Request& request, const std::string& name) {
    const auto found = request.call.query.find(name);
    return found == request.call.query.end() ? std::string() : found->second;
}

template <typename Number> Number number_of(const std::string& text, const std::string& what) {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || !(number >= 0))
        throw Refusal{400, what + " is \"" + text + "\", not a number"};
    return number;
}

Json object_in(const Request& request) {
    const Json body = Json::parse(request.call.body, nullptr, false);
    if (!body.is_object())
        throw Refusal{400, "the body is not a JSON object"};
    return body;
}

void no_other_members(const Json& body, std::initializer_list<std::string_view> known) {
    for (const auto& [key, value] : body.items())
        if (std::ranges::find(known, key) == known.end())
            throw Refusal{400, "there is no member \"" + key + "\""};
}

std::string credential(const Json& body, const char* name) {
    const auto found = body.find(name);
    if (found == body.end() || !found->is_string())
        throw Refusal{400, std::string("\"") + name + "\" must be a string"};
    const auto text = found->get<std::string>();
    const bool printable = std::ranges::all_of(text, [](char c) { return c > ' ' && c < 0x7f; });
    if (text.empty() || text.size() > longest_credential || !printable)
        throw Refusal{
            400, std::string("\"") + name + "\" must have 1 to " +
                     std::to_string(longest_credential) + " printable characters and no blank"};
    return text;
}

std::string mac_in(const Request& request) {
    const auto mac = canonical_mac(request.words[0]);
    if (!mac)
        throw Refusal{400, "\"" + request.words[0] + "\" is not a MAC"};
    return *mac;
}

std::string known_mac(const Request& request) {
    const std::string mac = mac_in(request);
    if (!request.parts.store.account(mac))
        throw Refusal{404, "no switch " + mac + " is registered"};
    return mac;
}

Reply ports(const Request& request) { return {200, request.parts.ports()}; }

// Switches

Json switch_entry(const Request& request, const SwitchRecord& record) {
    return {
        {"mac", record.mac},
        {"key", record.key},
        {"last_seen", record.last_seen ? Json(utc_text(record.last_seen)) : Json(nullptr)},
        {"reported_seqno", record.reported_seqno},
        {"reports", record.reports},
        {"pending", record.pending},
        {"waiting_polls", request.parts.keeper.waiting(record.mac)}};
}

Reply list_switches(const Request& request) {
    Json list = Json::array();
    for (const auto& record : request.parts.store.switches())
        list.push_back(switch_entry(request, record));
    return reply(list);
}

Reply show_switch(const Request& request) {
    return reply(
        switch_entry(request, request.parts.store.switch_record(known_mac(request)).value()));
}

Reply register_switch(const Request& request) {
    const std::string mac = mac_in(request);
    const Json body = object_in(request);
    no_other_members(body, {"key", "secret"});
    const Account account{credential(body, "key"), credential(body, "secret")};
    const bool is_new = request.parts.store.put_switch(mac, account);
    request.parts.events.note(
        "registered", mac, mac + (is_new ? " registered" : " has new credentials"));
    return reply({{"mac", mac}}, is_new ? 201 : 200);
}

Reply forget_switch(const Request& request) {
    request.parts.store.drop_switch(known_mac(request));
    return reply(Json::object());
}

// Reports

Reply report_reply(const std::optional<ReportRecord>& report) {
    if (!report)
        throw Refusal{404, "there is no such report"};
    return {200, report->body};
}

Reply latest_report(const Request& request) {
    return report_reply(request.parts.store.report(known_mac(request), 0));
}

Reply numbered_report(const Request& request) {
    const auto id = number_of<int64_t>(request.words[1], "the report");
    if (id == 0) // the store's word for "latest"
        throw Refusal{404, "there is no such report"};
    return report_reply(request.parts.store.report(known_mac(request), id));
}

Reply list_reports(const Request& request) {
    Json list = Json::array();
    for (const auto& report : request.parts.store.reports(known_mac(request)))
        list.push_back(
            {{"id", report.id}, {"time", utc_text(report.time)}, {"bytes", report.body.size()}});
    return reply(list);
}

// Settings and actions

Reply queue_settings(const Request& request) {
    const std::string mac = known_mac(request);
    const auto document = settings_document(request.call.body);
    if (const auto* bad = std::get_if<BadDocument>(&document))
        throw Refusal{400, bad->reason};
    const auto& text = std::get<std::string>(document);
    const int64_t seqno = request.parts.store.queue_settings(mac, text, wall_seconds());
    request.parts.events.note(
        "settings-queued", mac, "settings " + std::to_string(seqno) + " for " + mac + " queued",
        {{"config_seqno", seqno}});
    return reply({{"config_seqno", seqno}}, 201);
}

Reply list_settings(const Request& request) {
    Json list = Json::array();
    for (const auto& settings : request.parts.store.settings(known_mac(request)))
        list.push_back(
            {{"config_seqno", settings.seqno},
             {"state", settings.state},
             {"tries", settings.tries},
             {"queued", utc_text(settings.queued)},
             {"document", Json::parse(settings.document)}});
    return reply(list);
}

Reply withdraw_settings(const Request& request) {
    const std::string mac = known_mac(request);
    if (!request.parts.store.drop_settings(
            mac, number_of<int64_t>(request.words[1], "config_seqno")))
        throw Refusal{404, "there are no such settings"};
    return reply(Json::object());
}

Reply push_action(const Request& request) {
    const std::string mac = known_mac(request);
    const Json body = object_in(request);
    if (!body.contains("action") || !body["action"].is_string())
        throw Refusal{400, "\"action\" must be a string"};
    return reply({{"id", request.parts.keeper.push(mac, request.call.body)}}, 201);
}

Reply list_actions(const Request& request) {
    Json list = Json::array();
    for (const auto& action : request.parts.store.actions(known_mac(request)))
        list.push_back(
            {{"id", action.id},
             {"state", action.state},
             {"document", Json::parse(action.document)},
             {"time", utc_text(action.time)}});
    return reply(list);
}

// Events and figures

Json event_entry(const EventRecord& event) {
    Json entry = {
        {"id", event.id},
        {"time", utc_text(event.time)},
        {"kind", event.kind},
        {"mac", event.mac},
        {"text", event.text}};
    entry.update(Json::parse(event.details));
    return entry;
}

EventFilter event_filter(const Request& request) {
    EventFilter filter;
    filter.kind = query(request, "kind");
    if (const std::string after = query(request, "after"); !after.empty())
        filter.after = number_of<int64_t>(after, "after");
    if (const std::string mac = query(request, "mac"); !mac.empty()) {
        const auto canonical = canonical_mac(mac);
        if (!canonical)
            throw Refusal{400, "\"" + mac + "\" is not a MAC"};
        filter.mac = *canonical;
    }
    return filter;
}

Reply wait_for_events(const Request& request) {
    double seconds = 0;
    if (const std::string timeout = query(request, "timeout"); !timeout.empty())
        seconds = std::min(number_of<double>(timeout, "timeout"), longest_wait_seconds);
    const EventFilter filter = event_filter(request);
    Json list = Json::array();
    int64_t last = 0;
    for (const auto& event : request.parts.events.wait(
             filter, std::chrono::milliseconds(static_cast<int64_t>(seconds * 1000)))) {
        list.push_back(event_entry(event));
        last = event.id;
    }
    if (list.empty()) // nothing skipped, and a way to ask where the log ends
        last = std::min(filter.after, request.parts.events.last());
    return reply({{"events", list}, {"last", last}});
}

Reply stats(const Request& request) {
    return reply(
        {{"counters", request.parts.store.counters()},
         {"waiting_polls", request.parts.keeper.waiting("")}});
}

// Policy

Json policy_entry(const Policy& policy) {
    return {
        {"window", policy.window},
        {"clock_offset", policy.clock_offset},
        {"redeliver_seconds", policy.redeliver_seconds},
        {"redeliver_tries", policy.redeliver_tries},
        {"poll_seconds", policy.poll_seconds}};
}

constexpr int64_t widest_offset = int64_t{100} * 366 * 24 * 60 * 60; // a hundred years
constexpr int64_t longest_pause = 366 * 24 * 60 * 60;                // a year

template <typename Number>
void take_number(const Json& body, const char* name, Number least, Number most, Number& into) {
    const auto found = body.find(name);
    if (found == body.end())
        return;
    const bool fits = std::is_integral_v<Number> ? found->is_number_integer() : found->is_number();
    if (!fits || found->get<double>() < static_cast<double>(least) ||
        found->get<double>() > static_cast<double>(most))
        throw Refusal{
            400, std::string("\"") + name + "\" must be a number from " + Json(least).dump() +
                     " to " + Json(most).dump()};
    into = found->get<Number>();
}

Reply show_policy(const Request& request) {
    return reply(policy_entry(request.parts.policy.get()));
}

Reply set_policy(const Request& request) {
    const Json body = object_in(request);
    Policy policy = request.parts.policy.get();
    no_other_members(
        body, {"window", "clock_offset", "redeliver_seconds", "redeliver_tries", "poll_seconds"});
    take_number<int64_t>(body, "window", 0, widest_offset, policy.window);
    take_number<int64_t>(body, "clock_offset", -widest_offset, widest_offset, policy.clock_offset);
    take_number<double>(body, "redeliver_seconds", 0, longest_pause, policy.redeliver_seconds);
    take_number<int64_t>(body, "redeliver_tries", 0, longest_pause, policy.redeliver_tries);
    take_number<double>(body, "poll_seconds", 0, longest_pause, policy.poll_seconds);
    request.parts.policy.set(policy);
    return reply(policy_entry(policy));
}

// Misbehaviour

Json misbehaviour_entry(const Misbehaviour& misbehaviour) {
    Json entry = {
        {"mode", name_of(misbehaviour.fault)},
        {"door", misbehaviour.door},
        {"port", misbehaviour.port},
        {"count", misbehaviour.left}};
    if (misbehaviour.fault == Fault::status)
        entry["status"] = misbehaviour.status;
    if (misbehaviour.fault == Fault::slow)
        entry.update({{"delay_ms", misbehaviour.delay_ms}, {"piece", misbehaviour.piece}});
    return entry;
}

Reply list_misbehaviours(const Request& request) {
    Json list = Json::array();
    for (const auto& misbehaviour : request.parts.misbehaviours.all())
        list.push_back(misbehaviour_entry(misbehaviour));
    return reply(list);
}

std::string member_text(const Json& body, const char* name, const std::string& otherwise) {
    const auto found = body.find(name);
    if (found == body.end())
        return otherwise;
    if (!found->is_string())
        throw Refusal{400, std::string("\"") + name + "\" must be a string"};
    return found->get<std::string>();
}

Misbehaviour misbehaviour_in(const Json& body) {
    no_other_members(body, {"mode", "door", "port", "count", "status", "delay_ms", "piece"});
    const std::string mode = member_text(body, "mode", "");
    const auto fault = fault_named(mode);
    if (!fault)
        throw Refusal{400, "there is no mode \"" + mode + "\""};
    Misbehaviour misbehaviour;
    misbehaviour.fault = *fault;
    misbehaviour.door = member_text(body, "door", "checkin");
    take_number<int>(body, "port", 0, 65535, misbehaviour.port);
    take_number<int64_t>(body, "count", 0, 1000000, misbehaviour.left);
    take_number<int>(body, "status", 201, 599, misbehaviour.status);
    take_number<int64_t>(body, "delay_ms", 0, 10000, misbehaviour.delay_ms);
    take_number<int64_t>(body, "piece", 1, 1000000, misbehaviour.piece);
    return misbehaviour;
}

void check_possible(const Misbehaviour& misbehaviour, const AdminParts& parts) {
    const std::string& door = misbehaviour.door;
    if (!parts.has_port(door, 0))
        throw Refusal{400, "there is no door \"" + door + "\""};
    if (is_certificate_fault(misbehaviour.fault) && door != "checkin")
        throw Refusal{400, "only the door \"checkin\" shows a certificate"};
    if (misbehaviour.fault == Fault::refuse && misbehaviour.left != 0)
        throw Refusal{400, "a refused connection cannot be counted, leave \"count\" out"};
    if (!parts.has_port(door, misbehaviour.port))
        throw Refusal{
            400, "the door \"" + door + "\" has no port " + std::to_string(misbehaviour.port)};
}

Reply misbehave(const Request& request) {
    const Misbehaviour misbehaviour = misbehaviour_in(object_in(request));
    check_possible(misbehaviour, request.parts);
    request.parts.misbehaviours.add(misbehaviour);
    request.parts.misbehaviour_changed();
    return reply(misbehaviour_entry(misbehaviour), 201);
}

Reply behave(const Request& request) {
    request.parts.misbehaviours.clear();
    request.parts.misbehaviour_changed();
    return reply(Json::object());
}

// Firmware

std::string image_name(const Request& request) {
    if (!FirmwareShelf::good_name(request.words[0]))
        throw Refusal{400, "an image is named with letters, digits, \".\", \"_\" and \"-\""};
    return request.words[0];
}

Reply list_images(const Request& request) {
    Json list = Json::array();
    for (const auto& [name, bytes] : request.parts.shelf.list())
        list.push_back({{"name", name}, {"bytes", bytes}});
    return reply(list);
}

Reply put_image(const Request& request) {
    const std::string name = image_name(request);
    if (!request.call.body_whole)
        throw Refusal{400, "the image did not arrive whole"};
    request.parts.shelf.put(name, request.call.body);
    return reply({{"name", name}, {"bytes", request.call.body.size()}}, 201);
}

Reply drop_image(const Request& request) {
    if (!request.parts.shelf.drop(image_name(request)))
        throw Refusal{404, "there is no such image"};
    return reply(Json::object());
}

struct Route {
    const char* method;
    const char* pattern; // "*" stands for one word of the path
    Reply (*answer)(const Request&);
};

constexpr Route routes[] = {
    {"GET", "/ports", ports},
    {"GET", "/switches", list_switches},
    {"GET", "/switches/*", show_switch},
    {"PUT", "/switches/*", register_switch},
    {"DELETE", "/switches/*", forget_switch},
    {"GET", "/switches/*/report", latest_report},
    {"GET", "/switches/*/reports", list_reports},
    {"GET", "/switches/*/reports/*", numbered_report},
    {"GET", "/switches/*/settings", list_settings},
    {"POST", "/switches/*/settings", queue_settings},
    {"DELETE", "/switches/*/settings/*", withdraw_settings},
    {"GET", "/switches/*/actions", list_actions},
    {"POST", "/switches/*/actions", push_action},
    {"GET", "/events", wait_for_events},
    {"GET", "/stats", stats},
    {"GET", "/config", show_policy},
    {"PUT", "/config", set_policy},
    {"GET", "/misbehave", list_misbehaviours},
    {"POST", "/misbehave", misbehave},
    {"DELETE", "/misbehave", behave},
    {"GET", "/firmware", list_images},
    {"PUT", "/firmware/*", put_image},
    {"DELETE", "/firmware/*", drop_image},
};

std::vector<std::string> words_of(std::string_view path) {
    std::vector<std::string> words;
    while (!path.empty()) {
        path.remove_prefix(1);
        const size_t end = std::min(path.find('/'), path.size());
        words.emplace_back(path.substr(0, end));
        path.remove_prefix(end);
    }
    return words;
}

// The words under the "*" of the pattern; nullopt when the path is another.
std::optional<std::vector<std::string>> matched(const char* pattern, const std::string& path) {
    const auto expected = words_of(pattern);
    const auto words = words_of(path);
    if (expected.size() != words.size())
        return std::nullopt;
    std::vector<std::string> free;
    for (size_t i = 0; i < words.size(); i++) {
        if (expected[i] == "*" && !words[i].empty())
            free.push_back(words[i]);
        else if (expected[i] != words[i])
            return std::nullopt;
    }
    return free;
}

// A browser names the page that sends a request. No page has business here: one from anywhere could
// otherwise push actions through the browser of whoever has it open.
void refuse_web_pages(const Call& call) {
    const auto head = parse_request_head(call.head);
    if (head && std::ranges::any_of(head->lines, [](const HeaderLine& line) {
            return same_name(line.name, "Origin");
        }))
        throw Refusal{403, "the admin interface is not for web pages"};
}

Reply route(const Call& call, AdminParts& parts) {
    bool known_path = false;
    for (const Route& candidate : routes) {
        auto words = matched(candidate.pattern, call.path);
        if (words && call.method == candidate.method)
            return candidate.answer({call, parts, std::move(*words)});
        known_path = known_path || words;
    }
    throw Refusal{
        known_path ? 405 : 404,
        known_path ? "not with " + call.method : "there is nothing at " + call.path};
}

} // namespace

Reply AdminService::answer(const Call& call) {
    try {
        refuse_web_pages(call);
        return route(call, parts_);
    } catch (const Refusal& refusal) {
        return reply({{"error", refusal.reason}}, refusal.status);
    }
}

} // namespace lab
