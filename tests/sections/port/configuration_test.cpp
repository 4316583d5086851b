// Port configuration: which key leads to which calls, in which order, and what stops it.
#include "sections/port/configuration.h"

#include <algorithm>
#include <map>

#include "base/debug.h"
#include "base/errors.h"
#include "base/port_id.h"
#include "base/state.h"
#include "platform/poe.h"
#include "sections/port/report.h"
#include "sim/instruments/codes.h"
#include "tests/sections/acl/support.h"
#include "tests/sections/odd_switch.h"
#include "tests/support/captured_stdout.h"
#include "tests/support/sized_board.h"

namespace {

int apply(const std::string& ports) {
    Json document(R"({"ports":)" + ports + "}");
    return vxc_port_set(document);
}

// One element with an id and further members.
std::string element(const std::string& id, const std::string& members) {
    return R"([{"id":")" + id + "\"" + (members.empty() ? "" : "," + members) + "}]";
}

// What frames every run: the QoS mode, the voice VLAN, the sweep of empty VLANs.
bool is_frame(const std::string& line) {
    for (const char* name :
         {"sal_qos_mode_", "sal_vlan_voiceV", "sal_vlan_operEntryNum", "sal_vlan_adminEntrySort"})
        if (line.starts_with(name))
            return true;
    return false;
}

Lines without_frame(const Lines& lines) {
    Lines kept;
    for (const std::string& line : lines) {
        if (line.starts_with("sal_vlan_adminEntryExist_get"))
            break;
        if (!is_frame(line))
            kept.push_back(line);
    }
    return kept;
}

// An odd switch takes what the trace says was refused.
Lines without_results(Lines lines) {
    for (std::string& line : lines)
        line.erase(std::min(line.find(" = "), line.size()));
    return lines;
}

class PortConfig : public OnBoardWithLists {
  protected:
    PortConfig() { device.qos.on = true; }

    // The calls that one element leads to.
    Lines body(const std::string& id, const std::string& members, int result = 0) {
        forget();
        EXPECT_EQ(apply(element(id, members)), result);
        return without_frame(trace());
    }
    void plug(int port, bool in) {
        device.chip.change(
            [&](sim::ChipState& s) { s.ports[static_cast<std::size_t>(port)].plugged = in; });
    }
    sim::Port& port(int p) { return device.ports.port[static_cast<std::size_t>(p)]; }
    sim::PoePort& poe(int p) { return device.poe.ports[static_cast<std::size_t>(p)]; }
    static Lines marked() {
        Lines ports;
        for (int p = 0; p < PORT_RESET_FLAGS; ++p)
            if (gCattr.port_reset_flags[p])
                ports.push_back(std::to_string(p));
        return ports;
    }
};

} // namespace

// ---- The frame

TEST_F(PortConfig, without_ports_it_is_498_and_nothing_is_recorded_or_called) {
    Json empty("{}");
    EXPECT_EQ(vxc_port_set(empty), 498);
    EXPECT_EQ(vxc_port_set(nullptr), 498);
    EXPECT_EQ(trace(), Lines{});
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_EQ(log(), Lines{});
}

TEST_F(PortConfig, qos_that_is_off_is_on_in_between) {
    device.qos.on = false;
    EXPECT_EQ(apply(element("1", R"("qos":{"cos_value":3})")), 0);
    EXPECT_EQ(
        trace(),
        (Lines{
            "sal_qos_mode_get() = 0", "sal_qos_mode_set(1) = 0", "sal_vlan_voiceVid_get() = 0",
            "sal_vlan_voiceVlanState_get() = 0", "sal_qos_portCos_set(0, 3) = 0",
            "sal_qos_mode_set(0) = 0", "sal_vlan_adminEntryExist_get() = 0",
            "sal_vlan_adminEntry_get(1) = 0", "sys_util_bitmaskIsClear_ret(0, 28) = 0"}));
    EXPECT_FALSE(device.qos.on);
    EXPECT_EQ(device.qos.ports[0].cos, 3u);
}

TEST_F(PortConfig, qos_that_is_on_is_left_alone) {
    EXPECT_EQ(apply("[]"), 0);
    EXPECT_EQ(
        calls(), (Lines{
                     "sal_qos_mode_get", "sal_vlan_voiceVid_get", "sal_vlan_voiceVlanState_get",
                     "sal_vlan_adminEntryExist_get", "sal_vlan_adminEntry_get",
                     "sys_util_bitmaskIsClear_ret"}));
}

TEST_F(PortConfig, a_failing_return_to_qos_off_is_an_error_and_skips_the_sweep) {
    device.qos.on = false;
    fail("sal_qos_mode_set", 12, 2);
    EXPECT_EQ(apply("[]"), 12);
    EXPECT_EQ(recorded(), Codes{12});
    EXPECT_FALSE(called("sal_vlan_adminEntryExist_get"));
}

