// Diagnostics: what the cloud asks for, what runs, what is reported.
#include "sections/diagnostic.h"

#include "base/debug.h"
#include "base/state.h"
#include "core/keeper_actions.h"
#include "sim/edges/shell.h"
#include "sim/instruments/codes.h"
#include "tests/support/on_board.h"

namespace {

const char* const trace_path = "/tmp/traceroute_tmp0";
const char* const ping_path = "/tmp/pingtest_tmp";

// One line of a result as the report has it, in JSON's own spelling: backslash r backslash n.
const std::string end_of_line = R"(\\r\\n)";

class Diagnostic : public OnBoard {
  protected:
    Diagnostic() {
        device.network.arp.push_back({0xC0A80132, {2, 0, 0, 0, 0, 9}, true, "eth0"});
        sim::Host host{"host.example", 0xC0000201, 2, 4};
        device.network.hosts.push_back(host);
    }

    int traceroute(const std::string& message) {
        Json json(message);
        return vxc_traceroute(json);
    }
    int ping(const std::string& message) {
        Json json(message);
        return vxc_ping_ipv4(json);
    }

    // The command lines that were run.
    Lines commands() const {
        Lines lines;
        for (const std::string& line : trace())
            if (line.starts_with("system("))
                lines.push_back(line.substr(8, line.rfind("\") = ") - 8));
        return lines;
    }

    std::string ping_command(const std::string& message) {
        forget();
        ping_status = DIAGNOSTIC_IDLE;
        EXPECT_EQ(ping(message), 0);
        return commands().size() == 1 ? commands()[0] : "";
    }
    std::string traceroute_command(const std::string& message) {
        forget();
        traceroute_status = DIAGNOSTIC_IDLE;
        EXPECT_EQ(traceroute(message), 0);
        return commands().size() == 1 ? commands()[0] : "";
    }

    std::string report_of_trace(const std::string& output) {
        put_file(trace_path, output);
        traceroute_status = DIAGNOSTIC_READY;
        return text_of("traceroute");
    }
    std::string report_of_ping(const std::string& output) {
        put_file(ping_path, output);
        ping_status = DIAGNOSTIC_READY;
        return text_of("ping_ipv4");
    }

    // A member of the next "diagnostic" object.
    static std::string text_of(const char* key) {
        Json report(createJsonObject());
        vxc_diagnostic_get(report);
        const char* text = getJsonStringValueForKey(report["diagnostic"], key);
        return text ? text : "(none)";
    }

    bool exists(const char* path) const { return std::filesystem::exists(board.path(path)); }
};

std::string times(int count, const std::string& text) {
    std::string all;
    for (int i = 0; i < count; ++i)
        all += text;
    return all;
}

// A text of any bytes as a message has it.
std::string in_json(const std::string& text) {
    std::string quoted = "\"";
    for (char letter : text) {
        if (letter == '"' || letter == '\\')
            quoted += '\\';
        quoted += letter;
    }
    return quoted + '"';
}

} // namespace

// --- Cable test.

TEST_F(Diagnostic, cable_test_is_run_on_the_port_and_reported_once) {
    device.chip.change([](sim::ChipState& state) {
        state.ports[4].cable = {
            {{0, 31}, {sim::chip_pair_open, 7}, {sim::chip_pair_short, 8}, {0, 255}}};
    });
    EXPECT_EQ(vxc_cable_test(4), 0);
    EXPECT_EQ(trace(), (Lines{"sal_cablediag_copper_set(4) = 0", "ioctl(449, 4, 0, 0, 0) = 0"}));
    EXPECT_EQ(cable_result.port, 4u);
    EXPECT_EQ(cable_test_pending, 1u);
    EXPECT_EQ(
        report_of(vxc_diagnostic_get).text,
        R"({"diagnostic":{"cable_test":{"port":5,"pair_a":0,"cable_a_length_m":31,)"
        R"("pair_b":1,"cable_b_length_m":7,"pair_c":2,"cable_c_length_m":8,)"
        R"("pair_d":0,"cable_d_length_m":255}}})");
    EXPECT_EQ(cable_test_pending, 0u);
    EXPECT_EQ(cable_result.port, 0u);
    EXPECT_EQ(cable_result.length_m[3], 0u);
    EXPECT_EQ(report_of(vxc_diagnostic_get).text, "{}");
}

