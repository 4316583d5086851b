// Start-up: its order, and what it leaves behind.
#include "core/start_up.h"

#include <signal.h>
#include <unistd.h>

#include "base/debug.h"
#include "base/errors.h"
#include "core/local_request.h"
#include "tests/core/running_keeper.h"
#include "tests/support/environment.h"

namespace {

// The agent has not started yet; its store has an account and the hosts.
class StartUp : public OnCloud {
  protected:
    StartUp() {
        reset_agent();
        device.cloud.key = "thekey021b2c3d4e5f";
        device.cloud.secret = "thesecret021b2c3d4e5f";
        device.cloud.checkin_host = "checkin.example";
        device.cloud.fallback_host = "fallback.example";
        device.cloud.connkeeper_host = keeper.host();
        device.cloud.checkin_interval = 61;
        keeper.answer(silence());
    }
    ~StartUp() override { let_signals_through(); }

    void start() {
        start_up(&running.thread);
        ASSERT_TRUE(keeper.wait_for(1));
    }

    // Without what the keeper's thread does meanwhile.
    Lines main_trace() const {
        Lines lines = trace();
        std::erase_if(lines, [](const std::string& line) {
            return line.starts_with("listen(") || line.starts_with("sal_vxcloud_debug_flag_get");
        });
        return lines;
    }

    RunningKeeper running;
};

} // namespace

TEST_F(StartUp, goes_in_a_fixed_order) {
    start();
    EXPECT_EQ(
        main_trace(), (Lines{
                          "sal_sys_macAddr_get() = 0",
                          "sleep(30) = 0",
                          "sal_vxcloud_connkeeper_host_get() = 0",
                          "sal_vxcloud_checkin_host_get() = 0",
                          "sal_vxcloud_checkin_interval_get() = 0",
                          "sal_vxcloud_fallback_host_get() = 0",
                          "sleep(2) = 0",
                          "sal_vxcloud_key_get() = 0",
                          "sal_vxcloud_secret_get() = 0",
                      }));
}

TEST_F(StartUp, writes_the_process_id_without_a_newline) {
    start();
    EXPECT_EQ(file("/var/run/vx_cloud.pid"), std::to_string(getpid()));
}

TEST_F(StartUp, leaves_no_way_for_a_closed_connection_to_end_the_process) {
    signal(SIGPIPE, SIG_DFL);
    start();
    struct sigaction now {};
    sigaction(SIGPIPE, nullptr, &now);
    EXPECT_NE(now.sa_handler, SIG_DFL);
    EXPECT_NE(now.sa_handler, SIG_IGN) << "commands would inherit it";
    raise(SIGPIPE);
    signal(SIGPIPE, SIG_DFL);
}

TEST_F(StartUp, inherited_variables_neither_lead_hosts_astray_nor_give_keys_away) {
    const std::vector<std::string> names = {"SSLKEYLOGFILE", "HOSTALIASES", "LOCALDOMAIN"};
    Environment inherited(names, "/tmp/inherited");
    Lines left_before_transfers;
    board.clock.on_sleep = [&](unsigned seconds) {
        for (const std::string& name : names)
            if (seconds == 30 && getenv(name.c_str()))
                left_before_transfers.push_back(name);
        return 0u;
    };
    start();
    EXPECT_EQ(left_before_transfers, Lines{});
    EXPECT_TRUE(called("sleep"));
}

TEST_F(StartUp, derives_the_names_of_the_switch_from_its_mac) {
    start();
    EXPECT_STREQ(macstr, "021b2c3d4e5f");
    EXPECT_STREQ(macaddrstr, "02:1B:2C:3D:4E:5F");
    EXPECT_STREQ(Checkinstr, "/cloud-switch/02:1B:2C:3D:4E:5F/checkin");
}

TEST_F(StartUp, loads_hosts_interval_and_account) {
    std::memset(gCattr.port_reset_flags, 1, sizeof gCattr.port_reset_flags);
    record_error(3);
    start();
    EXPECT_STREQ(CheckinHost, "checkin.example");
    EXPECT_STREQ(fallback_host, "fallback.example");
    EXPECT_EQ(CheckinInterval, 61);
    EXPECT_STREQ(gCattr.key, "thekey");
    EXPECT_STREQ(gCattr.secret, "thesecret");
    EXPECT_EQ(gCattr.port_reset_flags[71], 0u);
    EXPECT_EQ(error_flags[0], 0u);
    EXPECT_EQ(checkin_timeout, 120);
    EXPECT_EQ(checkin_connect_timeout, 120);
    EXPECT_EQ(checkin_type, CHECKIN_ANY_ADDRESS);
}

