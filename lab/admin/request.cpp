// Texts, members and the switch of a request to the admin interface.
#include "lab/admin/request.h"

#include <algorithm>

#include "lab/json_text.h"
#include "lab/mac.h"

namespace lab {

Reply reply_json(const Json& body, int status) {
    return {status, body.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n"};
}

Json show_document(const std::string& text) {
    const Json document = parse_json(text);
    return document.is_discarded() ? Json(text) : document;
}

std::string read_mac(const std::string& text) {
    const auto mac = canonical_mac(text);
    if (!mac)
        throw Refusal{400, "\"" + text + "\" is not a MAC"};
    return *mac;
}

std::string require_switch(const Request& request) {
    const std::string mac = read_mac(request.words[0]);
    if (!request.parts.store.find_account(mac))
        throw Refusal{404, "no switch " + mac + " is registered"};
    return mac;
}

std::string find_query(const Request& request, const std::string& name) {
    const auto found = request.call.query.find(name);
    return found == request.call.query.end() ? std::string() : found->second;
}

void refuse_when_full(std::int64_t waiting, const std::string& what) {
    constexpr std::int64_t most_waiting = 1000;
    if (waiting >= most_waiting)
        throw Refusal{409, std::to_string(waiting) + " " + what + " already wait for the switch"};
}

void refuse_flawed_body(const Request& request) {
    if (!request.call.body_flaw.empty())
        throw Refusal{400, request.call.body_flaw};
}

Json parse_object(const Request& request) {
    refuse_flawed_body(request);
    if (is_nested_too_deeply(request.call.body))
        throw Refusal{400, "the body is nested too deeply"};
    const Json body = parse_json(request.call.body);
    if (!body.is_object())
        throw Refusal{400, "the body is not a JSON object"};
    return body;
}

void refuse_other_members(const Json& body, std::initializer_list<std::string_view> known) {
    for (const auto& [key, value] : body.items())
        if (std::ranges::find(known, key) == known.end())
            throw Refusal{400, "there is no member \"" + key + "\""};
}

std::string read_text(const Json& body, const char* name, const std::string& otherwise) {
    const auto found = body.find(name);
    if (found == body.end())
        return otherwise;
    if (!found->is_string())
        throw Refusal{400, std::string("\"") + name + "\" must be a string"};
    return found->get<std::string>();
}

} // namespace lab
