// The main loop: what it does after a check-in, and when it sleeps.
#include "core/main_loop.h"

#include <signal.h>

#include "base/debug.h"
#include "core/local_request.h"
#include "tests/core/idle_day.h"
#include "tests/core/running_keeper.h"

namespace {

class MainLoop : public OnCloud {
  protected:
    MainLoop() { cloud.answer(reply("{}")); }
    ~MainLoop() override { let_signals_through(); }

    void turn() { main_loop_turn(&running.thread); }

    Lines sleeps() const { return traced("sleep("); }

    // The console from the end of the check-in on.
    Lines after_checkin() const {
        Lines lines = core_console();
        auto end = std::find(lines.begin(), lines.end(), "main : api_checkin finish");
        return {end, lines.end()};
    }

    RunningKeeper running;
};

constexpr const char* finish = "main : api_checkin finish";

} // namespace

TEST_F(MainLoop, turn_begins_with_the_debug_flag_and_a_checkin) {
    device.cloud.debug = true;
    turn();
    Lines shown = core_console();
    ASSERT_GT(shown.size(), 3u);
    EXPECT_EQ(calls().front(), "sal_vxcloud_debug_flag_get");
    EXPECT_EQ(shown[0], "main : restart to api_checkin");
    EXPECT_EQ(shown[1], "api_checkin: prepare json send data pid PID");
    EXPECT_EQ(after_checkin(), (Lines{finish, "main : checkin_connect_establish"}));
}

TEST_F(MainLoop, debug_flag_that_was_set_shows_the_reading_of_it_and_is_cleared_by_the_store) {
    debug_flag = 1;
    turn();
    EXPECT_EQ(raw_console(), "main : sal_vxcloud_debug_flag_get\n");
    EXPECT_EQ(debug_flag, 0u);
}

TEST_F(MainLoop, established_connection_sleeps_out_the_interval) {
    CheckinInterval = 77;
    turn();
    EXPECT_EQ(sleeps(), (Lines{"sleep(77) = 0"}));
}

TEST_F(MainLoop, a_day_has_one_wait_a_checkin_and_no_other) {
    IdleDay day;
    CheckinInterval = 3600;
    for (int hour = 0; hour < 24; ++hour) {
        cloud.answer(reply("{}"));
        turn();
    }
    EXPECT_EQ(sleeps(), Lines(24, "sleep(3600) = 0"));
    EXPECT_EQ(board.clock.running(), 24 * 3600);
    EXPECT_EQ(day.waits(), 0);
}

TEST_F(MainLoop, full_sleep_skips_both_need_sleep_prints) {
    device.cloud.debug = true;
    turn();
    EXPECT_EQ(after_checkin(), (Lines{finish, "main : checkin_connect_establish"}));
}

TEST_F(MainLoop, signals_never_shorten_the_interval) {
    device.cloud.debug = true;
    board.clock.on_sleep = [left = Lines{"", "100", "40", "0"}, at = 0](unsigned) mutable {
        return static_cast<unsigned>(std::stoi(left[static_cast<std::size_t>(++at)]));
    };
    turn();
    EXPECT_EQ(sleeps(), (Lines{"sleep(300) = 100", "sleep(100) = 40", "sleep(40) = 0"}));
    EXPECT_EQ(
        after_checkin(), (Lines{
                             finish, "main : checkin_connect_establish", "still need sleep 100",
                             "need sleep 40", "still need sleep 40", "need sleep 0"}));
    EXPECT_TRUE(raw_console().ends_with("still need sleep 40\n\n\nneed sleep 0\n\n\n"));
}

TEST_F(MainLoop, without_connection_it_sleeps_ten_seconds) {
    device.cloud.debug = true;
    cloud.forget_answers();
    turn();
    EXPECT_EQ(sleeps(), (Lines{"sleep(10) = 0"}));
    EXPECT_EQ(
        after_checkin(),
        (Lines{finish, "main : checkin_connect_not_establish", "main :  sleep(10)"}));
}

TEST_F(MainLoop, changed_settings_without_connection_are_tried_at_once) {
    device.cloud.debug = true;
    cloud.forget_answers();
    checkin_connect_retry = 1;
    turn();
    EXPECT_EQ(sleeps(), Lines{});
    EXPECT_EQ(checkin_connect_retry, 0u);
    EXPECT_EQ(after_checkin(), (Lines{finish, "main : checkin_connect_not_establish"}));
}

TEST_F(MainLoop, established_connection_leaves_the_retry_flag) {
    checkin_connect_retry = 1;
    turn();
    EXPECT_EQ(checkin_connect_retry, 1u);
    EXPECT_EQ(sleeps(), (Lines{"sleep(300) = 0"}));
}

