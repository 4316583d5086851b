// Long-polls wait here. A switch has one at a time: a newer one takes the place of an older one,
// whose switch has most likely gone without a word.
#include "lab/keeper_service.h"

#include <nlohmann/json.hpp>

#include <chrono>

#include "lab/mac.h"

namespace lab {

namespace {

constexpr std::string_view listen_path = "/router/listen/";
// How often a waiting poll looks whether its peer is still there.
constexpr auto glance = std::chrono::milliseconds(200);

using Clock = std::chrono::steady_clock;

Clock::time_point find_end(double seconds) {
    return Clock::now() + std::chrono::milliseconds(std::int64_t(seconds * 1000));
}

Reply make_empty_reply() { return {200, "{}"}; }

} // namespace

Reply KeeperService::listen(const Call& call) {
    const std::string mac =
        call.path.starts_with(listen_path) ? call.path.substr(listen_path.size()) : std::string();
    if (call.method == "GET" && canonical_mac(mac) == mac)
        return wait_for_action(mac, call);
    const std::string reason = call.method + " " + call.path + " is not GET /router/listen/MAC";
    store_.count("rejected.path");
    events_.note(
        "rejected", "", "rejected on the keeper channel: path: " + reason,
        {{"code", "path"}, {"reason", reason}, {"target", call.path}});
    return {403, "path: " + reason + "\n", "text/plain"};
}

// A switch that nobody registered waits like any other: an answer would make it ask again at once.
Reply KeeperService::wait_for_action(const std::string& mac, const Call& call) {
    std::unique_lock lock(mutex_);
    if (call.hung_up()) // gone before its turn came, it must not take the place of one that waits
        return make_empty_reply();
    const std::uint64_t number = ++last_number_;
    Polls& polls = waiting_[mac];
    polls.latest = number;
    polls.count++;
    changed_.notify_all();
    events_.note("poll", mac, mac + " waits on the keeper channel", {{"port", call.port}});
    const auto end = find_end(policy_.get().poll_seconds);
    std::optional late = find_end(policy_.get().first_checkin_seconds);
    std::optional<ActionRecord> action;
    while (!stopping_ && polls.latest == number && !call.hung_up()) {
        if (late && Clock::now() >= *late) {
            note_late_checkin(mac);
            late.reset();
        }
        if ((action = store_.take_action(mac)) || Clock::now() >= end)
            break;
        changed_.wait_for(lock, glance);
    }
    if (--polls.count == 0)
        waiting_.erase(mac);
    return action ? answer(*action, mac, call.port) : make_empty_reply();
}

// A switch that polls is up and finds its clouds: if it never checks in, its check-in host, its
// account, its trust or its clock is most likely wrong.
void KeeperService::note_late_checkin(const std::string& mac) {
    const auto known = store_.find_switch(mac);
    const bool checked_in = known && known->last_seen != 0;
    if (checked_in || !store_.list_events(0, "no-checkin", mac).empty())
        return;
    events_.note(
        "no-checkin", mac,
        mac + " polls the keeper but has never checked in" +
            (known ? "" : "; it is not registered here"),
        {{"registered", known.has_value()}});
}

Reply KeeperService::answer(const ActionRecord& action, const std::string& mac, int port) {
    events_.note(
        "action-answered", mac, mac + " is sent action " + action.document,
        {{"action_id", action.id}, {"port", port}});
    Reply reply{200, action.document};
    reply.unsent = [this, id = action.id] { store_.put_back_action(id); };
    return reply;
}

std::int64_t KeeperService::push(const std::string& mac, const std::string& document) {
    const std::int64_t id = store_.queue_action(mac, document, wall_seconds());
    events_.note(
        "action-queued", mac, "action for " + mac + " queued: " + document, {{"action_id", id}});
    const std::lock_guard lock(mutex_);
    changed_.notify_all();
    return id;
}

std::int64_t KeeperService::count_waiting(const std::string& mac) const {
    const std::lock_guard lock(mutex_);
    std::int64_t count = 0;
    for (const auto& [owner, polls] : waiting_)
        if (mac.empty() || mac == owner)
            count += polls.count;
    return count;
}

void KeeperService::stop() {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
    changed_.notify_all();
}

} // namespace lab
