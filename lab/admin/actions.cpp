// Actions for a switch: pushed over the keeper channel, or kept until it listens there.
#include "lab/admin/handlers.h"

namespace lab {

Reply push_action(const Request& request) {
    const std::string mac = require_switch(request);
    const Json body = parse_object(request);
    if (!body.contains("action") || !body["action"].is_string())
        throw Refusal{400, "\"action\" must be a string"};
    refuse_when_full(request.parts.store.count_queued_actions(mac), "actions");
    return reply_json({{"id", request.parts.keeper.push(mac, request.call.body)}}, 201);
}

Reply list_actions(const Request& request) {
    Json list = Json::array();
    for (const auto& action : request.parts.store.list_actions(require_switch(request)))
        list.push_back(
            {{"id", action.id},
             {"state", action.state},
             {"document", show_document(action.document)},
             {"time", utc_text(action.time)}});
    return reply_json(list);
}

} // namespace lab