TEST_F(Diagnostic, cable_test_of_a_port_that_does_not_exist_is_reported_with_its_number) {
    EXPECT_EQ(vxc_cable_test(-1), 0);
    EXPECT_EQ(trace(), Lines{"sal_cablediag_copper_set(-1) = 30"});
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_TRUE(report_of(vxc_diagnostic_get)
                    .text.starts_with(R"({"diagnostic":{"cable_test":{"port":0,"pair_a":0,)"));
}

TEST_F(Diagnostic, every_call_of_a_cable_test_may_fail_without_a_trace_in_the_error_list) {
    auto runs = fail_each_call([](sim::Board&) {}, [](cJSON*) { return vxc_cable_test(3); });
    ASSERT_EQ(runs.size(), 1u);
    EXPECT_EQ(runs[0].result, 0);
    EXPECT_EQ(runs[0].errors, Codes{});
    EXPECT_EQ(runs[0].calls_after, Lines{"ioctl"});
}

TEST_F(Diagnostic, cable_result_stays_when_the_driver_cannot_be_reached) {
    vxc_cable_test(4);
    auto metres = cable_result.length_m[0];
    EXPECT_GT(metres, 0);
    device.driver_loaded = false;
    EXPECT_EQ(vxc_cable_test(7), 0);
    EXPECT_EQ(cable_result.port, 7u);
    EXPECT_EQ(cable_result.length_m[0], metres);
    EXPECT_EQ(cable_test_pending, 1u);
}

// --- Traceroute.

TEST_F(Diagnostic, traceroute_runs_under_the_lock_and_leaves_its_output) {
    EXPECT_EQ(traceroute(R"({"host":"host.example","hops":9})"), 0);
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_sys_tracerouteLock_check() = 0", "sal_sys_tracerouteLock_take() = 0",
                     "system(\"traceroute -v host.example -m 9 > /tmp/traceroute_tmp0\") = 0",
                     "sal_sys_tracerouteLock_give() = 0"}));
    EXPECT_EQ(traceroute_status, static_cast<uint32_t>(DIAGNOSTIC_READY));
    EXPECT_TRUE(file(trace_path).starts_with("traceroute to host.example (192.0.2.1), 9 hops max"));
}

TEST_F(Diagnostic, traceroute_hops_outside_2_to_255_are_30_and_missing_ones_0) {
    auto hops = [&](const std::string& member) {
        return traceroute_command(R"({"host":"192.168.1.1")" + member + "}");
    };
    auto line = [](const char* number) {
        return std::string("traceroute -v 192.168.1.1 -m ") + number + " > /tmp/traceroute_tmp0";
    };
    EXPECT_EQ(hops(R"(,"hops":1)"), line("30"));
    EXPECT_EQ(hops(R"(,"hops":2)"), line("2"));
    EXPECT_EQ(hops(R"(,"hops":255)"), line("255"));
    EXPECT_EQ(hops(R"(,"hops":256)"), line("30"));
    EXPECT_EQ(hops(R"(,"hops":-5)"), line("30"));
    EXPECT_EQ(hops(R"(,"hops":"7")"), line("30"));
    EXPECT_EQ(hops(R"(,"HOPS":7)"), line("7"));
    EXPECT_EQ(hops(""), line("0"));
}

TEST_F(Diagnostic, traceroute_without_a_host_is_code_19) {
    for (const char* message : {"{}", R"({"host":7})", R"({"host":null})", R"({"host":{}})"}) {
        forget();
        EXPECT_EQ(traceroute(message), 19) << message;
        EXPECT_EQ(recorded(), Codes{19}) << message;
        EXPECT_EQ(trace(), Lines{}) << message;
        EXPECT_EQ(traceroute_status, 0u) << message;
    }
    EXPECT_EQ(vxc_traceroute(nullptr), 19);
}

