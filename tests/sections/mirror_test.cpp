// The "port_mirror" section.
#include "sections/mirror.h"

#include <map>

#include "core/dispatch.h"
#include "platform/util.h"
#include "sim/instruments/codes.h"
#include "tests/sections/odd_switch.h"
#include "tests/support/on_board.h"

namespace {

PortBitmap ports(std::initializer_list<int> numbers) {
    PortBitmap set = {};
    for (int port : numbers)
        set.words[port / 32] |= 1u << (port % 32);
    return set;
}

// Group 2 copies what ports 2 to 4 receive and port 6 sends to port 12.
void second_group_on(sim::Board& board) {
    sim::MirrorSession& session = board.device.mirrors.groups[1];
    session.on = true;
    session.target = 11;
    session.ingress = 1;
    session.rx = ports({1, 2, 3});
    session.tx = ports({5});
}

class Mirror : public OnBoard {
  protected:
    int set(const std::string& elements) {
        Json document(R"({"port_mirror":)" + elements + "}");
        return vxc_mirror_set(document);
    }
    sim::MirrorSession& group(std::size_t number) { return device.mirrors.groups[number - 1]; }
};

const std::string off = R"("destination_port":0,"source_tx_port":"","source_rx_port":"",)"
                        R"("ingress_state":0,"session_state":false})";

std::string off_group(int id) { return R"({"id":)" + std::to_string(id) + "," + off; }

const std::string second_group = R"({"id":2,"destination_port":12,"source_tx_port":"6",)"
                                 R"("source_rx_port":"2-4","ingress_state":1,)"
                                 R"("session_state":true})";

std::string report(const std::string& groups) { return R"({"port_mirror":[)" + groups + "]}"; }

const Lines failed_once = {"mirror set fail"};

} // namespace

TEST_F(Mirror, report_has_four_groups_that_are_off) {
    Report got = report_of(vxc_mirror_get);
    EXPECT_EQ(got.result, 0);
    EXPECT_EQ(
        got.text,
        report(off_group(1) + "," + off_group(2) + "," + off_group(3) + "," + off_group(4)));
    Lines first = trace();
    first.resize(3);
    EXPECT_EQ(
        first, (Lines{
                   "sal_mirror_group_targetPort_get(0) = 0", "sal_mirror_group_state_get(0) = 0",
                   "sal_mirror_group_targetPort_get(1) = 0"}));
}

TEST_F(Mirror, report_of_a_group_that_is_on_converts_sent_before_received_ports) {
    second_group_on(board);
    Report got = report_of(vxc_mirror_get);
    EXPECT_EQ(
        got.text,
        report(off_group(1) + "," + second_group + "," + off_group(3) + "," + off_group(4)));
    Lines second = trace();
    EXPECT_EQ(
        Lines(second.begin() + 2, second.begin() + 8),
        (Lines{
            "sal_mirror_group_targetPort_get(1) = 0", "sal_mirror_group_igrState_get(1) = 0",
            "sal_mirror_group_state_get(1) = 0", "sal_mirror_group_sourcePort_get(1) = 0",
            "sal_util_bitmap2numstr({5}) = 0", "sal_util_bitmap2numstr({1-3}) = 0"}));
}

TEST_F(Mirror, report_of_a_group_in_state_2_has_neither_target_nor_ingress) {
    second_group_on(board);
    OddSwitch odd;
    odd.session = 2;
    Json document(report_of(vxc_mirror_get).text);
    EXPECT_EQ(
        compact(getJsonArrayItem(document["port_mirror"], 1)),
        R"({"id":2,"destination_port":0,"source_tx_port":"6","source_rx_port":"2-4",)"
        R"("ingress_state":0,"session_state":true})");
    EXPECT_FALSE(called("sal_mirror_group_igrState_get"));
}

TEST_F(Mirror, report_has_the_sources_of_groups_in_state_1_only) {
    second_group_on(board);
    OddSwitch odd;
    odd.sources = 2;
    Json document(report_of(vxc_mirror_get).text);
    EXPECT_EQ(
        compact(getJsonArrayItem(document["port_mirror"], 1)),
        R"({"id":2,"destination_port":12,"source_tx_port":"","source_rx_port":"",)"
        R"("ingress_state":1,"session_state":true})");
    EXPECT_FALSE(called("sal_mirror_group_sourcePort_get"));
}

