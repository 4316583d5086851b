// The reports that a switch has sent, byte for byte.
#include <optional>

#include "lab/admin/handlers.h"

namespace lab {

namespace {

Reply reply_report(const std::optional<ReportRecord>& report) {
    if (!report)
        throw Refusal{404, "there is no such report"};
    return {200, report->body};
}

} // namespace

Reply show_latest_report(const Request& request) {
    return reply_report(request.parts.store.find_report(require_switch(request), 0));
}

Reply show_report(const Request& request) {
    const auto id = parse_number<std::int64_t>(request.words[1], "the report");
    if (id == 0) // the store's word for "latest"
        throw Refusal{404, "there is no such report"};
    return reply_report(request.parts.store.find_report(require_switch(request), id));
}

Reply list_reports(const Request& request) {
    Json list = Json::array();
    for (const auto& report : request.parts.store.list_reports(require_switch(request)))
        list.push_back(
            {{"id", report.id}, {"time", utc_text(report.time)}, {"bytes", report.bytes}});
    return reply_json(list);
}

} // namespace lab