TEST_F(Diagnostic, traceroute_is_ignored_until_the_last_one_was_reported) {
    for (uint32_t status : {DIAGNOSTIC_READY, DIAGNOSTIC_RUNNING}) {
        traceroute_status = status;
        EXPECT_EQ(traceroute(R"({"host":"a"})"), 0);
        EXPECT_EQ(traceroute("{}"), 0);
        EXPECT_EQ(traceroute_status, status);
    }
    EXPECT_EQ(trace(), Lines{});
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(Diagnostic, every_call_of_a_traceroute_and_its_prescribed_outcome) {
    struct Outcome {
        const char* call;
        Lines after;
        uint32_t status;
    };
    const Outcome outcomes[] = {
        {"sal_sys_tracerouteLock_check", {}, DIAGNOSTIC_IDLE},
        {"sal_sys_tracerouteLock_take", {}, DIAGNOSTIC_IDLE},
        {"sal_sys_tracerouteLock_give", {}, DIAGNOSTIC_RUNNING},
    };
    std::vector<uint32_t> statuses;
    auto runs = fail_each_call(
        [](sim::Board&) {},
        [&](cJSON*) {
            int result = traceroute(R"({"host":"192.168.1.1","hops":3})");
            statuses.push_back(traceroute_status);
            return result;
        });
    ASSERT_EQ(runs.size(), std::size(outcomes));
    EXPECT_EQ(statuses[0], static_cast<uint32_t>(DIAGNOSTIC_READY));
    for (std::size_t i = 0; i < runs.size(); ++i) {
        EXPECT_EQ(runs[i].call, outcomes[i].call);
        EXPECT_EQ(runs[i].result, 77) << runs[i].call;
        EXPECT_EQ(runs[i].errors, Codes{77}) << runs[i].call;
        EXPECT_EQ(runs[i].calls_after, outcomes[i].after) << runs[i].call;
        EXPECT_EQ(statuses[i + 1], outcomes[i].status) << runs[i].call;
    }
}

TEST_F(Diagnostic, traceroute_is_refused_while_another_user_runs_it) {
    device.diag.traceroute_elsewhere = true;
    EXPECT_EQ(traceroute(R"({"host":"a"})"), sim::code_busy);
    EXPECT_EQ(commands(), Lines{});
    EXPECT_EQ(traceroute_status, 0u);
}

// --- Ping.

TEST_F(Diagnostic, ping_runs_with_its_options) {
    EXPECT_EQ(ping(R"({"host":"192.168.1.1","count":2,"interval":3,"size":100})"), 0);
    EXPECT_EQ(
        trace(), (Lines{
                     R"(sal_util_ipv4StrValidate_ret("192.168.1.1", 1) = 1)",
                     R"(sys_util_str2Ip("192.168.1.1") = 0)",
                     R"(system("ping -c 2 -s 100 -i 3 192.168.1.1 > /tmp/pingtest_tmp") = 0)"}));
    EXPECT_EQ(ping_status, static_cast<uint32_t>(DIAGNOSTIC_READY));
    EXPECT_TRUE(file(ping_path).starts_with("PING 192.168.1.1 (192.168.1.1): 100 data bytes\n"));
}

TEST_F(Diagnostic, ping_options_out_of_range_and_missing_ones) {
    struct Case {
        const char* members;
        const char* options;
    };
    const Case cases[] = {
        {R"(,"count":0,"interval":0,"size":7)", "-c 4 -s 56 -i 1"},
        {R"(,"count":1,"interval":1,"size":8)", "-c 1 -s 8 -i 1"},
        {R"(,"count":5,"interval":5,"size":5120)", "-c 5 -s 5120 -i 5"},
        {R"(,"count":6,"interval":6,"size":5121)", "-c 4 -s 56 -i 1"},
        {R"(,"count":-1,"interval":-1,"size":-1)", "-c 4 -s 56 -i 1"},
        {R"(,"count":"2","interval":true,"size":1e99)", "-c 4 -s 56 -i 1"},
        {R"(,"size":64)", "-c 0 -s 64 -i 0"},
        {"", "-c 0 -s 0 -i 0"},
    };
    for (const Case& it : cases)
        EXPECT_EQ(
            ping_command(std::string(R"({"host":"name")") + it.members + "}"),
            std::string("ping ") + it.options + " name > /tmp/pingtest_tmp");
}

TEST_F(Diagnostic, ping_without_a_host_is_code_19) {
    for (const char* message : {"{}", R"({"host":["a"]})"}) {
        forget();
        EXPECT_EQ(ping(message), 19);
        EXPECT_EQ(recorded(), Codes{19});
        EXPECT_EQ(trace(), Lines{});
    }
}

TEST_F(Diagnostic, ping_to_the_all_zero_address_is_refused) {
    EXPECT_EQ(ping(R"({"host":"0.0.0.0","count":1})"), -1);
    EXPECT_EQ(recorded(), Codes{-1});
    EXPECT_EQ(commands(), Lines{});
    EXPECT_EQ(ping_status, 0u);
}

TEST_F(Diagnostic, ping_to_a_name_is_not_converted) {
    EXPECT_EQ(ping(R"({"host":"host.example","count":1})"), 0);
    EXPECT_FALSE(called("sys_util_str2Ip"));
    EXPECT_EQ(commands(), Lines{"ping -c 1 -s 0 -i 0 host.example > /tmp/pingtest_tmp"});
}

TEST_F(Diagnostic, every_call_of_a_ping_and_its_prescribed_outcome) {
    auto runs = fail_each_call(
        [](sim::Board&) {}, [&](cJSON*) { return ping(R"({"host":"192.168.1.1","count":1})"); });
    ASSERT_EQ(runs.size(), 1u);
    EXPECT_EQ(runs[0].call, "sys_util_str2Ip");
    EXPECT_EQ(runs[0].result, 77);
    EXPECT_EQ(runs[0].errors, Codes{77});
    EXPECT_EQ(runs[0].calls_after, Lines{});
}

TEST_F(Diagnostic, a_command_is_running_until_it_returns) {
    std::vector<std::uint32_t> seen;
    board.clock.on_sleep = [&](unsigned) {
        seen.push_back(ping_status);
        seen.push_back(traceroute_status);
        return 0u;
    };
    EXPECT_EQ(ping(R"({"host":"host.example","count":2,"interval":1})"), 0);
    ASSERT_FALSE(seen.empty());
    EXPECT_EQ(seen, (std::vector<std::uint32_t>{DIAGNOSTIC_RUNNING, DIAGNOSTIC_IDLE}));
    EXPECT_EQ(ping_status, static_cast<std::uint32_t>(DIAGNOSTIC_READY));
    seen.clear();
    EXPECT_EQ(traceroute(R"({"host":"10.9.9.9","hops":2})"), 0); // which nobody answers
    ASSERT_FALSE(seen.empty());
    EXPECT_EQ(seen[0], static_cast<std::uint32_t>(DIAGNOSTIC_READY));
    EXPECT_EQ(seen[1], static_cast<std::uint32_t>(DIAGNOSTIC_RUNNING));
    EXPECT_EQ(traceroute_status, static_cast<std::uint32_t>(DIAGNOSTIC_READY));
}

TEST_F(Diagnostic, every_traceroute_writes_to_the_file_of_number_0) {
    uid = 5;
    EXPECT_EQ(traceroute(R"({"host":"host.example","hops":2})"), 0);
    EXPECT_EQ(uid, 0u);
    EXPECT_TRUE(exists(trace_path));
}

TEST_F(Diagnostic, of_two_pings_before_a_report_only_the_first_runs) {
    EXPECT_EQ(ping(R"({"host":"192.168.1.1","count":1})"), 0);
    EXPECT_EQ(ping(R"({"host":"192.168.1.20","count":1})"), 0);
    EXPECT_EQ(commands(), Lines{"ping -c 1 -s 0 -i 0 192.168.1.1 > /tmp/pingtest_tmp"});
    EXPECT_EQ(recorded(), Codes{});
    report_of(vxc_diagnostic_get);
    EXPECT_EQ(ping(R"({"host":"192.168.1.20","count":1})"), 0);
    EXPECT_EQ(commands().size(), 2u);
}

// --- Hosts and the shell.

TEST_F(Diagnostic, plain_hosts_are_passed_on_bare) {
    for (const char* host :
         {"a", "192.168.1.20", "2001:db8::1", "Host-7.example_com", "-f", "fe80::1", ""})
        EXPECT_EQ(
            traceroute_command(std::string(R"({"hops":2,"host":")") + host + "\"}"),
            std::string("traceroute -v ") + host + " -m 2 > /tmp/traceroute_tmp0");
}

TEST_F(Diagnostic, other_hosts_reach_the_command_as_one_word_whatever_is_in_them) {
    for (const std::string host : {"a b",
                                   "a;reboot",
                                   "$(reboot)",
                                   "`reboot`",
                                   "a|b",
                                   "a&",
                                   "a > /etc/passwd",
                                   "'",
                                   "''",
                                   "a'b'c",
                                   "';reboot;'",
                                   "\\",
                                   "\\'",
                                   "\"",
                                   "a\nreboot",
                                   "a\tb",
                                   "*",
                                   "~",
                                   "#",
                                   "!",
                                   "\x80\xff",
                                   "h\xc3\xb6st",
                                   "fe80::1%eth0",
                                   "@",
                                   "a/b",
                                   "{a,b}",
                                   "\x7f",
                                   "-I eth0",
                                   " "}) {
        Json message(R"({"hops": 2, "count": 2, "host": )" + in_json(host) + "}");
        forget();
        traceroute_status = ping_status = DIAGNOSTIC_IDLE;
        EXPECT_EQ(vxc_traceroute(message), 0) << host;
        EXPECT_EQ(vxc_ping_ipv4(message), 0) << host;
        ASSERT_EQ(commands().size(), 2u) << host;
        sim::Command traceroute, ping;
        ASSERT_TRUE(sim::parse_command(commands()[0], traceroute)) << commands()[0];
        EXPECT_EQ(traceroute.words, (Lines{"traceroute", "-v", host, "-m", "2"}));
        EXPECT_EQ(traceroute.output, trace_path);
        ASSERT_TRUE(sim::parse_command(commands()[1], ping)) << commands()[1];
        EXPECT_EQ(ping.words, (Lines{"ping", "-c", "2", "-s", "0", "-i", "0", host}));
        EXPECT_EQ(ping.output, ping_path);
    }
}

TEST_F(Diagnostic, quoted_hosts_are_written_in_single_quotes) {
    EXPECT_EQ(
        traceroute_command(R"({"hops":2,"host":"a;b"})"),
        "traceroute -v 'a;b' -m 2 > /tmp/traceroute_tmp0");
    EXPECT_EQ(
        traceroute_command(R"({"hops":2,"host":"it's"})"),
        R"(traceroute -v 'it'\''s' -m 2 > /tmp/traceroute_tmp0)");
}

TEST_F(Diagnostic, long_hosts_are_passed_on_whole) {
    std::string name(100000, 'x');
    EXPECT_EQ(
        ping_command(R"({"host":")" + name + "\"}"),
        "ping -c 0 -s 0 -i 0 " + name + " > /tmp/pingtest_tmp");
    EXPECT_EQ(
        traceroute_command(R"({"host":")" + times(50000, "'") + "\"}"),
        "traceroute -v '" + times(50000, R"('\'')") + "' -m 0 > /tmp/traceroute_tmp0");
}

TEST_F(Diagnostic, short_memory_refuses_a_request_and_leaves_it_idle) {
    Json message(R"({"host":"192.168.1.1"})");
    for (int nth : {1, 2}) {
        forget();
        board.faults.plan({sim::Edge::allocation, "", static_cast<uint64_t>(nth), false, 1, 0});
        EXPECT_EQ(vxc_traceroute(message), -1);
        EXPECT_EQ(recorded(), Codes{-1});
        EXPECT_EQ(trace(), Lines{});
        EXPECT_EQ(traceroute_status, 0u);
        forget();
        board.faults.plan({sim::Edge::allocation, "", static_cast<uint64_t>(nth), false, 1, 0});
        EXPECT_EQ(vxc_ping_ipv4(message), -1);
        EXPECT_EQ(recorded(), Codes{-1});
        EXPECT_EQ(commands(), Lines{});
        EXPECT_EQ(ping_status, 0u);
    }
}

// --- Report.

TEST_F(Diagnostic, report_adds_nothing_when_nothing_waits) {
    EXPECT_EQ(report_of(vxc_diagnostic_get).text, "{}");
    put_file(ping_path, "old\n");
    ping_status = traceroute_status = DIAGNOSTIC_RUNNING;
    EXPECT_EQ(report_of(vxc_diagnostic_get).text, "{}");
    EXPECT_EQ(ping_status, static_cast<uint32_t>(DIAGNOSTIC_RUNNING));
    EXPECT_TRUE(exists(ping_path));
    EXPECT_EQ(trace(), Lines{});
}

TEST_F(Diagnostic, report_has_the_three_results_in_their_order) {
    vxc_cable_test(0);
    put_file(trace_path, "t\n");
    put_file(ping_path, "p\n");
    traceroute_status = ping_status = DIAGNOSTIC_READY;
    EXPECT_EQ(
        report_of(vxc_diagnostic_get).text,
        R"({"diagnostic":{"cable_test":{"port":1,"pair_a":0,"cable_a_length_m":12,)"
        R"("pair_b":0,"cable_b_length_m":12,"pair_c":0,"cable_c_length_m":12,)"
        R"("pair_d":0,"cable_d_length_m":12},"traceroute":"t)" +
            end_of_line + R"(","ping_ipv4":"p)" + end_of_line + R"("}})");
}

