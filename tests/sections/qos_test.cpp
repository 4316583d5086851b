// The QoS section.
#include "sections/qos.h"

#include <limits>

#include "tests/sections/outcomes.h"

namespace {

std::string entry(int id, int queue) {
    return R"({"id":)" + std::to_string(id) + R"(,"queue":)" + std::to_string(queue) + "}";
}

// The first `count` entries of a map as a fresh switch has it.
std::string map_of(int count, int marks_per_queue) {
    std::string text;
    for (int id = 0; id < count; ++id)
        text += (id ? "," : "") + entry(id, id / marks_per_queue + 1);
    return "[" + text + "]";
}

std::string cos_map(int count = 8) { return R"("cos":)" + map_of(count, 1); }
std::string dscp_map(int count = 64) { return R"("dscp":)" + map_of(count, 8); }

const char* const enable = R"("enable":false)";
const char* const scheduling = R"("scheduling_method":0)";
const char* const trust = R"("trust_mode":0)";

std::string report(const Lines& members) {
    std::string text;
    for (const std::string& member : members)
        text += (text.empty() ? "" : ",") + member;
    return R"({"qos":{)" + text + "}}";
}

void qos_off(sim::Board&) {}
void qos_on(sim::Board& board) { board.device.qos.on = true; }

class Qos : public OnBoard {
  protected:
    int set(const std::string& qos) { return vxc_qos_set(Json(qos)); }
};

const char* const every_setting = R"({"enable": false, "scheduling_method": 1, "trust_mode": 2,
    "cos": [{"id": 0, "queue": 2}], "dscp": [{"id": 63, "queue": 1}]})";

} // namespace

TEST_F(Qos, report_holds_both_tables_in_id_order) {
    Report made = report_of(vxc_qos_get);
    EXPECT_EQ(made.result, 0);
    EXPECT_EQ(made.text, report({enable, scheduling, trust, cos_map(), dscp_map()}));
    Lines made_calls = calls();
    ASSERT_EQ(made_calls.size(), 3u + 8 + 64);
    made_calls.resize(3);
    EXPECT_EQ(
        made_calls,
        (Lines{"sal_qos_mode_get", "sal_qos_strictPriQueueNum_get", "sal_qos_trustType_get"}));
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_EQ(log(), Lines{});
}

TEST_F(Qos, report_of_other_settings) {
    device.qos.on = true;
    device.qos.strict_queues = 0;
    device.qos.trust_type = 3;
    device.qos.cos_queues[0].queue = 7;
    Json document(createJsonObject());
    EXPECT_EQ(vxc_qos_get(document), 0);
    cJSON* qos = document["qos"];
    int found = 0;
    EXPECT_EQ(getJsonBoolValueForKey(qos, "enable", &found), 1);
    EXPECT_EQ(getJsonIntValueForKey(qos, "scheduling_method", &found), 1);
    EXPECT_EQ(getJsonIntValueForKey(qos, "trust_mode", &found), 2);
    EXPECT_EQ(compact(getJsonArrayItem(getJsonObjectForKey(qos, "cos"), 0)), entry(0, 8));
}

TEST_F(Qos, types_and_queues_near_the_ends_of_an_int_wrap_around) {
    device.qos.trust_type = std::numeric_limits<int>::min();
    device.qos.cos_queues[0].queue = std::numeric_limits<int>::max();
    Json qos(createJsonObject());
    EXPECT_EQ(vx_qosTurstMode_get(qos), 0);
    EXPECT_EQ(vx_qosCos_get(qos), 0);
    int found = 0;
    EXPECT_EQ(getJsonIntValueForKey(qos, "trust_mode", &found), std::numeric_limits<int>::max());
    EXPECT_EQ(compact(getJsonArrayItem(qos["cos"], 0)), R"({"id":0,"queue":-2147483648})");
}

