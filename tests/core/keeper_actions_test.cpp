// What the cloud may ask for between two check-ins.
#include "core/keeper_actions.h"

#include "base/debug.h"
#include "platform/poe.h"
#include "platform/port.h"
#include "tests/core/on_cloud.h"

namespace {

class KeeperActions : public OnCloud {
  protected:
    void perform(const std::string& text) {
        Json message(text);
        perform_keeper_action(message);
    }
    void perform_on(const std::string& action, const std::string& port) {
        perform(R"({"action": ")" + action + R"(", "port": ")" + port + "\"}");
    }
    // The argument of the platform call that a port id leads to; "" when there is none.
    std::string port_of(const std::string& id) {
        forget();
        perform_on("counter_reset", id);
        Lines lines = traced("sal_mib_cntr_clr(");
        return lines.empty() ? "" : lines[0].substr(17, lines[0].find(')') - 17);
    }
};

} // namespace

TEST_F(KeeperActions, checkin_checks_in_and_raises_no_flag) {
    cloud.answer(reply("{}"));
    debug_flag = 1;
    perform(R"({"action": "checkin"})");
    EXPECT_EQ(core_console().front(), "connection-keeper: checkin");
    EXPECT_EQ(attempts(), (Lines{"CLOUD=0"}));
    EXPECT_EQ(setting_from_cloud, 0u);
}

TEST_F(KeeperActions, reboot_runs_the_firmwares_handler) {
    debug_flag = 1;
    perform(R"({"action": "reboot"})");
    EXPECT_EQ(raw_console(), "connection-keeper: reboot\n");
    EXPECT_EQ(trace(), (Lines{"system(\"handler -f reboot 1> /dev/null 2> /dev/null &\") = 0"}));
    EXPECT_EQ(board.reboots, 1);
    EXPECT_EQ(setting_from_cloud, 0u);
}

TEST_F(KeeperActions, restart_vxcloud_has_the_platform_restart_the_agent) {
    debug_flag = 1;
    perform(R"({"action": "restart_vxcloud"})");
    EXPECT_EQ(trace(), (Lines{"sal_vxcloud_kill() = 0"}));
    EXPECT_EQ(raw_console(), "");
    EXPECT_EQ(setting_from_cloud, 0u);
}

TEST_F(KeeperActions, api_test_applies_three_sections_of_the_message_and_raises_no_flag) {
    debug_flag = 1;
    perform(R"({"action": "api_test", "device_access": {"gui": true}, "snmp": {"enable": true},
                "summary_info": {"device_name": "Attic"}, "stp": {"enable": true}})");
    EXPECT_EQ(
        trace(), (Lines{
                     R"(sal_sys_systemName_set("Attic") = 0)", "sal_snmp_enable_set(1) = 0",
                     "cmd_snmp_demo_restart() = 0", "sal_sys_httpEnable_set(1) = 0",
                     "sal_sys_httpsEnable_set(1) = 0"}));
    EXPECT_EQ(raw_console(), "");
    EXPECT_EQ(setting_from_cloud, 0u);
}

TEST_F(KeeperActions, port_reset_bounces_link_and_power_and_marks_the_port) {
    debug_flag = 1;
    perform_on("port_reset", "3");
    EXPECT_EQ(raw_console(), "connection-keeper: reset\n");
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_port_enable_get(2) = 0",
                     "sal_port_enable_set(2, 0) = 0",
                     "sleep(1) = 0",
                     "sal_port_enable_set(2, 1) = 0",
                     "sal_poe_port_config_query_get(2) = 0",
                     "sal_poe_port_reset_set(2, 1) = 0",
                 }));
    EXPECT_EQ(gCattr.port_reset_flags[2], 1u);
    EXPECT_EQ(setting_from_cloud, 1u);
}

TEST_F(KeeperActions, port_reset_of_a_disabled_port_leaves_it_disabled) {
    sal_port_enable_set(2, 0);
    forget();
    perform_on("port_reset", "3");
    EXPECT_EQ(
        calls(),
        (Lines{"sal_port_enable_get", "sal_poe_port_config_query_get", "sal_poe_port_reset_set"}));
    EXPECT_EQ(gCattr.port_reset_flags[2], 1u);
}