TEST_F(Diagnostic, lines_end_in_backslash_r_backslash_n) {
    EXPECT_EQ(report_of_trace("one\ntwo\n\n"), "one\\r\\ntwo\\r\\n\\r\\n");
    EXPECT_EQ(report_of_ping("one\ntwo\n"), "one\\r\\ntwo\\r\\n");
}

TEST_F(Diagnostic, the_last_character_goes_even_when_it_is_no_newline) {
    EXPECT_EQ(report_of_trace("one\ntwo"), "one\\r\\ntw\\r\\n");
    EXPECT_EQ(report_of_ping("x"), "\\r\\n");
    EXPECT_EQ(report_of_ping("one\r\n"), "one\r\\r\\n");
}

TEST_F(Diagnostic, a_line_of_more_than_200_characters_is_several_lines) {
    std::string full(199, 'a');
    EXPECT_EQ(report_of_trace(full + "\nb\n"), full + "\\r\\nb\\r\\n");
    EXPECT_EQ(report_of_trace(full + "Xbcd\n"), full + "\\r\\nbcd\\r\\n");
    EXPECT_EQ(report_of_ping(full + "Xbcd\n"), full + "\\r\\nbcd\\r\\n");
}

TEST_F(Diagnostic, an_empty_file_is_an_empty_text) {
    EXPECT_EQ(report_of_trace(""), "");
    EXPECT_EQ(report_of_ping(""), "");
}

