// The "link_aggregation" section, and what a new group takes away from its members.
#include "sections/trunk.h"

#include <algorithm>
#include <fstream>

#include "core/dispatch.h"
#include "platform/trunk.h"
#include "sections/trunk_related.h"
#include "sim/instruments/codes.h"
#include "tests/sections/odd_switch.h"
#include "tests/support/on_board.h"
#include "tests/support/sized_board.h"

namespace {

PortBitmap ports(std::initializer_list<int> numbers) {
    PortBitmap set = {};
    for (int port : numbers)
        set.words[port / 32] |= 1u << (port % 32);
    return set;
}

void make_group(
    sim::Board& board, std::size_t number, sim::ChipTrunkMode mode,
    std::initializer_list<int> numbers) {
    board.device.chip.change([&](sim::ChipState& state) {
        sim::ChipTrunk& trunk = state.trunks[number - 1];
        trunk.mode = mode;
        std::ranges::copy(ports(numbers).words, trunk.members.begin());
    });
}

// Group 1 is static, with the ports 1 to 3, of which 1 and 2 have link.
void static_group(sim::Board& board) { make_group(board, 1, sim::ChipTrunkMode::fixed, {0, 1, 2}); }

void lacp_group(sim::Board& board) { make_group(board, 1, sim::ChipTrunkMode::lacp, {0, 1, 2}); }

bool is_read_of_static_macs(const std::string& line) {
    return line.starts_with("sal_l2_static_macEntry_get(") && line.ends_with(" = 0");
}

Lines without_mac_reads(Lines lines) {
    std::erase_if(lines, is_read_of_static_macs);
    return lines;
}

class Trunk : public OnBoard {
  protected:
    int set(const std::string& elements) {
        Json document(R"({"link_aggregation":)" + elements + "}");
        return vxc_trunk_set(document);
    }
    // What was done to the switch: reads of static addresses, all 256 of them, left out.
    Lines steps() const { return without_mac_reads(trace()); }

