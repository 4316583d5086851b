// VLANs that come with their first member and go with their last.
#include "sections/port/vlan_upkeep.h"

#include <algorithm>

#include "platform/vlan.h"
#include "sim/instruments/codes.h"
#include "tests/support/on_board.h"
#include "tests/support/sized_board.h"

namespace {

class VlanUpkeep : public OnBoard {
  protected:
    void add_vlan(int vid, std::initializer_list<int> tagged, std::initializer_list<int> untagged) {
        sim::Vlan& vlan = device.vlans.table[vid];
        vlan.name = "set up";
        for (int port : tagged)
            sim::set_bit(vlan.tagged, port, true);
        for (int port : untagged)
            sim::set_bit(vlan.untagged, port, true);
    }
    // The VLANs of a port, "10t" where it is a tagged member, "10" where it is an untagged one.
    Lines vlans_of(int port) const {
        Lines found;
        for (const auto& [vid, vlan] : device.vlans.table) {
            if (sim::has_bit(vlan.tagged, port))
                found.push_back(std::to_string(vid) + "t");
            if (sim::has_bit(vlan.untagged, port))
                found.push_back(std::to_string(vid));
        }
        return found;
    }
    std::vector<int> all_vlans() const {
        std::vector<int> ids;
        for (const auto& row : device.vlans.table)
            ids.push_back(row.first);
        return ids;
    }
};

} // namespace

