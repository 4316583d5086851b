// The IGMP snooping section.
#include "sections/igmp.h"

#include <algorithm>

#include "tests/sections/outcomes.h"

namespace {

void two_vlans(sim::Board& board) {
    board.device.vlans.table[20].name = "phones";
    board.device.igmp.vlans[20] = {true, false};
}

class Igmp : public OnBoard {
  protected:
    Igmp() { two_vlans(board); }

    int set(const std::string& igmp) { return vxc_igmp_set(Json(R"({"igmp":)" + igmp + "}")); }
};

const char* const vlan_1 = R"({"id":1,"enable":false,"fast_leave":false})";
const char* const vlan_20 = R"({"id":20,"enable":true,"fast_leave":false})";

std::string report(const std::string& vlans) {
    return R"({"igmp":{"enable":false,"version":2,"vlan":[)" + vlans + "]}}";
}

} // namespace

TEST_F(Igmp, report_has_every_vlan_of_the_switch) {
    Report made = report_of(vxc_igmp_get);
    EXPECT_EQ(made.result, 0);
    EXPECT_EQ(made.text, report(std::string(vlan_1) + "," + vlan_20));
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_igmp_enable_get() = 0", "sal_igmp_info_get() = 0",
                     "sal_vlan_operEntryNum_get() = 0", "sal_vlan_adminEntrySort_get(0) = 0",
                     "sal_mcast_vlan_get(1, 0) = 0", "sal_vlan_adminEntrySort_get(1) = 0",
                     "sal_mcast_vlan_get(20, 0) = 0"}));
}

TEST_F(Igmp, each_failing_read_leaves_what_was_reported_before_it) {
    EXPECT_EQ(
        outcomes_and_reports(fail_each_call(two_vlans, vxc_igmp_get)),
        (Lines{
            "sal_igmp_enable_get #1: 77 [77], then nothing, leaving {}",
            "sal_igmp_info_get #1: 77 [77], then nothing, leaving {}",
            "sal_vlan_operEntryNum_get #1: 77 [77], then nothing, leaving " + report(""),
            "sal_vlan_adminEntrySort_get #1: 77 [77], then nothing, leaving " + report(""),
            "sal_mcast_vlan_get #1: 77 [77], then nothing, leaving " + report(""),
            "sal_vlan_adminEntrySort_get #2: 77 [77], then nothing, leaving " + report(vlan_1),
            "sal_mcast_vlan_get #2: 77 [77], then nothing, leaving " + report(vlan_1),
        }));
}

TEST_F(Igmp, null_or_missing_section_does_nothing) {
    EXPECT_EQ(vxc_igmp_set(nullptr), 0);
    EXPECT_EQ(vxc_igmp_set(Json("{}")), 0);
    EXPECT_EQ(set(R"({"vlan": []})"), 0);
    EXPECT_EQ(trace(), Lines{});
}

TEST_F(Igmp, a_list_that_is_no_array_changes_nothing) {
    EXPECT_EQ(set(R"({"vlan": {"first": {"id": 20, "enable": true}}})"), 0);
    EXPECT_EQ(set(R"({"vlan": 20})"), 0);
    EXPECT_EQ(trace(), Lines{});
}

TEST_F(Igmp, version_3_is_set_while_the_lookup_mode_is_0) {
    EXPECT_EQ(set(R"({"enable": true, "version": 3})"), 0);
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_igmp_enable_set(1) = 0", "sal_igmp_lookupMode_get() = 0",
                     "sal_igmp_operVersion_set(3) = 0"}));
}

TEST_F(Igmp, version_3_with_another_lookup_mode_changes_nothing) {
    device.igmp.lookup_mode = 1;
    EXPECT_EQ(set(R"({"version": 3})"), 0);
    EXPECT_EQ(trace(), Lines{"sal_igmp_lookupMode_get() = 0"});
    EXPECT_EQ(device.igmp.version, 2);
}

TEST_F(Igmp, any_other_version_sets_version_2) {
    for (const char* version : {"1", "2", "0", "4", "-3"}) {
        forget();
        device.igmp.version = 3;
        EXPECT_EQ(set(std::string(R"({"version": )") + version + "}"), 0);
        EXPECT_EQ(trace(), Lines{"sal_igmp_operVersion_set(2) = 0"}) << version;
    }
}