TEST_F(Qos, a_strict_priority_count_of_four_is_scheduling_method_1) {
    device.qos.strict_queues = 4;
    Json qos(createJsonObject());
    EXPECT_EQ(vx_qosSchedulMeth_get(qos), 0);
    EXPECT_EQ(compact(qos), R"({"scheduling_method":1})");
}

TEST_F(Qos, a_reader_that_fails_is_logged_and_the_next_ones_still_read) {
    struct Case {
        const char* call;
        int nth;
        const char* text;
        Lines left;
    };
    const Case cases[] = {
        {"sal_qos_mode_get", 1, "qos enable get fail", {scheduling, trust, cos_map(), dscp_map()}},
        {"sal_qos_strictPriQueueNum_get",
         1,
         "qos SchedulMeth get fail",
         {enable, trust, cos_map(), dscp_map()}},
        {"sal_qos_trustType_get",
         1,
         "qos TurstMode get fail",
         {enable, scheduling, cos_map(), dscp_map()}},
        {"sal_qos_cosQueue_get",
         3,
         "qos Cos get fail",
         {enable, scheduling, trust, cos_map(2), dscp_map()}},
        {"sal_qos_dscpQueue_get",
         64,
         "qos Dscp get fail",
         {enable, scheduling, trust, cos_map(), dscp_map(63)}},
    };
    for (const Case& c : cases) {
        forget();
        fail(c.call, 77, c.nth);
        Report made = report_of(vxc_qos_get);
        EXPECT_EQ(made.result, 0) << c.call;
        EXPECT_EQ(made.text, report(c.left)) << c.call;
        EXPECT_EQ(recorded(), Codes{77}) << c.call;
        EXPECT_EQ(log(), Lines{c.text}) << c.call;
        EXPECT_TRUE(called("sys_log")) << c.call;
    }
}

TEST_F(Qos, every_read_may_fail_and_its_table_ends_before_it) {
    auto runs = fail_each_call(qos_off, vxc_qos_get);
    ASSERT_EQ(runs.size(), 3u + 8 + 64);
    for (const FailedRun& run : runs) {
        EXPECT_EQ(run.result, 0) << run.call << run.nth;
        EXPECT_EQ(run.errors, Codes{77}) << run.call << run.nth;
        if (run.call == "sal_qos_cosQueue_get") {
            EXPECT_EQ(
                run.report, report({enable, scheduling, trust, cos_map(run.nth - 1), dscp_map()}));
        } else if (run.call == "sal_qos_dscpQueue_get") {
            EXPECT_EQ(
                run.report, report({enable, scheduling, trust, cos_map(), dscp_map(run.nth - 1)}));
            EXPECT_EQ(run.calls_after, Lines{"sys_log"}) << run.nth;
        }
    }
}

TEST_F(Qos, readers_return_what_they_record) {
    struct Case {
        int (*read)(cJSON*);
        const char* call;
        const char* left;
    };
    const Case cases[] = {
        {vx_qosEnable_get, "sal_qos_mode_get", "{}"},
        {vx_qosSchedulMeth_get, "sal_qos_strictPriQueueNum_get", "{}"},
        {vx_qosTurstMode_get, "sal_qos_trustType_get", "{}"},
        {vx_qosCos_get, "sal_qos_cosQueue_get", R"({"cos":[]})"},
        {vx_qosDscp_get, "sal_qos_dscpQueue_get", R"({"dscp":[]})"},
    };
    for (const Case& c : cases) {
        forget();
        fail(c.call, 77);
        Report made = report_of(c.read);
        EXPECT_EQ(made.result, 77) << c.call;
        EXPECT_EQ(made.text, c.left) << c.call;
        EXPECT_EQ(recorded(), Codes{77}) << c.call;
        EXPECT_EQ(log(), Lines{}) << c.call;
    }
}

TEST_F(Qos, null_settings_do_nothing) {
    EXPECT_EQ(vxc_qos_set(nullptr), 0);
    EXPECT_EQ(trace(), Lines{});
}