TEST_F(KeeperActions, port_reset_without_power_on_the_port_resets_none) {
    sal_poe_port_pse_enable_set(2, 0);
    forget();
    perform_on("port_reset", "3");
    EXPECT_TRUE(called("sal_poe_port_config_query_get"));
    EXPECT_FALSE(called("sal_poe_port_reset_set"));
}

TEST_F(KeeperActions, port_reset_takes_the_power_of_port_24_and_asks_for_none_of_port_25) {
    perform_on("port_reset", "24");
    EXPECT_TRUE(called("sal_poe_port_config_query_get"));
    EXPECT_EQ(traced("sal_poe_port_reset"), (Lines{"sal_poe_port_reset_set(23, 1) = 0"}));
    forget();
    perform_on("port_reset", "25");
    EXPECT_EQ(traced("sal_poe"), Lines{});
    EXPECT_EQ(gCattr.port_reset_flags[24], 1u);
}

TEST_F(KeeperActions, port_reset_above_the_powered_ports_asks_for_no_power) {
    perform_on("port_reset", "trunk8");
    EXPECT_EQ(trace().front(), "sal_port_enable_get(27) = 0");
    EXPECT_FALSE(called("sal_poe_port_config_query_get"));
    EXPECT_EQ(gCattr.port_reset_flags[27], 1u);
}

TEST_F(KeeperActions, port_reset_of_a_port_that_does_not_exist_marks_nothing) {
    perform_on("port_reset", "73");
    perform_on("port_reset", "0");
    perform_on("port_reset", "-300");
    for (std::uint32_t mark : gCattr.port_reset_flags)
        EXPECT_EQ(mark, 0u);
    EXPECT_FALSE(called("sal_poe_port_reset_set"));
    EXPECT_EQ(setting_from_cloud, 1u);
}

TEST_F(KeeperActions, highest_mark_is_port_71) {
    perform_on("port_reset", "72");
    EXPECT_EQ(gCattr.port_reset_flags[71], 1u);
}

TEST_F(KeeperActions, counter_reset_clears_the_counters) {
    debug_flag = 1;
    perform_on("counter_reset", "1");
    EXPECT_EQ(raw_console(), "connection-keeper: counter_reset\n");
    EXPECT_EQ(trace(), (Lines{"sal_mib_cntr_clr(0) = 0"}));
    EXPECT_EQ(setting_from_cloud, 1u);
}

TEST_F(KeeperActions, port_designators) {
    EXPECT_EQ(port_of("3"), "2");
    EXPECT_EQ(port_of("trunk2"), "21");
    EXPECT_EQ(port_of("F1"), "18");
    EXPECT_EQ(port_of("F2"), "19");
    EXPECT_EQ(port_of("trunk8"), "27");
    EXPECT_EQ(port_of("3x"), "2");
    EXPECT_EQ(port_of(" 3"), "2");
    EXPECT_EQ(port_of("100"), "99");
    EXPECT_EQ(port_of("0"), "-1");
}

TEST_F(KeeperActions, port_designator_without_a_number_does_nothing) {
    for (const char* id :
         {"", "Fx", "trunk", "xtrunk2", "3F1", "port 3", "f1", "99999999999", "-2147483648",
          "trunk2147483647"}) {
        EXPECT_EQ(port_of(id), "") << id;
        EXPECT_EQ(setting_from_cloud, 0u) << id;
    }
}

TEST_F(KeeperActions, port_action_without_a_port_does_nothing) {
    debug_flag = 1;
    perform(R"({"action": "port_reset"})");
    perform(R"({"action": "counter_reset", "port": 3})");
    EXPECT_TRUE(trace().empty());
    EXPECT_EQ(raw_console(), "");
    EXPECT_EQ(setting_from_cloud, 0u);
}

TEST_F(KeeperActions, failing_platform_calls_do_not_keep_the_flag_down) {
    fail_always("sal_port_enable_get", 5);
    fail_always("sal_poe_port_config_query_get", 5);
    perform_on("port_reset", "3");
    EXPECT_EQ(calls(), (Lines{"sal_port_enable_get", "sal_poe_port_config_query_get"}));
    EXPECT_EQ(gCattr.port_reset_flags[2], 1u);
    EXPECT_EQ(setting_from_cloud, 1u);
    EXPECT_TRUE(recorded().empty());
}