    sim::ChipTrunk trunk(std::size_t number) { return device.chip.state().trunks[number - 1]; }
    bool link(std::size_t port) { return device.chip.state().ports[port - 1].link(); }
    static sim::MacAddress static_mac(std::uint8_t last, PortBitmap on) {
        return {{2, 0, 0, 0, 0, last}, 1, on, false};
    }
};

std::string group_text(int id, int mode = 0, const std::string& members = "") {
    return R"({"id":)" + std::to_string(id) + R"(,"mode":)" + std::to_string(mode) +
           R"(,"members":")" + members + R"("})";
}

// The report with these first groups, and the others empty.
std::string report(Lines groups, int count = 8) {
    std::string text;
    for (int id = 1; id <= count; ++id) {
        auto at = static_cast<std::size_t>(id - 1);
        text += (text.empty() ? "" : ",") + (at < groups.size() ? groups[at] : group_text(id));
    }
    return R"({"link_aggregation":[)" + text + "]}";
}

// What becomes of a member.
Lines lifted(int port) {
    std::string p = std::to_string(port);
    return {
        "sal_rate_igrBandwidthCtrlRate_set(" + p + ", 62500) = 0",
        "sal_rate_egrBandwidthCtrlRate_set(" + p + ", 62500) = 0",
        "sal_rate_igrBandwidthCtrlEnable_set(" + p + ", 0) = 0",
        "sal_rate_egrBandwidthCtrlEnable_set(" + p + ", 0) = 0"};
}

Lines operator+(Lines all, const Lines& more) {
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

} // namespace

// --- Report.

TEST_F(Trunk, report_has_eight_groups_without_members) {
    Report got = report_of(vxc_trunk_get);
    EXPECT_EQ(got.result, 0);
    EXPECT_EQ(got.text, report({}));
    Lines first = trace();
    ASSERT_EQ(first.size(), 24u);
    first.resize(4);
    EXPECT_EQ(
        first, (Lines{
                   "sys_trunk_portRole_ret(20) = 0", "sal_trunk_member_get(0) = 0",
                   "sys_util_bitmaskIsClear_ret(0, 20) = 1", "sys_trunk_portRole_ret(21) = 0"}));
}

TEST_F(Trunk, report_tells_static_from_lacp_by_the_role_of_the_groups_port) {
    static_group(board);
    make_group(board, 2, sim::ChipTrunkMode::lacp, {7, 9});
    EXPECT_EQ(
        report_of(vxc_trunk_get).text, report({group_text(1, 1, "1-3"), group_text(2, 2, "8,10")}));
}

TEST_F(Trunk, report_ends_at_each_call_that_fails_with_the_groups_before_it) {
    auto runs = fail_each_call(
        [](sim::Board& fresh) { make_group(fresh, 2, sim::ChipTrunkMode::fixed, {4}); },
        vxc_trunk_get);
    ASSERT_EQ(runs.size(), 9u); // the members of eight groups, one of them as text
    int done = 0;
    for (const FailedRun& run : runs) {
        bool text = run.call == "sal_util_bitmap2numstr";
        EXPECT_EQ(run.result, 77);
        EXPECT_EQ(run.errors, Codes{77});
        EXPECT_EQ(run.calls_after, Lines{});
        done -= text;
        EXPECT_EQ(run.report, report({group_text(1), group_text(2, 1, "5")}, done));
        ++done;
    }
    EXPECT_EQ(done, 8);
}

TEST_F(Trunk, a_failed_report_is_logged) {
    fail("sal_trunk_member_get", 77, 3);
    Json document(createJsonObject());
    vxc_system_get(document);
    EXPECT_EQ(log(), Lines{"trunk get fail"});
}

TEST_F(Trunk, the_longest_list_of_members_is_reported_whole) {
    TempFolder other;
    auto scenario = other.path() / "big.json";
    std::ofstream(scenario) << R"({"hardware":{"logical_ports":96}})";
    sim::Board big(other.path() / "board", scenario);
    big.device.chip.change([](sim::ChipState& state) {
        state.trunks[0].mode = sim::ChipTrunkMode::lacp;
        state.trunks[0].members = {0xDB6DB6DB, 0xB6DB6DB6, 0x006DB6DB & 0x00FFFFFF};
    });
    Json document(createJsonObject());
    EXPECT_EQ(vxc_trunk_get(document), 0);
    std::string members =
        getJsonStringValueForKey(getJsonArrayItem(document["link_aggregation"], 0), "members");
    EXPECT_GT(members.size(), 128u + 30u);
    EXPECT_TRUE(members.starts_with("1-2,4-5,")) << members;
}

// --- Settings.

TEST_F(Trunk, a_static_group_is_formed_while_its_members_are_down) {
    EXPECT_EQ(set(R"([{"id":2,"mode":1,"members":"2,3"}])"), 0);
    EXPECT_EQ(
        steps(),
        (Lines{
             "sal_trunk_member_get(1) = 0", "sal_util_numstr2bitmap(\"2,3\") = 0",
             "sal_port_securityEnable_get(1) = 0", "sal_port_securityEnable_get(2) = 0",
             "sal_port_linkStatus_get(1) = 0", "ioctl(3457, 1, 0, 0, 0) = 0",
             "sal_port_linkStatus_get(2) = 0", "sleep(2) = 0",
             "sys_util_bitmaskIsClear_ret(0, 20) = 1", "sal_trunk_staticMember_set(1, {1-2}) = 0"} +
         lifted(1) + lifted(2) +
         Lines{"sal_port_enable_get(1) = 0", "sal_port_enable_set(1, 1) = 0"}));
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_EQ(trunk(2).mode, sim::ChipTrunkMode::fixed);
    EXPECT_TRUE(link(2));
    EXPECT_EQ(sys_trunk_portRole_ret(1), TRUNK_ROLE_STATIC_MEMBER);
    EXPECT_EQ(sys_trunk_portRole_ret(21), TRUNK_ROLE_STATIC_GROUP);
}

TEST_F(Trunk, an_lacp_group_is_formed_and_all_its_members_speak_first) {
    EXPECT_EQ(set(R"([{"id":8,"mode":2,"members":"7-8"}])"), 0);
    EXPECT_EQ(
        steps(), (Lines{
                      "sal_trunk_member_get(7) = 0", "sal_util_numstr2bitmap(\"7-8\") = 0",
                      "sal_port_securityEnable_get(6) = 0", "sal_port_securityEnable_get(7) = 0",
                      "sal_port_linkStatus_get(6) = 0", "sal_port_linkStatus_get(7) = 0",
                      "sys_util_bitmaskIsClear_ret(0, 20) = 1", "sal_lacp_member_set(7, {6-7}) = 0",
                      "sal_lacp_activeMode_set(7, {6-7}) = 0"} +
                  lifted(6) + lifted(7)));
    EXPECT_EQ(sys_trunk_portRole_ret(27), TRUNK_ROLE_LACP_GROUP);
}

TEST_F(Trunk, the_same_members_change_no_link_and_are_still_written) {
    static_group(board);
    EXPECT_EQ(set(R"([{"id":1,"mode":1,"members":"1-3"}])"), 0);
    EXPECT_EQ(
        steps(), (Lines{
                      "sal_trunk_member_get(0) = 0", "sal_util_numstr2bitmap(\"1-3\") = 0",
                      "sys_util_bitmaskIsClear_ret(0, 20) = 0", "sys_trunk_portRole_ret(20) = 5",
                      "sal_trunk_staticMember_set(0, {0-2}) = 0"} +
                  lifted(0) + lifted(1) + lifted(2)));
}

TEST_F(Trunk, only_ports_that_join_or_leave_go_down) {
    static_group(board);
    EXPECT_EQ(set(R"([{"id":1,"mode":1,"members":"1,3,5"}])"), 0);
    Lines all = steps();
    EXPECT_EQ(
        Lines(all.begin() + 2, all.begin() + 9),
        (Lines{
            "sal_port_securityEnable_get(1) = 0", "sal_port_securityEnable_get(4) = 0",
            "sal_port_linkStatus_get(1) = 0", "ioctl(3457, 1, 0, 0, 0) = 0",
            "sal_port_linkStatus_get(4) = 0", "ioctl(3457, 4, 0, 0, 0) = 0", "sleep(2) = 0"}));
    EXPECT_TRUE(link(2));
    EXPECT_TRUE(link(5));
}

TEST_F(Trunk, an_lacp_group_on_a_static_one_deletes_it_first) {
    static_group(board);
    EXPECT_EQ(set(R"([{"id":1,"mode":2,"members":"1-3"}])"), 0);
    Lines all = steps();
    EXPECT_EQ(
        Lines(all.begin() + 2, all.begin() + 7),
        (Lines{
            "sys_util_bitmaskIsClear_ret(0, 20) = 0", "sys_trunk_portRole_ret(20) = 5",
            "sal_trunk_group_del(0) = 0", "sal_lacp_member_set(0, {0-2}) = 0",
            "sal_lacp_activeMode_set(0, {0-2}) = 0"}));
    EXPECT_EQ(trunk(1).mode, sim::ChipTrunkMode::lacp);
}

TEST_F(Trunk, a_static_group_on_an_lacp_one_deletes_it_first) {
    lacp_group(board);
    EXPECT_EQ(set(R"([{"id":1,"mode":1,"members":"1-3"}])"), 0);
    Lines all = steps();
    EXPECT_EQ(
        Lines(all.begin() + 2, all.begin() + 6),
        (Lines{
            "sys_util_bitmaskIsClear_ret(0, 20) = 0", "sys_trunk_portRole_ret(20) = 4",
            "sal_trunk_group_del(0) = 0", "sal_trunk_staticMember_set(0, {0-2}) = 0"}));
    EXPECT_EQ(trunk(1).mode, sim::ChipTrunkMode::fixed);
}

TEST_F(Trunk, the_static_group_comes_back_when_lacp_is_refused_and_the_handler_goes_on) {
    static_group(board);
    fail("sal_lacp_member_set", 77);
    EXPECT_EQ(set(R"([{"id":1,"mode":2,"members":"1,2"},{"id":2,"mode":1,"members":"8"}])"), 0);
    EXPECT_EQ(recorded(), Codes{}); // not even recorded
    Lines all = steps();
    auto refused = std::find(all.begin(), all.end(), "sal_lacp_member_set(0, {0-1}) = 77");
    ASSERT_NE(refused, all.end());
    EXPECT_EQ(*(refused + 1), "sal_trunk_staticMember_set(0, {0-2}) = 0");
    EXPECT_EQ(*(refused + 2), "sal_trunk_member_get(1) = 0"); // the next element
    EXPECT_EQ(trunk(1).mode, sim::ChipTrunkMode::fixed);
    EXPECT_EQ(trunk(1).members[0], 7u);
    EXPECT_EQ(trunk(2).members[0], 0x80u);
}

TEST_F(Trunk, the_lacp_group_comes_back_when_the_static_one_is_refused) {
    lacp_group(board);
    fail("sal_trunk_staticMember_set", 77);
    EXPECT_EQ(set(R"([{"id":1,"mode":1,"members":"1"}])"), 0);
    EXPECT_EQ(recorded(), Codes{});
    Lines all = steps();
    auto refused = std::find(all.begin(), all.end(), "sal_trunk_staticMember_set(0, {0}) = 77");
    ASSERT_NE(refused, all.end());
    EXPECT_EQ(
        Lines(refused + 1, all.end()),
        (Lines{
            "sal_lacp_member_set(0, {0-2}) = 0", "sal_lacp_activeMode_set(0, {0-2}) = 0",
            "sal_port_enable_get(1) = 0", "sal_port_enable_set(1, 1) = 0"}));
}

TEST_F(Trunk, a_refused_group_that_replaced_none_restores_none) {
    fail("sal_trunk_staticMember_set", 77);
    EXPECT_EQ(set(R"([{"id":1,"mode":1,"members":"3"}])"), 0);
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_EQ(steps().back(), "sal_trunk_staticMember_set(0, {2}) = 77");
}

TEST_F(Trunk, mode_0_takes_all_members_down_for_2_seconds_and_back_as_configured) {
    static_group(board);
    device.ports.port[1].enable = false; // but up in the chip until now
    double before = board.clock.running();
    EXPECT_EQ(set(R"([{"id":1,"mode":0}])"), 0);
    EXPECT_EQ(board.clock.running() - before, 2);
    EXPECT_EQ(
        steps(), (Lines{
                      "sal_trunk_member_get(0) = 0", "sal_port_securityEnable_get(0) = 0",
                      "sal_port_securityEnable_get(1) = 0", "sal_port_securityEnable_get(2) = 0",
                      "sal_port_linkStatus_get(0) = 0", "ioctl(3457, 0, 0, 0, 0) = 0",
                      "sal_port_linkStatus_get(1) = 0", "ioctl(3457, 1, 0, 0, 0) = 0",
                      "sal_port_linkStatus_get(2) = 0", "sleep(2) = 0"} +
                  lifted(20) + // the group's own port
                  Lines{
                      "sal_trunk_group_del(0) = 0", "sal_port_enable_get(0) = 0",
                      "sal_port_enable_set(0, 1) = 0", "sal_port_enable_get(1) = 0"}));
    EXPECT_EQ(trunk(1).mode, sim::ChipTrunkMode::none);
    EXPECT_TRUE(link(1));
    EXPECT_FALSE(link(2)); // configured disabled
    EXPECT_TRUE(device.ports.port[0].enable);
}

TEST_F(Trunk, mode_0_does_not_read_members) {
    EXPECT_EQ(set(R"([{"id":1,"mode":0,"members":"no list"}])"), 0);
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_FALSE(called("sal_util_numstr2bitmap"));
}

TEST_F(Trunk, another_mode_changes_no_group_but_takes_the_ports_down_meanwhile) {
    static_group(board);
    EXPECT_EQ(set(R"([{"id":1,"mode":3,"members":"1,3"}])"), 0);
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_trunk_member_get(0) = 0", "sal_util_numstr2bitmap(\"1,3\") = 0",
                     "sal_port_securityEnable_get(1) = 0", "sal_port_linkStatus_get(1) = 0",
                     "ioctl(3457, 1, 0, 0, 0) = 0", "sleep(2) = 0", "sal_port_enable_get(1) = 0",
                     "sal_port_enable_set(1, 1) = 0"}));
    EXPECT_EQ(trunk(1).members[0], 7u);
}

