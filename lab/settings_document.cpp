// The part of a settings document that belongs to the lab.
#include "lab/settings_document.h"

#include <nlohmann/json.hpp>

#include "lab/json_text.h"
#include "lab/request_head.h"

namespace lab {

namespace {

using Json = nlohmann::ordered_json;

// Larger than any number a switch can store, small enough to be exact in every JSON library.
constexpr std::int64_t largest_seqno = std::int64_t{1} << 53;

// A switch takes the first member whose name fits without regard to letter case; a second "system"
// beside a "System" would be lost, and the sequence number with it.
bool has_misspelt(const Json& object, const char* name) {
    for (const auto& [key, value] : object.items())
        if (key != name && same_name(key, name))
            return true;
    return false;
}

// The reason why `object` cannot take a member object of that name; empty when it can.
std::string find_misfit(const Json& object, const char* name) {
    if (has_misspelt(object, name))
        return std::string("write \"") + name + "\" in lower case";
    if (object.contains(name) && !object[name].is_object())
        return std::string("\"") + name + "\" must be an object";
    return {};
}

std::string find_flaw(const Json& document) {
    if (!document.is_object())
        return "a settings document is a JSON object";
    if (document.empty())
        return "the document holds no section";
    if (auto reason = find_misfit(document, "system"); !reason.empty())
        return reason;
    const Json system = document.value("system", Json::object());
    if (auto reason = find_misfit(system, "cloud"); !reason.empty())
        return reason;
    const Json cloud = system.value("cloud", Json::object());
    if (cloud.contains("config_seqno") || has_misspelt(cloud, "config_seqno"))
        return "\"config_seqno\" is given by the lab, leave it out";
    return {};
}

} // namespace

std::variant<std::string, BadDocument> parse_settings(const std::string& text) {
    if (is_nested_too_deeply(text))
        return BadDocument{"the document is nested too deeply"};
    const Json document = parse_json(text);
    if (document.is_discarded())
        return BadDocument{"the body is not JSON"};
    if (auto reason = find_flaw(document); !reason.empty())
        return BadDocument{reason};
    return document.dump();
}

std::string number_settings(const std::string& document, std::int64_t seqno) {
    Json reply = parse_json(document);
    if (!reply.is_object())
        return document;
    reply["system"]["cloud"]["config_seqno"] = seqno;
    return reply.dump();
}

std::optional<std::int64_t> find_reported_seqno(const nlohmann::json& report) {
    static const nlohmann::json::json_pointer place("/system/cloud/config_seqno");
    const nlohmann::json* const found = report.contains(place) ? &report.at(place) : nullptr;
    if (!found || !found->is_number_integer())
        return std::nullopt;
    const auto seqno = found->get<std::int64_t>();
    return seqno >= 0 && seqno <= largest_seqno ? std::optional(seqno) : std::nullopt;
}

} // namespace lab
