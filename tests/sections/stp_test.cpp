// The spanning-tree section.
#include "sections/stp.h"

#include <cstring>

#include "tests/sections/outcomes.h"

namespace {

class Stp : public OnBoard {
  protected:
    int set(const std::string& stp) { return vxc_stp_set(Json(R"({"stp":)" + stp + "}")); }

    void hear_root() {
        const std::uint8_t mac[6] = {0x00, 0x1A, 0x2B, 0x3C, 0x4D, 0xEF};
        device.stp.enable = true;
        device.stp.root = {true, 0x1001, {}, 20000, 5};
        std::memcpy(device.stp.root.mac, mac, sizeof mac);
    }
};

} // namespace

TEST_F(Stp, report_of_a_bridge_that_is_the_root) {
    Report report = report_of(vxc_stp_get);
    EXPECT_EQ(report.result, 0);
    EXPECT_EQ(
        report.text, R"({"stp":{"enable":false,"force_version":2,"priority":32768,"root_bridge":)"
                     R"({"root_address":"02:1B:2C:3D:4E:5F","priority":32768,"cost":0,"port":0,)"
                     R"("forward_delay_s":15,"maximum_age_s":20,"hello_time_s":2}}})");
    EXPECT_EQ(trace(), (Lines{"sal_stp_info_get() = 0", "sal_stp_mstInfo_get(0) = 0"}));
}

TEST_F(Stp, report_of_a_bridge_below_another_root) {
    hear_root();
    device.stp.hello_time = 1;
    device.stp.maximum_age = 6;
    device.stp.forward_delay = 4;
    EXPECT_EQ(
        report_of(vxc_stp_get).text,
        R"({"stp":{"enable":true,"force_version":2,"priority":32768,"root_bridge":)"
        R"({"root_address":"00:1A:2B:3C:4D:EF","priority":4096,"cost":20000,"port":5,)"
        R"("forward_delay_s":4,"maximum_age_s":6,"hello_time_s":1}}})");
}

TEST_F(Stp, a_root_priority_field_of_0x8001_is_reported_as_32768) {
    hear_root();
    device.stp.priority = 61440;
    device.stp.root.priority = 0x8001;
    Json document(createJsonObject());
    EXPECT_EQ(vxc_stp_get(document), 0);
    int found = 0;
    cJSON* root = getJsonObjectForKey(document["stp"], "root_bridge");
    EXPECT_EQ(getJsonIntValueForKey(root, "priority", &found), 32768);
}

TEST_F(Stp, the_bridges_own_priority_is_reported_with_all_its_bits) {
    hear_root();
    device.stp.priority = 0x9003;
    Json document(createJsonObject());
    EXPECT_EQ(vxc_stp_get(document), 0);
    int found = 0;
    EXPECT_EQ(getJsonIntValueForKey(document["stp"], "priority", &found), 0x9003);
}

TEST_F(Stp, force_versions_are_reported_as_the_cloud_counts_them) {
    const int reported[][2] = {{0, 1}, {2, 2}, {3, 3}};
    for (auto [platform, cloud] : reported) {
        device.stp.force_version = platform;
        Json document(createJsonObject());
        EXPECT_EQ(vxc_stp_get(document), 0);
        int found = 0;
        EXPECT_EQ(getJsonIntValueForKey(document["stp"], "force_version", &found), cloud);
    }
}

TEST_F(Stp, each_failing_read_leaves_nothing_in_the_report) {
    EXPECT_EQ(
        outcomes_and_reports(fail_each_call([](sim::Board&) {}, vxc_stp_get)),
        (Lines{
            "sal_stp_info_get #1: 77 [77], then nothing, leaving {}",
            "sal_stp_mstInfo_get #1: 77 [77], then nothing, leaving {}",
        }));
}

TEST_F(Stp, null_or_missing_section_does_nothing) {
    EXPECT_EQ(vxc_stp_set(nullptr), 0);
    EXPECT_EQ(vxc_stp_set(Json("{}")), 0);
    EXPECT_EQ(set("{}"), 0);
    EXPECT_EQ(trace(), Lines{});
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(Stp, settings_are_applied_in_their_order) {
    EXPECT_EQ(set(R"({"priority": 4096, "force_version": 3, "enable": true})"), 0);
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_stp_enable_set(1) = 0", "sal_stp_forceVersion_set(3) = 0",
                     "sal_stp_priority_set(4096) = 0"}));
}

TEST_F(Stp, enable_only_returns_0_after_it) {
    EXPECT_EQ(set(R"({"enable": false})"), 0);
    EXPECT_EQ(trace(), Lines{"sal_stp_enable_set(0) = 0"});
}

TEST_F(Stp, force_version_1_is_the_platforms_0) {
    EXPECT_EQ(set(R"({"force_version": 1})"), 0);
    EXPECT_EQ(set(R"({"force_version": 2})"), 0);
    EXPECT_EQ(
        trace(), (Lines{"sal_stp_forceVersion_set(0) = 0", "sal_stp_forceVersion_set(2) = 0"}));
}

TEST_F(Stp, force_version_0_or_4_is_ignored_and_the_priority_still_applied) {
    for (const char* version : {"0", "4", "-1"}) {
        forget();
        EXPECT_EQ(set(std::string(R"({"priority": 8192, "force_version": )") + version + "}"), 0);
        EXPECT_EQ(trace(), Lines{"sal_stp_priority_set(8192) = 0"});
        EXPECT_EQ(recorded(), Codes{});
    }
}

TEST_F(Stp, priorities_0_and_61440_are_applied) {
    EXPECT_EQ(set(R"({"priority": 61440})"), 0);
    EXPECT_EQ(set(R"({"priority": 0})"), 0);
    EXPECT_EQ(trace(), (Lines{"sal_stp_priority_set(61440) = 0", "sal_stp_priority_set(0) = 0"}));
}

TEST_F(Stp, priorities_that_no_bridge_has_give_351_without_a_call) {
    // The last one is cut to the lowest integer, whose low 12 bits are clear.
    for (const char* priority :
         {"61441", "65536", "4097", "100", "-4096", "2147483647", "1e300", "-1e300"}) {
        forget();
        EXPECT_EQ(set(std::string(R"({"priority": )") + priority + "}"), 351) << priority;
        EXPECT_EQ(trace(), Lines{}) << priority;
        EXPECT_EQ(recorded(), Codes{351}) << priority;
    }
}

TEST_F(Stp, a_section_that_is_no_object_changes_nothing) {
    for (const char* section : {"7", "\"stp\"", "null", "true", "[]", "[{\"enable\": true}]"}) {
        EXPECT_EQ(set(section), 0) << section;
        EXPECT_EQ(trace(), Lines{}) << section;
    }
}

TEST_F(Stp, a_bad_priority_leaves_what_was_applied_before_it) {
    EXPECT_EQ(set(R"({"enable": true, "force_version": 3, "priority": 1})"), 351);
    EXPECT_TRUE(device.stp.enable);
    EXPECT_EQ(device.stp.force_version, 3);
}

TEST_F(Stp, each_failing_call_ends_the_apply) {
    auto runs = fail_each_call(
        [](sim::Board&) {},
        [](cJSON*) {
            return vxc_stp_set(
                Json(R"({"stp": {"enable": true, "force_version": 1, "priority": 4096}})"));
        });
    EXPECT_EQ(
        outcomes(runs), (Lines{
                            "sal_stp_enable_set #1: 77 [77], then nothing",
                            "sal_stp_forceVersion_set #1: 77 [77], then nothing",
                            "sal_stp_priority_set #1: 77 [77], then nothing",
                        }));
}