TEST_F(Mirror, report_ends_at_each_call_that_fails_with_the_groups_before_it) {
    auto runs = fail_each_call(second_group_on, vxc_mirror_get);
    const std::string first = report(off_group(1));
    const std::string two = report(off_group(1) + "," + second_group);
    const std::string three = report(off_group(1) + "," + second_group + "," + off_group(3));
    struct Expected {
        const char* call;
        std::string left;
    };
    const Expected expected[] = {
        {"sal_mirror_group_targetPort_get", report("")},
        {"sal_mirror_group_state_get", report("")},
        {"sal_mirror_group_targetPort_get", first},
        {"sal_mirror_group_igrState_get", first},
        {"sal_mirror_group_state_get", first},
        {"sal_mirror_group_sourcePort_get", first},
        {"sal_util_bitmap2numstr", first},
        {"sal_util_bitmap2numstr", first},
        {"sal_mirror_group_targetPort_get", two},
        {"sal_mirror_group_state_get", two},
        {"sal_mirror_group_targetPort_get", three},
        {"sal_mirror_group_state_get", three},
    };
    ASSERT_EQ(runs.size(), std::size(expected));
    for (std::size_t i = 0; i < runs.size(); ++i) {
        EXPECT_EQ(runs[i].call, expected[i].call) << i;
        EXPECT_EQ(runs[i].result, 77) << i;
        EXPECT_EQ(runs[i].errors, Codes{77}) << i;
        EXPECT_EQ(runs[i].calls_after, Lines{}) << i;
        EXPECT_EQ(runs[i].report, expected[i].left) << i;
    }
}

TEST_F(Mirror, a_failed_report_is_logged_and_the_next_section_follows) {
    fail("sal_mirror_group_state_get", 77, 2);
    Json document(createJsonObject());
    vxc_system_get(document);
    EXPECT_EQ(log(), Lines{"mirror get fail"});
    EXPECT_EQ(getJsonArraySize(getJsonObjectForKey(document["system"], "port_mirror")), 1);
    EXPECT_EQ(getJsonArraySize(getJsonObjectForKey(document["system"], "link_aggregation")), 8);
}

TEST_F(Mirror, a_group_is_written_in_order) {
    EXPECT_EQ(
        set(R"([{"id":1,"destination_port":9,"source_tx_port":"1,3-5","source_rx_port":"2",
                 "ingress_state":1,"session_state":true}])"),
        0);
    EXPECT_EQ(
        trace(),
        (Lines{
            "sal_mirror_group_sourcePort_get(0) = 0", "sal_util_numstr2bitmap(\"2\") = 0",
            "sal_util_numstr2bitmap(\"1,3-5\") = 0", "sal_mirror_group_targetPort_set(0, 8, 1) = 0",
            "sal_mirror_group_sourcePort_set(0, {1}, {0,2-4}) = 0",
            "sal_mirror_group_igrState_set(0, 1) = 0"}));
    EXPECT_EQ(recorded(), Codes{});
    auto chip = device.chip.state().mirrors[0];
    ASSERT_TRUE(chip);
    EXPECT_EQ(chip->target, 8u);
    EXPECT_EQ(chip->ingress, 1u);
    EXPECT_EQ(chip->rx[0], 0x2u);
    EXPECT_EQ(chip->tx[0], 0x1Du);
}

TEST_F(Mirror, a_group_that_is_switched_off_is_deleted_and_written_again_with_its_sources) {
    second_group_on(board);
    EXPECT_EQ(set(R"([{"id":2,"session_state":false}])"), 0);
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_mirror_group_del(1) = 0", "sal_mirror_group_sourcePort_get(1) = 0",
                     "sal_mirror_group_targetPort_set(1, 0, 1) = 0",
                     "sal_mirror_group_sourcePort_set(1, {1-3}, {5}) = 0"}));
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(Mirror, without_a_state_the_group_keeps_state_target_and_sources) {
    second_group_on(board);
    EXPECT_EQ(set(R"([{"id":2}])"), 0);
    EXPECT_EQ(
        trace(),
        (Lines{
            "sal_mirror_group_targetPort_get(1) = 0", "sal_mirror_group_sourcePort_get(1) = 0",
            "sal_mirror_group_targetPort_set(1, 11, 1) = 0",
            "sal_mirror_group_sourcePort_set(1, {1-3}, {5}) = 0"}));
}

