// Section dispatch: what is called, in which order, and what follows.
#include "core/dispatch.h"

#include <regex>

#include "base/debug.h"
#include "tests/core/on_cloud.h"

namespace {

class Dispatch : public OnCloud {
  protected:
    void apply(const std::string& text) {
        Json document(text);
        vxc_set(document);
    }
};

std::vector<std::string> keys_of(const cJSON* object) {
    std::vector<std::string> keys;
    for (const cJSON* member = getJsonChild(object); member; member = getJsonNext(member))
        keys.push_back(member->string);
    return keys;
}

} // namespace

TEST_F(Dispatch, report_has_its_sections_in_a_fixed_order) {
    Json document(createJsonObject());
    vxc_get(document);
    Lines top = keys_of(document);
    EXPECT_EQ(top, (Lines{"system", "acl", "qos", "vlan", "lldp"}));
    Lines system = keys_of(document["system"]);
    ASSERT_GE(system.size(), 3u);
    EXPECT_EQ(system[0], "jumbo_frames");
    EXPECT_EQ(system[1], "cloud");
    EXPECT_TRUE(std::find(system.begin(), system.end(), "summary_info") != system.end());
}

TEST_F(Dispatch, frame_size_builder_is_the_only_one_that_is_not_announced) {
    debug_flag = 1;
    Json document(createJsonObject());
    vxc_get(document);
    std::string shown = raw_console();
    EXPECT_EQ(shown.find("vxc_jumbo_frmGet"), std::string::npos);
    EXPECT_TRUE(shown.starts_with("api_checkin: before vxc_system_get pid "));
    EXPECT_TRUE(shown.ends_with("Done and leave\n"));
}

TEST_F(Dispatch, builders_are_announced_in_a_fixed_order) {
    const Lines order = {
        "vxc_system_get",
        "vxc_cloud_get",
        "vxc_firmware_get",
        "vxc_summary_get",
        "vxc_management_vlan_get",
        "vxc_uplink_port_get",
        "vxc_reboot_get",
        "vxc_dark_mode_get",
        "vxc_port_get",
        "vxc_snmp_get",
        "vxc_stp_get",
        "vxc_igmp_get",
        "vxc_mirror_get",
        "vxc_trunk_get",
        "vxc_access_get",
        "vxc_acl_get",
        "vxc_qos_get",
        "vxc_voice_vlan_get",
        "vxc_lldp_get",
        "vxc_diagnostic_get"};
    debug_flag = 1;
    Json document(createJsonObject());
    vxc_get(document);
    Lines announced;
    for (const std::string& line : core_console()) {
        std::smatch name;
        if (std::regex_match(line, name, std::regex("api_checkin: before (\\w+) pid PID")))
            announced.push_back(name[1]);
    }
    EXPECT_EQ(announced, order);
}

TEST_F(Dispatch, failing_builder_is_logged_and_the_next_one_runs) {
    fail("sal_sys_macAddr_get", 5);
    fail("sal_switch_maxFrameSize_get", 6);
    Json document(createJsonObject());
    vxc_get(document);
    EXPECT_EQ(log(), (Lines{"summary info get fail"}));
    EXPECT_EQ(recorded(), (Codes{6, 5}));
    Lines top = keys_of(document);
    EXPECT_TRUE(std::find(top.begin(), top.end(), "vlan") != top.end());
}

TEST_F(Dispatch, system_getter_returns_0_whatever_fails) {
    fail("sal_sys_macAddr_get", 5);
    Json document(createJsonObject());
    EXPECT_EQ(vxc_system_get(document), 0);
}

TEST_F(Dispatch, empty_system_object_raises_the_flag_and_saves_nothing) {
    apply(R"({"system": {}})");
    EXPECT_EQ(setting_from_cloud, 1u);
    EXPECT_TRUE(trace().empty());
}

TEST_F(Dispatch, document_without_sections_leaves_the_flag) {
    apply(R"({"weather": {}})");
    apply("[1, 2]");
    apply("3");
    EXPECT_EQ(setting_from_cloud, 0u);
    EXPECT_TRUE(trace().empty());
}

TEST_F(Dispatch, frame_size_out_of_range_counts_as_applied_and_is_saved) {
    apply(R"({"system": {"jumbo_frames": {"size": 9217}}})");
    EXPECT_EQ(trace(), (Lines{"cmd_conf_startupConfig_save() = 0"}));
    EXPECT_EQ(recorded(), (Codes{28}));
    EXPECT_TRUE(log().empty());
}

