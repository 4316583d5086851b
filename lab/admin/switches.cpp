// Accounts of switches: listed, registered, forgotten.
#include <algorithm>
#include <limits>
#include <map>

#include "lab/admin/handlers.h"

namespace lab {

namespace {

constexpr std::size_t longest_credential =
    115; // a switch stores 127 characters, 12 of them its MAC

std::string read_credential(const Json& body, const char* name) {
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

Json describe_switch(const Request& request, const SwitchRecord& record) {
    return {
        {"mac", record.mac},
        {"key", record.key},
        {"last_seen", record.last_seen ? Json(utc_text(record.last_seen)) : Json(nullptr)},
        {"reported_seqno", record.reported_seqno},
        {"reports", record.reports},
        {"pending", record.pending},
        {"waiting_polls", request.parts.keeper.count_waiting(record.mac)}};
}

// Those whose last try was refused.
std::vector<SwitchOverview> list_refused(const Request& request) {
    const Page all = {0, std::numeric_limits<std::int64_t>::max()};
    return request.parts.overview.list_switches({"", "refused", all, wall_seconds()}).switches;
}

} // namespace

Reply list_switches(const Request& request) {
    std::map<std::string, Json> list;
    for (const auto& record : request.parts.store.list_switches())
        list[record.mac] = describe_switch(request, record);
    for (const auto& refused : list_refused(request))
        if (const auto found = list.find(refused.mac); found != list.end())
            add_refusal(found->second, refused);
    Json body = Json::array();
    for (auto& [mac, text] : list)
        body.push_back(std::move(text));
    return reply_json(body);
}

Reply show_switch(const Request& request) {
    const std::string mac = require_switch(request);
    Json text = describe_switch(request, request.parts.store.find_switch(mac).value());
    if (const auto entry = request.parts.overview.find_switch(mac, wall_seconds()))
        add_refusal(text, *entry);
    return reply_json(text);
}

Reply register_switch(const Request& request) {
    const std::string mac = read_mac(request.words[0]);
    const Json body = parse_object(request);
    refuse_other_members(body, {"key", "secret"});
    const Account account{read_credential(body, "key"), read_credential(body, "secret")};
    const bool is_new = request.parts.store.put_switch(mac, account);
    request.parts.events.note(
        "registered", mac, mac + (is_new ? " registered" : " has new credentials"));
    return reply_json({{"mac", mac}}, is_new ? 201 : 200);
}

Reply forget_switch(const Request& request) {
    request.parts.store.drop_switch(require_switch(request));
    return reply_json(Json::object());
}

} // namespace lab
