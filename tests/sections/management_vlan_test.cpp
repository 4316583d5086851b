// The management VLAN in the report.
#include "sections/management_vlan.h"

#include "tests/support/on_board.h"

using ManagementVlan = OnBoard;

TEST_F(ManagementVlan, is_reported) {
    Report report = report_of(vxc_management_vlan_get);
    EXPECT_EQ(report.result, 0);
    EXPECT_EQ(report.text, R"({"management_vlan":1})");
    EXPECT_EQ(trace(), Lines{"sal_vlan_mgmtVid_get() = 0"});
}

TEST_F(ManagementVlan, report_passes_a_failure_on_and_adds_nothing) {
    auto runs = fail_each_call([](sim::Board&) {}, vxc_management_vlan_get);
    ASSERT_EQ(runs.size(), 1u);
    EXPECT_EQ(runs[0].result, 77);
    EXPECT_EQ(runs[0].report, "{}");
    EXPECT_EQ(runs[0].errors, Codes{});
}

TEST_F(ManagementVlan, a_missing_object_is_code_498) {
    EXPECT_EQ(vxc_management_vlan_get(nullptr), 498);
    EXPECT_EQ(trace(), Lines{});
}
