// The event log as server-sent events.
#include <algorithm>
#include <chrono>

#include "lab/admin/handlers.h"
#include "lab/request_head.h"

namespace lab {

namespace {

// A peer that has gone is noticed by the next piece, so one goes out at least this often.
constexpr auto longest_silence = std::chrono::seconds(5);

std::string find_header(const Request& request, std::string_view name) {
    const auto head = parse_request_head(request.call.head);
    if (!head)
        return {};
    const auto found = std::ranges::find_if(
        head->lines, [name](const HeaderLine& line) { return same_name(line.name, name); });
    return found == head->lines.end() ? std::string() : found->value;
}

// A browser that has lost the connection tells the last event that it saw.
std::int64_t read_start(const Request& request) {
    std::string after = find_header(request, "Last-Event-ID");
    if (after.empty())
        after = find_query(request, "after");
    return after.empty() ? request.parts.events.last() : parse_number<std::int64_t>(after, "after");
}

std::string format_events(const std::vector<EventRecord>& events) {
    std::string text;
    for (const auto& event : events)
        text += "id: " + std::to_string(event.id) +
                "\ndata: " + reply_json(describe_event(event)).body + "\n";
    return text.empty() ? ":\n\n" : text;
}

} // namespace

Reply stream_events(const Request& request) {
    EventFilter filter = read_filter(request);
    filter.after = read_start(request);
    Reply reply{200, {}, "text/event-stream"};
    reply.headers = {{"Cache-Control", "no-store"}};
    reply.next_piece = [&log = request.parts.events, filter](std::string& piece) mutable {
        const auto events = log.wait(filter, longest_silence);
        if (!events.empty())
            filter.after = events.back().id;
        piece = format_events(events);
        return !log.stopped();
    };
    return reply;
}

} // namespace lab