TEST_F(Mirror, without_a_state_a_group_that_is_off_is_deleted_first) {
    EXPECT_EQ(set(R"([{"id":3,"destination_port":7}])"), 0);
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_mirror_group_targetPort_get(2) = 0", "sal_mirror_group_del(2) = 0",
                     "sal_mirror_group_sourcePort_get(2) = 0",
                     "sal_mirror_group_targetPort_set(2, 6, 1) = 0",
                     "sal_mirror_group_sourcePort_set(2, {}, {}) = 0"}));
}

TEST_F(Mirror, a_list_of_sources_replaces_the_other_set_stays) {
    second_group_on(board);
    set(R"([{"id":2,"session_state":true,"destination_port":12,"source_rx_port":"8"}])");
    EXPECT_EQ(trace()[3], "sal_mirror_group_sourcePort_set(1, {7}, {5}) = 0");
    forget();
    set(R"([{"id":2,"session_state":true,"destination_port":12,"source_tx_port":""}])");
    EXPECT_EQ(trace()[3], "sal_mirror_group_sourcePort_set(1, {7}, {}) = 0");
}

TEST_F(Mirror, without_a_state_a_group_in_state_2_is_not_deleted) {
    second_group_on(board);
    OddSwitch odd;
    odd.session = 2;
    EXPECT_EQ(set(R"([{"id":2}])"), 0);
    EXPECT_FALSE(called("sal_mirror_group_del"));
    EXPECT_EQ(group(2).target, 11);
}

TEST_F(Mirror, an_element_without_id_is_skipped) {
    EXPECT_EQ(
        set(R"([{"session_state":false},7,"x",null,[],{"id":4,"destination_port":1,
                 "session_state":true}])"),
        0);
    EXPECT_EQ(calls().size(), 3u);
    EXPECT_TRUE(group(4).on);
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(Mirror, each_element_that_fails_is_recorded_and_logged_and_the_next_one_is_taken) {
    EXPECT_EQ(
        set(R"([{"id":9,"session_state":true},{"id":0,"session_state":false},
                {"id":1,"session_state":true,"source_tx_port":"2-"},
                {"id":2,"session_state":true,"destination_port":5}])"),
        0);
    EXPECT_EQ(recorded(), (Codes{sim::code_bad_value, sim::code_bad_value, sim::code_bad_text}));
    EXPECT_EQ(log(), (Lines{"mirror set fail", "mirror set fail", "mirror set fail"}));
    EXPECT_TRUE(group(2).on);
    EXPECT_FALSE(group(1).on);
}

TEST_F(Mirror, each_failed_call_of_the_settings_has_its_outcome) {
    auto runs = fail_each_call(second_group_on, [](cJSON*) {
        Json document(R"({"port_mirror":[{"id":2,"destination_port":9,"source_tx_port":"1",
            "source_rx_port":"2","ingress_state":0},{"id":3,"session_state":false}]})");
        return vxc_mirror_set(document);
    });
    const Lines third = {
        "sal_mirror_group_del", "sal_mirror_group_sourcePort_get",
        "sal_mirror_group_targetPort_set", "sal_mirror_group_sourcePort_set"};
    const Lines second = {"sal_mirror_group_targetPort_get", "sal_mirror_group_sourcePort_get",
                          "sal_util_numstr2bitmap",          "sal_util_numstr2bitmap",
                          "sal_mirror_group_targetPort_set", "sal_mirror_group_sourcePort_set",
                          "sal_mirror_group_igrState_set"};
    ASSERT_EQ(runs.size(), second.size() + third.size());
    for (std::size_t i = 0; i < runs.size(); ++i) {
        const bool first_element = i < second.size();
        const std::size_t step = first_element ? i : i - second.size();
        EXPECT_EQ(runs[i].call, first_element ? second[step] : third[step]) << i;
        EXPECT_EQ(runs[i].result, 0) << i;
        if (runs[i].call == "sal_mirror_group_sourcePort_get") { // not looked at
            EXPECT_EQ(runs[i].errors, Codes{}) << i;
            Lines rest;
            if (first_element)
                rest.assign(second.begin() + static_cast<long>(i) + 1, second.end());
            else
                rest.assign(third.begin() + static_cast<long>(step) + 1, third.end());
            if (first_element)
                rest.insert(rest.end(), third.begin(), third.end());
            EXPECT_EQ(runs[i].calls_after, rest) << i;
            continue;
        }
        EXPECT_EQ(runs[i].errors, Codes{77}) << i;
        Lines after = {"sys_log"};
        if (first_element)
            after.insert(after.end(), third.begin(), third.end());
        EXPECT_EQ(runs[i].calls_after, after) << i;
    }
}