TEST_F(Diagnostic, binary_junk_is_survived) {
    std::string junk;
    for (int i = 0; i < 4096; ++i)
        junk += static_cast<char>(i * 37 % 256);
    EXPECT_NE(report_of_trace(junk), "(none)");
    EXPECT_NE(report_of_ping(junk), "(none)");
    EXPECT_EQ(report_of_ping(std::string("\0x\nabc\n", 7)), "\\r\\nabc\\r\\n");
}

TEST_F(Diagnostic, a_result_of_any_bytes_leaves_the_report_utf_8) {
    EXPECT_EQ(report_of_ping("caf\xE9 \xFF\n"), "caf\xEF\xBF\xBD \xEF\xBF\xBD\\r\\n");
    // The 200th byte, which makes room for the separator, is the second one of a letter.
    EXPECT_EQ(
        report_of_trace(times(198, "x") + "\xE2\x82\xAC!\n"),
        times(198, "x") + "\xEF\xBF\xBD\\r\\n" + "\xEF\xBF\xBD!\\r\\n");
}

TEST_F(Diagnostic, traceroute_leaves_out_the_lines_of_a_dump) {
    debug_flag = 1;
    EXPECT_EQ(report_of_trace("one\n 4: x45000028\ntwo: y\nthree: x\n"), "one\\r\\ntwo: y\\r\\n");
    Lines shown = console();
    EXPECT_EQ(std::count(shown.begin(), shown.end(), "api_checkin: vxc_traceroute_get x occur"), 2);
}