TEST_F(Qos, enable_false_with_a_table_writes_it_with_qos_on_and_ends_with_qos_off) {
    device.qos.on = true;
    EXPECT_EQ(set(every_setting), 0);
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_qos_mode_set(0) = 0", "sal_qos_mode_get() = 0", "sal_qos_mode_set(1) = 0",
                     "sal_qos_strictPriQueueNum_set(0) = 0", "sal_qos_trustType_set(3) = 0",
                     "sal_qos_cosQueue_set(0, 1) = 0", "sal_qos_dscpQueue_set(63, 0) = 0",
                     "sal_qos_mode_set(0) = 0"}));
    EXPECT_FALSE(device.qos.on);
    EXPECT_EQ(device.qos.cos_queues[0].queue, 1);
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(Qos, empty_settings_switch_qos_on_and_off_again) {
    EXPECT_EQ(set("{}"), 0);
    EXPECT_EQ(
        trace(),
        (Lines{"sal_qos_mode_get() = 0", "sal_qos_mode_set(1) = 0", "sal_qos_mode_set(0) = 0"}));
}

TEST_F(Qos, qos_that_is_on_is_left_on) {
    EXPECT_EQ(set(R"({"enable": true, "scheduling_method": 0, "trust_mode": 0})"), 0);
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_qos_mode_set(1) = 0", "sal_qos_mode_get() = 0",
                     "sal_qos_strictPriQueueNum_set(8) = 0", "sal_qos_trustType_set(1) = 0"}));
    EXPECT_TRUE(device.qos.on);
}

TEST_F(Qos, scheduling_method_2_with_qos_off_returns_19_and_leaves_qos_on) {
    EXPECT_EQ(
        set(R"({"scheduling_method": 2, "trust_mode": 1, "cos": [{"id": 0, "queue": 1}]})"), 19);
    EXPECT_EQ(trace(), (Lines{"sal_qos_mode_get() = 0", "sal_qos_mode_set(1) = 0"}));
    EXPECT_TRUE(device.qos.on);
    EXPECT_EQ(recorded(), Codes{19});
}

TEST_F(Qos, trust_mode_3_with_qos_off_returns_19_after_the_scheduling_and_leaves_qos_on) {
    EXPECT_EQ(set(R"({"scheduling_method": 1, "trust_mode": 3})"), 19);
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_qos_mode_get() = 0", "sal_qos_mode_set(1) = 0",
                     "sal_qos_strictPriQueueNum_set(0) = 0"}));
    EXPECT_TRUE(device.qos.on);
    EXPECT_EQ(recorded(), Codes{19});
}

TEST_F(Qos, negative_choices_are_refused) {
    EXPECT_EQ(set(R"({"scheduling_method": -1})"), 19);
    EXPECT_EQ(set(R"({"trust_mode": -1})"), 19);
    EXPECT_EQ(recorded(), (Codes{19, 19}));
    EXPECT_FALSE(called("sal_qos_strictPriQueueNum_set"));
    EXPECT_FALSE(called("sal_qos_trustType_set"));
}

TEST_F(Qos, choices_of_more_than_32_bits_are_refused) {
    for (const char* value : {"4294967296", "-4294967296", "1e300"}) {
        EXPECT_EQ(set(std::string(R"({"scheduling_method": )") + value + "}"), 19) << value;
        EXPECT_EQ(set(std::string(R"({"trust_mode": )") + value + "}"), 19) << value;
    }
    EXPECT_FALSE(called("sal_qos_strictPriQueueNum_set"));
    EXPECT_FALSE(called("sal_qos_trustType_set"));
}

