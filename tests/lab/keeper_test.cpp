// The connection keeper: long-polls that wait, are answered, are replaced, and never get in the
// way.
#include <filesystem>
#include <future>
#include <iterator>
#include <list>
#include <thread>

#include "lab_fixture.h"

namespace lab_test {

namespace {

const std::string listen_path = std::string("/router/listen/") + mac;

class Keeper : public Lab {
  protected:
    std::future<Answer> poll(std::size_t listener = 0) {
        return std::async(std::launch::async, get, keeper_listener(listener), listen_path);
    }
    void wait_for_polls(int count) {
        for (int i = 0; i < 2000 && admin_get("/stats")["waiting_polls"] != count; i++)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        EXPECT_EQ(admin_get("/stats")["waiting_polls"], count);
    }
    void push(const std::string& action) { admin("POST", of_switch("/actions"), action, 201); }
};

TEST_F(Keeper, an_action_ends_a_waiting_poll) {
    auto waiting = poll();
    events("poll");
    const std::string action = R"({ "action": "port_reset", "port": "F1" })";
    push(action);
    const Answer answer = waiting.get();
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.body, action);
    EXPECT_EQ(events("action-answered")[0]["action_id"], 1);
    EXPECT_EQ(admin_get(of_switch("/actions"))[0]["state"], "answered");
}

TEST_F(Keeper, actions_that_wait_are_handed_out_one_by_one_in_order) {
    push(R"({"action":"checkin"})");
    push(R"({"action":"reboot"})");
    EXPECT_EQ(poll().get().body, R"({"action":"checkin"})");
    EXPECT_EQ(poll().get().body, R"({"action":"reboot"})");
}

TEST_F(Keeper, the_second_host_serves_the_same_switch) {
    auto waiting = poll(1);
    events("poll");
    push(R"({"action":"checkin"})");
    EXPECT_EQ(waiting.get().body, R"({"action":"checkin"})");
}

TEST_F(Keeper, a_new_poll_takes_the_place_of_the_old_one) {
    auto old = poll();
    events("poll");
    auto fresh = poll();
    EXPECT_EQ(old.get().body, "{}");
    push(R"({"action":"checkin"})");
    EXPECT_EQ(fresh.get().body, R"({"action":"checkin"})");
}

struct FakeWaiter : lab::Waiter {
    FakeWaiter(bool is_gone, std::string* text) : gone(is_gone), answered(text) {}
    bool hung_up() const override { return gone; }
    void answer(const lab::Reply& reply) override { *answered = reply.body; }
    const bool gone;
    std::string* const answered;
};

// Its request may be looked at only when the switch has asked anew.
TEST(KeeperService, a_poll_whose_switch_is_gone_takes_nobodys_place) {
    const TempFolder folder;
    lab::Store store((folder.path() / "lab.db").string());
    lab::EventLog events(store, true);
    const lab::PolicyBox policy{lab::Policy()};
    lab::KeeperService keeper(store, events, policy);
    lab::Call call;
    call.method = "GET";
    call.path = listen_path;
    std::string to_waiting, to_gone;
    keeper.listen(call).put_off(std::make_unique<FakeWaiter>(false, &to_waiting));
    keeper.listen(call).put_off(std::make_unique<FakeWaiter>(true, &to_gone));
    EXPECT_EQ(keeper.count_waiting(mac), 1);
    keeper.push(mac, R"({"action":"checkin"})");
    EXPECT_EQ(to_waiting, R"({"action":"checkin"})");
    EXPECT_EQ(to_gone, "");
}

TEST_F(Keeper, an_action_is_not_lost_to_a_poll_whose_switch_is_gone) {
    {
        const IdleConnection gone(
            keeper_listener().port, "GET " + listen_path + " HTTP/1.1\r\nHost: lab\r\n\r\n");
        events("poll");
    }
    push(R"({"action":"checkin"})");
    EXPECT_EQ(admin_get(of_switch("/actions"))[0]["state"], "queued");
    EXPECT_EQ(poll().get().body, R"({"action":"checkin"})");
}

TEST_F(Keeper, a_poll_without_an_action_is_answered_empty_at_last) {
    admin("PUT", "/config", R"({"poll_seconds":0.05})");
    const Answer answer = poll().get();
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.body, "{}");
}

