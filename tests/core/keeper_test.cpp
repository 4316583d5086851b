// The connection keeper: its requests, its patience, and its restart.
#include "core/keeper.h"

#include <curl/curl.h>
#include <sched.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "base/debug.h"
#include "core/main_loop.h"
#include "sim/edges/transfers.h"
#include "sim/instruments/patience.h"
#include "tests/core/idle_day.h"
#include "tests/core/running_keeper.h"
#include "tests/support/environment.h"
#include "tests/support/name_service.h"

namespace {

class Keeper : public OnCloud {
  protected:
    Keeper() { cloud.answer(reply("{}")); }

    std::string listen_url() const {
        return "http://" + keeper.host() + "/router/listen/02:1B:2C:3D:4E:5F";
    }
    // One turn that gets this answer.
    void turn(HttpAnswer answer) {
        keeper.answer(std::move(answer));
        keeper_turn(listen_url().c_str(), &failures);
    }
    void failing_turn() {
        board.faults.plan({sim::Edge::transfer, listen_url(), 1, false, 7, 0});
        keeper_turn(listen_url().c_str(), &failures);
        board.faults.clear();
    }
    bool checked_in() const { return !cloud.requests().empty(); }

    int failures = 0;
    RunningKeeper running;
};

} // namespace

TEST_F(Keeper, listens_at_the_keeper_host_under_the_switchs_mac) {
    char url[256];
    format_listen_url(url, sizeof url);
    EXPECT_EQ(url, listen_url());
    std::memset(ConnectionKeeperHost, 'h', sizeof ConnectionKeeperHost - 1);
    format_listen_url(url, 64);
    EXPECT_EQ(std::string(url), "http://" + std::string(56, 'h'));
}

TEST_F(Keeper, console_of_a_turn_without_anything_to_do) {
    device.cloud.debug = true;
    debug_flag = 1;
    turn(reply("{}"));
    EXPECT_EQ(
        raw_console(),
        listen_url() + "\n\nconnect to connection-keeper\n" + "connection-keeper (3 bytes):\n{}\n");
    EXPECT_EQ(traced("sal_"), (Lines{"sal_vxcloud_debug_flag_get() = 0"}));
    EXPECT_EQ(traced("listen("), (Lines{"listen(\"" + listen_url() + "\") = 0"}));
}

TEST_F(Keeper, console_of_a_turn_that_changes_something) {
    device.cloud.debug = true;
    debug_flag = 1;
    turn(reply(R"({"action": "counter_reset", "port": "3"})"));
    Lines shown = core_console();
    ASSERT_GT(shown.size(), 6u);
    shown.resize(6);
    EXPECT_EQ(
        shown, (Lines{
                   "connect to connection-keeper",
                   "connection-keeper (41 bytes):",
                   R"({"action": "counter_reset", "port": "3"})",
                   "connection-keeper: counter_reset",
                   "connect to connection-keeper : setting_from_cloud",
                   "api_checkin: prepare json send data pid PID",
               }));
    EXPECT_TRUE(checked_in());
    EXPECT_EQ(setting_from_cloud, 0u);
}

TEST_F(Keeper, console_of_a_failed_turn) {
    device.cloud.debug = true;
    debug_flag = 1;
    board.faults.plan({sim::Edge::transfer, listen_url(), 1, false, 7, 0});
    keeper_turn(listen_url().c_str(), &failures);
    EXPECT_EQ(
        raw_console(), listen_url() + "\n\nconnect to connection-keeper\n" +
                           "curl_easy_perform() failed: Out of memory\n" +
                           "connection-keeper (0 bytes):\n\nconnection-keeper: feiled 1\n");
    EXPECT_EQ(traced("sleep("), (Lines{"sleep(10) = 0"}));
}

TEST_F(Keeper, proxy_of_the_environment_is_not_asked) {
    Environment proxies({"http_proxy", "all_proxy", "ALL_PROXY"}, "http://127.0.0.1:9");
    turn(reply("{}"));
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(keeper.requests().size(), 1u);
}

