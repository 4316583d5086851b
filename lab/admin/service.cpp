// Who may use the admin interface, and how a refusal is told.
#include "lab/admin/service.h"

#include <algorithm>

#include "lab/admin/routes.h"
#include "lab/request_head.h"

namespace lab {

namespace {

// A browser names the page that sends a request. No page has business here: one from anywhere could
// otherwise push actions through the browser of whoever has it open.
void refuse_web_pages(const Call& call) {
    const auto head = parse_request_head(call.head);
    if (head && std::ranges::any_of(head->lines, [](const HeaderLine& line) {
            return same_name(line.name, "Origin");
        }))
        throw Refusal{403, "the admin interface is not for web pages"};
}

} // namespace

Reply AdminService::answer(const Call& call) {
    try {
        refuse_web_pages(call);
        return route(call, parts_);
    } catch (const Refusal& refusal) {
        return reply_json({{"error", refusal.reason}}, refusal.status);
    }
}

} // namespace lab
