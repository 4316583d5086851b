// The SNMP section.
#include "sections/snmp.h"

#include <algorithm>

#include "base/debug.h"
#include "tests/sections/outcomes.h"

namespace {

class Snmp : public OnBoard {
  protected:
    int set(const std::string& snmp) { return vxc_snmp_set(Json(R"({"snmp":)" + snmp + "}")); }
    int communities(const std::string& items) { return set(R"({"communities":)" + items + "}"); }
    int targets(const std::string& items) { return set(R"({"trap":)" + items + "}"); }

    // The one target that was added, as the platform was given it; "" for none.
    std::string added(const std::string& item) {
        forget();
        device.snmp.targets = {};
        EXPECT_EQ(targets("[" + item + "]"), 0);
        for (const std::string& line : trace())
            if (line.starts_with("sal_snmp_target_add"))
                return line;
        return "";
    }
    bool has_community(const std::string& name) const {
        for (const sim::Community& community : device.snmp.communities)
            if (community.name == name)
                return true;
        return false;
    }
};

std::string report(const std::string& communities, const std::string& targets) {
    return R"({"snmp":{"enable":false,"communities":[)" + communities + R"(],"trap":[)" + targets +
           "]}}";
}

const char* const public_community = R"({"name":"public","access":1})";
const char* const v1_target =
    R"({"host":"10.0.0.1","version":"v1","notify_type":"traps","community_name":"public","udp":162})";

// A v1 target in slot 0 and an inform target in slot 2.
void two_targets(sim::Board& board) {
    auto& targets = board.device.snmp.targets;
    targets[0] = {"10.0.0.1", 0, 0, "public", 162, 15, 3};
    targets[2] = {"nms.example.net", 1, 2, "ops", 10162, 300, 255};
}

const char* const inform_target =
    R"({"host":"nms.example.net","version":"v2c","notify_type":"informs","community_name":"ops",)"
    R"("udp":10162,"timeout":300,"retry":255})";

const char* const delete_public = R"([{"name": "public", "action": 2}])";
const char* const add_ops = R"([{"name": "ops", "access": 2, "action": 1}])";

void plain(sim::Board&) {}

std::string ends(const std::string& call, int nth = 1) {
    return call + " #" + std::to_string(nth) + ": 77 [77], then nothing";
}

} // namespace