TEST_F(Keeper, an_unregistered_switch_waits_like_any_other) {
    auto stranger =
        std::async(std::launch::async, get, keeper_listener(), "/router/listen/00:00:00:00:00:09");
    EXPECT_EQ(events("poll")[0]["mac"], "00:00:00:00:00:09");
    EXPECT_EQ(admin_get("/stats")["waiting_polls"], 1);
    stop();
    EXPECT_TRUE(stranger.get().connected);
}

TEST_F(Keeper, a_switch_that_polls_but_never_checks_in_is_told_of_once) {
    admin("PUT", "/config", R"({"first_checkin_seconds":0.1,"poll_seconds":0.6})");
    poll().get();
    poll().get();
    const Json found = events("no-checkin");
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0]["mac"], mac);
    EXPECT_EQ(found[0]["text"], std::string(mac) + " polls the keeper but has never checked in");
    get(keeper_listener(), "/router/listen/00:00:00:00:00:09");
    EXPECT_EQ(
        nth_event("no-checkin", 2)["text"],
        "00:00:00:00:00:09 polls the keeper but has never checked in; it is not registered here");
}

TEST_F(Keeper, a_switch_that_has_checked_in_or_polls_only_briefly_is_not_told_of) {
    EXPECT_EQ(admin_get("/config")["first_checkin_seconds"], 60);
    admin("PUT", "/config", R"({"first_checkin_seconds":0.1,"poll_seconds":0.6})");
    report_seqno(1);
    poll().get();
    admin("PUT", "/config", R"({"first_checkin_seconds":10})");
    get(keeper_listener(), "/router/listen/00:00:00:00:00:09");
    EXPECT_EQ(counter("no-checkin"), 0);
}

TEST_F(Keeper, other_requests_are_refused) {
    EXPECT_EQ(get(keeper_listener(), "/router/listen/nobody").status, 403);
    EXPECT_EQ(get(keeper_listener(), "/router/listen/aa:bb:cc:dd:ee:ff").status, 403);
    EXPECT_EQ(get(keeper_listener(), "/").status, 403);
    EXPECT_EQ(request(keeper_listener(), "POST", listen_path, "{}").status, 403);
    EXPECT_EQ(counter("rejected.path"), 4);
}

TEST_F(Keeper, many_waiting_polls_and_idle_connections_delay_no_check_in) {
    std::list<IdleConnection> crowd;
    for (int i = 10; i < 70; i++)
        crowd.emplace_back(
            keeper_listener().port, "GET /router/listen/00:00:00:00:00:" + std::to_string(i) +
                                        " HTTP/1.1\r\nHost: lab\r\n\r\n");
    for (int i = 0; i < 30; i++)
        crowd.emplace_back(checkin_listener().port);
    nth_event("poll", 60);
    EXPECT_EQ(admin_get("/stats")["waiting_polls"], 60);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(report_seqno(1), Json::object());
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(3));
}

std::size_t count_threads() {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return static_cast<std::size_t>(std::distance(begin(tasks), end(tasks)));
}

TEST_F(Keeper, polls_that_wait_have_no_thread_each) {
    std::list<IdleConnection> crowd;
    const std::size_t before = count_threads();
    for (int i = 100; i < 400; i++)
        crowd.emplace_back(
            keeper_listener().port, "GET /router/listen/00:00:00:00:0" + std::to_string(i / 100) +
                                        ":" + std::to_string(i % 100 + 100).substr(1) +
                                        " HTTP/1.1\r\nHost: lab\r\n\r\n");
    wait_for_polls(300);
    EXPECT_LT(count_threads(), before + 20);
    auto waiting = poll();
    wait_for_polls(301);
    push(R"({"action":"checkin"})");
    EXPECT_EQ(waiting.get().body, R"({"action":"checkin"})");
}

TEST_F(Keeper, a_poll_whose_peer_has_gone_is_forgotten) {
    {
        const IdleConnection gone(
            keeper_listener().port, "GET " + listen_path + " HTTP/1.1\r\nHost: lab\r\n\r\n");
        events("poll");
        EXPECT_EQ(admin_get("/stats")["waiting_polls"], 1);
    }
    wait_for_polls(0);
}

TEST_F(Keeper, stopping_does_not_wait_for_polls) {
    auto waiting = poll();
    auto watching =
        std::async(std::launch::async, get, admin_listener(), "/events?kind=never&timeout=60");
    events("poll");
    const auto begin = std::chrono::steady_clock::now();
    stop();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(3));
    EXPECT_TRUE(waiting.get().connected);
    EXPECT_TRUE(watching.get().connected);
}

} // namespace

} // namespace lab_test