TEST_F(Keeper, host_is_looked_up_for_each_request) {
    std::string named = "http://moving.example:" + std::to_string(keeper.port()) + "/";
    NameService names("moving.example");
    keeper.answer(reply("{}"));
    keeper_turn(named.c_str(), &failures);
    EXPECT_EQ(names.lookups(), 1);
    keeper.answer(reply("{}"));
    keeper_turn(named.c_str(), &failures);
    EXPECT_EQ(names.lookups(), 2);
    EXPECT_EQ(failures, 0);
}

// The end of the transfer every half an hour is all that would wake it; the rest is its beginning.
TEST_F(Keeper, a_day_without_anything_to_do_wakes_it_for_the_end_of_a_transfer_only) {
    IdleDay day;
    keeper.answer(silence());
    running.start();
    ASSERT_TRUE(day.wait_for_end());
    EXPECT_LE(day.waits(), 24 * 2 + 20);
}

TEST_F(Keeper, refused_connection_is_a_failure) {
    debug_flag = 1;
    device.cloud.debug = true;
    keeper_turn("http://127.0.0.1:1/", &failures);
    EXPECT_EQ(failures, 1);
    EXPECT_NE(raw_console().find("failed: Couldn't connect to server\n"), std::string::npos);
    EXPECT_EQ(thread_curl, nullptr);
}

TEST_F(Keeper, tenth_failure_in_a_row_starts_the_count_again) {
    device.cloud.debug = true;
    for (int i = 0; i < 11; ++i)
        failing_turn();
    EXPECT_EQ(failures, 1);
    Lines shown = core_console();
    std::erase_if(shown, [](const std::string& line) {
        return line.find("feiled") == std::string::npos &&
               line.find("reset the DNS") == std::string::npos;
    });
    ASSERT_EQ(shown.size(), 12u);
    EXPECT_EQ(shown[8], "connection-keeper: feiled 9");
    EXPECT_EQ(shown[9], "connection-keeper: feiled 10");
    EXPECT_EQ(shown[10], "connection-keeper: reset the DNS server setting");
    EXPECT_EQ(shown[11], "connection-keeper: feiled 1");
    EXPECT_EQ(traced("sleep(10)").size(), 11u);
    EXPECT_FALSE(called("__res_init"));
}

TEST_F(Keeper, answer_ends_a_row_of_failures_and_is_followed_by_no_pause) {
    failing_turn();
    failing_turn();
    EXPECT_EQ(failures, 2);
    forget();
    turn(reply("{}"));
    EXPECT_EQ(failures, 0);
    EXPECT_TRUE(traced("sleep(").empty());
}

