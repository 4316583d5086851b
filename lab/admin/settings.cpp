// Settings documents for a switch: queued until it checks in, listed, withdrawn.
#include "lab/admin/handlers.h"
#include "lab/settings_document.h"
#include "lab/settings_schema.h"

namespace lab {

namespace {

// A switch passes over what it does not know and acknowledges the rest: what is misspelt would look
// as if it were set.
void refuse_unfit(const Request& request, const std::string& document) {
    if (find_query(request, "anyway") == "1")
        return;
    if (const auto fault = find_settings_fault(document))
        throw Refusal{
            400, (fault->place.empty() ? "the document" : fault->place) + ": " + fault->reason +
                     " (?anyway=1 queues it all the same)"};
}

} // namespace

Reply queue_settings(const Request& request) {
    const std::string mac = require_switch(request);
    refuse_flawed_body(request);
    const auto document = parse_settings(request.call.body);
    if (const auto* bad = std::get_if<BadDocument>(&document))
        throw Refusal{400, bad->reason};
    const auto& text = std::get<std::string>(document);
    refuse_unfit(request, text);
    refuse_when_full(request.parts.store.find_switch(mac).value().pending, "settings");
    const std::int64_t seqno = request.parts.store.queue_settings(mac, text, wall_seconds());
    request.parts.events.note(
        "settings-queued", mac, "settings " + std::to_string(seqno) + " for " + mac + " queued",
        {{"config_seqno", seqno}});
    return reply_json({{"config_seqno", seqno}}, 201);
}

Reply list_settings(const Request& request) {
    Json list = Json::array();
    for (const auto& settings : request.parts.store.list_settings(require_switch(request)))
        list.push_back(
            {{"config_seqno", settings.seqno},
             {"state", settings.state},
             {"tries", settings.tries},
             {"queued", utc_text(settings.queued)},
             {"document", show_document(settings.document)}});
    return reply_json(list);
}

Reply withdraw_settings(const Request& request) {
    const std::string mac = require_switch(request);
    const auto seqno = parse_number<std::int64_t>(request.words[1], "config_seqno");
    if (!request.parts.store.drop_settings(mac, seqno))
        throw Refusal{404, "there are no such settings"};
    return reply_json(Json::object());
}

} // namespace lab