TEST_F(Trunk, an_element_without_id_or_mode_is_recorded_and_skipped) {
    EXPECT_EQ(
        set(R"([{"mode":1,"members":"3"},{"id":1,"members":"3"},7,
                {"id":1,"mode":1,"members":"3"}])"),
        0);
    EXPECT_EQ(recorded(), (Codes{19, 19, 19}));
    EXPECT_EQ(trunk(1).members[0], 4u);
}

TEST_F(Trunk, port_security_on_a_changed_port_refuses_before_any_link_goes_down) {
    static_group(board);
    device.ports.port[1].security = true;
    EXPECT_EQ(set(R"([{"id":1,"mode":1,"members":"1,3"},{"id":2,"mode":1,"members":"9"}])"), -1);
    EXPECT_EQ(recorded(), Codes{-1});
    EXPECT_EQ(
        calls(),
        (Lines{"sal_trunk_member_get", "sal_util_numstr2bitmap", "sal_port_securityEnable_get"}));
    EXPECT_EQ(trunk(1).members[0], 7u);
}

TEST_F(Trunk, port_security_on_a_port_that_stays_in_the_group_does_not_matter) {
    static_group(board);
    device.ports.port[0].security = true;
    set(R"([{"id":1,"mode":0}])");
    EXPECT_EQ(recorded(), Codes{-1}); // leaving does
    forget();
    EXPECT_EQ(set(R"([{"id":1,"mode":3,"members":"1-4"}])"), 0);
    EXPECT_EQ(recorded(), Codes{});
}