TEST_F(Snmp, report_has_the_visible_communities_and_the_targets) {
    two_targets(board);
    device.snmp.communities[1] = {"tools", 1, true};
    device.snmp.communities[7] = {"ops", 1, false};
    Report made = report_of(vxc_snmp_get);
    EXPECT_EQ(made.result, 0);
    EXPECT_EQ(
        made.text, report(
                       std::string(public_community) + R"(,{"name":"ops","access":2})",
                       std::string(v1_target) + "," + inform_target));
    EXPECT_EQ(
        joined_calls(calls()),
        "sal_snmp_enable_get, sal_snmp_com2sec_get x8, sal_snmp_target_get x8");
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(Snmp, a_running_service_is_reported) {
    device.snmp.enable = true;
    Json document(createJsonObject());
    EXPECT_EQ(vxc_snmp_get(document), 0);
    int found = 0;
    EXPECT_EQ(getJsonBoolValueForKey(document["snmp"], "enable", &found), 1);
}

TEST_F(Snmp, targets_of_other_versions_are_reported) {
    device.snmp.targets[0] = {"a", 1, 1, "x", 162, 15, 3};
    device.snmp.targets[1] = {"b", 2, 3, "user", 162, 15, 3};
    device.snmp.targets[2] = {"c", 2, 4, "user", 162, 1, 2};
    device.snmp.targets[3] = {"d", 9, 0, "x", 65535, 15, 3};
    EXPECT_EQ(
        report_of(vxc_snmp_get).text,
        report(
            public_community,
            R"({"host":"a","version":"v2c","notify_type":"traps","community_name":"x","udp":162},)"
            R"({"host":"b","version":"v3","notify_type":"traps","community_name":"","udp":162},)"
            R"({"host":"c","version":"v3","notify_type":"informs","community_name":"","udp":162,)"
            R"("timeout":1,"retry":2},)"
            R"({"host":"d","version":"unknown","notify_type":"traps","community_name":"x",)"
            R"("udp":65535})"));
}

TEST_F(Snmp, a_failing_community_read_is_not_recorded_and_leaves_a_valid_report_without_snmp) {
    fail("sal_snmp_com2sec_get", 77, 3);
    Json document(R"({"before": 1})");
    EXPECT_EQ(vxc_snmp_get(document), 77);
    addJsonObjectIntItem(document, "after", 2);
    EXPECT_EQ(compact(document), R"({"before":1,"after":2})");
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_FALSE(called("sal_snmp_target_get"));
}

TEST_F(Snmp, each_failing_read) {
    Lines expected = {"sal_snmp_enable_get #1: 77 [77], then nothing, leaving {}"};
    for (int nth = 1; nth <= 8; ++nth)
        expected.push_back(
            "sal_snmp_com2sec_get #" + std::to_string(nth) + ": 77 [], then nothing, leaving {}");
    for (int nth = 1; nth <= 8; ++nth) {
        std::string left = nth == 1 ? "" : v1_target;
        if (nth > 3)
            left += std::string(",") + inform_target;
        expected.push_back(
            ends("sal_snmp_target_get", nth) + ", leaving " + report(public_community, left));
    }
    EXPECT_EQ(outcomes_and_reports(fail_each_call(two_targets, vxc_snmp_get)), expected);
}

TEST_F(Snmp, null_or_missing_section_records_498) {
    EXPECT_EQ(vxc_snmp_set(nullptr), 498);
    EXPECT_EQ(vxc_snmp_set(Json("{}")), 498);
    EXPECT_EQ(recorded(), (Codes{498, 498}));
    EXPECT_EQ(trace(), Lines{});
}

TEST_F(Snmp, enabling_starts_and_disabling_stops_the_service) {
    EXPECT_EQ(set(R"({"enable": true})"), 0);
    EXPECT_TRUE(device.snmp.running);
    EXPECT_EQ(set(R"({"enable": false})"), 0);
    EXPECT_FALSE(device.snmp.running);
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_snmp_enable_set(1) = 0", "cmd_snmp_demo_restart() = 0",
                     "sal_snmp_enable_set(0) = 0", "sal_snmp_stop() = 0"}));
}

TEST_F(Snmp, each_failing_call_of_enable_ends_the_apply) {
    auto enable = [](const char* on) {
        return fail_each_call(plain, [on](cJSON*) {
            return vxc_snmp_set(
                Json(std::string(R"({"snmp": {"enable": )") + on + R"(, "trap": []}})"));
        });
    };
    EXPECT_EQ(
        outcomes(enable("true")),
        (Lines{
            ends("sal_snmp_enable_set"), ends("cmd_snmp_demo_restart"), ends("sal_snmp_restart")}));
    EXPECT_EQ(
        outcomes(enable("false")),
        (Lines{ends("sal_snmp_enable_set"), ends("sal_snmp_stop"), ends("sal_snmp_restart")}));
}

