// Long-polls wait here, without a thread: one thread looks after all of them. A switch has one at a
// time: a newer one takes the place of an older one, whose switch has most likely gone without a
// word.
#include "lab/keeper_service.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <iterator>
#include <utility>

#include "lab/mac.h"

namespace lab {

namespace {

constexpr std::string_view listen_path = "/router/listen/";
// How often is looked whether the peers are still there and whose time is over.
constexpr auto glance = std::chrono::milliseconds(200);
constexpr std::size_t most_waiting = 10000;

std::chrono::steady_clock::time_point find_end(double seconds) {
    return std::chrono::steady_clock::now() +
           std::chrono::milliseconds(std::int64_t(seconds * 1000));
}

Reply make_empty_reply() { return {200, "{}"}; }

} // namespace

KeeperService::KeeperService(Store& store, EventLog& events, const PolicyBox& policy)
    : store_(store), events_(events), policy_(policy), watching_([this] { watch(); }) {}

Reply KeeperService::listen(const Call& call) {
    const std::string mac =
        call.path.starts_with(listen_path) ? call.path.substr(listen_path.size()) : std::string();
    if (call.method == "GET" && canonical_mac(mac) == mac) {
        Reply later;
        later.put_off = [this, mac, port = call.port](std::unique_ptr<Waiter> waiter) {
            const Policy policy = policy_.get();
            begin(
                mac, {std::move(waiter), port, find_end(policy.poll_seconds),
                      find_end(policy.first_checkin_seconds)});
        };
        return later;
    }
    const std::string reason = call.method + " " + call.path + " is not GET /router/listen/MAC";
    store_.count("rejected.path");
    events_.note(
        "rejected", "", "rejected on the keeper channel: path: " + reason,
        {{"code", "path"}, {"reason", reason}, {"target", call.path}});
    return {403, "path: " + reason + "\n", "text/plain"};
}

// A switch that nobody registered waits like any other: an answer would make it ask again at once.
void KeeperService::begin(const std::string& mac, Poll poll) {
    if (const auto over = replace(mac, poll))
        over->answer(make_empty_reply());
    hand_out(mac);
}

// The one to be answered instead. A new one that has gone before its turn came takes no place;
// where too many wait, it ends without an answer, after which a switch pauses.
std::unique_ptr<Waiter> KeeperService::replace(const std::string& mac, Poll& poll) {
    const std::lock_guard lock(mutex_);
    if (stopping_)
        return std::move(poll.waiter);
    const bool full = waiting_.size() >= most_waiting && !waiting_.contains(mac);
    if (full || poll.waiter->hung_up())
        return nullptr;
    if (waiting_.empty())
        changed_.notify_all();
    events_.note("poll", mac, mac + " waits on the keeper channel", {{"port", poll.port}});
    return std::move(std::exchange(waiting_[mac], std::move(poll)).waiter);
}

// Gives a switch that waits the oldest action that is queued for it. A poll whose peer has gone
// gets none, for it would be lost.
void KeeperService::hand_out(const std::string& mac) {
    std::unique_lock lock(mutex_);
    const auto found = waiting_.find(mac);
    if (found == waiting_.end() || found->second.waiter->hung_up())
        return;
    const auto action = store_.take_action(mac);
    if (!action)
        return;
    const Poll poll = std::move(found->second);
    waiting_.erase(found);
    lock.unlock();
    poll.waiter->answer(make_answer(*action, mac, poll.port));
}

void KeeperService::watch() {
    std::unique_lock lock(mutex_);
    while (!stopping_) {
        const std::vector<Poll> ended = take_ended();
        lock.unlock();
        for (const Poll& poll : ended)
            poll.waiter->answer(make_empty_reply());
        lock.lock();
        if (waiting_.empty())
            changed_.wait(lock, [this] { return stopping_ || !waiting_.empty(); });
        else
            changed_.wait_for(lock, glance, [this] { return stopping_; });
    }
}

// Those to be answered, for their time is over; those whose peers have gone are forgotten.
std::vector<KeeperService::Poll> KeeperService::take_ended() {
    std::vector<Poll> ended;
    for (auto entry = waiting_.begin(); entry != waiting_.end();) {
        auto& [mac, poll] = *entry;
        const bool gone = poll.waiter->hung_up();
        const bool over = !gone && Clock::now() >= poll.end;
        if (!gone && poll.late && Clock::now() >= *poll.late) {
            note_late_checkin(mac);
            poll.late.reset();
        }
        if (over)
            ended.push_back(std::move(poll));
        entry = gone || over ? waiting_.erase(entry) : std::next(entry);
    }
    return ended;
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

Reply KeeperService::make_answer(const ActionRecord& action, const std::string& mac, int port) {
    events_.note(
        "action-answered", mac, mac + " is sent action " + action.document,
        {{"action_id", action.id}, {"port", port}});
    Reply reply{200, action.document};
    reply.unsent = [this, mac, id = action.id] {
        store_.put_back_action(id);
        hand_out(mac);
    };
    return reply;
}

std::int64_t KeeperService::push(const std::string& mac, const std::string& document) {
    const std::int64_t id = store_.queue_action(mac, document, wall_seconds());
    events_.note(
        "action-queued", mac, "action for " + mac + " queued: " + document, {{"action_id", id}});
    hand_out(mac);
    return id;
}

std::int64_t KeeperService::count_waiting(const std::string& mac) const {
    const std::lock_guard lock(mutex_);
    return std::ranges::count_if(waiting_, [&](const auto& entry) {
        return (mac.empty() || mac == entry.first) && !entry.second.waiter->hung_up();
    });
}

void KeeperService::stop() {
    std::map<std::string, Poll> all;
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        all.swap(waiting_);
        changed_.notify_all();
    }
    for (const auto& [mac, poll] : all)
        poll.waiter->answer(make_empty_reply());
    if (watching_.joinable())
        watching_.join();
}

} // namespace lab