// Of security, link and enable 1 is the one value that counts.

TEST_F(Trunk, port_security_in_state_2_refuses_nothing) {
    OddSwitch odd;
    odd.security = 2;
    EXPECT_EQ(set(R"([{"id":1,"mode":1,"members":"3"}])"), 0);
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_EQ(trunk(1).members[0], 4u);
}

TEST_F(Trunk, a_link_in_state_2_is_not_taken_down) {
    OddSwitch odd;
    odd.link = 2;
    EXPECT_EQ(set(R"([{"id":1,"mode":1,"members":"1"}])"), 0);
    EXPECT_TRUE(called("sal_port_linkStatus_get"));
    EXPECT_FALSE(called("ioctl"));
    EXPECT_FALSE(called("sleep"));
    EXPECT_FALSE(called("sal_port_enable_get"));
}

TEST_F(Trunk, a_port_whose_configured_state_is_2_stays_down) {
    OddSwitch odd;
    odd.enable = 2;
    EXPECT_EQ(set(R"([{"id":1,"mode":1,"members":"1"}])"), 0);
    EXPECT_EQ(steps().back(), "sal_port_enable_get(0) = 0");
    EXPECT_FALSE(link(1));
}

TEST_F(Trunk, groups_beyond_the_switchs_own_end_the_handler) {
    EXPECT_EQ(
        set(R"([{"id":9,"mode":1,"members":"3"},{"id":1,"mode":1,"members":"3"}])"),
        sim::code_bad_value);
    EXPECT_EQ(recorded(), Codes{sim::code_bad_value});
    EXPECT_EQ(calls(), Lines{"sal_trunk_member_get"});
    forget();
    EXPECT_EQ(set(R"([{"id":-2147483648,"mode":0}])"), sim::code_bad_value);
    EXPECT_EQ(set(R"([{"id":0,"mode":0}])"), sim::code_bad_value);
}