TEST_F(Igmp, a_vlan_keeps_what_is_not_given) {
    EXPECT_EQ(set(R"({"vlan": [{"id": 20, "fast_leave": true}, {"id": 1, "enable": true}]})"), 0);
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_mcast_vlan_get(20, 0) = 0",
                     "sal_mcast_vlan_set({vlan 20, family 0, enable 1, fast leave 1}) = 0",
                     "sal_mcast_vlan_get(1, 0) = 0",
                     "sal_mcast_vlan_set({vlan 1, family 0, enable 1, fast leave 0}) = 0"}));
}

TEST_F(Igmp, a_vlan_that_the_platform_rejects_is_recorded_and_the_third_still_applied) {
    EXPECT_EQ(
        set(R"({"vlan": [{"id": 1, "enable": true}, {"id": 77, "enable": true},
                         {"id": 20, "enable": false}]})"),
        0);
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_mcast_vlan_get(1, 0) = 0",
                     "sal_mcast_vlan_set({vlan 1, family 0, enable 1, fast leave 0}) = 0",
                     "sal_mcast_vlan_get(77, 0) = 6", R"(sys_log(7, 21, "igmp set fail") = 0)",
                     "sal_mcast_vlan_get(20, 0) = 0",
                     "sal_mcast_vlan_set({vlan 20, family 0, enable 0, fast leave 0}) = 0"}));
    EXPECT_EQ(recorded(), Codes{6});
    EXPECT_EQ(log(), Lines{"igmp set fail"});
}

TEST_F(Igmp, an_element_without_id_is_skipped_silently) {
    EXPECT_EQ(set(R"({"vlan": [{"enable": true}, 5, {"id": 20}]})"), 0);
    EXPECT_EQ(calls(), (Lines{"sal_mcast_vlan_get", "sal_mcast_vlan_set"}));
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(Igmp, an_id_that_no_vlan_can_have_is_refused_by_the_platform_and_the_next_still_applied) {
    EXPECT_EQ(
        set(R"({"vlan": [{"id": -1}, {"id": 1e300}, {"id": "20"}, {"id": 20, "enable": false}]})"),
        0);
    Lines names = calls();
    EXPECT_EQ(std::count(names.begin(), names.end(), "sal_mcast_vlan_get"), 4);
    EXPECT_EQ(std::count(names.begin(), names.end(), "sal_mcast_vlan_set"), 1);
    EXPECT_FALSE(device.igmp.vlans[20].enable);
    EXPECT_EQ(recorded().size(), 3u);
    EXPECT_EQ(log(), (Lines{"igmp set fail", "igmp set fail", "igmp set fail"}));
}

TEST_F(Igmp, each_failing_call_of_the_apply) {
    auto runs = fail_each_call(two_vlans, [](cJSON*) {
        return vxc_igmp_set(Json(R"({"igmp": {"enable": true, "version": 3,
            "vlan": [{"id": 1, "enable": true}, {"id": 20, "enable": true}]}})"));
    });
    EXPECT_EQ(
        outcomes(runs),
        (Lines{
            "sal_igmp_enable_set #1: 77 [77], then nothing",
            "sal_igmp_lookupMode_get #1: 77 [77], then nothing",
            "sal_igmp_operVersion_set #1: 77 [77], then nothing",
            "sal_mcast_vlan_get #1: 0 [77], then sys_log, sal_mcast_vlan_get, sal_mcast_vlan_set",
            "sal_mcast_vlan_set #1: 0 [77], then sys_log, sal_mcast_vlan_get, sal_mcast_vlan_set",
            "sal_mcast_vlan_get #2: 0 [77], then sys_log",
            "sal_mcast_vlan_set #2: 0 [77], then sys_log",
        }));
}

TEST_F(Igmp, version_2_that_fails_ends_the_apply) {
    fail("sal_igmp_operVersion_set", 77);
    EXPECT_EQ(set(R"({"version": 2, "vlan": [{"id": 1}]})"), 77);
    EXPECT_EQ(recorded(), Codes{77});
    EXPECT_FALSE(called("sal_mcast_vlan_get"));
}