TEST_F(MainLoop, applied_settings_are_reported_without_sleep) {
    device.cloud.debug = true;
    cloud.forget_answers();
    cloud.answer(reply(R"({"system": {}})"));
    turn();
    EXPECT_EQ(sleeps(), Lines{});
    EXPECT_EQ(after_checkin(), (Lines{finish, "main : setting_from_cloud"}));
}

TEST_F(MainLoop, changed_keeper_host_restarts_the_keeper_after_the_checkin) {
    HttpStub second;
    keeper.answer(silence());
    second.answer(silence());
    running.start();
    ASSERT_TRUE(keeper.wait_for(1));
    device.cloud.debug = true;
    cloud.forget_answers();
    cloud.answer(reply(R"({"system": {"cloud": {"connkeeper_host": ")" + second.host() + "\"}}}"));
    cloud.answer(reply("{}"));
    turn();
    EXPECT_TRUE(second.wait_for(1));
    EXPECT_EQ(connection_url_change, 0u);
    EXPECT_EQ(second.lines(), (Lines{"GET /router/listen/02:1B:2C:3D:4E:5F HTTP/1.1"}));
    // Whatever the keeper's threads show in between.
    std::string shown = raw_console();
    std::size_t at = 0;
    for (const char* text :
         {"main : api_checkin finish\n", "connection_url_change\n\n",
          "connection_url_change end\n\n", "main : setting_from_cloud\n"}) {
        at = shown.find(text, at);
        ASSERT_NE(at, std::string::npos) << text;
    }
}

TEST_F(MainLoop, local_request_that_waits_is_applied_between_checkin_and_sleep) {
    block_local_requests();
    signal(SIGUSR1, handleAction);
    put_file("/tmp/vx_cloud_post", R"({"system": {"jumbo_frames": {"size": 2000}}})");
    raise(SIGUSR1);
    turn();
    Lines names = calls();
    auto sent = std::find(names.begin(), names.end(), "transfer");
    auto applied = std::find(names.begin(), names.end(), "sal_switch_maxFrameSize_set");
    ASSERT_NE(applied, names.end());
    EXPECT_LT(sent, applied);
    EXPECT_EQ(sleeps(), Lines{});
    EXPECT_EQ(setting_from_cloud, 1u);
}

TEST_F(MainLoop, local_request_in_the_pause_of_a_retry_is_applied_in_it) {
    block_local_requests();
    signal(SIGUSR1, handleAction);
    put_file("/tmp/vx_cloud_post", R"({"system": {"jumbo_frames": {"size": 2000}}})");
    fail_transfer(cloud, 6);
    board.clock.on_sleep = [&](unsigned seconds) {
        if (seconds == 10)
            raise(SIGUSR1);
        return seconds == 10 ? 7u : 0u;
    };
    turn();
    EXPECT_EQ(sleeps(), (Lines{"sleep(10) = 7", "sleep(7) = 0"}));
    Lines names = calls();
    std::erase_if(names, [](const std::string& name) {
        return name != "transfer" && name != "sal_switch_maxFrameSize_set";
    });
    EXPECT_EQ(names, (Lines{"transfer", "sal_switch_maxFrameSize_set", "transfer"}));
    EXPECT_EQ(setting_from_cloud, 1u);
}

TEST_F(MainLoop, local_request_mends_the_host_that_a_checkin_is_trying) {
    block_local_requests();
    signal(SIGUSR1, handleAction);
    put_file(
        "/tmp/vx_cloud_post",
        R"({"system": {"cloud": {"checkin_host": ")" + cloud.host() + "\"}}}");
    std::strcpy(CheckinHost, "127.0.0.1:9");
    board.clock.on_sleep = [&](unsigned seconds) {
        if (seconds == 10)
            raise(SIGUSR1);
        return 0u;
    };
    turn();
    EXPECT_EQ(cloud.requests().size(), 1u);
    EXPECT_EQ(sleeps(), (Lines{"sleep(10) = 0"}));
}

TEST_F(MainLoop, local_request_in_the_interval_is_applied_in_it) {
    block_local_requests();
    signal(SIGUSR1, handleAction);
    put_file("/tmp/vx_cloud_post", R"({"system": {"jumbo_frames": {"size": 2000}}})");
    board.clock.on_sleep = [&](unsigned seconds) {
        if (seconds != 300)
            return 0u;
        raise(SIGUSR1);
        EXPECT_TRUE(called("sal_switch_maxFrameSize_set"));
        return 200u;
    };
    turn();
    EXPECT_EQ(sleeps(), (Lines{"sleep(300) = 200", "sleep(200) = 0"}));
    EXPECT_EQ(setting_from_cloud, 1u);
}