TEST_F(Snmp, a_community_is_added_with_its_groups_and_access_records) {
    EXPECT_EQ(communities(add_ops), 0);
    EXPECT_EQ(
        trace(), (Lines{
                     R"(sal_util_isInValidStr_ret("ops") = 0)", "sal_snmp_view_get(0) = 0",
                     R"(sal_snmp_accessIndex_get("NS_group_ops", 0) = 0)",
                     R"(sal_snmp_accessIndex_get("NS_group_ops", 1) = 0)",
                     R"(sal_snmp_accessView_test("NS_group_ops") = 0)",
                     R"(sal_snmp_basic_accessAdd_test("NS_group_ops") = 0)",
                     "sal_snmp_com2sec_add({ops, right 1}) = 0",
                     R"(sal_snmp_group_add("ops", 0, "NS_group_ops") = 0)",
                     R"(sal_snmp_group_add("ops", 1, "NS_group_ops") = 0)",
                     "sal_snmp_access_add({NS_group_ops, model 0, read all, write all}) = 0",
                     "sal_snmp_access_add({NS_group_ops, model 1, read all, write all}) = 0",
                     "sal_snmp_restart() = 0"}));
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(Snmp, a_read_only_community_gets_no_write_view) {
    EXPECT_EQ(communities(R"([{"name": "ops", "access": 1, "action": 1}])"), 0);
    Lines lines = trace();
    ASSERT_EQ(lines.size(), 12u);
    EXPECT_EQ(lines[6], "sal_snmp_com2sec_add({ops, right 0}) = 0");
    EXPECT_EQ(lines[9], "sal_snmp_access_add({NS_group_ops, model 0, read all, write }) = 0");
    EXPECT_EQ(lines[10], "sal_snmp_access_add({NS_group_ops, model 1, read all, write }) = 0");
}

TEST_F(Snmp, each_failing_call_of_an_add_ends_the_apply) {
    auto runs = fail_each_call(plain, [](cJSON*) {
        return vxc_snmp_set(
            Json(std::string(R"({"snmp": {"trap": [], "communities": )") + add_ops + "}}"));
    });
    EXPECT_EQ(
        outcomes(runs), (Lines{
                            ends("sal_snmp_view_get"), ends("sal_snmp_accessIndex_get", 1),
                            ends("sal_snmp_accessIndex_get", 2), ends("sal_snmp_accessView_test"),
                            ends("sal_snmp_basic_accessAdd_test"), ends("sal_snmp_com2sec_add"),
                            ends("sal_snmp_group_add", 1), ends("sal_snmp_group_add", 2),
                            ends("sal_snmp_access_add", 1), ends("sal_snmp_access_add", 2),
                            ends("sal_snmp_restart", 1), ends("sal_snmp_restart", 2)}));
}

TEST_F(Snmp, a_group_with_an_access_record_is_not_added_again) {
    EXPECT_EQ(communities(R"([{"name": "public", "access": 1, "action": 1}])"), 19);
    EXPECT_EQ(
        calls(),
        (Lines{"sal_util_isInValidStr_ret", "sal_snmp_view_get", "sal_snmp_accessIndex_get"}));
    EXPECT_EQ(recorded(), Codes{19});
    forget();
    device.snmp.accesses = {{"NS_group_ops", 1, "all", ""}};
    EXPECT_EQ(communities(add_ops), 19);
    EXPECT_FALSE(called("sal_snmp_com2sec_add"));
}

TEST_F(Snmp, eight_communities_fit) {
    for (int i = 1; i < 8; ++i)
        EXPECT_EQ(
            communities(R"([{"name": "c)" + std::to_string(i) + R"(", "access": 1, "action": 1}])"),
            0);
    EXPECT_EQ(communities(add_ops), 7);
    EXPECT_FALSE(has_community("ops"));
}

TEST_F(Snmp, a_community_is_deleted_with_its_groups_and_access_records) {
    EXPECT_EQ(communities(delete_public), 0);
    Lines lines = trace();
    Lines first(lines.begin(), lines.begin() + 4);
    EXPECT_EQ(
        first, (Lines{
                   R"(sal_util_isInValidStr_ret("public") = 0)", "sal_snmp_com2sec_get(0) = 0",
                   "sal_rmon_event_get(0) = 0", "sal_rmon_eventRuntime_get(0) = 0"}));
    ASSERT_GE(lines.size(), 66u);
    lines.erase(lines.begin(), lines.begin() + 2 + 2 * 32);
    EXPECT_EQ(
        lines,
        (Lines{
            R"(sal_snmp_com2sec_del("public") = 0)", R"(sal_snmp_groupIndex_get("public", 0) = 0)",
            "sal_snmp_group_get(0) = 0", R"(sal_snmp_group_del("public", 0) = 0)",
            R"(sal_snmp_groupIndex_get("public", 1) = 0)", "sal_snmp_group_get(0) = 0",
            R"(sal_snmp_group_del("public", 1) = 0)",
            R"(sal_snmp_accessIndex_get("NS_group_public", 0) = 0)", "sal_snmp_access_get(0) = 0",
            R"(sal_snmp_access_del("NS_group_public", 0) = 0)",
            R"(sal_snmp_accessIndex_get("NS_group_public", 1) = 0)", "sal_snmp_access_get(0) = 0",
            R"(sal_snmp_access_del("NS_group_public", 1) = 0)"}));
    EXPECT_FALSE(has_community("public"));
    EXPECT_TRUE(device.snmp.groups.empty());
    EXPECT_TRUE(device.snmp.accesses.empty());
}

TEST_F(Snmp, each_failing_call_of_a_delete_ends_the_apply) {
    auto runs = fail_each_call(plain, [](cJSON*) {
        return vxc_snmp_set(
            Json(std::string(R"({"snmp": {"trap": [], "communities": )") + delete_public + "}}"));
    });
    Lines expected = {ends("sal_snmp_com2sec_get")};
    for (int nth = 1; nth <= 32; ++nth) {
        expected.push_back(ends("sal_rmon_event_get", nth));
        expected.push_back(ends("sal_rmon_eventRuntime_get", nth));
    }
    expected.push_back(ends("sal_snmp_com2sec_del"));
    for (int nth = 1; nth <= 2; ++nth)
        for (const char* call :
             {"sal_snmp_groupIndex_get", "sal_snmp_group_get", "sal_snmp_group_del"})
            expected.push_back(ends(call, nth));
    for (int nth = 1; nth <= 2; ++nth)
        for (const char* call :
             {"sal_snmp_accessIndex_get", "sal_snmp_access_get", "sal_snmp_access_del"})
            expected.push_back(ends(call, nth));
    expected.push_back(ends("sal_snmp_restart"));
    EXPECT_EQ(outcomes(runs), expected);
}

TEST_F(Snmp, a_community_that_does_not_exist_cannot_be_deleted) {
    for (const char* name : {"Public", "publi", "public1"}) {
        forget();
        EXPECT_EQ(communities(std::string(R"([{"name": ")") + name + R"(", "action": 2}])"), 12);
        EXPECT_EQ(joined_calls(calls()), "sal_util_isInValidStr_ret, sal_snmp_com2sec_get x8");
        EXPECT_EQ(recorded(), Codes{12});
    }
}

TEST_F(Snmp, a_community_used_by_an_rmon_event_stays_and_ends_the_apply_with_minus_1) {
    device.snmp.events[31] = {true, "public", "too many errors"};
    debug_flag = 1;
    EXPECT_EQ(set(std::string(R"({"trap": [], "communities": )") + delete_public + "}"), -1);
    EXPECT_EQ(raw_console(), "This community name are using by RMON event, cannot be deleted!!\n");
    EXPECT_EQ(recorded(), Codes{-1});
    EXPECT_TRUE(has_community("public"));
    EXPECT_FALSE(called("sal_snmp_com2sec_del"));
    EXPECT_FALSE(called("sal_snmp_restart"));
}

TEST_F(Snmp, an_rmon_event_of_another_community_or_not_active_does_not_hold_it) {
    device.snmp.events[0] = {true, "publi", ""};
    device.snmp.events[1] = {false, "public", ""};
    EXPECT_EQ(communities(delete_public), 0);
    EXPECT_FALSE(has_community("public"));
}

TEST_F(Snmp, groups_without_views_end_the_delete_with_327_before_the_access_records) {
    device.snmp.accesses = {};
    EXPECT_EQ(communities(delete_public), 327);
    EXPECT_EQ(recorded(), Codes{327});
    EXPECT_FALSE(has_community("public"));
    EXPECT_TRUE(device.snmp.groups.empty());
    EXPECT_FALSE(called("sal_snmp_accessIndex_get"));
}

TEST_F(Snmp, a_group_with_a_write_view_only_is_deleted) {
    for (sim::GroupAccess& access : device.snmp.accesses) {
        access.read_view = "";
        access.write_view = "all";
    }
    EXPECT_EQ(communities(delete_public), 0);
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_TRUE(device.snmp.accesses.empty());
}

TEST_F(Snmp, records_that_are_gone_already_need_no_deleting) {
    device.snmp.groups = {};
    device.snmp.accesses.erase(device.snmp.accesses.begin());
    EXPECT_EQ(communities(delete_public), 0);
    EXPECT_FALSE(called("sal_snmp_group_get"));
    EXPECT_TRUE(device.snmp.accesses.empty());
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(Snmp, a_name_of_21_characters_ends_the_apply_with_38_unrecorded) {
    EXPECT_EQ(
        communities(R"([{"name": "abcdefghijklmnopqrst1", "access": 1, "action": 1},
                        {"name": "ops", "access": 1, "action": 1}])"),
        38);
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_EQ(trace(), Lines{});
}

TEST_F(Snmp, a_name_too_long_is_told_before_its_characters_and_leaves_what_was_applied_before_it) {
    EXPECT_EQ(
        set(R"({"enable": true, "trap": [],
                "communities": [{"name": "ops", "access": 1, "action": 1},
                                {"name": "a name of 21 letters!", "action": 2}]})"),
        38);
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_TRUE(device.snmp.enable);
    EXPECT_TRUE(has_community("ops"));
    EXPECT_EQ(calls().back(), "sal_snmp_restart");
    Lines names = calls();
    EXPECT_EQ(std::count(names.begin(), names.end(), "sal_snmp_restart"), 1);
    EXPECT_EQ(
        communities(
            R"([{"action": 1, "access": 1, "name": ")" + std::string(1 << 20, 'n') + "\"}]"),
        38);
}