TEST_F(Trunk, members_that_are_no_list_end_the_handler) {
    for (const char* members : {"5-3", "3-3", "0", "1-2-3", "1;2", "97", "-1"}) {
        forget();
        EXPECT_EQ(
            set(R"([{"id":1,"mode":1,"members":")" + std::string(members) + R"("}])"),
            sim::code_bad_text)
            << members;
        EXPECT_EQ(recorded(), Codes{sim::code_bad_text}) << members;
    }
    EXPECT_EQ(trunk(1).members, sim::ChipPortSet{});
}

TEST_F(Trunk, a_number_above_the_switchs_own_is_refused_by_the_platform_which_is_no_error) {
    EXPECT_EQ(set(R"([{"id":1,"mode":1,"members":"1,96"}])"), 0);
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_TRUE(called("sal_trunk_staticMember_set"));
    EXPECT_EQ(trunk(1).members, sim::ChipPortSet{});
    EXPECT_TRUE(link(1));
}

TEST_F(Trunk, missing_members_are_none) {
    static_group(board);
    EXPECT_EQ(set(R"([{"id":1,"mode":1},{"id":2,"mode":2,"members":5}])"), 0);
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_EQ(trunk(1).mode, sim::ChipTrunkMode::none);
}

TEST_F(Trunk, nothing_to_apply_is_a_success) {
    EXPECT_EQ(vxc_trunk_set(nullptr), 0);
    Json other(R"({"ports":[]})");
    EXPECT_EQ(vxc_trunk_set(other), 0);
    EXPECT_EQ(set("[]"), 0);
    EXPECT_EQ(set("{}"), 0);
    EXPECT_EQ(calls(), Lines{});
    EXPECT_EQ(recorded(), Codes{});
}

// A driver that does not take a port down is not an error either.
TEST_F(Trunk, a_port_that_the_driver_leaves_up_is_brought_up_again_all_the_same) {
    board.faults.plan({sim::Edge::ioctl, "3457", 1, false, 5, 0});
    EXPECT_EQ(set(R"([{"id":1,"mode":1,"members":"1"}])"), 0);
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_EQ(steps().back(), "sal_port_enable_set(0, 1) = 0");
}

// --- Each call of an element failing in turn.

namespace {

struct Outcome {
    const char* call;
    int result;   // and recorded, when it is not 0
    bool formed;  // whether the new group stands afterwards
    bool port_up; // whether port 1, which joins or leaves, has link afterwards
};

struct Story {
    void (*prepare)(sim::Board&);
    const char* element;
    std::vector<Outcome> outcomes;
};

const Outcome no_error(const char* call, bool formed) { return {call, 0, formed, true}; }

} // namespace