TEST_F(Diagnostic, ping_keeps_every_line) {
    EXPECT_EQ(report_of_ping("one: x\ntwo\n"), "one: x\\r\\ntwo\\r\\n");
}

TEST_F(Diagnostic, traceroute_text_stays_below_32767_characters) {
    // 10 characters a line with its end; the last line decides.
    std::string lines = times(3276, "abcdef\n");
    EXPECT_EQ(report_of_trace(lines + "12\n").size(), 32766u);
    EXPECT_EQ(report_of_trace(lines + "123\n").size(), 32760u);
    EXPECT_EQ(report_of_trace(lines + "123\nx\n").size(), 32760u);
    EXPECT_EQ(report_of_trace(times(9000, "abcdef\n")).size(), 32760u);
}

TEST_F(Diagnostic, ping_text_stays_below_2047_characters) {
    std::string lines = times(204, "abcdef\n");
    EXPECT_EQ(report_of_ping(lines + "12\n").size(), 2046u);
    EXPECT_EQ(report_of_ping(lines + "123\n").size(), 2040u);
    EXPECT_EQ(report_of_ping(lines + "123\nx\n").size(), 2040u);
}

TEST_F(Diagnostic, traceroute_result_is_removed_with_rm_and_reported_once) {
    report_of_trace("one\n");
    EXPECT_EQ(trace(), Lines{"system(\"rm /tmp/traceroute_tmp0\") = 0"});
    EXPECT_FALSE(exists(trace_path));
    EXPECT_EQ(traceroute_status, 0u);
    EXPECT_EQ(text_of("traceroute"), "(none)");
}

TEST_F(Diagnostic, traceroute_result_that_cannot_be_opened_is_logged_and_the_ping_still_reported) {
    traceroute_status = DIAGNOSTIC_READY;
    put_file(ping_path, "p\n");
    ping_status = DIAGNOSTIC_READY;
    Report report = report_of(vxc_diagnostic_get);
    EXPECT_EQ(report.result, 0);
    EXPECT_EQ(report.text, R"({"diagnostic":{"ping_ipv4":"p)" + end_of_line + R"("}})");
    EXPECT_EQ(log(), Lines{"traceroute result get fail"});
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_EQ(traceroute_status, 0u);
    EXPECT_FALSE(called("system"));
}