TEST_F(Snmp, a_name_of_20_characters_is_added) {
    EXPECT_EQ(communities(R"([{"name": "abcdefghijklmnopqrst", "access": 1, "action": 1}])"), 0);
    EXPECT_TRUE(has_community("abcdefghijklmnopqrst"));
    EXPECT_EQ(device.snmp.groups.back().group, "NS_group_abcdefghijklmnopqrst");
}

TEST_F(Snmp, bad_items_are_recorded_and_the_next_ones_still_applied) {
    EXPECT_EQ(
        communities(R"([{"name": "o p s", "access": 1, "action": 1},
                        {"name": "", "action": 2},
                        {"name": "bad", "access": 3, "action": 1},
                        {"name": "bad", "access": 0, "action": 1},
                        {"name": "bad", "action": 1},
                        {"access": 1, "action": 1},
                        {"name": "good", "access": 1, "action": 1}])"),
        0);
    EXPECT_EQ(recorded(), (Codes{344, 344, 19, 19, 19, 19}));
    EXPECT_FALSE(has_community("bad"));
    EXPECT_TRUE(has_community("good"));
}

TEST_F(Snmp, items_with_another_action_are_passed_over) {
    EXPECT_EQ(
        communities(R"([{"name": "abcdefghijklmnopqrstuvwxyz", "access": 1},
                        {"name": "a b", "access": 1, "action": 3}, 7, {"action": 0}])"),
        0);
    EXPECT_EQ(trace(), Lines{});
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(Snmp, communities_of_another_type_change_nothing) {
    for (const char* items :
         {"7", "\"public\"", "null", "{}", "[[], null, \"public\"]",
          R"({"first": {"name": "public", "action": 2}})"})
        EXPECT_EQ(communities(items), 0) << items;
    EXPECT_EQ(trace(), Lines{});
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_EQ(
        communities(R"([{"name": 7, "action": 2}, {"name": {}, "access": 1, "action": 1}])"), 0);
    EXPECT_EQ(trace(), Lines{});
    EXPECT_EQ(recorded(), (Codes{19, 19}));
}

