// Who the switch is.
#include "sections/summary.h"

#include "tests/support/on_board.h"

namespace {

class SummarySection : public OnBoard {
  protected:
    int set(const std::string& info) {
        forget();
        Json document("{\"summary_info\": " + info + "}");
        return vxc_summary_set(document);
    }
    int rename(const std::string& name) { return set("{\"device_name\": \"" + name + "\"}"); }
    static int uptime() {
        Json document(createJsonObject());
        EXPECT_EQ(vxc_summary_get(document), 0);
        int found = 0;
        return getJsonIntValueForKey(document["summary_info"], "uptime_seconds", &found);
    }
    void plug(const std::vector<std::size_t>& ports) {
        device.chip.change([&](sim::ChipState& chip) {
            for (sim::ChipPort& port : chip.ports)
                port.plugged = false;
            for (std::size_t port : ports)
                chip.ports[port].plugged = true;
        });
    }
};

} // namespace

TEST_F(SummarySection, report) {
    board.clock.sleep(123);
    device.system.name = "Attic";
    Report report = report_of(vxc_summary_get);
    std::int32_t active = 0;
    EXPECT_EQ(vxc_active_port_count(&active), 0);
    EXPECT_EQ(report.result, 0);
    EXPECT_EQ(
        report.text,
        R"({"summary_info":{"device_name":"Attic","model":"Q18r5","mac":"02:1B:2C:3D:4E:5F",)"
        R"("firmware_version":"1.0.0","uptime_seconds":123,"total_ports":20,"active_ports":)" +
            std::to_string(active) + R"(,"ip":"192.168.1.100","gateway_ip":"192.168.1.1"}})");
}

TEST_F(SummarySection, reads_everything_in_a_fixed_order_before_it_reports) {
    report_of(vxc_summary_get);
    Lines names = calls();
    std::erase(names, "sys_port_linkStatus_ret");
    EXPECT_EQ(
        names, (Lines{
                   "sal_sys_macAddr_get", "sal_sys_systemName_get", "sys_util_mac2Str",
                   "sal_sys_ip_get", "sys_util_ip2Str", "sal_sys_gateway_get", "sys_util_ip2Str",
                   "sal_sys_systemUptime_get", "fds_sys_version_ret"}));
}

TEST_F(SummarySection, any_failure_but_the_gateways_leaves_the_report_without_it) {
    auto runs = fail_each_call([](sim::Board&) {}, vxc_summary_get);
    ASSERT_EQ(runs.size(), 8u);
    for (const FailedRun& run : runs) {
        bool gateway = run.call == "sal_sys_gateway_get";
        EXPECT_EQ(run.result, gateway ? 0 : 77) << run.call;
        EXPECT_EQ(run.errors, gateway ? Codes{} : Codes{77}) << run.call;
        if (gateway) {
            EXPECT_NE(run.report.find(R"("gateway_ip":"0.0.0.0")"), std::string::npos);
        } else {
            EXPECT_EQ(run.report, "{}") << run.call;
            EXPECT_TRUE(run.calls_after.empty()) << run.call;
        }
    }
}

TEST_F(SummarySection, uptime_is_cut_to_whole_seconds) {
    for (double seconds : {123.0, 123.45, 123.99}) {
        board.clock.restart(seconds);
        EXPECT_EQ(uptime(), 123) << seconds;
    }
    // Hundredths from 2^31 on, which a switch has after 248 days.
    board.clock.restart(30000000.5);
    EXPECT_EQ(uptime(), 30000000);
    board.clock.restart(42949672.95);
    EXPECT_EQ(uptime(), 42949672);
}

TEST_F(SummarySection, the_longest_name_is_reported_whole) {
    device.system.name = std::string(255, 'n');
    Json document(createJsonObject());
    EXPECT_EQ(vxc_summary_get(document), 0);
    EXPECT_EQ(
        getJsonStringValueForKey(document["summary_info"], "device_name"), device.system.name);
}

TEST_F(SummarySection, links_are_counted_on_ports_0_to_19_only) {
    plug({0, 19, 20, 27});
    forget();
    std::int32_t active = -1;
    EXPECT_EQ(vxc_active_port_count(&active), 0);
    EXPECT_EQ(active, 2);
    Lines asked = trace();
    ASSERT_EQ(asked.size(), 20u);
    EXPECT_EQ(asked.back(), "sys_port_linkStatus_ret(19) = 1");
}

TEST_F(SummarySection, rename_stores_the_name) {
    EXPECT_EQ(rename("Switch-1"), 0);
    EXPECT_EQ(trace(), (Lines{"sal_sys_systemName_set(\"Switch-1\") = 0"}));
    EXPECT_EQ(rename("a"), 0);
    EXPECT_EQ(device.system.name, "a");
}

TEST_F(SummarySection, bad_names_are_refused_with_19) {
    for (const char* name : {"", "1Switch", "Switch-", "Switch_1", "My Switch", "-x", "Sw\u00e4"}) {
        EXPECT_EQ(rename(name), 19) << name;
        EXPECT_EQ(recorded(), (Codes{19})) << name;
        EXPECT_TRUE(trace().empty()) << name;
    }
}

TEST_F(SummarySection, missing_name_is_498_and_recorded) {
    EXPECT_EQ(set("{}"), 498);
    EXPECT_EQ(recorded(), (Codes{498}));
    EXPECT_EQ(set(R"({"device_name": 5})"), 498);
}

TEST_F(SummarySection, missing_section_is_19_and_recorded) {
    Json document("{}");
    EXPECT_EQ(vxc_summary_set(document), 19);
    EXPECT_EQ(recorded(), (Codes{19}));
}

TEST_F(SummarySection, missing_system_is_498_and_not_recorded) {
    EXPECT_EQ(vxc_summary_set(nullptr), 498);
    EXPECT_TRUE(recorded().empty());
}

TEST_F(SummarySection, long_name_is_the_platforms_to_refuse) {
    EXPECT_NE(rename(std::string(300, 'a')), 0);
    EXPECT_EQ(recorded().size(), 1u);
    EXPECT_TRUE(called("sal_sys_systemName_set"));
    EXPECT_EQ(device.system.name, "Switch");
}
