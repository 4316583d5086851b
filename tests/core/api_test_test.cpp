// Settings by the keeper channel.
#include "core/api_test.h"

#include "tests/support/on_board.h"

namespace {

class ApiTest : public OnBoard {};

} // namespace

TEST_F(ApiTest, applies_summary_snmp_and_access_in_this_order_and_returns_the_last_result) {
    Json document(R"({"device_access": {"gui": false}, "snmp": {"enable": false},
                      "summary_info": {"device_name": "Attic"}})");
    EXPECT_EQ(api_test(document), 0);
    EXPECT_EQ(
        calls(), (Lines{
                     "sal_sys_systemName_set", "sal_snmp_enable_set", "sal_snmp_stop",
                     "sal_sys_httpEnable_set", "sal_sys_httpsEnable_set"}));
}

TEST_F(ApiTest, goes_on_after_a_failure_and_returns_only_the_last_result) {
    Json document(R"({"device_access": {"gui": false}, "snmp": {"enable": false},
                      "summary_info": {"device_name": "Attic"}})");
    fail("sal_sys_systemName_set", 77);
    fail("sal_snmp_enable_set", 78);
    EXPECT_EQ(api_test(document), 0);
    EXPECT_TRUE(called("sal_sys_httpsEnable_set"));
    EXPECT_EQ(recorded(), (Codes{77, 78}));
    fail("sal_sys_httpsEnable_set", 79);
    EXPECT_EQ(api_test(document), 79);
}

TEST_F(ApiTest, without_sections_each_setter_tells_so) {
    Json document(R"({"action": "api_test"})");
    EXPECT_EQ(api_test(document), 19);
    EXPECT_EQ(recorded(), (Codes{19, 498, 19}));
    EXPECT_EQ(trace(), Lines{});
}