TEST_F(Snmp, without_a_trap_array_there_is_no_final_restart) {
    EXPECT_EQ(
        communities(R"([{"name": "a", "access": 1, "action": 1},
                        {"name": "b", "access": 1, "action": 1}])"),
        0);
    Lines names = calls();
    EXPECT_EQ(std::count(names.begin(), names.end(), "sal_snmp_restart"), 2);
    EXPECT_EQ(names.back(), "sal_snmp_restart");
    forget();
    EXPECT_EQ(set(R"({"communities": []})"), 0);
    EXPECT_EQ(set(R"({"trap": 1})"), 0);
    EXPECT_EQ(
        set(R"({"trap": {"first": {"host": "10.0.0.1", "version": "v1", "notify_type": "traps",
                                   "action": 1}}})"),
        0);
    EXPECT_EQ(trace(), Lines{});
}

TEST_F(Snmp, an_empty_trap_array_restarts_the_service) {
    EXPECT_EQ(targets("[]"), 0);
    EXPECT_EQ(trace(), Lines{"sal_snmp_restart() = 0"});
}

TEST_F(Snmp, a_target_without_udp_timeout_or_retry_gets_162_15_and_3) {
    EXPECT_EQ(
        added(R"({"host": "10.0.0.1", "version": "v2c", "notify_type": "informs",
                  "community_name": "ops", "action": 1})"),
        "sal_snmp_target_add({10.0.0.1, version 1, type 2, community ops, udp 162, timeout 15, "
        "retry 3}) = 0");
}