TEST_F(PortConfig, a_failing_sweep_is_nobodys_error) {
    fail("sal_vlan_adminEntryExist_get", 12);
    EXPECT_EQ(apply("[]"), 0);
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(PortConfig, vlans_without_members_go_once_at_the_end) {
    EXPECT_EQ(
        apply(R"([{"id":"1","untagged_vlans":"10"},{"id":"2","untagged_vlans":"10"},)"
              R"({"id":"1","untagged_vlans":"1"},{"id":"2","untagged_vlans":"1"}])"),
        0);
    EXPECT_FALSE(device.vlans.has(10));
    Lines names = calls();
    EXPECT_EQ(std::count(names.begin(), names.end(), "sal_vlan_adminEntryExist_get"), 1);
}

TEST_F(PortConfig, ports_that_are_no_array_have_no_elements) {
    EXPECT_EQ(apply(R"("1")"), 0);
    EXPECT_EQ(without_frame(trace()), Lines{});
    EXPECT_EQ(recorded(), Codes{});
}

// ---- The voice VLAN's members

TEST_F(PortConfig, voice_vlan_members_are_looked_up_until_found) {
    device.voice_vlan.mode = 1;
    device.voice_vlan.vid = 20;
    for (int vid : {10, 20, 30})
        device.vlans.table[vid].name = "v";
    sim::set_bit(device.vlans.table[20].tagged, 3, true);
    sim::set_bit(device.vlans.table[20].untagged, 27, true);
    EXPECT_EQ(
        apply(R"([{"id":"4","voice_vlan":{"enable":true,"cos_mode":1}},)"
              R"({"id":"trunk8","voice_vlan":{"enable":true,"cos_mode":1}},)"
              R"({"id":"5","voice_vlan":{"enable":true,"cos_mode":1}}])"),
        0);
    Lines lines = trace();
    lines.resize(9);
    EXPECT_EQ(
        lines,
        (Lines{
            "sal_qos_mode_get() = 0", "sal_vlan_voiceVid_get() = 0",
            "sal_vlan_voiceVlanState_get() = 0", "sal_vlan_operEntryNum_get() = 0",
            "sal_vlan_adminEntrySort_get(0) = 0", "sal_vlan_adminEntrySort_get(1) = 0",
            "sal_vlan_adminEntrySort_get(2) = 0", "sal_vlan_portVoiceVlanEnable_set(4, 1) = 0",
            "sal_vlan_portVoiceVlancosMode_set(4, 1) = 0"}));
}

TEST(PortConfigSizes, members_of_the_voice_vlan_are_found_up_to_the_last_port) {
    SizedBoard sized(96);
    sized.device.voice_vlan.mode = 1;
    sized.device.voice_vlan.vid = 20;
    sized.device.vlans.table[20].name = "voice";
    for (int port : {0, 31, 32, 63, 64, 95})
        sim::set_bit(sized.device.vlans.table[20].tagged, port, true);
    std::string set;
    for (int port = 0; port < 96; ++port) {
        char id[PORT_ID_SIZE];
        format_port_id(port, id);
        Json document(
            R"({"ports":[{"id":")" + std::string(id) + R"(","voice_vlan":{"cos_mode":1}}]})");
        sized.board.trace.clear();
        EXPECT_EQ(vxc_port_set(document), 0);
        for (const std::string& line : sized.board.trace.lines())
            if (line.starts_with("sal_vlan_portVoiceVlancosMode_set"))
                set += std::to_string(port) + " ";
    }
    std::string expected;
    for (int port = 0; port < 96; ++port)
        if (port != 0 && port != 31 && port != 32 && port != 63 && port != 64 && port != 95)
            expected += std::to_string(port) + " ";
    EXPECT_EQ(set, expected);
}

TEST_F(PortConfig, an_entry_that_cannot_be_read_is_skipped) {
    device.voice_vlan.mode = 1;
    device.voice_vlan.vid = 20;
    device.vlans.table[20].name = "v";
    sim::set_bit(device.vlans.table[20].tagged, 3, true);
    fail("sal_vlan_adminEntrySort_get", 12, 1);
    EXPECT_EQ(apply(element("4", R"("voice_vlan":{"enable":true})")), 0);
    EXPECT_FALSE(called("sal_vlan_portVoiceVlanEnable_set"));
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(PortConfig, a_voice_vlan_that_does_not_exist_has_no_members) {
    device.voice_vlan.mode = 1;
    device.voice_vlan.vid = 20;
    for (int vid : {19, 21, 4094}) {
        device.vlans.table[vid].name = "v";
        sim::set_bit(device.vlans.table[vid].tagged, 3, true);
    }
    EXPECT_EQ(
        body("4", R"("voice_vlan":{"enable":true})"),
        Lines{"sal_vlan_portVoiceVlanEnable_set(3, 1) = 0"});
}

TEST_F(PortConfig, while_the_voice_vlan_is_off_it_has_no_members) {
    device.voice_vlan.vid = 20;
    device.vlans.table[20].name = "v";
    sim::set_bit(device.vlans.table[20].tagged, 3, true);
    EXPECT_EQ(
        body("4", R"("voice_vlan":{"enable":true})"),
        Lines{"sal_vlan_portVoiceVlanEnable_set(3, 1) = 0"});
    EXPECT_FALSE(called("sal_vlan_operEntryNum_get"));
}

// ---- Ids

TEST_F(PortConfig, ids_of_every_form_find_their_port) {
    const std::map<std::string, int> ports = {
        {"1", 0},       {"18", 17}, {"28", 27}, {"F1", 18}, {"F2", 28 - 9},  {"trunk1", 20},
        {"trunk8", 27}, {"+3", 2},  {" 3", 2},  {"3rd", 2}, {"trunk1F", 20},
    };
    for (const auto& [id, p] : ports) {
        EXPECT_EQ(
            body(id, R"("isolation":false)"),
            Lines{"sal_port_protected_set(" + std::to_string(p) + ", 0) = 0"})
            << id;
        EXPECT_EQ(recorded(), Codes{}) << id;
    }
}

TEST_F(PortConfig, ids_of_no_port_are_recorded_and_skipped) {
    debug_flag = 1;
    for (const char* id :
         {"0", "trunk9", "29", "-1", "Fx", "F", "trunk", "trunkF1", "F1trunk", "xtrunk1", "xF1",
          "x", "", "F-40", "99999999999", "trunk2147483647", "-2147483648"}) {
        forget();
        EXPECT_EQ(
            apply(R"([{"id":")" + std::string(id) + R"(","enable":false},{"id":"2","pvid":1}])"), 0)
            << id;
        EXPECT_EQ(recorded(), Codes{19}) << id;
        EXPECT_EQ(without_frame(trace()), Lines{"sal_vlan_portAdminPvid_set(1, 1) = 0"}) << id;
        EXPECT_EQ(raw_console(), "\nid => 28 \n") << id;
    }
}

TEST_F(PortConfig, an_element_without_id_is_recorded_without_a_print) {
    debug_flag = 1;
    EXPECT_EQ(apply(R"([{"enable":false},{"id":3,"enable":false},7,null,{"id":"2","pvid":1}])"), 0);
    EXPECT_EQ(recorded(), (Codes{19, 19, 19, 19}));
    EXPECT_EQ(without_frame(trace()), Lines{"sal_vlan_portAdminPvid_set(1, 1) = 0"});
    EXPECT_EQ(raw_console(), "");
}

// ---- All keys

namespace {

// Every key, in an order that is not the one of application.
const char* const everything =
    R"("acl":{"ipv4":"","mac":""},"voice_vlan":{"cos_mode":1,"enable":true},)"
    R"("qos":{"trust":true,"cos_value":5},"flow_control":true,"link_speed_mode":2,)"
    R"("rate_limit":{"enable_rx":true,"enable_tx":true,"rx_limit_kbps":200,)"
    R"("tx_limit_kbps":100},"untagged_vlans":"1","tagged_vlans":"5",)"
    R"("poe":{"enable":true,"power_limit_user":10,"power_limit_type":1,"priority":2},)"
    R"("pvid":1,"isolation":true,"reset":true,"enable":true)";

} // namespace

TEST_F(PortConfig, keys_are_applied_in_their_order_and_not_in_the_documents) {
    CapturedStdout printed;
    EXPECT_EQ(apply(element("3", everything)), 0);
    EXPECT_EQ(printed.text(), "\n\nid 2bindMacAcldata bindIpv4Acldata ");
    EXPECT_EQ(
        without_frame(trace()), (Lines{
                                    "sal_port_enable_set(2, 1) = 0",
                                    "sal_port_enable_set(2, 0) = 0",
                                    "sleep(1) = 0",
                                    "sal_port_enable_set(2, 1) = 0",
                                    "sal_poe_port_config_query_get(2) = 0",
                                    "sal_poe_port_reset_set(2, 1) = 0",
                                    "sal_port_protected_set(2, 1) = 0",
                                    "sal_vlan_portAdminPvid_set(2, 1) = 0",
                                    "sal_poe_port_priority_config_set(2, 2) = 0",
                                    "sal_poe_power_th_type_config_set(2, 2) = 0",
                                    "sal_poe_port_classification_type_config_set(2, 0) = 0",
                                    "sal_poe_port_maxpower_config_set(2, 50) = 0",
                                    "sal_poe_port_pse_enable_set(2, 1) = 0",
                                    "sys_util_str2Vlanmask(\"5\") = 0",
                                    "sal_vlan_portAdminVlanmask_get(2, 3) = 0",
                                    "sal_vlan_portAdminVlanmask_get(2, 2) = 0",
                                    "sys_util_bitmaskIsClear_ret(0, 4096) = 1",
                                    "sal_vlan_adminEntryExist_ret(5) = 0",
                                    "sal_vlan_nameStr_get(5, \"VLAN\") = 0",
                                    "sal_vlan_adminEntry_create(5, \"VLAN0005\") = 0",
                                    "sys_util_bitmaskIsClear_ret(0, 4096) = 0",
                                    "sal_vlan_portAdminVlanmask_add(2, 2, {5}) = 0",
                                    "sys_util_str2Vlanmask(\"1\") = 0",
                                    "sal_vlan_portAdminVlanmask_get(2, 3) = 0",
                                    "sal_vlan_portAdminVlanmask_get(2, 2) = 0",
                                    "sys_util_bitmaskIsClear_ret(0, 4096) = 0",
                                    "sal_vlan_portAdminVlanmask_add(2, 0, {1}) = 0",
                                    "sal_vlan_adminEntryExist_ret(1) = 1",
                                    "sys_util_bitmaskIsClear_ret(0, 4096) = 0",
                                    "sal_vlan_portAdminVlanmask_add(2, 3, {1}) = 0",
                                    "sys_trunk_portRole_ret(2) = 0",
                                    "sal_rate_egrBandwidthCtrlRate_set(2, 100) = 0",
                                    "sal_rate_igrBandwidthCtrlRate_set(2, 200) = 0",
                                    "sal_rate_egrBandwidthCtrlEnable_set(2, 1) = 0",
                                    "sal_rate_igrBandwidthCtrlEnable_set(2, 1) = 0",
                                    "sys_port_lPortMedia_ret(2) = 0",
                                    "sal_port_speed_set(2, 0, 1) = 0",
                                    "sal_port_duplex_set(2, 0, 0) = 0",
                                    "sal_port_flowCtrl_set(2, 1) = 0",
                                    "sal_qos_portCos_set(2, 5) = 0",
                                    "sal_qos_portTrustState_set(2, 1) = 0",
                                    "sal_vlan_portVoiceVlanEnable_set(2, 1) = 0",
                                    "sal_vlan_portVoiceVlancosMode_set(2, 1) = 0",
                                    "sal_acl_entry_portBinding_get() = 0",
                                    "sal_acl_entry_unbind(1, {2}) = 0",
                                    "sal_acl_entry_unbind(2, {2}) = 0",
                                }));
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(PortConfig, a_port_without_keys_is_not_touched) {
    EXPECT_EQ(body("3", ""), Lines{});
    EXPECT_EQ(body("3", R"("unknown":1,"status":0,"statistics":{})"), Lines{});
}

TEST_F(PortConfig, a_key_is_written_even_when_the_switch_holds_its_value) {
    EXPECT_EQ(
        body("3", R"("enable":true,"isolation":false,"pvid":1,"flow_control":false)"),
        (Lines{
            "sal_port_enable_set(2, 1) = 0", "sal_port_protected_set(2, 0) = 0",
            "sal_vlan_portAdminPvid_set(2, 1) = 0", "sal_port_flowCtrl_set(2, 0) = 0"}));
}

TEST_F(PortConfig, what_was_applied_before_a_failure_stays) {
    EXPECT_EQ(
        apply(R"([{"id":"1","isolation":true},{"id":"2","isolation":true,"pvid":99,)"
              R"("flow_control":true},{"id":"3","isolation":true}])"),
        sim::code_no_vlan);
    EXPECT_TRUE(port(0).isolated);
    EXPECT_TRUE(port(1).isolated);
    EXPECT_FALSE(port(1).flow_control);
    EXPECT_FALSE(port(2).isolated);
    EXPECT_EQ(recorded(), Codes{sim::code_no_vlan});
    EXPECT_FALSE(called("sal_vlan_adminEntryExist_get"));
}

// ---- "reset"

TEST_F(PortConfig, reset_of_an_enabled_port_bounces_it_and_its_power) {
    EXPECT_EQ(
        body("1", R"("reset":true)"),
        (Lines{
            "sal_port_enable_get(0) = 0", "sal_port_enable_set(0, 0) = 0", "sleep(1) = 0",
            "sal_port_enable_set(0, 1) = 0", "sal_poe_port_config_query_get(0) = 0",
            "sal_poe_port_reset_set(0, 1) = 0"}));
    EXPECT_EQ(marked(), Lines{"0"});
    EXPECT_EQ(poe(0).resets, 1);
}

TEST_F(PortConfig, reset_with_enable_false_still_resets_power) {
    EXPECT_EQ(
        body("1", R"("reset":true,"enable":false)"),
        (Lines{
            "sal_port_enable_set(0, 0) = 0", "sal_poe_port_config_query_get(0) = 0",
            "sal_poe_port_reset_set(0, 1) = 0"}));
    EXPECT_EQ(marked(), Lines{"0"});
}

TEST_F(PortConfig, reset_of_a_disabled_port_without_power_does_and_marks_nothing) {
    port(0).enable = false;
    poe(0).enable = false;
    EXPECT_EQ(
        body("1", R"("reset":true)"),
        (Lines{"sal_port_enable_get(0) = 0", "sal_poe_port_config_query_get(0) = 0"}));
    EXPECT_EQ(marked(), Lines{});
}

TEST_F(PortConfig, a_reset_of_power_that_fails_is_marked_all_the_same) {
    fail("sal_poe_port_reset_set", 41);
    EXPECT_EQ(apply(R"([{"id":"1","enable":false,"reset":true}])"), 0);
    EXPECT_EQ(marked(), Lines{"0"});
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(PortConfig, reset_false_does_nothing) {
    EXPECT_EQ(body("1", R"("reset":false)"), Lines{});
    EXPECT_EQ(marked(), Lines{});
}

TEST_F(PortConfig, reset_beyond_the_poe_ports_is_the_bounce_alone) {
    EXPECT_EQ(
        body("trunk5", R"("reset":true)"),
        (Lines{
            "sal_port_enable_get(24) = 0", "sal_port_enable_set(24, 0) = 0", "sleep(1) = 0",
            "sal_port_enable_set(24, 1) = 0"}));
    EXPECT_EQ(marked(), Lines{"24"});
    EXPECT_EQ(body("trunk4", R"("reset":true)").back(), "sal_poe_port_reset_set(23, 1) = 0");
}

TEST(PortConfigSizes, reset_of_a_port_beyond_the_marks_is_harmless) {
    SizedBoard sized(96);
    EXPECT_EQ(apply(element("trunk8", R"("reset":true)")), 0);
    EXPECT_FALSE(std::any_of(
        gCattr.port_reset_flags, gCattr.port_reset_flags + PORT_RESET_FLAGS,
        [](std::uint32_t flag) { return flag != 0; }));
}

// ---- "poe"

TEST_F(PortConfig, power_limit_user_of_30_writes_150) {
    EXPECT_EQ(
        body("1", R"("poe":{"power_limit_user":30})"),
        Lines{"sal_poe_port_maxpower_config_set(0, 150) = 0"});
}

TEST_F(PortConfig, power_limit_user_is_taken_modulo_256) {
    EXPECT_EQ(
        body("1", R"("poe":{"power_limit_user":256})"),
        Lines{"sal_poe_port_maxpower_config_set(0, 0) = 0"});
    EXPECT_EQ(
        body("1", R"("poe":{"power_limit_user":286})"),
        Lines{"sal_poe_port_maxpower_config_set(0, 150) = 0"});
}

TEST_F(PortConfig, power_limit_user_above_30_ends_the_apply_and_restores_qos) {
    device.qos.on = false;
    for (const char* limit : {"31", "287", "255", "-1"}) {
        forget();
        EXPECT_EQ(
            apply(
                R"([{"id":"1","poe":{"priority":1,"power_limit_user":)" + std::string(limit) +
                R"(,"enable":false},"flow_control":true},{"id":"2","flow_control":true}])"),
            -1);
        EXPECT_EQ(recorded(), Codes{-1});
        EXPECT_EQ(without_frame(trace()), Lines{"sal_poe_port_priority_config_set(0, 1) = 0"});
        EXPECT_EQ(trace().back(), "sal_qos_mode_set(0) = 0");
        EXPECT_FALSE(device.qos.on);
    }
}

TEST_F(PortConfig, power_limit_user_above_30_leaves_qos_that_was_on) {
    EXPECT_EQ(apply(element("1", R"("poe":{"power_limit_user":31})")), -1);
    EXPECT_FALSE(called("sal_qos_mode_set"));
    EXPECT_TRUE(device.qos.on);
}

TEST_F(PortConfig, qos_restore_of_a_refused_limit_is_not_watched) {
    device.qos.on = false;
    fail("sal_qos_mode_set", 12, 2);
    EXPECT_EQ(apply(element("1", R"("poe":{"power_limit_user":31})")), -1);
    EXPECT_EQ(recorded(), Codes{-1});
}

TEST_F(PortConfig, power_limit_type_1_is_the_users_limit_and_leaves_the_class_out) {
    EXPECT_EQ(
        body("1", R"("poe":{"power_limit_type":1})"),
        (Lines{
            "sal_poe_power_th_type_config_set(0, 2) = 0",
            "sal_poe_port_classification_type_config_set(0, 0) = 0"}));
    EXPECT_EQ(
        body("1", R"("poe":{"power_limit_type":0})"),
        (Lines{
            "sal_poe_power_th_type_config_set(0, 1) = 0",
            "sal_poe_port_classification_type_config_set(0, 1) = 0"}));
    EXPECT_EQ(
        body("1", R"("poe":{"power_limit_type":257})"),
        (Lines{
            "sal_poe_power_th_type_config_set(0, 2) = 0",
            "sal_poe_port_classification_type_config_set(0, 0) = 0"}));
    EXPECT_EQ(
        body("1", R"("poe":{"power_limit_type":255})", sim::code_bad_value),
        Lines{"sal_poe_power_th_type_config_set(0, 0) = 3"});
}

// For the day when the library knows more kinds of limit than two.
TEST_F(PortConfig, every_power_limit_type_but_1_counts_the_class_in) {
    OddSwitch odd;
    odd.takes_any_limit = true;
    const std::map<int, int> written = {{-1, 0}, {2, 3}, {3, 4}, {254, 255}, {258, 3}, {511, 0}};
    for (auto [type, limit] : written)
        EXPECT_EQ(
            without_results(
                body("1", R"("poe":{"power_limit_type":)" + std::to_string(type) + "}")),
            (Lines{
                "sal_poe_power_th_type_config_set(0, " + std::to_string(limit) + ")",
                "sal_poe_port_classification_type_config_set(0, 1)"}))
            << type;
    EXPECT_EQ(
        body("1", R"("poe":{"power_limit_type":1})").back(),
        "sal_poe_port_classification_type_config_set(0, 0) = 0");
}

TEST_F(PortConfig, poe_of_a_port_without_it_is_passed_over) {
    EXPECT_EQ(body("trunk5", R"("poe":{"power_limit_user":31,"enable":true})"), Lines{});
    EXPECT_EQ(
        body("trunk4", R"("poe":{"enable":false})"),
        Lines{"sal_poe_port_pse_enable_set(23, 0) = 0"});
}

// ---- VLANs

TEST_F(PortConfig, a_vlan_list_that_cannot_be_applied_is_nobodys_error) {
    EXPECT_EQ(
        body("1", R"("tagged_vlans":"x","untagged_vlans":"0","flow_control":true)"),
        (Lines{
            "sys_util_str2Vlanmask(\"x\") = 5", "sys_util_str2Vlanmask(\"0\") = 0",
            "sal_vlan_portAdminVlanmask_get(0, 3) = 0", "sal_vlan_portAdminVlanmask_get(0, 2) = 0",
            "sys_util_bitmaskIsClear_ret(0, 4096) = 0",
            "sal_vlan_portAdminVlanmask_add(0, 0, {1}) = 0",
            "sys_util_bitmaskIsClear_ret(0, 4096) = 0",
            "sal_vlan_portAdminVlanmask_add(0, 3, {0}) = 6", "sal_port_flowCtrl_set(0, 1) = 0"}));
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(PortConfig, vlan_lists_that_are_no_texts_are_passed_over) {
    EXPECT_EQ(body("1", R"("tagged_vlans":5,"untagged_vlans":null)"), Lines{});
}

// ---- "rate_limit"

TEST_F(PortConfig, rates_that_are_absent_open_a_limit_that_is_off) {
    EXPECT_EQ(
        body("1", R"("rate_limit":{})"),
        (Lines{
            "sys_trunk_portRole_ret(0) = 0", "sal_rate_egrBandwidthCtrlEnable_get(0) = 0",
            "sal_rate_egrBandwidthCtrlRate_set(0, 1000000) = 0",
            "sal_rate_igrBandwidthCtrlEnable_get(0) = 0",
            "sal_rate_igrBandwidthCtrlRate_set(0, 1000000) = 0"}));
}

TEST_F(PortConfig, rates_that_are_absent_leave_a_limit_that_is_on) {
    device.rates.ports[0] = {{true, 300}, {true, 400}};
    EXPECT_EQ(
        body("1", R"("rate_limit":{"enable_tx":true})"),
        (Lines{
            "sys_trunk_portRole_ret(0) = 0", "sal_rate_egrBandwidthCtrlEnable_get(0) = 0",
            "sal_rate_igrBandwidthCtrlEnable_get(0) = 0",
            "sal_rate_egrBandwidthCtrlEnable_set(0, 1) = 0"}));
}

TEST_F(PortConfig, a_rate_of_0_writes_nothing) {
    EXPECT_EQ(
        body("1", R"("rate_limit":{"tx_limit_kbps":0,"rx_limit_kbps":0,"enable_rx":false})"),
        (Lines{"sys_trunk_portRole_ret(0) = 0", "sal_rate_igrBandwidthCtrlEnable_set(0, 0) = 0"}));
}

TEST_F(PortConfig, rate_limits_are_for_ports_that_are_in_no_group_and_are_none) {
    device.chip.change([](sim::ChipState& s) {
        s.trunks[2] = {sim::ChipTrunkMode::lacp, {1u << 4, 0, 0}};
    });
    const std::string limit = R"("rate_limit":{"tx_limit_kbps":64})";
    EXPECT_EQ(body("trunk1", limit), Lines{});
    EXPECT_EQ(body("trunk8", limit), Lines{});
    EXPECT_EQ(body("5", limit), Lines{"sys_trunk_portRole_ret(4) = 1"});
    EXPECT_EQ(body("F2", limit).at(1), "sal_rate_egrBandwidthCtrlRate_set(19, 64) = 0");
}

// ---- "link_speed_mode"

namespace {

enum class Place { copper, fibre, fibre_10g, group };

struct SpeedCase {
    Place place;
    int code;
    Lines calls; // with P for the port
};

const std::string speed(int automatic, int value) {
    return "sal_port_speed_set(P, " + std::to_string(automatic) + ", " + std::to_string(value) +
           ") = 0";
}
const std::string duplex(int automatic, int value) {
    return "sal_port_duplex_set(P, " + std::to_string(automatic) + ", " + std::to_string(value) +
           ") = 0";
}
const std::string media(int type) {
    return "sal_port_10g_media_set(P, " + std::to_string(type) + ") = 0";
}

Lines operator+(Lines left, const Lines& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

const Lines fibre_port = {"sys_port_isLPort10G_ret(P) = 0"};
const Lines fibre_10g_port = {"sys_port_isLPort10G_ret(P) = 1"};
const Lines force_link = {
    "sal_port_port_fiberNwayForceLinkEnable_set(P, 0) = 0",
    "sal_port_port_fiberNwayForceLinkEnable_set(P, 1) = 0"};
const Lines bounce = {
    "sal_port_enable_get(P) = 0", "sal_port_enable_set(P, 0) = 0", "sleep(1) = 0",
    "sal_port_enable_set(P, 1) = 0"};

const SpeedCase speed_cases[] = {
    {Place::copper, 0, {speed(1, 5), duplex(1, 0)}},
    {Place::copper, 1, {duplex(0, 0), speed(0, 2)}},
    {Place::copper, 2, {speed(0, 1), duplex(0, 0)}},
    {Place::copper, 3, {speed(0, 1), duplex(0, 1)}},
    {Place::copper, 4, {speed(0, 0), duplex(0, 0)}},
    {Place::copper, 5, {speed(0, 0), duplex(0, 1)}},
    {Place::copper, 6, {speed(0, 4), duplex(0, 0)}},
    {Place::fibre, 0, fibre_port + Lines{speed(1, 5)}},
    {Place::fibre, 1, fibre_port + Lines{speed(0, 2)}},
    {Place::fibre, 2, fibre_port + Lines{speed(0, 1)}},
    {Place::fibre, 3, {}},
    {Place::fibre, 4, {}},
    {Place::fibre, 5, {}},
    {Place::fibre, 6, fibre_port},
    {Place::fibre_10g, 0,
     fibre_10g_port + Lines{"sal_10g_port_init(P) = 0", speed(1, 5)} + force_link + bounce},
    {Place::fibre_10g, 1, fibre_10g_port + Lines{speed(0, 2), media(2)} + force_link + bounce},
    {Place::fibre_10g, 2, fibre_10g_port},
    {Place::fibre_10g, 3, {}},
    {Place::fibre_10g, 4, {}},
    {Place::fibre_10g, 5, {}},
    {Place::fibre_10g, 6, fibre_10g_port + Lines{speed(0, 4), media(1)} + force_link + bounce},
    {Place::group, 0, {speed(1, 5), duplex(1, 0)}},
    {Place::group, 1, {speed(0, 2), duplex(0, 0)}},
    {Place::group, 2, {speed(0, 1), duplex(0, 0)}},
    {Place::group, 3, {}},
    {Place::group, 4, {speed(0, 0), duplex(0, 0)}},
    {Place::group, 5, {}},
    {Place::group, 6, Lines{speed(0, 4), media(1)} + bounce},
};

struct Spot {
    const char* id;
    int port;
};

Spot spot(Place place) {
    switch (place) {
    case Place::copper:
        return {"8", 7};
    case Place::group:
        return {"trunk3", 22};
    default:
        return {"F2", 19};
    }
}

std::string speed_mode(int code) { return R"("link_speed_mode":)" + std::to_string(code); }

} // namespace

TEST_F(PortConfig, each_speed_mode_leads_to_its_calls_on_each_kind_of_port) {
    port(7).ten_gigabit = true; // so that the mode is the port's to take
    for (const SpeedCase& c : speed_cases) {
        auto [id, p] = spot(c.place);
        port(p).ten_gigabit = c.place != Place::fibre;
        bool is_fibre = c.place == Place::fibre || c.place == Place::fibre_10g;
        Lines expected = {"sys_port_lPortMedia_ret(P) = " + std::string(is_fibre ? "1" : "0")};
        expected = expected + c.calls;
        for (std::string& line : expected)
            if (auto at = line.find("(P"); at != line.npos)
                line.replace(at + 1, 1, std::to_string(p));
        EXPECT_EQ(body(id, speed_mode(c.code)), expected)
            << static_cast<int>(c.place) << " " << c.code;
        EXPECT_EQ(recorded(), Codes{});
    }
}

TEST_F(PortConfig, a_group_of_fibre_goes_by_the_rules_of_fibre_first) {
    port(22).fibre = true;
    EXPECT_EQ(body("trunk3", speed_mode(3)), Lines{"sys_port_lPortMedia_ret(22) = 1"});
    EXPECT_EQ(
        body("trunk3", speed_mode(2)),
        (Lines{"sys_port_lPortMedia_ret(22) = 1", "sys_port_isLPort10G_ret(22) = 1"}));
    // Code 4 is for groups before it is for fibre.
    EXPECT_EQ(body("trunk3", speed_mode(4)).at(1), "sal_port_speed_set(22, 0, 0) = 0");
}

TEST_F(PortConfig, unknown_speed_modes_end_the_apply_and_leave_qos_on) {
    for (const char* code : {"7", "8", "-1", "-2147483648"}) {
        forget();
        device.qos.on = false;
        EXPECT_EQ(
            apply(
                R"([{"id":"1","isolation":true,"link_speed_mode":)" + std::string(code) +
                R"(,"flow_control":true},{"id":"2","isolation":true}])"),
            19);
        EXPECT_EQ(recorded(), Codes{19});
        EXPECT_EQ(without_frame(trace()), Lines{"sal_port_protected_set(0, 1) = 0"});
        EXPECT_TRUE(device.qos.on);
        EXPECT_FALSE(called("sal_vlan_adminEntryExist_get"));
    }
}

TEST_F(PortConfig, what_a_10_gigabit_port_refuses_is_for_the_console_only) {
    debug_flag = 1;
    for (const char* id : {"F1", "trunk1"}) {
        forget();
        fail("sal_port_speed_set", 12);
        fail("sal_port_10g_media_set", 12);
        EXPECT_EQ(apply(element(id, speed_mode(6))), 0);
        EXPECT_EQ(recorded(), Codes{});
        EXPECT_EQ(
            raw_console(), "sal_port_speed_set(id, speed)!=SYS_ERR_OK failed!!!!!\n"
                           "sal_port_10g_media_set(id,mdedia_10g_type ) failed!!!!!\n");
        EXPECT_TRUE(called("sleep"));
    }
}

TEST_F(PortConfig, a_disabled_10_gigabit_port_is_not_bounced) {
    port(18).enable = false;
    EXPECT_EQ(body("F1", speed_mode(1)).back(), "sal_port_enable_get(18) = 0");
    port(20).enable = false;
    EXPECT_EQ(body("trunk1", speed_mode(6)).back(), "sal_port_enable_get(20) = 0");
}

// ---- "qos", "voice_vlan", "acl"

TEST_F(PortConfig, texts_of_a_binding_are_passed_on_and_printed) {
    put_list("m", ACL_MAC);
    put_list("i", ACL_IPV4);
    CapturedStdout printed;
    EXPECT_EQ(apply(element("4", R"("acl":{"mac":"m","ipv4":"i"})")), 0);
    EXPECT_EQ(printed.text(), "\n\nid 3bindMacAcldata mbindIpv4Acldata i");
    EXPECT_EQ(bound(ACL_MAC, 3), "m");
    EXPECT_EQ(bound(ACL_IPV4, 3), "i");
}

TEST_F(PortConfig, a_binding_without_a_name_leaves_that_list_alone) {
    put_list("m", ACL_MAC);
    put_list("i", ACL_IPV4);
    bind(ACL_MAC, "m", 3);
    CapturedStdout printed;
    EXPECT_EQ(apply(element("4", R"("acl":{"ipv4":"i"})")), 0);
    EXPECT_EQ(printed.text(), "\n\nid 3bindMacAcldata (null)bindIpv4Acldata i");
    EXPECT_EQ(bound(ACL_MAC, 3), "m");
    EXPECT_EQ(bound(ACL_IPV4, 3), "i");
}

TEST_F(PortConfig, a_failing_binding_is_recorded_by_itself_and_ends_nothing) {
    fail("sal_acl_entry_portBinding_get", 12);
    CapturedStdout printed;
    EXPECT_EQ(apply(R"([{"id":"4","acl":{"mac":"x"}},{"id":"5","isolation":true}])"), 0);
    EXPECT_EQ(recorded(), Codes{12});
    EXPECT_TRUE(port(4).isolated);
}

TEST_F(PortConfig, a_flag_of_any_type_but_false_is_true) {
    for (const char* flag : {"true", "0", "5", "null", "\"\"", "\"false\"", "[]", "{}"})
        EXPECT_EQ(
            body("1", R"("isolation":)" + std::string(flag)),
            Lines{"sal_port_protected_set(0, 1) = 0"})
            << flag;
    EXPECT_EQ(
        body("1", R"("poe":{"enable":1},"qos":{"trust":1},"rate_limit":{"enable_rx":"yes"})")
            .size(),
        8u);
    EXPECT_TRUE(device.rates.ports[0].ingress.enable);
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(PortConfig, reset_of_a_port_that_is_enabled_by_any_true_flag_bounces_it) {
    EXPECT_EQ(
        body("trunk5", R"("reset":1,"enable":"on")"),
        (Lines{
            "sal_port_enable_set(24, 1) = 0", "sal_port_enable_set(24, 0) = 0", "sleep(1) = 0",
            "sal_port_enable_set(24, 1) = 0"}));
    EXPECT_EQ(marked(), Lines{"24"});
}

TEST_F(PortConfig, numbers_out_of_range_are_refused_by_the_switch) {
    EXPECT_EQ(body("1", R"("qos":{"cos_value":8})", 3), Lines{"sal_qos_portCos_set(0, 8) = 3"});
    EXPECT_EQ(
        body("1", R"("poe":{"priority":256})", 3),
        Lines{"sal_poe_port_priority_config_set(0, 256) = 3"});
}

// ---- Failures, one by one

namespace {

// What comes of a failing call. The sweep of empty VLANs is the sign of an apply that went to its
// end.
enum class Fate {
    ends,    // its code is returned and recorded, nothing else is called
    ignored, // neither returned nor recorded
    cut,     // as ignored, but what the call began is not gone on with
    noted,   // recorded by what made the call; the apply goes on
};

const std::map<std::string, Fate> fates = {
    {"sal_qos_mode_get", Fate::ends},
    {"sal_qos_mode_set", Fate::ends},
    {"sal_vlan_voiceVid_get", Fate::ends},
    {"sal_vlan_voiceVlanState_get", Fate::ends},
    {"sal_vlan_operEntryNum_get", Fate::ends},
    {"sal_vlan_adminEntrySort_get", Fate::ignored},
    {"sal_port_enable_set#1", Fate::ends},    // "enable"
    {"sal_port_enable_set#2", Fate::ignored}, // down
    {"sal_port_enable_set#3", Fate::ignored}, // and up again
    {"sal_port_enable_get", Fate::ends},
    {"sal_poe_port_config_query_get", Fate::ignored},
    {"sal_poe_port_reset_set", Fate::ignored},
    {"sal_port_protected_set", Fate::ends},
    {"sal_vlan_portAdminPvid_set", Fate::ends},
    {"sal_poe_port_priority_config_set", Fate::ends},
    {"sal_poe_power_th_type_config_set", Fate::ends},
    {"sal_poe_port_classification_type_config_set", Fate::ends},
    {"sal_poe_port_maxpower_config_set", Fate::ends},
    {"sal_poe_port_pse_enable_set", Fate::ends},
    {"sys_util_str2Vlanmask", Fate::ignored},
    {"sal_vlan_portAdminVlanmask_get", Fate::ignored},
    {"sal_vlan_portAdminVlanmask_add", Fate::ignored},
    {"sal_vlan_nameStr_get", Fate::ignored},
    {"sal_vlan_adminEntry_create", Fate::ignored},
    {"sal_rate_egrBandwidthCtrlEnable_get", Fate::ends},
    {"sal_rate_igrBandwidthCtrlEnable_get", Fate::ends},
    {"sal_rate_egrBandwidthCtrlRate_set", Fate::ends},
    {"sal_rate_igrBandwidthCtrlRate_set", Fate::ends},
    {"sal_rate_egrBandwidthCtrlEnable_set", Fate::ends},
    {"sal_rate_igrBandwidthCtrlEnable_set", Fate::ends},
    {"sal_port_speed_set", Fate::ends},
    {"sal_port_duplex_set", Fate::ends},
    {"sal_port_flowCtrl_set", Fate::ends},
    {"sal_qos_portCos_set", Fate::ends},
    {"sal_qos_portTrustState_set", Fate::ends},
    {"sal_vlan_portVoiceVlanEnable_set", Fate::ends},
    {"sal_vlan_portVoiceVlancosMode_set", Fate::ends},
    {"sal_acl_entry_portBinding_get", Fate::noted},
    {"sal_acl_entry_unbind", Fate::noted},
    {"sal_vlan_adminEntryExist_get", Fate::cut},
    {"sal_vlan_adminEntry_get", Fate::cut},
    {"sal_vlan_adminEntry_destroy", Fate::cut},
};

Fate fate_of(const FailedRun& run, const std::map<std::string, Fate>& table) {
    auto row = table.find(run.call + "#" + std::to_string(run.nth));
    if (row == table.end())
        row = table.find(run.call);
    if (row != table.end())
        return row->second;
    ADD_FAILURE() << "no fate is known for " << run.call << " " << run.nth;
    return Fate::ends;
}

void expect_fates(
    const std::vector<FailedRun>& runs, const std::map<std::string, Fate>& table = fates) {
    ASSERT_FALSE(runs.empty());
    for (const FailedRun& run : runs) {
        SCOPED_TRACE(run.call + " " + std::to_string(run.nth));
        Fate fate = fate_of(run, table);
        EXPECT_EQ(run.result, fate == Fate::ends ? 77 : 0);
        bool clean = fate == Fate::ignored || fate == Fate::cut;
        EXPECT_EQ(run.errors, clean ? Codes{} : Codes{77});
        bool swept = std::count(
                         run.calls_after.begin(), run.calls_after.end(),
                         "sal_vlan_adminEntryExist_get") != 0;
        EXPECT_EQ(swept, fate == Fate::ignored || fate == Fate::noted);
        if (fate == Fate::ends || fate == Fate::cut) {
            EXPECT_EQ(run.calls_after, Lines{});
        }
    }
}

std::vector<FailedRun> fail_each_call_of(
    const std::string& ports,
    const std::function<void(sim::Board&)>& prepare = [](sim::Board&) {}) {
    CapturedStdout printed;
    auto runs = fail_each_call(prepare, [&](cJSON*) { return apply(ports); });
    return runs;
}

} // namespace

TEST(PortConfigFailures, every_call_of_a_whole_port_has_its_fate) {
    expect_fates(fail_each_call_of(element("3", everything), [](sim::Board& board) {
        board.device.voice_vlan.mode = 1;
        board.device.voice_vlan.vid = 20;
        board.device.vlans.table[20].name = "voice";
        board.device.vlans.table[30].name = "empty";
    }));
}

TEST(PortConfigFailures, reads_that_stand_in_for_missing_keys_end_the_apply) {
    std::map<std::string, Fate> table = fates;
    table["sal_port_enable_set#1"] = Fate::ignored; // here the bounce's
    expect_fates(fail_each_call_of(element("3", R"("reset":true,"rate_limit":{})")), table);
}

TEST(PortConfigFailures, of_a_10_gigabit_port_only_the_start_and_the_state_count) {
    std::map<std::string, Fate> table = fates;
    table["sal_10g_port_init"] = Fate::ends;
    table["sal_port_speed_set"] = Fate::ignored;
    table["sal_port_10g_media_set"] = Fate::ignored;
    table["sal_port_port_fiberNwayForceLinkEnable_set"] = Fate::ignored;
    table["sal_port_enable_set#1"] = Fate::ignored;
    for (int code : {0, 1, 6})
        expect_fates(fail_each_call_of(element("F1", speed_mode(code))), table);
    expect_fates(fail_each_call_of(element("trunk1", speed_mode(6))), table);
}

TEST(PortConfigFailures, speed_and_duplex_of_any_other_port_count) {
    for (int code = 0; code <= 5; ++code) {
        expect_fates(fail_each_call_of(element("1", speed_mode(code))));
        expect_fates(fail_each_call_of(element("trunk1", speed_mode(code))));
        expect_fates(fail_each_call_of(element("F1", speed_mode(code)), [](sim::Board& board) {
            board.device.ports.port[18].ten_gigabit = false;
        }));
    }
}