TEST_F(VlanUpkeep, moving_an_untagged_port_leaves_creates_and_joins_in_that_order) {
    add_vlan(10, {}, {4});
    sim::set_bit(device.vlans.table[1].untagged, 4, false);
    EXPECT_EQ(Auto_edit_vlan(4, VLAN_UNTAGGED, "20"), 0);
    EXPECT_EQ(
        trace(),
        (Lines{
            "sys_util_str2Vlanmask(\"20\") = 0", "sal_vlan_portAdminVlanmask_get(4, 3) = 0",
            "sal_vlan_portAdminVlanmask_get(4, 2) = 0", "sys_util_bitmaskIsClear_ret(0, 4096) = 0",
            "sal_vlan_portAdminVlanmask_add(4, 0, {10}) = 0",
            "sal_vlan_adminEntryExist_ret(20) = 0", "sal_vlan_nameStr_get(20, \"VLAN\") = 0",
            "sal_vlan_adminEntry_create(20, \"VLAN0020\") = 0",
            "sys_util_bitmaskIsClear_ret(0, 4096) = 0",
            "sal_vlan_portAdminVlanmask_add(4, 3, {20}) = 0"}));
    EXPECT_EQ(vlans_of(4), Lines{"20"});
    // 10 is left behind without members, until the sweep.
    EXPECT_EQ(all_vlans(), (std::vector<int>{1, 10, 20}));
    EXPECT_EQ(Clear_no_member_vlan(), 0);
    EXPECT_EQ(all_vlans(), (std::vector<int>{1, 20}));
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(VlanUpkeep, the_other_kind_of_membership_is_left_alone) {
    add_vlan(10, {4}, {});
    add_vlan(11, {}, {4});
    EXPECT_EQ(Auto_edit_vlan(4, VLAN_TAGGED, "12,14-15"), 0);
    EXPECT_EQ(vlans_of(4), (Lines{"1", "11", "12t", "14t", "15t"}));
    EXPECT_EQ(Auto_edit_vlan(4, VLAN_UNTAGGED, "11"), 0);
    EXPECT_EQ(vlans_of(4), (Lines{"11", "12t", "14t", "15t"}));
}

TEST_F(VlanUpkeep, an_empty_text_leaves_every_vlan_of_that_kind_and_creates_nothing) {
    add_vlan(10, {4}, {});
    add_vlan(11, {4}, {});
    EXPECT_EQ(Auto_edit_vlan(4, VLAN_TAGGED, ""), 0);
    EXPECT_EQ(
        calls(), (Lines{
                     "sys_util_str2Vlanmask", "sal_vlan_portAdminVlanmask_get",
                     "sal_vlan_portAdminVlanmask_get", "sys_util_bitmaskIsClear_ret",
                     "sal_vlan_portAdminVlanmask_add", "sys_util_bitmaskIsClear_ret"}));
    EXPECT_EQ(vlans_of(4), Lines{"1"});
}

TEST_F(VlanUpkeep, a_port_without_vlans_of_that_kind_leaves_none) {
    EXPECT_EQ(Auto_edit_vlan(4, VLAN_TAGGED, "1"), 0);
    EXPECT_EQ(
        calls(), (Lines{
                     "sys_util_str2Vlanmask", "sal_vlan_portAdminVlanmask_get",
                     "sal_vlan_portAdminVlanmask_get", "sys_util_bitmaskIsClear_ret",
                     "sal_vlan_adminEntryExist_ret", "sys_util_bitmaskIsClear_ret",
                     "sal_vlan_portAdminVlanmask_add"}));
    EXPECT_EQ(vlans_of(4), Lines{"1t"});
}

TEST_F(VlanUpkeep, a_text_that_is_no_list_changes_nothing) {
    for (const char* text : {"x", "5-", "7-5", "4096", "1,", ",1", "-1", "1;2"}) {
        forget();
        EXPECT_EQ(Auto_edit_vlan(4, VLAN_UNTAGGED, text), sim::code_bad_text) << text;
        EXPECT_EQ(calls(), Lines{"sys_util_str2Vlanmask"}) << text;
    }
    EXPECT_EQ(vlans_of(4), Lines{"1"});
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(VlanUpkeep, ids_0_and_4095_are_never_looked_up_but_passed_on) {
    EXPECT_EQ(Auto_edit_vlan(4, VLAN_TAGGED, "0,5,4095"), sim::code_no_vlan);
    Lines lines = trace();
    EXPECT_EQ(lines.back(), "sal_vlan_portAdminVlanmask_add(4, 2, {0,5,4095}) = 6");
    for (const char* id : {"0", "4095"}) {
        std::string looked_up = "sal_vlan_adminEntryExist_ret(" + std::string(id) + ") = 0";
        EXPECT_EQ(std::count(lines.begin(), lines.end(), looked_up), 0);
    }
    // What was done before the refusal stays.
    EXPECT_EQ(all_vlans(), (std::vector<int>{1, 5}));
}

TEST_F(VlanUpkeep, every_vlan_of_a_switch_can_be_given_to_a_port) {
    EXPECT_EQ(Auto_edit_vlan(4, VLAN_TAGGED, "1-4094"), 0);
    EXPECT_EQ(device.vlans.table.size(), 4094u);
    EXPECT_EQ(device.vlans.table[4094].name, "VLAN4094");
    EXPECT_TRUE(sim::has_bit(device.vlans.table[4094].tagged, 4));
}

TEST_F(VlanUpkeep, a_full_table_leaves_the_port_between_its_vlans) {
    device.vlans.capacity = 3;
    EXPECT_EQ(Auto_edit_vlan(4, VLAN_UNTAGGED, "10-20"), sim::code_table_full);
    EXPECT_EQ(all_vlans(), (std::vector<int>{1, 10, 11}));
    EXPECT_EQ(vlans_of(4), Lines{});
}

TEST_F(VlanUpkeep, the_sweep_deletes_in_ascending_order_what_has_no_member) {
    add_vlan(4094, {}, {});
    add_vlan(2, {}, {});
    add_vlan(3, {27}, {});
    add_vlan(31, {}, {0});
    add_vlan(32, {}, {});
    EXPECT_EQ(Clear_no_member_vlan(), 0);
    EXPECT_EQ(
        trace(),
        (Lines{
            "sal_vlan_adminEntryExist_get() = 0", "sal_vlan_adminEntry_get(1) = 0",
            "sys_util_bitmaskIsClear_ret(0, 28) = 0", "sal_vlan_adminEntry_get(2) = 0",
            "sys_util_bitmaskIsClear_ret(0, 28) = 1", "sal_vlan_adminEntry_destroy(2) = 0",
            "sal_vlan_adminEntry_get(3) = 0", "sys_util_bitmaskIsClear_ret(0, 28) = 0",
            "sal_vlan_adminEntry_get(31) = 0", "sys_util_bitmaskIsClear_ret(0, 28) = 0",
            "sal_vlan_adminEntry_get(32) = 0", "sys_util_bitmaskIsClear_ret(0, 28) = 1",
            "sal_vlan_adminEntry_destroy(32) = 0", "sal_vlan_adminEntry_get(4094) = 0",
            "sys_util_bitmaskIsClear_ret(0, 28) = 1", "sal_vlan_adminEntry_destroy(4094) = 0"}));
    EXPECT_EQ(all_vlans(), (std::vector<int>{1, 3, 31}));
}

TEST_F(VlanUpkeep, the_sweep_goes_from_1_to_4094) {
    add_vlan(0, {}, {});
    add_vlan(4095, {}, {});
    EXPECT_EQ(Clear_no_member_vlan(), 0);
    EXPECT_EQ(
        calls(), (Lines{
                     "sal_vlan_adminEntryExist_get", "sal_vlan_adminEntry_get",
                     "sys_util_bitmaskIsClear_ret"}));
    EXPECT_EQ(all_vlans(), (std::vector<int>{0, 1, 4095}));
}

TEST_F(VlanUpkeep, the_default_vlan_is_not_exempt_and_its_refusal_ends_the_sweep) {
    device.vlans.table[1].untagged = {};
    add_vlan(2, {}, {});
    EXPECT_EQ(Clear_no_member_vlan(), sim::code_busy);
    EXPECT_EQ(trace().back(), "sal_vlan_adminEntry_destroy(1) = 10");
    EXPECT_EQ(all_vlans(), (std::vector<int>{1, 2}));
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(VlanUpkeep, vlans_deleted_before_a_refusal_stay_deleted) {
    add_vlan(2, {}, {});
    add_vlan(5, {}, {});
    add_vlan(9, {}, {});
    device.vlans.management = 5;
    EXPECT_EQ(Clear_no_member_vlan(), sim::code_busy);
    EXPECT_EQ(all_vlans(), (std::vector<int>{1, 5, 9}));
}

TEST(VlanUpkeepSizes, members_are_looked_for_on_the_ports_the_switch_has) {
    SizedBoard sized(11);
    sized.device.vlans.table[2].name = "beyond";
    sim::set_bit(sized.device.vlans.table[2].tagged, 11, true);
    EXPECT_EQ(Clear_no_member_vlan(), 0);
    EXPECT_FALSE(sized.device.vlans.has(2));
}

TEST(VlanUpkeepFailures, a_failing_call_ends_the_edit_and_is_returned_but_not_recorded) {
    auto prepare = [](sim::Board& board) {
        board.device.vlans.table[10].name = "ten";
        sim::set_bit(board.device.vlans.table[10].tagged, 4, true);
    };
    auto runs =
        fail_each_call(prepare, [](cJSON*) { return Auto_edit_vlan(4, VLAN_TAGGED, "20-21"); });
    Lines failed;
    for (const FailedRun& run : runs) {
        failed.push_back(run.call);
        EXPECT_EQ(run.result, 77) << run.call;
        EXPECT_EQ(run.errors, Codes{}) << run.call;
        EXPECT_EQ(run.calls_after, Lines{}) << run.call;
    }
    EXPECT_EQ(
        failed, (Lines{
                    "sys_util_str2Vlanmask", "sal_vlan_portAdminVlanmask_get",
                    "sal_vlan_portAdminVlanmask_get", "sal_vlan_portAdminVlanmask_add",
                    "sal_vlan_nameStr_get", "sal_vlan_adminEntry_create", "sal_vlan_nameStr_get",
                    "sal_vlan_adminEntry_create", "sal_vlan_portAdminVlanmask_add"}));
}

TEST(VlanUpkeepFailures, a_failing_call_ends_the_sweep_and_is_returned_but_not_recorded) {
    auto prepare = [](sim::Board& board) {
        board.device.vlans.table[10].name = "ten";
        board.device.vlans.table[20].name = "twenty";
    };
    auto runs = fail_each_call(prepare, [](cJSON*) { return Clear_no_member_vlan(); });
    Lines failed;
    for (const FailedRun& run : runs) {
        failed.push_back(run.call);
        EXPECT_EQ(run.result, 77) << run.call;
        EXPECT_EQ(run.errors, Codes{}) << run.call;
        EXPECT_EQ(run.calls_after, Lines{}) << run.call;
    }
    EXPECT_EQ(
        failed, (Lines{
                    "sal_vlan_adminEntryExist_get", "sal_vlan_adminEntry_get",
                    "sal_vlan_adminEntry_get", "sal_vlan_adminEntry_destroy",
                    "sal_vlan_adminEntry_get", "sal_vlan_adminEntry_destroy"}));
}