TEST_F(Snmp, target_types_follow_version_and_notify_type) {
    EXPECT_EQ(
        added(R"({"host": "a", "version": "v1", "notify_type": "traps", "community_name": "x",
                  "udp": 1, "timeout": 300, "retry": 255, "action": 1})"),
        "sal_snmp_target_add({a, version 0, type 0, community x, udp 1, timeout 300, retry 255}) "
        "= 0");
    EXPECT_EQ(
        added(R"({"host": "a", "version": "v2c", "notify_type": "traps", "community_name": "x",
                  "udp": 65535, "timeout": 1, "retry": 1, "action": 1})"),
        "sal_snmp_target_add({a, version 1, type 1, community x, udp 65535, timeout 1, retry 1}) "
        "= 0");
}

TEST_F(Snmp, informs_with_v1_are_refused_with_19) {
    EXPECT_EQ(
        added(R"({"host": "a", "version": "v1", "notify_type": "informs", "community_name": "x",
                  "action": 1})"),
        "");
    EXPECT_EQ(recorded(), Codes{19});
    EXPECT_EQ(trace(), Lines{"sal_snmp_restart() = 0"});
}

TEST_F(Snmp, target_values_outside_the_rules_are_refused_with_19) {
    std::string good_host = R"("host": "a", "community_name": "x", "action": 1, )";
    std::string good = good_host + R"("version": "v1", "notify_type": "traps", )";
    const std::string bad[] = {
        good_host + R"("version": "v3", "notify_type": "traps")",
        good_host + R"("version": "V1", "notify_type": "traps")",
        good_host + R"("version": "v1", "notify_type": "trap")",
        good_host + R"("notify_type": "traps")",
        good_host + R"("version": "v1")",
        good + R"("timeout": 0)",
        good + R"("timeout": 301)",
        good + R"("timeout": 65536)",
        good + R"("retry": 0)",
        good + R"("retry": 256)",
        good + R"("retry": 257)",
        good + R"("timeout": 65837)", // 301 in 16 bits
        R"("action": 1, "community_name": "x", "version": "v1", "notify_type": "traps")",
        R"("action": 3, "host": "a", "community_name": "x", "version": "v1", "notify_type": "traps")",
        R"("host": "a", "community_name": "x", "version": "v1", "notify_type": "traps")",
        R"("action": 1, "version": "v1", "notify_type": "traps", "community_name": "x", "host": ")" +
            std::string(128, 'h') + "\"",
        R"("action": 1, "version": "v1", "notify_type": "traps", "host": "a", "community_name": ")" +
            std::string(33, 'c') + "\"",
    };
    for (const std::string& item : bad) {
        EXPECT_EQ(added("{" + item + "}"), "") << item;
        EXPECT_EQ(recorded(), Codes{19}) << item;
        EXPECT_EQ(trace(), Lines{"sal_snmp_restart() = 0"}) << item;
    }
}

TEST_F(Snmp, the_longest_host_and_community_of_a_target_are_added_whole) {
    std::string host(127, 'h');
    std::string community(32, 'c');
    EXPECT_EQ(
        added(
            R"({"action": 1, "version": "v1", "notify_type": "traps", "host": ")" + host +
            R"(", "community_name": ")" + community + "\"}"),
        "sal_snmp_target_add({" + host + ", version 0, type 0, community " + community +
            ", udp 162, timeout 15, retry 3}) = 0");
}

TEST_F(Snmp, targets_of_another_type_are_refused_with_19) {
    EXPECT_EQ(
        targets(R"([7, null, "10.0.0.1", [],
                    {"action": 1, "host": 7, "version": "v1", "notify_type": "traps"},
                    {"action": 1, "host": "a", "version": 1, "notify_type": "traps"},
                    {"action": 1, "host": "a", "version": "v1", "notify_type": 0},
                    {"action": 1, "host": "a", "version": "v1", "notify_type": "traps",
                     "timeout": "15"}])"),
        0);
    EXPECT_EQ(recorded(), Codes(8, 19));
    EXPECT_EQ(trace(), Lines{"sal_snmp_restart() = 0"});
}

