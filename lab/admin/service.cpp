// Who may use the admin interface, and how a refusal is told.
#include "lab/admin/service.h"

#include <algorithm>

#include "lab/admin/routes.h"
#include "lab/request_head.h"

namespace lab {

namespace {

constexpr std::size_t longest_image = 64 << 20;
// More than a switch takes, so that it can be tried.
constexpr std::size_t longest_document = 4 << 20;

constexpr std::string_view own_names[] = {"127.0.0.1", "localhost", "[::1]"};

std::vector<std::string> find_values(const RequestHead& head, std::string_view name) {
    std::vector<std::string> values;
    for (const HeaderLine& line : head.lines)
        if (same_name(line.name, name))
            values.push_back(line.value);
    return values;
}

bool is_own_host(const std::string& host, int port) {
    return std::ranges::any_of(own_names, [&](std::string_view name) {
        const std::string own = std::string(name) + ":" + std::to_string(port);
        return same_name(host, own) || (port == 80 && same_name(host, name));
    });
}

bool is_own_origin(const std::string& origin, int port) {
    constexpr std::string_view scheme = "http://";
    return origin.starts_with(scheme) && is_own_host(origin.substr(scheme.size()), port);
}

// A name that anybody owns can be made to mean this workstation, and then a page from there may
// read what it is answered: so the name that was asked for must be one that only means this
// workstation.
void refuse_other_hosts(const RequestHead& head, int port) {
    const auto hosts = find_values(head, "Host");
    if (hosts.size() != 1 || !is_own_host(hosts[0], port))
        throw Refusal{
            403, "the admin interface answers to Host 127.0.0.1:" + std::to_string(port) +
                     " or localhost:" + std::to_string(port) + ", not to " +
                     (hosts.size() == 1 ? "\"" + hosts[0] + "\"" : "none or several")};
}

// A browser says for which page it sends a request. Programs such as curl say nothing of the kind.
void refuse_other_pages(const RequestHead& head, int port) {
    for (const std::string& origin : find_values(head, "Origin"))
        if (!is_own_origin(origin, port))
            throw Refusal{403, "the admin interface is not for pages of \"" + origin + "\""};
    for (const std::string& site : find_values(head, "Sec-Fetch-Site"))
        if (site != "same-origin" && site != "none")
            throw Refusal{403, "the admin interface is not for pages from elsewhere"};
}

void refuse_strangers(const Call& call) {
    const auto head = parse_request_head(call.head);
    if (!head)
        throw Refusal{400, "the request head cannot be read"};
    refuse_other_hosts(*head, call.port);
    refuse_other_pages(*head, call.port);
}

} // namespace

std::size_t AdminService::body_limit(const Call& call) {
    try {
        refuse_strangers(call);
    } catch (const Refusal&) {
        return 0;
    }
    return call.path.starts_with("/firmware/") ? longest_image : longest_document;
}

Reply AdminService::answer(const Call& call) {
    try {
        refuse_strangers(call);
        return route(call, parts_);
    } catch (const Refusal& refusal) {
        return reply_json({{"error", refusal.reason}}, refusal.status);
    }
}

} // namespace lab
