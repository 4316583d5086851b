// "reboot" among the settings.
#include "sections/reboot.h"

#include "base/debug.h"
#include "core/dispatch.h"
#include "tests/support/on_board.h"

namespace {

class Reboot : public OnBoard {
  protected:
    int set(const std::string& text) {
        Json system(text);
        return vxc_reboot_set(system);
    }
};

} // namespace

TEST_F(Reboot, report_is_always_false) {
    set(R"({"reboot":true})");
    Report report = report_of(vxc_reboot_get);
    EXPECT_EQ(report.result, 0);
    EXPECT_EQ(report.text, R"({"reboot":false})");
}

TEST_F(Reboot, a_missing_object_is_code_498_and_not_recorded) {
    EXPECT_EQ(vxc_reboot_set(nullptr), 498);
    EXPECT_EQ(vxc_reboot_get(nullptr), 498);
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_EQ(board.reboots, 0);
}

TEST_F(Reboot, true_reboots_the_switch) {
    debug_flag = 1;
    EXPECT_EQ(set(R"({"reboot":true})"), 0);
    EXPECT_EQ(trace(), Lines{"sal_sys_reboot() = 0"});
    EXPECT_EQ(board.reboots, 1);
    EXPECT_EQ(console(), Lines{"VX_cloud : reboot"});
}

TEST_F(Reboot, false_or_nothing_changes_nothing) {
    debug_flag = 1;
    EXPECT_EQ(set(R"({"reboot":false})"), 0);
    EXPECT_EQ(set("{}"), 0);
    EXPECT_EQ(trace(), Lines{});
    EXPECT_EQ(console(), Lines{});
}

TEST_F(Reboot, a_platform_that_refuses_is_not_looked_at) {
    auto runs =
        fail_each_call([](sim::Board&) {}, [&](cJSON*) { return set(R"({"reboot":true})"); });
    ASSERT_EQ(runs.size(), 1u);
    EXPECT_EQ(runs[0].call, "sal_sys_reboot");
    EXPECT_EQ(runs[0].result, 0);
    EXPECT_EQ(runs[0].errors, Codes{});
}

TEST_F(Reboot, comes_after_the_other_settings_were_saved) {
    Json document(R"({"system":{"reboot":true,"dark_mode":true}})");
    vxc_set(document);
    EXPECT_EQ(
        calls(), (Lines{
                     "sal_swctrl_poe_led_mode_get", "sal_swctrl_poe_led_mode_set",
                     "cmd_conf_startupConfig_save", "sal_sys_reboot"}));
}

TEST_F(Reboot, alone_saves_nothing) {
    Json document(R"({"system":{"reboot":true}})");
    vxc_set(document);
    EXPECT_EQ(calls(), Lines{"sal_sys_reboot"});
}