TEST_F(Trunk, each_failed_call_has_its_outcome) {
    const Story stories[] = {
        // From nothing to LACP.
        {[](sim::Board&) {},
         R"([{"id":1,"mode":2,"members":"1"}])",
         {{"sal_trunk_member_get", 77, false, true},
          {"sal_util_numstr2bitmap", 77, false, true},
          {"sal_port_securityEnable_get", 77, false, true},
          {"sal_port_linkStatus_get", 77, false, true},
          no_error("sal_lacp_member_set", false),
          {"sal_lacp_activeMode_set", 77, true, false},
          no_error("sal_rate_igrBandwidthCtrlRate_set", true),
          no_error("sal_rate_egrBandwidthCtrlRate_set", true),
          no_error("sal_rate_igrBandwidthCtrlEnable_set", true),
          no_error("sal_rate_egrBandwidthCtrlEnable_set", true),
          {"sal_port_enable_get", 77, true, false},
          {"sal_port_enable_set", 77, true, false}}},
        // From static, with the ports 1 to 3, to LACP without port 1.
        {static_group,
         R"([{"id":1,"mode":2,"members":"2,3"}])",
         {{"sal_trunk_member_get", 77, false, true},
          {"sal_util_numstr2bitmap", 77, false, true},
          {"sal_port_securityEnable_get", 77, false, true},
          {"sal_port_linkStatus_get", 77, false, true},
          {"sal_trunk_group_del", 77, false, false},
          no_error("sal_lacp_member_set", false),
          {"sal_lacp_activeMode_set", 77, true, false},
          {"sal_port_enable_get", 77, true, false},
          {"sal_port_enable_set", 77, true, false}}},
        // From LACP to static.
        {lacp_group,
         R"([{"id":1,"mode":1,"members":"2,3"}])",
         {{"sal_trunk_member_get", 77, false, true},
          {"sal_util_numstr2bitmap", 77, false, true},
          {"sal_port_securityEnable_get", 77, false, true},
          {"sal_port_linkStatus_get", 77, false, true},
          {"sal_trunk_group_del", 77, false, false},
          no_error("sal_trunk_staticMember_set", false),
          {"sal_port_enable_get", 77, true, false},
          {"sal_port_enable_set", 77, true, false}}},
        // From static to none.
        {[](sim::Board& fresh) { make_group(fresh, 1, sim::ChipTrunkMode::fixed, {0}); },
         R"([{"id":1,"mode":0}])",
         {{"sal_trunk_member_get", 77, false, true},
          {"sal_port_securityEnable_get", 77, false, true},
          {"sal_port_linkStatus_get", 77, false, true},
          {"sal_trunk_group_del", 77, false, false},
          {"sal_port_enable_get", 77, true, false},
          {"sal_port_enable_set", 77, true, false}}},
    };
    for (const Story& story : stories) {
        std::vector<std::pair<bool, bool>> ends; // formed, port up; the last one without a fault
        auto run = [&](cJSON*) {
            sim::Switch& on = sim::board().device;
            const sim::ChipTrunk before = on.chip.state().trunks[0];
            Json document(R"({"link_aggregation":)" + std::string(story.element) + "}");
            int result = vxc_trunk_set(document);
            const sim::ChipTrunk after = on.chip.state().trunks[0];
            bool changed = after.mode != before.mode &&
                           (after.mode != sim::ChipTrunkMode::none ||
                            story.element == std::string(R"([{"id":1,"mode":0}])"));
            ends.emplace_back(changed, on.chip.state().ports[0].link());
            return result;
        };
        auto runs = fail_each_call(story.prepare, run, 77, "", 4);
        ASSERT_EQ(ends.size(), runs.size() + 1);
        EXPECT_EQ(ends[0], std::make_pair(true, true)) << story.element;
        std::size_t seen = 0;
        for (std::size_t i = 0; i < runs.size(); ++i) {
            const FailedRun& failed = runs[i];
            auto outcome = std::ranges::find_if(
                story.outcomes, [&](const Outcome& it) { return failed.call == it.call; });
            if (outcome == story.outcomes.end()) { // of the members, or static addresses
                EXPECT_TRUE(
                    failed.call.starts_with("sal_rate_") || failed.call.starts_with("sal_l2_"))
                    << failed.call;
                EXPECT_EQ(failed.result, 0) << failed.call;
                EXPECT_EQ(failed.errors, Codes{}) << failed.call;
                EXPECT_EQ(ends[i + 1], std::make_pair(true, true)) << failed.call;
                continue;
            }
            seen += failed.nth == 1;
            std::string what = std::string(story.element) + " " + failed.call;
            EXPECT_EQ(failed.result, outcome->result) << what;
            EXPECT_EQ(failed.errors, outcome->result ? Codes{outcome->result} : Codes{}) << what;
            EXPECT_EQ(ends[i + 1], std::make_pair(outcome->formed, outcome->port_up)) << what;
            if (outcome->result) {
                EXPECT_EQ(failed.calls_after, Lines{}) << what;
            }
        }
        EXPECT_EQ(seen, story.outcomes.size()) << story.element;
    }
}

