// Event log: printed, stored, counted, and awaited by whoever asks for what comes next.
#include "lab/events.h"

#include <nlohmann/json.hpp>

#include <cstdio>

#include "lab/clock.h"

namespace lab {

namespace {

// Texts quote what strangers send: a line stays a line, and a short one.
constexpr std::size_t longest_text = 1000;

std::string clip(std::string text) {
    if (text.size() > longest_text)
        text.replace(longest_text, std::string::npos, "...");
    return text;
}

std::string make_line(const std::string& whole) {
    std::string text = clip(whole);
    for (char& c : text)
        if (static_cast<unsigned char>(c) < ' ' || c == 0x7f)
            c = '?';
    return text;
}

nlohmann::json clip_details(nlohmann::json details) {
    for (auto& [name, value] : details.items())
        if (value.is_string())
            value = clip(value.get<std::string>());
    return details;
}

} // namespace

void EventLog::note(const std::string& kind, const std::string& mac, const std::string& text) {
    note(kind, mac, text, nlohmann::json::object());
}

void EventLog::note(
    const std::string& kind, const std::string& mac, const std::string& text,
    const nlohmann::json& details) {
    const std::lock_guard lock(mutex_);
    const std::int64_t now = wall_seconds();
    const std::string line = make_line(text);
    const auto replace = nlohmann::json::error_handler_t::replace;
    store_.add_event(
        {0, now, kind, mac, line, clip_details(details).dump(-1, ' ', false, replace)});
    store_.count(kind);
    if (!quiet_) {
        std::printf("%s %s\n", utc_text(now).substr(11, 8).c_str(), line.c_str());
        std::fflush(stdout);
    }
    changed_.notify_all();
}

std::vector<EventRecord>
EventLog::wait(const EventFilter& filter, std::chrono::milliseconds timeout) {
    std::unique_lock lock(mutex_);
    std::vector<EventRecord> found;
    changed_.wait_for(lock, timeout, [&] {
        found = store_.list_events(filter.after, filter.kind, filter.mac);
        return stopping_ || !found.empty();
    });
    return found;
}

void EventLog::stop() {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
    changed_.notify_all();
}

} // namespace lab
