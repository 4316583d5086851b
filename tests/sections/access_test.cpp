// The device access section.
#include "sections/access.h"

#include "tests/sections/outcomes.h"

namespace {

class Access : public OnBoard {
  protected:
    int set(const std::string& access) {
        return vxc_access_set(Json(R"({"device_access":)" + access + "}"));
    }
};

const char* const everything_off =
    R"({"device_access": {"ssh": false, "telnet": false, "gui": false}})";

} // namespace

TEST_F(Access, report_has_the_three_services) {
    device.access.telnet = true;
    Report report = report_of(vxc_access_get);
    EXPECT_EQ(report.result, 0);
    EXPECT_EQ(report.text, R"({"device_access":{"gui":true,"telnet":true,"ssh":false}})");
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_sys_httpEnable_get() = 0", "sal_sys_telnetdEnable_get() = 0",
                     "sal_ssh_sshdEnable_get() = 0"}));
}

TEST_F(Access, gui_is_reported_by_its_plain_half) {
    device.access.http = false;
    device.access.https = true;
    EXPECT_EQ(
        report_of(vxc_access_get).text,
        R"({"device_access":{"gui":false,"telnet":false,"ssh":false}})");
}

TEST_F(Access, each_failing_read_leaves_nothing_in_the_report) {
    EXPECT_EQ(
        outcomes_and_reports(fail_each_call([](sim::Board&) {}, vxc_access_get)),
        (Lines{
            "sal_sys_httpEnable_get #1: 77 [77], then nothing, leaving {}",
            "sal_sys_telnetdEnable_get #1: 77 [77], then nothing, leaving {}",
            "sal_ssh_sshdEnable_get #1: 77 [77], then nothing, leaving {}",
        }));
}

TEST_F(Access, null_returns_498_unrecorded_and_a_missing_section_19) {
    EXPECT_EQ(vxc_access_set(nullptr), 498);
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_EQ(vxc_access_set(Json("{}")), 19);
    EXPECT_EQ(recorded(), Codes{19});
    EXPECT_EQ(trace(), Lines{});
}

TEST_F(Access, empty_section_changes_nothing) {
    EXPECT_EQ(set("{}"), 0);
    EXPECT_EQ(trace(), Lines{});
}

TEST_F(Access, a_section_that_is_no_object_changes_nothing) {
    for (const char* section : {"7", "\"gui\"", "null", "false", "[]", "[false, false]"}) {
        EXPECT_EQ(set(section), 0) << section;
        EXPECT_EQ(trace(), Lines{}) << section;
    }
}

TEST_F(Access, a_value_of_another_type_switches_on) {
    EXPECT_EQ(set(R"({"gui": 0, "ssh": "false"})"), 0);
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_sys_httpEnable_set(1) = 0", "sal_sys_httpsEnable_set(1) = 0",
                     "sal_ssh_sshdEnable_set(1) = 0", "sal_sys_inetdConfig_set() = 0",
                     "sal_inetd_restart() = 0"}));
}

TEST_F(Access, everything_off_ends_what_is_open) {
    device.access.telnet = device.access.ssh = true;
    device.access.telnet_connections = 2;
    device.access.ssh_connections = 3;
    EXPECT_EQ(vxc_access_set(Json(everything_off)), 0);
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_sys_httpEnable_set(0) = 0", "sal_sys_httpsEnable_set(0) = 0",
                     "sal_sys_telnetdEnable_set(0) = 0", "sal_sys_inetdConfig_set() = 0",
                     "sal_inetd_restart() = 0", R"(system("handler -c telnet &") = 0)",
                     "sal_ssh_sshdEnable_set(0) = 0", "sal_sys_inetdConfig_set() = 0",
                     "sal_inetd_restart() = 0", R"(sal_util_process_kill("/bin/sshd:") = 0)"}));
    EXPECT_EQ(device.access.telnet_connections, 0);
    EXPECT_EQ(device.access.ssh_connections, 0);
    EXPECT_FALSE(device.access.running.telnet || device.access.running.ssh);
}

TEST_F(Access, everything_on_closes_no_connection_and_kills_no_process) {
    device.access.ssh_connections = 1;
    EXPECT_EQ(set(R"({"gui": true, "telnet": true, "ssh": true})"), 0);
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_sys_httpEnable_set(1) = 0", "sal_sys_httpsEnable_set(1) = 0",
                     "sal_sys_telnetdEnable_set(1) = 0", "sal_sys_inetdConfig_set() = 0",
                     "sal_inetd_restart() = 0", "sal_ssh_sshdEnable_set(1) = 0",
                     "sal_sys_inetdConfig_set() = 0", "sal_inetd_restart() = 0"}));
    EXPECT_EQ(device.access.ssh_connections, 1);
    EXPECT_TRUE(device.access.running.telnet && device.access.running.ssh);
}

TEST_F(Access, a_state_that_the_switch_has_already_is_written_again) {
    EXPECT_EQ(set(R"({"telnet": false})"), 0);
    EXPECT_EQ(
        calls(), (Lines{
                     "sal_sys_telnetdEnable_set", "sal_sys_inetdConfig_set", "sal_inetd_restart",
                     "system"}));
}

TEST_F(Access, telnet_off_with_a_failing_restart_closes_no_connection) {
    fail("sal_inetd_restart", 77);
    EXPECT_EQ(set(R"({"telnet": false, "ssh": false})"), 77);
    EXPECT_FALSE(called("system"));
    EXPECT_FALSE(called("sal_ssh_sshdEnable_set"));
    EXPECT_EQ(recorded(), Codes{77});
}

TEST_F(Access, each_failing_call_ends_the_apply) {
    auto runs = fail_each_call(
        [](sim::Board&) {}, [](cJSON*) { return vxc_access_set(Json(everything_off)); });
    EXPECT_EQ(
        outcomes(runs), (Lines{
                            "sal_sys_httpEnable_set #1: 77 [77], then nothing",
                            "sal_sys_httpsEnable_set #1: 77 [77], then nothing",
                            "sal_sys_telnetdEnable_set #1: 77 [77], then nothing",
                            "sal_sys_inetdConfig_set #1: 77 [77], then nothing",
                            "sal_inetd_restart #1: 77 [77], then nothing",
                            "sal_ssh_sshdEnable_set #1: 77 [77], then nothing",
                            "sal_sys_inetdConfig_set #2: 77 [77], then nothing",
                            "sal_inetd_restart #2: 77 [77], then nothing",
                            "sal_util_process_kill #1: 77 [77], then nothing",
                        }));
}