TEST_F(Trunk, a_group_that_cannot_be_restored_ends_the_handler) {
    static_group(board);
    fail("sal_lacp_member_set", 77);
    fail("sal_trunk_staticMember_set", 78);
    EXPECT_EQ(set(R"([{"id":1,"mode":2,"members":"2"},{"id":2,"mode":1,"members":"9"}])"), 78);
    EXPECT_EQ(recorded(), Codes{78});
    EXPECT_EQ(steps().back(), "sal_trunk_staticMember_set(0, {0-2}) = 78");
    EXPECT_EQ(trunk(1).mode, sim::ChipTrunkMode::none);
    EXPECT_FALSE(link(1));

    for (const char* step : {"sal_lacp_member_set", "sal_lacp_activeMode_set"}) {
        forget();
        lacp_group(board);
        fail("sal_trunk_staticMember_set", 77);
        fail(step, 79);
        EXPECT_EQ(set(R"([{"id":1,"mode":1,"members":"2"}])"), 79) << step;
        EXPECT_EQ(recorded(), Codes{79}) << step;
        EXPECT_EQ(calls().back(), step);
    }
}

TEST_F(Trunk, a_link_read_that_fails_leaves_the_ports_before_it_down) {
    fail("sal_port_linkStatus_get", 77, 2);
    EXPECT_EQ(set(R"([{"id":1,"mode":1,"members":"1,2"}])"), 77);
    EXPECT_FALSE(link(1));
    EXPECT_TRUE(link(2));
    EXPECT_FALSE(called("sleep"));
}

TEST_F(Trunk, a_failed_apply_is_logged_by_dispatch) {
    fail("sal_trunk_member_get", 77);
    Json document(R"({"system":{"link_aggregation":[{"id":1,"mode":0}]}})");
    vxc_set(document);
    EXPECT_EQ(log(), Lines{"trunk set fail"});
    EXPECT_FALSE(called("cmd_conf_startupConfig_save"));
}

// --- What a group takes away.

TEST_F(Trunk, members_lose_their_rate_limits_and_keep_a_rate_of_62500) {
    device.rates.ports[2].ingress = {true, 1000};
    device.rates.ports[2].egress = {true, 2000};
    device.rates.ports[3].ingress = {true, 1000};
    sn_trunkRelated(ports({2}));
    EXPECT_FALSE(device.rates.ports[2].ingress.enable);
    EXPECT_FALSE(device.rates.ports[2].egress.enable);
    EXPECT_EQ(device.rates.ports[2].ingress.kbps, 62500u);
    EXPECT_EQ(device.rates.ports[2].egress.kbps, 62500u);
    EXPECT_TRUE(device.rates.ports[3].ingress.enable);
    EXPECT_EQ(steps(), lifted(2));
    EXPECT_EQ(trace().size(), 4u + 256u);
}

TEST_F(Trunk, static_addresses_that_lie_wholly_on_the_group_are_deleted) {
    device.macs.fixed = {static_mac(1, ports({1})),    static_mac(2, ports({2})),
                         static_mac(3, ports({1, 2})), static_mac(4, ports({1, 9})),
                         static_mac(0, ports({1})),    static_mac(5, ports({9}))};
    device.macs.fixed[4] = {{0, 0, 0, 0, 0, 0}, 1, ports({1}), false}; // no address
    sn_trunkRelated(ports({1, 2}));
    Lines all = steps();
    std::erase_if(all, [](const std::string& line) {
        return !line.starts_with("sal_l2_static_macEntry_del");
    });
    EXPECT_EQ(
        all, (Lines{
                 "sal_l2_static_macEntry_del(02:00:00:00:00:01) = 0",
                 "sal_l2_static_macEntry_del(02:00:00:00:00:02) = 0",
                 "sal_l2_static_macEntry_del(02:00:00:00:00:03) = 0"}));
}

TEST_F(Trunk, an_address_with_a_single_byte_is_one) {
    for (std::size_t byte = 0; byte < MAC_ADDRESS_SIZE; ++byte) {
        device.macs.fixed = {{{}, 1, ports({1}), false}};
        device.macs.fixed[0].mac[byte] = 1;
        sn_trunkRelated(ports({1}));
        EXPECT_TRUE(device.macs.fixed[0].freed) << byte;
    }
}

TEST_F(Trunk, what_is_left_in_a_free_place_is_no_static_address) {
    device.macs.fixed = {static_mac(1, ports({1}))};
    device.macs.fixed[0].freed = true;
    sn_trunkRelated(ports({1}));
    EXPECT_FALSE(called("sal_l2_static_macEntry_del"));
}

