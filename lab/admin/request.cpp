// Texts, members and the switch of a request to the admin interface.
#include "lab/admin/request.h"

#include <algorithm>

#include "lab/mac.h"

namespace lab {

Reply reply_json(const Json& body, int status) {
    return {status, body.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n"};
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

Json parse_object(const Request& request) {
    const Json body = Json::parse(request.call.body, nullptr, false);
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
