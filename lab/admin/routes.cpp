// The admin interface as a table: a line a request.
#include "lab/admin/routes.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "lab/admin/handlers.h"

namespace lab {

namespace {

struct Route {
    const char* method;
    const char* pattern; // "*" stands for one word of the path
    Reply (*answer)(const Request&);
};

constexpr Route routes[] = {
    {"GET", "/", show_page},
    {"GET", "/page/*", show_page_file},
    {"GET", "/overview", show_overview},
    {"GET", "/overview/*", show_switch_overview},
    {"GET", "/overview/*/reports", page_reports},
    {"GET", "/overview/*/settings", page_settings},
    {"GET", "/overview/*/settings/*", show_way},
    {"GET", "/overview/*/actions", page_actions},
    {"GET", "/overview/*/history", show_history},
    {"GET", "/overview/*/checkins", show_checkins},
    {"GET", "/overview/*/diagnostics", show_diagnostics},
    {"GET", "/ports", show_ports},
    {"GET", "/switches", list_switches},
    {"GET", "/switches/*", show_switch},
    {"PUT", "/switches/*", register_switch},
    {"DELETE", "/switches/*", forget_switch},
    {"GET", "/switches/*/report", show_latest_report},
    {"GET", "/switches/*/reports", list_reports},
    {"GET", "/switches/*/reports/*", show_report},
    {"GET", "/switches/*/settings", list_settings},
    {"POST", "/switches/*/settings", queue_settings},
    {"DELETE", "/switches/*/settings/*", withdraw_settings},
    {"GET", "/switches/*/actions", list_actions},
    {"POST", "/switches/*/actions", push_action},
    {"GET", "/events", wait_for_events},
    {"GET", "/events/recent", page_events},
    {"GET", "/events/stream", stream_events},
    {"GET", "/stats", show_stats},
    {"GET", "/config", show_policy},
    {"PUT", "/config", set_policy},
    {"GET", "/misbehave", list_misbehaviours},
    {"POST", "/misbehave", add_misbehaviour},
    {"DELETE", "/misbehave", clear_misbehaviours},
    {"GET", "/firmware", list_images},
    {"PUT", "/firmware/*", put_image},
    {"DELETE", "/firmware/*", drop_image},
};

std::vector<std::string> split_path(std::string_view path) {
    std::vector<std::string> words;
    while (!path.empty()) {
        path.remove_prefix(1);
        const std::size_t end = std::min(path.find('/'), path.size());
        words.emplace_back(path.substr(0, end));
        path.remove_prefix(end);
    }
    return words;
}

// The words under the "*" of the pattern; nullopt when the path is another.
std::optional<std::vector<std::string>> match_path(const char* pattern, const std::string& path) {
    const auto expected = split_path(pattern);
    const auto words = split_path(path);
    if (expected.size() != words.size())
        return std::nullopt;
    std::vector<std::string> free;
    for (std::size_t i = 0; i < words.size(); i++) {
        if (expected[i] == "*" && !words[i].empty())
            free.push_back(words[i]);
        else if (expected[i] != words[i])
            return std::nullopt;
    }
    return free;
}

} // namespace

Reply route(const Call& call, AdminParts& parts) {
    bool known_path = false;
    for (const Route& candidate : routes) {
        auto words = match_path(candidate.pattern, call.path);
        if (words && call.method == candidate.method)
            return candidate.answer({call, parts, std::move(*words)});
        known_path = known_path || words;
    }
    throw Refusal{
        known_path ? 405 : 404,
        known_path ? "not with " + call.method : "there is nothing at " + call.path};
}

} // namespace lab