TEST_F(StartUp, before_the_services_come_up_it_is_known_reachable_and_has_its_time_outs) {
    checkin_timeout = checkin_connect_timeout = 1;
    checkin_type = CHECKIN_IPV6_ONLY;
    signal(SIGUSR1, SIG_IGN);
    Lines seen;
    board.clock.on_sleep = [&](unsigned seconds) {
        struct sigaction now {};
        sigaction(SIGUSR1, nullptr, &now);
        if (seconds == 30)
            seen = {file("/var/run/vx_cloud.pid"),
                    macstr,
                    std::to_string(checkin_timeout),
                    std::to_string(checkin_connect_timeout),
                    std::to_string(checkin_type),
                    now.sa_handler == handleAction ? "handled" : "not handled"};
        return 0u;
    };
    start();
    EXPECT_EQ(
        seen, (Lines{std::to_string(getpid()), "021b2c3d4e5f", "120", "120", "0", "handled"}));
}

TEST_F(StartUp, connection_starts_unestablished_before_the_keeper_comes_up) {
    checkin_connect_establish = checkin_connect_retry = 1;
    Lines seen;
    board.clock.on_sleep = [&](unsigned seconds) {
        seen.push_back(
            std::to_string(seconds) + ": " + std::to_string(checkin_connect_establish) +
            std::to_string(checkin_connect_retry));
        return 0u;
    };
    start();
    EXPECT_EQ(seen, (Lines{"30: 11", "2: 00"}));
}

TEST_F(StartUp, keeper_listens_before_the_account_is_loaded) {
    std::string key_when_keeper_called = "unset";
    board.clock.on_sleep = [&](unsigned seconds) {
        if (seconds == 2 && keeper.wait_for(1))
            key_when_keeper_called = gCattr.key;
        return 0u;
    };
    start();
    EXPECT_EQ(key_when_keeper_called, "");
    EXPECT_EQ(keeper.lines(), (Lines{"GET /router/listen/02:1B:2C:3D:4E:5F HTTP/1.1"}));
}

TEST_F(StartUp, console_shows_the_keeper_and_the_account_that_is_not_this_devices) {
    device.cloud.debug = true;
    device.cloud.key = "copied_from_another_switch";
    debug_flag = 1;
    start();
    Lines shown = console();
    EXPECT_EQ(std::erase(shown, "api_key_get fail"), 1u); // while the keeper's thread shows its own
    EXPECT_EQ(
        shown, (Lines{
                   "pthread_create", "http://" + keeper.host() + "/router/listen/02:1B:2C:3D:4E:5F",
                   "connect to connection-keeper"}));
    EXPECT_STREQ(gCattr.key, "");
}

TEST_F(StartUp, survives_every_call_that_fails) {
    board.faults.plan({sim::Edge::file, "/var/run/vx_cloud.pid", 1, true, 1, 0});
    for (const char* name :
         {"sal_sys_macAddr_get", "sal_vxcloud_checkin_host_get", "sal_vxcloud_fallback_host_get",
          "sal_vxcloud_checkin_interval_get", "sal_vxcloud_key_get", "sal_vxcloud_secret_get"})
        fail_always(name, 9);
    start();
    EXPECT_STREQ(macstr, "000000000000");
    EXPECT_STREQ(macaddrstr, "00:00:00:00:00:00");
    EXPECT_STREQ(CheckinHost, "");
    EXPECT_EQ(CheckinInterval, 300);
}

TEST_F(StartUp, local_requests_are_blocked_but_for_the_sleeps) {
    put_file("/tmp/vx_cloud_post", R"({"system": {"jumbo_frames": {"size": 2000}}})");
    std::string seen_in_sleep;
    board.clock.on_sleep = [&](unsigned seconds) {
        raise(SIGUSR1);
        seen_in_sleep +=
            std::to_string(seconds) + (file("/tmp/vx_cloud_post").empty() ? "taken " : "waiting ");
        return 0u;
    };
    start();
    EXPECT_EQ(seen_in_sleep, "30taken 2taken ");
    EXPECT_EQ(device.chip.state().max_frame_bytes, 2000u);
    put_file("/tmp/vx_cloud_post", "{}");
    raise(SIGUSR1);
    EXPECT_EQ(file("/tmp/vx_cloud_post"), "{}");
}

TEST_F(StartUp, random_numbers_are_not_seeded) {
    srandom(1); // as in a process that never seeds
    long first = random();
    srandom(1);
    start();
    EXPECT_EQ(random(), first);
}