TEST(TrunkOfALargeSwitch, a_static_address_lies_on_the_group_with_every_port_that_it_has) {
    SizedBoard sized(96);
    auto address_on = [&](const PortBitmap& on) {
        sized.device.macs.fixed = {{{2, 0, 0, 0, 0, 1}, 1, on, false}};
    };
    for (int beside : {40, 70}) {
        address_on(ports({5, beside}));
        sn_trunkRelated(ports({5}));
        EXPECT_FALSE(sized.device.macs.fixed[0].freed) << beside;
        sn_trunkRelated(ports({5, beside}));
        EXPECT_TRUE(sized.device.macs.fixed[0].freed) << beside;
    }
}

TEST_F(Trunk, a_static_address_on_no_port_lies_on_every_group) {
    device.macs.fixed = {static_mac(1, {})};
    sn_trunkRelated(ports({1}));
    EXPECT_TRUE(called("sal_l2_static_macEntry_del"));
}

TEST_F(Trunk, static_addresses_that_cannot_be_read_or_deleted_are_passed_over) {
    device.macs.fixed = {
        static_mac(1, ports({1})), static_mac(2, ports({1})), static_mac(3, ports({1}))};
    fail("sal_l2_static_macEntry_get", 77, 2);
    fail("sal_l2_static_macEntry_del", 77, 2);
    sn_trunkRelated(ports({1}));
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_TRUE(device.macs.fixed[0].freed);
    EXPECT_FALSE(device.macs.fixed[1].freed); // was not read
    EXPECT_FALSE(device.macs.fixed[2].freed); // was not deleted
    EXPECT_EQ(std::ranges::count(calls(), std::string("sal_l2_static_macEntry_get")), 256);
}

TEST_F(Trunk, ports_that_the_switch_does_not_have_are_left_alone) {
    sn_trunkRelated({{1u << 31, 0xFFFFFFFF, 0xFFFFFFFF}});
    EXPECT_EQ(steps(), Lines{});
}

// --- The platform's own rules, and what is kept.

TEST_F(Trunk, the_platform_refuses_members_that_are_bound_elsewhere) {
    using namespace sim;
    static_group(board);
    PortBitmap taken = ports({1}), group_port = ports({20}), many = {{0x3FE00, 0, 0}};
    EXPECT_EQ(sal_trunk_staticMember_set(1, &taken), code_busy);
    EXPECT_EQ(sal_trunk_staticMember_set(1, &group_port), code_no_port);
    EXPECT_EQ(sal_trunk_staticMember_set(1, &many), code_table_full);
    EXPECT_EQ(sal_lacp_member_set(1, &many), code_ok);
    EXPECT_EQ(sal_lacp_activeMode_set(1, &taken), code_not_found);
    EXPECT_EQ(sal_trunk_staticMember_set(1, &many), code_exists);
    EXPECT_EQ(sal_lacp_member_set(0, &taken), code_exists);
    EXPECT_EQ(sal_trunk_staticMember_set(8, &taken), code_bad_value);
    device.ports.port[5].security = true;
    PortBitmap secured = ports({5});
    EXPECT_EQ(sal_trunk_staticMember_set(3, &secured), code_busy);
    device.mirrors.groups[0].on = true;
    device.mirrors.groups[0].target = 6;
    PortBitmap target = ports({6});
    EXPECT_EQ(sal_trunk_staticMember_set(3, &target), code_busy);
    PortBitmap none = {};
    EXPECT_EQ(sal_trunk_staticMember_set(0, &none), code_ok);
    EXPECT_EQ(trunk(1).mode, ChipTrunkMode::none);
}

TEST_F(Trunk, groups_are_in_the_startup_configuration) {
    EXPECT_EQ(set(R"([{"id":1,"mode":1,"members":"1-3"},{"id":3,"mode":2,"members":"7,9"}])"), 0);
    std::string before = report_of(vxc_trunk_get).text;
    EXPECT_EQ(before, report({group_text(1, 1, "1-3"), group_text(2), group_text(3, 2, "7,9")}));
    EXPECT_TRUE(board.save_startup_config());
    sim::Board again(folder.path());
    EXPECT_EQ(report_of(vxc_trunk_get).text, before);
    EXPECT_EQ(again.device.trunks.active[2].words[0], 0x140u);
}

TEST_F(Trunk, a_report_fed_back_changes_nothing) {
    set(R"([{"id":1,"mode":1,"members":"1-3"},{"id":3,"mode":2,"members":"7,9"}])");
    std::string before = report_of(vxc_trunk_get).text;
    Json document(before);
    EXPECT_EQ(vxc_trunk_set(document), 0);
    EXPECT_EQ(report_of(vxc_trunk_get).text, before);
    EXPECT_EQ(recorded(), Codes{});
}