TEST_F(Mirror, nothing_to_apply_is_a_success) {
    EXPECT_EQ(vxc_mirror_set(nullptr), 0);
    Json other(R"({"ports":[]})");
    EXPECT_EQ(vxc_mirror_set(other), 0);
    EXPECT_EQ(set("[]"), 0);
    EXPECT_EQ(set("{}"), 0);
    EXPECT_EQ(set("5"), 0);
    EXPECT_EQ(calls(), Lines{});
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(Mirror, numbers_at_the_ends_of_their_range_are_refused_by_the_platform) {
    set(R"([{"id":-2147483648,"session_state":true},
            {"id":2147483647,"session_state":true},
            {"id":1,"session_state":true,"destination_port":-2147483648},
            {"id":1,"session_state":true,"destination_port":0},
            {"id":1,"session_state":true,"destination_port":21},
            {"id":1,"session_state":true,"source_rx_port":"4294967297"},
            {"id":1,"session_state":true,"source_rx_port":"97"},
            {"id":1,"session_state":true,"source_rx_port":"96"}])");
    using namespace sim;
    EXPECT_EQ(
        recorded(), (Codes{
                        code_bad_value, code_bad_value, code_no_port, code_no_port, code_no_port,
                        code_bad_text, code_bad_text, code_no_port}));
}

TEST_F(Mirror, the_target_of_a_group_serves_no_other_group_and_is_no_source) {
    second_group_on(board);
    set(R"([{"id":1,"session_state":true,"destination_port":12},
            {"id":1,"session_state":true,"destination_port":13,"source_rx_port":"13"}])");
    EXPECT_EQ(recorded(), (Codes{sim::code_busy, sim::code_busy}));
    EXPECT_EQ(group(1).target, 12);
    EXPECT_EQ(group(1).rx.words[0], 0u);
}

TEST_F(Mirror, the_ingress_state_takes_0_and_1) {
    set(R"([{"id":1,"session_state":true,"ingress_state":2}])");
    EXPECT_EQ(recorded(), Codes{sim::code_bad_value});
}

TEST_F(Mirror, a_list_of_every_other_of_96_ports_is_reported_whole) {
    PortBitmap odd = {{0x55555555, 0x55555555, 0x55555555}};
    PortBitmap pairs = {};
    for (int port = 0; port < 96; ++port)
        if (port % 3 != 2)
            pairs.words[port / 32] |= 1u << (port % 32);
    second_group_on(board);
    group(2).rx = odd;
    group(2).tx = pairs;
    Json document(createJsonObject());
    EXPECT_EQ(vxc_mirror_get(document), 0);
    cJSON* element = getJsonArrayItem(document["port_mirror"], 1);
    std::string rx = getJsonStringValueForKey(element, "source_rx_port");
    std::string tx = getJsonStringValueForKey(element, "source_tx_port");
    EXPECT_EQ(rx.size(), 138u);
    EXPECT_TRUE(rx.ends_with(",91,93,95")) << rx;
    EXPECT_TRUE(tx.ends_with(",91-92,94-95")) << tx;
    EXPECT_LT(tx.size(), static_cast<std::size_t>(PORT_NUMBERS_SIZE));
    EXPECT_GT(tx.size(), 180u);
}

TEST_F(Mirror, a_report_fed_back_changes_nothing_where_all_groups_are_on) {
    int target = 11;
    for (sim::MirrorSession& session : device.mirrors.groups) {
        session.on = true;
        session.target = target++;
        session.rx = ports({1, 2, 9});
    }
    std::string before = report_of(vxc_mirror_get).text;
    Json document(before);
    EXPECT_EQ(vxc_mirror_set(document), 0);
    EXPECT_EQ(report_of(vxc_mirror_get).text, before);
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(Mirror, groups_are_in_the_startup_configuration_and_back_in_the_chip_after_it) {
    second_group_on(board);
    std::string before = report_of(vxc_mirror_get).text;
    EXPECT_TRUE(board.save_startup_config());
    sim::Board again(folder.path());
    EXPECT_EQ(report_of(vxc_mirror_get).text, before);
    auto chip = again.device.chip.state().mirrors[1];
    ASSERT_TRUE(chip);
    EXPECT_EQ(chip->target, 11u);
    EXPECT_EQ(chip->tx[0], 0x20u);
}