TEST_F(Snmp, a_port_that_no_host_has_is_refused_by_the_platform_and_ends_the_apply) {
    for (const char* udp : {"0", "-1", "65536", "1e300"}) {
        forget();
        int code = targets(
            std::string(R"([{"action": 1, "host": "a", "version": "v1",
            "notify_type": "traps", "community_name": "x", "udp": )") +
            udp + "}]");
        EXPECT_NE(code, 0) << udp;
        EXPECT_EQ(recorded(), Codes{code}) << udp;
        EXPECT_EQ(calls(), Lines{"sal_snmp_target_add"}) << udp;
    }
}

TEST_F(Snmp, timeout_and_retry_are_compared_on_their_low_16_bits) {
    EXPECT_EQ(
        added(R"({"host": "a", "version": "v2c", "notify_type": "informs", "community_name": "x",
                  "timeout": 65546, "retry": 65538, "action": 1})"),
        "sal_snmp_target_add({a, version 1, type 2, community x, udp 162, timeout 10, retry 2}) = "
        "0");
}

TEST_F(Snmp, a_bad_target_does_not_keep_the_next_ones_back) {
    two_targets(board);
    EXPECT_EQ(
        targets(R"([{"host": "x", "action": 1},
                    {"host": "nms.example.net", "version": "v2c", "notify_type": "informs",
                     "action": 2}])"),
        0);
    EXPECT_EQ(recorded(), Codes{19});
    EXPECT_EQ(
        trace(),
        (Lines{R"(sal_snmp_target_del("nms.example.net", 1, 2) = 0)", "sal_snmp_restart() = 0"}));
    EXPECT_EQ(device.snmp.targets[2].host, "");
}

TEST_F(Snmp, each_failing_call_for_targets_ends_the_apply) {
    auto runs = fail_each_call(two_targets, [](cJSON*) {
        return vxc_snmp_set(Json(R"({"snmp": {"trap": [
            {"host": "10.0.0.1", "version": "v1", "notify_type": "traps", "action": 2},
            {"host": "10.0.0.2", "version": "v1", "notify_type": "traps", "action": 1,
             "community_name": "public"}]}})"));
    });
    EXPECT_EQ(
        outcomes(runs),
        (Lines{
            ends("sal_snmp_target_del"), ends("sal_snmp_target_add"), ends("sal_snmp_restart")}));
}

TEST_F(Snmp, communities_are_applied_before_targets_and_after_enable) {
    EXPECT_EQ(
        set(R"({"trap": [{"host": "a", "version": "v1", "notify_type": "traps", "action": 1,
                          "community_name": "x"}],
                "communities": [{"name": "ops", "access": 1, "action": 1}], "enable": true})"),
        0);
    Lines names = calls();
    ASSERT_EQ(names.size(), 2u + 12 + 2);
    EXPECT_EQ(names[0], "sal_snmp_enable_set");
    EXPECT_EQ(names[2], "sal_util_isInValidStr_ret");
    EXPECT_EQ(names[14], "sal_snmp_target_add");
    EXPECT_EQ(names[15], "sal_snmp_restart");
}

TEST_F(Snmp, what_was_reported_can_be_deleted_and_added_again) {
    EXPECT_EQ(communities(delete_public), 0);
    EXPECT_EQ(communities(R"([{"name": "public", "access": 1, "action": 1}])"), 0);
    EXPECT_EQ(report_of(vxc_snmp_get).text, report(public_community, ""));
}

TEST_F(Snmp, the_tables_survive_a_restart_of_the_switch) {
    TempFolder kept;
    {
        sim::Board first(kept.path());
        Json ops(std::string(R"({"snmp": {"communities": )") + add_ops + "}}");
        EXPECT_EQ(vxc_snmp_set(ops), 0);
        EXPECT_TRUE(first.save_startup_config());
    }
    sim::Board second(kept.path());
    EXPECT_EQ(second.device.snmp.communities[1].name, "ops");
    EXPECT_EQ(second.device.snmp.groups.size(), 4u);
    EXPECT_EQ(second.device.snmp.accesses.back().write_view, "all");
}