TEST_F(Dispatch, refused_cloud_section_counts_as_applied_and_is_saved) {
    apply(R"({"system": {"cloud": {"checkin_interval": 1}}})");
    EXPECT_EQ(trace(), (Lines{"cmd_conf_startupConfig_save() = 0"}));
}

TEST_F(Dispatch, document_whose_every_section_failed_is_not_saved) {
    apply(R"({"system": {"summary_info": {"device_name": "1st"}}})");
    EXPECT_EQ(setting_from_cloud, 1u);
    EXPECT_EQ(log(), (Lines{"summary info set fail"}));
    EXPECT_FALSE(called("cmd_conf_startupConfig_save"));
}

TEST_F(Dispatch, failed_section_does_not_stop_the_next) {
    fail("sal_sys_systemName_set", 7);
    apply(R"({"system": {"summary_info": {"device_name": "New"}, "cloud": {"checkin_interval": 61},
                         "jumbo_frames": {"size": 2000}}})");
    EXPECT_EQ(
        calls(), (Lines{
                     "sal_switch_maxFrameSize_set", "sal_vxcloud_checkin_interval_set",
                     "sal_vxcloud_checkin_interval_get", "sal_sys_systemName_set", "sys_log",
                     "cmd_conf_startupConfig_save"}));
}

TEST_F(Dispatch, save_is_announced_and_its_result_not_looked_at) {
    fail("cmd_conf_startupConfig_save", 5);
    debug_flag = 1;
    apply(R"({"system": {"jumbo_frames": {"size": 2000}}})");
    EXPECT_EQ(raw_console(), "conf_startupConfig_save\n");
    EXPECT_TRUE(recorded().empty());
}

TEST_F(Dispatch, top_level_vlan_means_the_voice_vlan) {
    apply(R"({"vlan": {"voice": {"mode": 0}}})");
    EXPECT_EQ(setting_from_cloud, 1u);
    ASSERT_FALSE(calls().empty());
    EXPECT_NE(calls().front().find("oice"), std::string::npos) << calls().front();
}

TEST_F(Dispatch, failed_top_level_section_raises_the_flag_all_the_same) {
    board.faults.plan({sim::Edge::platform, "", 1, false, 77, 0});
    apply(R"({"vlan": {"voice": {"mode": 0}}})");
    EXPECT_EQ(setting_from_cloud, 1u);
    EXPECT_EQ(log(), (Lines{"Voice Vlan set fail"}));
    EXPECT_FALSE(called("cmd_conf_startupConfig_save"));
}

TEST_F(Dispatch, sections_are_applied_in_a_fixed_order_and_fail_with_texts_of_their_own) {
    board.faults.plan({sim::Edge::platform, "", 1, true, 77, 0});
    apply(R"({
        "system": {
            "reboot": true, "device_access": {"gui": true}, "port_mirror": [{"id": 1}],
            "igmp": {"enable": true}, "stp": {"enable": true}, "snmp": {"enable": true},
            "ports": [{"id": "1", "enable": true}], "dark_mode": true,
            "summary_info": {"device_name": "New"}},
        "lldp": {"enable": true}, "vlan": {"voice": {"mode": 0}}, "qos": {"mode": 1}})");
    Lines seen;
    for (const std::string& line : trace()) {
        if (line.starts_with("sys_log"))
            seen.push_back(line.substr(16, line.find("\")") - 16));
        for (const char* call : {"sal_swctrl_poe_led_mode_get", "cmd_conf_s", "sal_sys_reboot"})
            if (line.starts_with(call))
                seen.push_back(call);
    }
    EXPECT_EQ(
        seen, (Lines{
                  "Qos set fail", "Voice Vlan set fail", "LLDP set fail", "summary info set fail",
                  "sal_swctrl_poe_led_mode_get", "port set fail", "snmp set fail", "stp set fail",
                  "igmp set fail", "mirror set fail", "access set fail", "cmd_conf_s",
                  "sal_sys_reboot"}));
}

TEST_F(Dispatch, firmware_comes_before_the_reboot) {
    debug_flag = 1;
    apply(R"({"system": {"reboot": true, "firmware": {}}})");
    std::string shown = raw_console();
    ASSERT_NE(shown.find("vxc_firmware_set\n"), std::string::npos);
    EXPECT_LT(shown.find("vxc_firmware_set\n"), shown.find("VX_cloud : reboot\n"));
    EXPECT_TRUE(called("sal_sys_reboot"));
}