TEST_F(Diagnostic, ping_result_is_unlinked_and_reported_once) {
    report_of_ping("one\n");
    EXPECT_EQ(trace(), Lines{});
    EXPECT_FALSE(exists(ping_path));
    EXPECT_EQ(ping_status, 0u);
    EXPECT_EQ(text_of("ping_ipv4"), "(none)");
}

TEST_F(Diagnostic, ping_without_an_output_file_is_unreachable) {
    ping_status = DIAGNOSTIC_READY;
    EXPECT_EQ(text_of("ping_ipv4"), "unreachable!");
    EXPECT_EQ(ping_status, 0u);
    EXPECT_EQ(log(), Lines{});
}

TEST_F(Diagnostic, a_ping_under_way_is_reported_as_far_as_it_got) {
    vxc_cable_test(0);
    ping_status = DIAGNOSTIC_RUNNING;
    put_file(ping_path, "PING a\n64 by");
    EXPECT_EQ(text_of("ping_ipv4"), "PING a\\r\\n64 b\\r\\n");
    EXPECT_EQ(ping_status, 0u);
}

TEST_F(Diagnostic, a_traceroute_under_way_is_not_reported) {
    vxc_cable_test(0);
    traceroute_status = DIAGNOSTIC_RUNNING;
    put_file(trace_path, "half");
    EXPECT_EQ(text_of("traceroute"), "(none)");
    EXPECT_EQ(traceroute_status, static_cast<uint32_t>(DIAGNOSTIC_RUNNING));
    EXPECT_TRUE(exists(trace_path));
}

TEST_F(Diagnostic, the_console_is_told_before_each_command_result) {
    debug_flag = 1;
    vxc_cable_test(0);
    report_of(vxc_diagnostic_get);
    std::string pid = std::to_string(getpid());
    EXPECT_EQ(
        console(), (Lines{
                       "api_checkin: before vxc_traceroute_get pid " + pid,
                       "api_checkin: before vxc_ping_ipv4_get pid " + pid}));
}

TEST_F(Diagnostic, everything_goes_on_waiting_where_memory_is_short) {
    vxc_cable_test(0);
    put_file(trace_path, "t\n");
    traceroute_status = DIAGNOSTIC_READY;
    Json report(createJsonObject());
    board.faults.plan({sim::Edge::allocation, "", 1, true, 1, 0});
    EXPECT_EQ(vxc_diagnostic_get(report), -1);
    board.faults.clear();
    EXPECT_EQ(cable_test_pending, 1u);
    EXPECT_EQ(text_of("traceroute"), "t\\r\\n");
}

TEST_F(Diagnostic, whatever_allocation_of_a_report_fails_each_result_is_told_once_and_whole) {
    auto results_wait = [&] {
        vxc_cable_test(0);
        put_file(trace_path, "t\n");
        put_file(ping_path, "p\xE9\n");
        traceroute_status = ping_status = DIAGNOSTIC_READY;
    };
    results_wait();
    Json whole(createJsonObject());
    EXPECT_EQ(vxc_diagnostic_get(whole), 0);
    std::uint64_t nth = 0;
    for (bool failed = true; failed;) {
        results_wait();
        Json first(createJsonObject()), second(createJsonObject());
        board.faults.clear();
        board.faults.plan({sim::Edge::allocation, "", ++nth, false, 1, 0});
        vxc_diagnostic_get(first);
        failed = board.faults.count(sim::Edge::allocation) >= nth;
        board.faults.clear();
        EXPECT_EQ(vxc_diagnostic_get(second), 0);
        for (const char* key : {"cable_test", "traceroute", "ping_ipv4"}) {
            cJSON* now = getJsonObjectForKey(first["diagnostic"], key);
            cJSON* later = getJsonObjectForKey(second["diagnostic"], key);
            EXPECT_NE(now == nullptr, later == nullptr) << key << ", allocation " << nth;
            EXPECT_EQ(
                compact(now ? now : later), compact(getJsonObjectForKey(whole["diagnostic"], key)));
        }
        EXPECT_FALSE(exists(trace_path)) << nth;
        EXPECT_FALSE(exists(ping_path)) << nth;
    }
    EXPECT_GT(nth, 10u);
}