TEST_F(Qos, bad_entries_are_recorded_and_the_next_ones_still_applied) {
    device.qos.on = true;
    EXPECT_EQ(
        set(R"({"cos": [{"id": 8, "queue": 1}, {"id": 3, "queue": 0}, {"id": 3, "queue": 9},
                        {"id": 3}, {"queue": 5}, {"id": -1, "queue": 1}, {"id": 3, "queue": 8}],
                "dscp": [{"id": 64, "queue": 1}, {"id": 4294967296, "queue": 1},
                         {"id": 1, "queue": 4294967297}, {"id": 63, "queue": 3}]})"),
        0);
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_qos_mode_get() = 0", "sal_qos_cosQueue_set(3, 7) = 0",
                     "sal_qos_dscpQueue_set(63, 2) = 0"}));
    EXPECT_EQ(recorded(), (Codes{19, 19, 19, 19, 19, 19, 19, 19}));
}

TEST_F(Qos, tables_that_are_no_arrays_change_nothing) {
    device.qos.on = true;
    EXPECT_EQ(set(R"({"cos": 7, "dscp": [1, "x", null]})"), 0);
    EXPECT_EQ(trace(), Lines{"sal_qos_mode_get() = 0"});
    forget();
    EXPECT_EQ(set(R"({"cos": {"first": {"id": 3, "queue": 8}}})"), 0);
    EXPECT_EQ(trace(), Lines{"sal_qos_mode_get() = 0"});
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(Qos, each_failing_call_of_an_update_with_qos_off) {
    auto runs = fail_each_call(qos_off, [](cJSON*) { return vxc_qos_set(Json(every_setting)); });
    EXPECT_EQ(
        outcomes(runs),
        (Lines{
            "sal_qos_mode_set #1: 77 [77], then nothing",
            "sal_qos_mode_get #1: 0 [], then sal_qos_mode_set, sal_qos_strictPriQueueNum_set, "
            "sal_qos_trustType_set, sal_qos_cosQueue_set, sal_qos_dscpQueue_set, sal_qos_mode_set",
            // Not looked at; what a switch with QoS off refuses then is.
            "sal_qos_mode_set #2: 1 [1], then sal_qos_strictPriQueueNum_set, sal_qos_mode_set",
            "sal_qos_strictPriQueueNum_set #1: 77 [77], then sal_qos_mode_set",
            "sal_qos_trustType_set #1: 77 [77], then sal_qos_mode_set",
            "sal_qos_cosQueue_set #1: 77 [77], then sal_qos_mode_set",
            "sal_qos_dscpQueue_set #1: 77 [77], then sal_qos_mode_set",
            "sal_qos_mode_set #3: 77 [77], then nothing",
        }));
}

TEST_F(Qos, each_failing_call_of_an_update_with_qos_on) {
    auto runs = fail_each_call(qos_on, [](cJSON*) {
        return vxc_qos_set(Json(R"({"scheduling_method": 1, "trust_mode": 2,
                "cos": [{"id": 0, "queue": 2}], "dscp": [{"id": 63, "queue": 1}]})"));
    });
    EXPECT_EQ(
        outcomes(runs),
        (Lines{
            "sal_qos_mode_get #1: 0 [], then sal_qos_mode_set, sal_qos_strictPriQueueNum_set, "
            "sal_qos_trustType_set, sal_qos_cosQueue_set, sal_qos_dscpQueue_set, sal_qos_mode_set",
            "sal_qos_strictPriQueueNum_set #1: 77 [77], then nothing",
            "sal_qos_trustType_set #1: 77 [77], then nothing",
            "sal_qos_cosQueue_set #1: 77 [77], then nothing",
            "sal_qos_dscpQueue_set #1: 77 [77], then nothing",
        }));
}

TEST_F(Qos, a_platform_failure_is_told_even_when_qos_cannot_be_switched_off_again) {
    fail("sal_qos_trustType_set", 77);
    fail("sal_qos_mode_set", 78, 2);
    EXPECT_EQ(set(R"({"trust_mode": 1})"), 77);
    EXPECT_EQ(recorded(), Codes{77});
}
