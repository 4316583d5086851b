// Who may use the admin interface, and how a refusal is told.
#include "lab/admin/service.h"

#include <algorithm>
#include <string_view>

#include "lab/admin/routes.h"
#include "lab/request_head.h"

namespace lab {

namespace {

constexpr std::string_view own_names[] = {"127.0.0.1", "localhost"};

// "localhost:PORT", and without the port too, where a tool leaves it out.
bool is_own_host(std::string_view host, int port) {
    return std::ranges::any_of(own_names, [&](std::string_view name) {
        return host == name || host == std::string(name) + ":" + std::to_string(port);
    });
}

bool is_own_origin(std::string_view origin, int port) {
    return std::ranges::any_of(own_names, [&](std::string_view name) {
        return origin == "http://" + std::string(name) + ":" + std::to_string(port);
    });
}

// A browser names the page that sends a request, and the host that it takes this to be. Only the
// lab's own page has business here: one from anywhere could otherwise push actions through the
// browser of whoever has it open, or read what a name of its own that leads here serves.
void refuse_other_pages(const Call& call) {
    const auto head = parse_request_head(call.head);
    if (!head)
        return;
    for (const HeaderLine& line : head->lines) {
        if (same_name(line.name, "Host") && !is_own_host(line.value, call.port))
            throw Refusal{403, "the admin interface is not at \"" + line.value + "\""};
        if (same_name(line.name, "Origin") && !is_own_origin(line.value, call.port))
            throw Refusal{403, "the admin interface is not for the pages of " + line.value};
    }
}

} // namespace

Reply AdminService::answer(const Call& call) {
    try {
        refuse_other_pages(call);
        return route(call, parts_);
    } catch (const Refusal& refusal) {
        return reply_json({{"error", refusal.reason}}, refusal.status);
    }
}

} // namespace lab