TEST_F(Diagnostic, a_running_ping_that_memory_is_too_short_for_stays_running) {
    put_file(ping_path, "p\n");
    ping_status = DIAGNOSTIC_RUNNING;
    Json diagnostic(createJsonObject());
    board.faults.plan({sim::Edge::allocation, "", 1, true, 1, 0});
    EXPECT_EQ(vxc_ping_ipv4_get(diagnostic), -1);
    EXPECT_EQ(ping_status, static_cast<uint32_t>(DIAGNOSTIC_RUNNING));
    EXPECT_TRUE(exists(ping_path));
}

TEST_F(Diagnostic, a_traceroute_that_memory_is_too_short_for_fails_and_waits) {
    put_file(trace_path, "t\n");
    traceroute_status = DIAGNOSTIC_READY;
    Json diagnostic(createJsonObject());
    board.faults.plan({sim::Edge::allocation, "", 1, true, 1, 0});
    EXPECT_EQ(vxc_traceroute_get(diagnostic), -1);
    EXPECT_EQ(traceroute_status, static_cast<uint32_t>(DIAGNOSTIC_READY));
    EXPECT_TRUE(exists(trace_path));
}

// --- What the connection keeper makes of them.

namespace {

class DiagnosticAction : public Diagnostic {
  protected:
    void perform(const std::string& message) {
        Json json(message);
        perform_keeper_action(json);
    }
};

} // namespace

TEST_F(DiagnosticAction, cable_test_counts_ports_from_1_and_knows_no_fibre_ports) {
    debug_flag = 1;
    perform(R"({"action":"cable_test","port":"3"})");
    EXPECT_EQ(cable_result.port, 2u);
    EXPECT_EQ(cable_test_pending, 1u);
    EXPECT_EQ(setting_from_cloud, 1u);
    EXPECT_EQ(console(), Lines{"connection-keeper: cable_test"});
    forget();
    perform(R"({"action":"cable_test","port":"F1"})");
    perform(R"({"action":"cable_test"})");
    EXPECT_EQ(trace(), Lines{});
}

TEST_F(DiagnosticAction, traceroute_and_ping_run_and_ask_for_a_report) {
    perform(R"({"action":"traceroute","host":"192.168.1.1","hops":4})");
    EXPECT_EQ(setting_from_cloud, 1u);
    setting_from_cloud = 0;
    perform(R"({"action":"ping_ipv4","host":"192.168.1.1","count":1})");
    EXPECT_EQ(setting_from_cloud, 1u);
    EXPECT_EQ(commands().size(), 2u);
    EXPECT_EQ(log(), Lines{});
}

TEST_F(DiagnosticAction, a_failure_is_logged_and_still_asks_for_a_report) {
    perform(R"({"action":"traceroute"})");
    EXPECT_EQ(setting_from_cloud, 1u);
    setting_from_cloud = 0;
    perform(R"({"action":"ping_ipv4","host":"0.0.0.0"})");
    EXPECT_EQ(setting_from_cloud, 1u);
    EXPECT_EQ(log(), (Lines{"traceroute fail", "ping fail"}));
    EXPECT_EQ(recorded(), (Codes{19, -1}));
}

// --- The simulated tools.

TEST_F(Diagnostic, simulated_traceroute_shows_the_way_and_its_dump_is_left_out) {
    EXPECT_EQ(traceroute(R"({"host":"host.example","hops":9})"), 0);
    EXPECT_NE(file(trace_path).find(" 4: x"), std::string::npos);
    std::string text = text_of("traceroute");
    EXPECT_EQ(text.find(": x"), std::string::npos);
    EXPECT_NE(text.find(" 1  192.168.1.1 (192.168.1.1)  "), std::string::npos) << text;
    EXPECT_NE(text.find(" 2  host.example (192.0.2.1)  "), std::string::npos) << text;
}

TEST_F(Diagnostic, simulated_tools_wait_for_hosts_that_do_not_answer) {
    EXPECT_EQ(ping(R"({"host":"203.0.113.9","count":2,"interval":2,"size":56})"), 0);
    EXPECT_EQ(board.clock.running(), 4);
    EXPECT_NE(text_of("ping_ipv4").find("100% packet loss"), std::string::npos);
    EXPECT_EQ(traceroute(R"({"host":"203.0.113.9","hops":3})"), 0);
    EXPECT_EQ(board.clock.running(), 22);
    EXPECT_NE(text_of("traceroute").find(" 3  * * *"), std::string::npos);
}

TEST_F(Diagnostic, simulated_ping_of_an_unknown_name_leaves_an_empty_file) {
    EXPECT_EQ(ping(R"({"host":"nowhere.example","count":2})"), 0);
    EXPECT_EQ(text_of("ping_ipv4"), "");
}