TEST_F(Keeper, bodies_that_say_nothing_are_ignored) {
    const std::string bodies[] = {
        "",
        "{",
        "nonsense",
        "[]",
        "3",
        "null",
        R"({"port": "3"})",
        R"({"action": ""})",
        R"({"action": 5})",
        R"({"action": ["reboot"]})",
        R"({"action": {"action": "reboot"}})",
        R"({"action": "Reboot"})",
        R"({"action": "reboot "})",
        R"({"action": "port_reset", "port": {"port": "3"}})",
        R"({"action": "reboot", "pad": )" + std::string(60'000, '['),
        std::string(65536, 'x'),
    };
    for (const std::string& body : bodies) {
        forget();
        turn(reply(body));
        EXPECT_EQ(calls(), (Lines{"sal_vxcloud_debug_flag_get", "listen"})) << body.substr(0, 60);
    }
    EXPECT_FALSE(checked_in());
}

TEST_F(Keeper, answer_of_more_than_64_kib_is_a_failure) {
    const std::string start = R"({"action": "counter_reset", "port": "3", "pad": ")";
    auto padded = [&](std::size_t size) {
        return reply(start + std::string(size - start.size() - 2, 'x') + "\"}");
    };
    turn(padded(65537));
    EXPECT_EQ(failures, 1);
    EXPECT_FALSE(called("sal_mib_cntr_clr"));
    turn(padded(65536));
    EXPECT_EQ(failures, 0);
    EXPECT_TRUE(called("sal_mib_cntr_clr"));
}

TEST_F(Keeper, request_is_held_for_half_an_hour_and_kept_alive) {
    turn(reply("{}"));
    EXPECT_EQ(sim::transfer_option(listen_url(), CURLOPT_TIMEOUT), 1800);
    EXPECT_EQ(sim::transfer_option(listen_url(), CURLOPT_CONNECTTIMEOUT), std::nullopt);
    EXPECT_EQ(sim::transfer_option(listen_url(), CURLOPT_TCP_KEEPALIVE), 1);
    EXPECT_EQ(sim::transfer_option(listen_url(), CURLOPT_TCP_KEEPINTVL), 60);
    EXPECT_EQ(sim::transfer_option(listen_url(), CURLOPT_NOSIGNAL), 1);
    EXPECT_EQ(sim::transfer_option(listen_url(), CURLOPT_VERBOSE), 0);
}

TEST_F(Keeper, request_that_is_never_answered_is_a_failure) {
    sim::patience().cut("", 300);
    turn(silence());
    EXPECT_EQ(failures, 1);
    EXPECT_EQ(traced("sleep("), (Lines{"sleep(10) = 0"}));
}

TEST_F(Keeper, redirection_is_not_followed) {
    HttpAnswer moved = reply("");
    moved.status = 302;
    moved.headers = {"Location: http://" + keeper.host() + "/elsewhere"};
    turn(moved);
    EXPECT_EQ(keeper.requests().size(), 1u);
}

TEST_F(Keeper, unknown_action_still_passes_on_a_flag_that_was_raised) {
    setting_from_cloud = 1;
    turn(reply("{}"));
    EXPECT_FALSE(checked_in());
    turn(reply(R"({"action": "dance"})"));
    EXPECT_TRUE(checked_in());
}

TEST_F(Keeper, error_page_is_an_answer) {
    HttpAnswer error = reply("<html>");
    error.status = 502;
    turn(error);
    EXPECT_EQ(failures, 0);
}

TEST_F(Keeper, message_of_a_transfer_that_broke_off_is_still_carried_out) {
    HttpAnswer cut = reply(R"({"action": "counter_reset", "port": "3"})");
    cut.missing = 5;
    turn(cut);
    EXPECT_EQ(traced("sal_mib_cntr_clr"), (Lines{"sal_mib_cntr_clr(2) = 0"}));
    EXPECT_EQ(failures, 1);
}

TEST_F(Keeper, message_in_pieces_is_put_together) {
    HttpAnswer answer;
    answer.chunked = true;
    answer.pieces = {R"({"action": "cou)", R"(nter_reset", "po)", R"(rt": "3"})"};
    turn(answer);
    EXPECT_EQ(traced("sal_mib_cntr_clr"), (Lines{"sal_mib_cntr_clr(2) = 0"}));
}

TEST_F(Keeper, turn_leaves_no_transfer_behind) {
    turn(reply("{}"));
    EXPECT_EQ(thread_curl, nullptr);
}

TEST_F(Keeper, restart_ends_a_long_poll_and_listens_at_the_new_host) {
    HttpStub second;
    keeper.answer(silence());
    second.answer(silence());
    running.start();
    ASSERT_TRUE(keeper.wait_for(1));
    EXPECT_NE(thread_curl, nullptr);
    std::strcpy(ConnectionKeeperHost, second.host().c_str());
    connection_url_change = 1;
    running.restart();
    EXPECT_EQ(connection_url_change, 0u);
    EXPECT_TRUE(running.thread.running);
    EXPECT_TRUE(second.wait_for(1));
}

TEST_F(Keeper, restart_amidst_a_body_forgets_what_arrived_of_it) {
    HttpAnswer half;
    half.pieces = {R"({"action": "reboot"})"};
    half.missing = 10;
    half.silent = true;
    running.start();
    for (std::size_t round = 1; round <= 10; ++round) {
        keeper.answer(half);
        ASSERT_TRUE(keeper.wait_for(round));
        running.restart();
    }
    EXPECT_EQ(board.reboots, 0);
}

TEST_F(Keeper, restarted_keeper_does_not_take_an_answer_that_the_old_one_was_due) {
    keeper.answer(silence());
    keeper.answer(silence());
    running.start();
    ASSERT_TRUE(keeper.wait_for(1));
    running.restart();
    EXPECT_TRUE(keeper.wait_for(2));
}

TEST_F(Keeper, restart_ends_the_pause_after_a_failure) {
    board.clock.pace(1);
    std::strcpy(ConnectionKeeperHost, "127.0.0.1:1");
    running.start();
    while (traced("listen(").empty())
        sched_yield();
    std::strcpy(ConnectionKeeperHost, keeper.host().c_str());
    keeper.answer(silence());
    running.restart();
    EXPECT_TRUE(keeper.wait_for(1));
    EXPECT_LT(board.clock.running(), 9);
}

TEST_F(Keeper, restart_waits_for_an_action_to_end) {
    keeper.answer(reply(R"({"action": "port_reset", "port": "3"})"));
    keeper.answer(silence());
    keeper.answer(silence());
    std::atomic<bool> between_off_and_on = false;
    board.clock.on_sleep = [&](unsigned) {
        between_off_and_on = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        return 0u;
    };
    running.start();
    while (!between_off_and_on)
        sched_yield();
    running.restart();
    EXPECT_EQ(
        traced("sal_port_enable_set"),
        (Lines{"sal_port_enable_set(2, 0) = 0", "sal_port_enable_set(2, 1) = 0"}));
}

TEST_F(Keeper, thread_that_finds_no_memory_is_tried_again_after_the_next_checkin) {
    keeper.answer(silence());
    board.faults.plan({sim::Edge::allocation, "", 1, false, 0, 0});
    running.start();
    EXPECT_FALSE(running.thread.running);
    EXPECT_EQ(connection_url_change, 1u);
    main_loop_turn(&running.thread);
    EXPECT_TRUE(running.thread.running);
    EXPECT_EQ(connection_url_change, 0u);
    EXPECT_TRUE(keeper.wait_for(1));
}

TEST_F(Keeper, action_of_many_minutes_does_not_hold_up_the_checkins) {
    HttpStub second;
    second.answer(silence());
    keeper.answer(reply(R"({"action": "port_reset", "port": "3"})"));
    device.cloud.connkeeper_host = second.host();
    device.cloud.debug = true;
    std::atomic<bool> acting = false;
    std::atomic<bool> may_end = false;
    board.clock.on_sleep = [&](unsigned seconds) {
        for (acting = acting || seconds == 1; seconds == 1 && !may_end;)
            sched_yield();
        return 0u;
    };
    running.start();
    while (!acting)
        sched_yield();
    std::strcpy(ConnectionKeeperHost, second.host().c_str());
    connection_url_change = 1;
    for (std::size_t turns = 1; turns <= 2; ++turns) {
        cloud.forget_answers();
        cloud.answer(reply("{}"));
        main_loop_turn(&running.thread);
        EXPECT_EQ(cloud.requests().size(), turns);
        EXPECT_TRUE(running.thread.ending);
        EXPECT_EQ(connection_url_change, 0u);
    }
    cloud.answer(reply("{}"));
    may_end = true;
    main_loop_turn(&running.thread);
    EXPECT_FALSE(running.thread.ending);
    EXPECT_TRUE(second.wait_for(1));
    EXPECT_EQ(
        traced("sal_port_enable_set"),
        (Lines{"sal_port_enable_set(2, 0) = 0", "sal_port_enable_set(2, 1) = 0"}));
    running.stop();
    Lines shown = console();
    EXPECT_EQ(std::count(shown.begin(), shown.end(), "connection_url_change"), 1);
    EXPECT_EQ(std::count(shown.begin(), shown.end(), "connection_url_change end"), 1);
}
