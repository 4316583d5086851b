// A request to the admin interface, and what its functions share: reading what was asked for,
// refusing it with a reason, replying with a document.
#pragma once

#include <nlohmann/json.hpp>

#include <charconv>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "lab/admin/service.h"

namespace lab {

using Json = nlohmann::ordered_json;

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

// A stored document; its text when it is none that could be shown as JSON, for an earlier version
// stored whatever was nested however deeply.
Json show_document(const std::string& text);

Reply reply_json(const Json& body, int status = 200);

// The switch of a "/switches/*" path. require_switch() refuses one that nobody registered.
std::string read_mac(const std::string& text);
std::string require_switch(const Request& request);

// A parameter of the query; empty when it is not there.
std::string find_query(const Request& request, const std::string& name);

// What waits for one switch is bounded; `what` names it in the refusal.
void refuse_when_full(std::int64_t waiting, const std::string& what);

void refuse_flawed_body(const Request& request);

// The body as an object, and the members in it that a request knows.
Json parse_object(const Request& request);
void refuse_other_members(const Json& body, std::initializer_list<std::string_view> known);
std::string read_text(const Json& body, const char* name, const std::string& otherwise);

// A number that is not negative; `what` names it in the refusal.
template <typename Number> Number parse_number(const std::string& text, const std::string& what) {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || !(number >= 0))
        throw Refusal{400, what + " is \"" + text + "\", not a number"};
    return number;
}

// Leaves `into` as it is when there is no such member.
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

} // namespace lab
