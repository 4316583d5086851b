// The "lldp" section: timers, what the switch tells, neighbours, settings.
#include "sections/lldp.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include "core/dispatch.h"
#include "json/json_print.h"
#include "platform/lldp.h"
#include "sim/instruments/codes.h"
#include "tests/support/on_board.h"

namespace {

sim::LldpPeer peer(int port, const std::string& chassis_id) {
    sim::LldpPeer it;
    it.port = port;
    it.chassis_id = chassis_id;
    it.port_id = "gi1";
    it.system_name = "core";
    return it;
}

const char* const settings_text =
    R"("settings":{"enable":true,"transmission_interval":30,"holdtime_multiplier":4,)"
    R"("reinitialization_delay":2,"transmit_delay":2})";

const char* const local_text =
    R"("local":{"chassis_id_subtype":"MAC Address","chassis_id":"02:1B:2C:3D:4E:5F",)"
    R"("system_name":"Hall","system_description":"VARNEX Q18r5",)"
    R"("capabilities_supported":"Bridge","capabilities_enabled":"Bridge",)"
    R"("port_id_subtype":"Local"})";

std::string peer_text(int port, const std::string& chassis_id) {
    return R"({"port":)" + std::to_string(port) +
           R"(,"chassis_id_subtype":"Mac Address","chassis_id":")" + chassis_id +
           R"(","port_id_subtype":"Interface Name","remote_id":"gi1","system_name":"core",)"
           R"("ttl":120,"auto_negotiation_supported":true,"auto_negotiation_enabled":true,)"
           R"("advertised_capabilities":"1000BASE-T full duplex",)"
           R"("operational_mau_type":"1000BASE-T full duplex","max_frame_size":1522})";
}

void named(sim::Board& board) { board.device.system.name = "Hall"; }

const Lines writes = {
    "sal_lldp_tx_delay_set",    "sal_lldp_tx_interval_set",   "sal_lldp_holdtime_set",
    "sal_lldp_enable_set",      "sal_lldp_disableAction_set", "sal_lldp_holdtime_set",
    "sal_lldp_tx_interval_set", "sal_lldp_reinit_delay_set",  "sal_lldp_tx_delay_set"};

const Lines reads = {
    "sal_lldp_enable_get", "sal_lldp_holdtime_get", "sal_lldp_tx_interval_get",
    "sal_lldp_reinit_delay_get", "sal_lldp_tx_delay_get"};

class LldpSection : public OnBoard {
  protected:
    LldpSection() { named(board); }

    int set(const std::string& settings) {
        Json document(R"({"settings":)" + settings + "}");
        return vxc_lldp_set(document);
    }
    // The reads of every place of every port left out.
    Lines steps() const {
        Lines lines = trace();
        std::erase_if(lines, [](const std::string& line) {
            return line.starts_with("sal_lldp_portRemoteEntryInfo_get(");
        });
        return lines;
    }
    // What was written, without the reads beforehand.
    Lines written() const {
        Lines lines = trace();
        return {lines.begin() + std::min<long>(5, static_cast<long>(lines.size())), lines.end()};
    }
    sim::Lldp& lldp = device.lldp;

    // A text of the first neighbour in the report, as the agent holds it.
    std::string first_peer(const char* key) {
        Json document(createJsonObject());
        vxc_lldp_get_remote_device_info(document);
        const char* text = getJsonStringValueForKey(getJsonArrayItem(document["remote"], 0), key);
        return text ? text : "(none)";
    }
};

std::string conv(const std::string& in) {
    char out[257] = {};
    EXPECT_EQ(sn_json_validstr_conv(in.c_str(), out), 0);
    return out;
}

} // namespace

// --- Report.

TEST_F(LldpSection, report_has_timers_the_switch_itself_and_neighbours) {
    lldp.neighbours = {peer(4, "02:AA:00:00:00:01")};
    Report got = report_of(vxc_lldp_get);
    EXPECT_EQ(got.result, 0);
    EXPECT_EQ(
        got.text, std::string(R"({"lldp":{)") + settings_text + "," + local_text +
                      R"(,"remote":[)" + peer_text(5, "02:AA:00:00:00:01") + "]}}");
    EXPECT_EQ(
        steps(), (Lines{
                     "sal_lldp_enable_get() = 0", "sal_lldp_tx_interval_get() = 0",
                     "sal_lldp_holdtime_get() = 0", "sal_lldp_reinit_delay_get() = 0",
                     "sal_lldp_tx_delay_get() = 0", "sal_sys_systemName_get() = 0",
                     "sal_sys_macAddr_get() = 0", "sys_util_mac2Str(02:1B:2C:3D:4E:5F) = 0",
                     "sys_port_lPort2uStr(4, 2) = 0"}));
}

TEST_F(LldpSection, five_places_of_each_physical_port_are_read_and_no_group) {
    report_of(vxc_lldp_get_remote_device_info);
    Lines all = trace();
    ASSERT_EQ(all.size(), 100u); // 20 ports
    EXPECT_EQ(all[4], "sal_lldp_portRemoteEntryInfo_get(0, 4) = 0");
    EXPECT_EQ(all[5], "sal_lldp_portRemoteEntryInfo_get(1, 0) = 0");
    EXPECT_EQ(all[99], "sal_lldp_portRemoteEntryInfo_get(19, 4) = 0");
}

TEST_F(LldpSection, a_port_with_six_neighbours_reports_the_first_five) {
    for (int i = 1; i <= 6; ++i)
        lldp.neighbours.push_back(peer(2, "peer " + std::to_string(i)));
    std::string text;
    for (int i = 1; i <= 5; ++i)
        text += (i > 1 ? "," : "") + peer_text(3, "peer " + std::to_string(i));
    EXPECT_EQ(report_of(vxc_lldp_get_remote_device_info).text, R"({"remote":[)" + text + "]}");
}

TEST_F(LldpSection, a_neighbour_without_chassis_id_or_behind_a_port_from_73_on_is_skipped) {
    lldp.neighbours = {peer(2, ""), peer(3, "far"), peer(4, "near")};
    lldp.neighbours[1].reported_port = 73;
    EXPECT_EQ(
        report_of(vxc_lldp_get_remote_device_info).text,
        R"({"remote":[)" + peer_text(5, "near") + "]}");
    EXPECT_EQ(steps(), Lines{"sys_port_lPort2uStr(4, 2) = 0"});
}

TEST_F(LldpSection, port_72_is_still_looked_up) {
    lldp.neighbours = {peer(2, "one"), peer(3, "far"), peer(4, "three")};
    lldp.neighbours[1].reported_port = 72;
    Report got = report_of(vxc_lldp_get_remote_device_info); // a switch with fewer ports
    EXPECT_EQ(got.result, sim::code_no_port);
    EXPECT_EQ(recorded(), Codes{sim::code_no_port});
    EXPECT_EQ(got.text, R"({"remote":[)" + peer_text(3, "one") + "]}");
}

TEST_F(LldpSection, each_failed_call_of_the_report_has_its_outcome) {
    auto prepare = [](sim::Board& fresh) {
        named(fresh);
        fresh.device.lldp.neighbours = {peer(0, "first"), peer(19, "last")};
    };
    const std::string begin = R"({"lldp":{)", first = peer_text(1, "first"),
                      both = first + "," + peer_text(20, "last"), remote = R"("remote":[)";
    auto runs = fail_each_call(prepare, vxc_lldp_get);
    ASSERT_EQ(runs.size(), 5u + 3u + 100u + 2u);
    for (const FailedRun& run : runs) {
        std::string what = run.call + " " + std::to_string(run.nth);
        EXPECT_EQ(run.result, 0) << what;
        EXPECT_EQ(run.errors, Codes{77}) << what;
        std::string report = begin;
        bool of_remote = false, of_local = run.call == "sal_sys_systemName_get" ||
                                           run.call == "sal_sys_macAddr_get" ||
                                           run.call == "sys_util_mac2Str";
        std::string list = both;
        if (run.call == "sal_lldp_portRemoteEntryInfo_get") {
            of_remote = true;
            list = run.nth == 1 ? "" : run.nth <= 96 ? first : both;
        } else if (run.call == "sys_port_lPort2uStr") {
            of_remote = true;
            list = run.nth == 1 ? "" : first;
        }
        if (of_remote || of_local)
            report += std::string(settings_text) + ",";
        if (!of_local)
            report += std::string(local_text) + ",";
        EXPECT_EQ(run.report, report + remote + list + "]}}") << what;
        if (of_remote) {
            EXPECT_EQ(run.calls_after, Lines{}) << what;
        } else {
            EXPECT_EQ(
                run.calls_after.front(),
                of_local ? "sal_lldp_portRemoteEntryInfo_get" : "sal_sys_systemName_get")
                << what;
        }
    }
}

TEST_F(LldpSection, each_part_returns_the_code_that_it_records) {
    fail("sal_lldp_reinit_delay_get", 71);
    fail("sys_util_mac2Str", 72);
    fail("sal_lldp_portRemoteEntryInfo_get", 73, 7);
    EXPECT_EQ(report_of(vxc_lldp_get_setting).result, 71);
    EXPECT_EQ(report_of(vxc_lldp_get_local_device_info).result, 72);
    EXPECT_EQ(report_of(vxc_lldp_get_remote_device_info).result, 73);
    EXPECT_EQ(recorded(), (Codes{71, 72, 73}));
}

TEST_F(LldpSection, a_failed_part_is_not_logged) {
    fail("sal_lldp_enable_get", 77);
    Json document(createJsonObject());
    vxc_get(document);
    EXPECT_EQ(log(), Lines{});
    EXPECT_NE(getJsonObjectForKey(document["lldp"], "local"), nullptr);
}

TEST_F(LldpSection, the_longest_system_name_is_reported_whole) {
    device.system.name = std::string(255, 'n');
    Json document(createJsonObject());
    EXPECT_EQ(vxc_lldp_get_local_device_info(document), 0);
    EXPECT_EQ(getJsonStringValueForKey(document["local"], "system_name"), std::string(255, 'n'));
}

// --- Texts of neighbours.

TEST_F(LldpSection, a_tab_and_the_bytes_of_a_utf_8_letter_become_spaces) {
    lldp.neighbours = {peer(0, "sw\tA\xC3\xA4z\x7F.")};
    EXPECT_EQ(first_peer("chassis_id"), "sw A  z .");
}

TEST_F(LldpSection, only_printable_ascii_is_safe) {
    for (int byte = 1; byte < 256; ++byte) {
        std::string in(1, static_cast<char>(byte));
        EXPECT_EQ(conv(in), byte >= 32 && byte < 127 ? in : " ") << byte;
    }
}

TEST_F(LldpSection, the_copied_length_is_that_of_the_text_modulo_256) {
    EXPECT_EQ(conv(""), "");
    EXPECT_EQ(conv(std::string(255, 'a')), std::string(255, 'a'));
    EXPECT_EQ(conv(std::string(256, 'a')), "");
    EXPECT_EQ(conv("xyz" + std::string(255, 'a')), "xy");
    char out[257];
    std::fill(std::begin(out), std::end(out), '#');
    sn_json_validstr_conv("ab", out);
    EXPECT_EQ(out[2], '#'); // no terminator
    sn_json_validstr_conv("", out);
    EXPECT_EQ(out[0], 'a');
}

TEST_F(LldpSection, a_chassis_id_that_fills_its_place_has_no_terminator_and_is_cut) {
    lldp.neighbours = {peer(0, "abcd" + std::string(sizeof(LldpNeighbour::chassis_id) - 4, 'e'))};
    EXPECT_EQ(first_peer("chassis_id"), "abcd"); // 260 modulo 256
    EXPECT_EQ(first_peer("port_id_subtype"), "Interface Name");
}

TEST_F(LldpSection, texts_that_fill_their_places_end_there) {
    sim::LldpPeer long_one = peer(0, "x");
    long_one.chassis_id_subtype = std::string(38, 'a');
    long_one.port_id_subtype = std::string(32, 'b');
    long_one.port_id = std::string(515, 'c');
    long_one.system_name = std::string(1183, 'd');
    long_one.advertised_capabilities = std::string(514, 'e');
    long_one.operational_mau_type = std::string(800, 'f');
    long_one.max_frame_size = long_one.ttl = 65535;
    lldp.neighbours = {long_one};
    EXPECT_EQ(first_peer("chassis_id_subtype"), long_one.chassis_id_subtype);
    EXPECT_EQ(first_peer("port_id_subtype"), long_one.port_id_subtype);
    EXPECT_EQ(first_peer("remote_id"), long_one.port_id);
    EXPECT_EQ(first_peer("system_name"), long_one.system_name);
    EXPECT_EQ(first_peer("advertised_capabilities"), long_one.advertised_capabilities);
    EXPECT_EQ(first_peer("operational_mau_type"), long_one.operational_mau_type);
}

TEST_F(LldpSection, only_the_chassis_id_is_cleaned_and_the_report_is_json_all_the_same) {
    lldp.neighbours = {peer(0, "\"}]\x01\\")};
    lldp.neighbours[0].system_name = "a\"b\\c\n\x01\x7F\xC3\xA4";
    Json document(createJsonObject());
    vxc_lldp_get_remote_device_info(document);
    char* printed = printJson(document);
    Json parsed{std::string(printed)};
    std::free(printed);
    cJSON* first = getJsonArrayItem(parsed["remote"], 0);
    EXPECT_EQ(getJsonStringValueForKey(first, "chassis_id"), std::string("\"}] \\"));
    EXPECT_EQ(getJsonStringValueForKey(first, "system_name"), lldp.neighbours[0].system_name);
}

TEST_F(LldpSection, flags_and_numbers_are_the_neighbours_own) {
    lldp.neighbours = {peer(1, "x")};
    lldp.neighbours[0].auto_negotiation_supported = false;
    lldp.neighbours[0].auto_negotiation_enabled = false;
    lldp.neighbours[0].ttl = 65535;
    lldp.neighbours[0].max_frame_size = 9216;
    std::string text = report_of(vxc_lldp_get_remote_device_info).text;
    EXPECT_NE(text.find(R"("auto_negotiation_supported":false)"), std::string::npos);
    EXPECT_NE(text.find(R"("auto_negotiation_enabled":false)"), std::string::npos);
    EXPECT_NE(text.find(R"("ttl":65535)"), std::string::npos);
    EXPECT_NE(text.find(R"("max_frame_size":9216)"), std::string::npos);
}

// --- Settings.

TEST_F(LldpSection, settings_go_to_their_lowest_values_first) {
    EXPECT_EQ(
        set(R"({"enable":false,"transmission_interval":60,"holdtime_multiplier":5,
                "reinitialization_delay":3,"transmit_delay":10})"),
        0);
    Lines all = calls();
    EXPECT_EQ(Lines(all.begin(), all.begin() + 5), reads);
    EXPECT_EQ(
        written(), (Lines{
                       "sal_lldp_tx_delay_set(1) = 0", "sal_lldp_tx_interval_set(5) = 0",
                       "sal_lldp_holdtime_set(2) = 0", "sal_lldp_enable_set(0) = 0",
                       "sal_lldp_disableAction_set(0) = 0", "sal_lldp_holdtime_set(5) = 0",
                       "sal_lldp_tx_interval_set(60) = 0", "sal_lldp_reinit_delay_set(3) = 0",
                       "sal_lldp_tx_delay_set(10) = 0"}));
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(LldpSection, empty_settings_write_the_current_values_again) {
    EXPECT_EQ(set("{}"), 0);
    EXPECT_EQ(
        written(), (Lines{
                       "sal_lldp_tx_delay_set(1) = 0", "sal_lldp_tx_interval_set(5) = 0",
                       "sal_lldp_holdtime_set(2) = 0", "sal_lldp_enable_set(1) = 0",
                       "sal_lldp_disableAction_set(0) = 0", "sal_lldp_holdtime_set(4) = 0",
                       "sal_lldp_tx_interval_set(30) = 0", "sal_lldp_reinit_delay_set(2) = 0",
                       "sal_lldp_tx_delay_set(2) = 0"}));
}

TEST_F(LldpSection, without_settings_the_current_values_are_read_and_that_is_all) {
    EXPECT_EQ(vxc_lldp_set(nullptr), 0);
    Json other(R"({"local":{}})");
    EXPECT_EQ(vxc_lldp_set(other), 0);
    EXPECT_EQ(calls().size(), 10u);
    fail("sal_lldp_tx_delay_get", 77);
    EXPECT_EQ(vxc_lldp_set(nullptr), 77);
    EXPECT_EQ(recorded(), Codes{77});
}

TEST_F(LldpSection, the_limits_of_each_value_and_of_their_pairs) {
    struct Case {
        const char* settings;
        bool accepted;
    };
    const Case cases[] = {
        {R"({"transmission_interval":30,"transmit_delay":8})", false},
        {R"({"transmission_interval":30,"transmit_delay":7})", true},
        {R"({"transmission_interval":7,"transmit_delay":1})", true},
        {R"({"transmission_interval":7,"transmit_delay":2})", false},
        {R"({"holdtime_multiplier":10,"transmission_interval":6554})", false},
        {R"({"holdtime_multiplier":10,"transmission_interval":6553})", true},
        {R"({"holdtime_multiplier":3,"transmission_interval":21845})", true}, // 65535 seconds
        {R"({"holdtime_multiplier":3,"transmission_interval":21846})", false},
        {R"({"holdtime_multiplier":2,"transmission_interval":32767})", true},
        {R"({"holdtime_multiplier":2,"transmission_interval":32768})", false},
        {R"({"transmission_interval":5,"transmit_delay":1})", true},
        {R"({"transmission_interval":4,"transmit_delay":1})", false},
        {R"({"transmission_interval":0})", false},
        {R"({"transmission_interval":65566})", false}, // 30 in 16 bits
        {R"({"transmission_interval":-1})", false},
        {R"({"transmission_interval":2147483647})", false},
        {R"({"transmission_interval":-2147483648})", false},
        {R"({"holdtime_multiplier":258})", true},
        {R"({"holdtime_multiplier":1})", false},
        {R"({"holdtime_multiplier":2})", true},
        {R"({"holdtime_multiplier":10})", true},
        {R"({"holdtime_multiplier":11})", false},
        {R"({"holdtime_multiplier":-246})", true},
        {R"({"reinitialization_delay":0})", false},
        {R"({"reinitialization_delay":1})", true},
        {R"({"reinitialization_delay":10})", true},
        {R"({"reinitialization_delay":11})", false},
        {R"({"reinitialization_delay":257})", true},
        {R"({"transmit_delay":0})", false},
        {R"({"transmit_delay":65536})", false},
        {R"({"transmit_delay":65537})", true},
        {R"({"transmission_interval":32767,"holdtime_multiplier":2,"transmit_delay":8191})", true},
        {R"({"transmission_interval":32767,"holdtime_multiplier":2,"transmit_delay":8192})",
         false}, // a quarter of the interval is less
    };
    const sim::Lldp before = lldp;
    for (const Case& it : cases) {
        forget();
        lldp = before;
        EXPECT_EQ(set(it.settings), it.accepted ? 0 : -1) << it.settings;
        EXPECT_EQ(recorded(), it.accepted ? Codes{} : Codes{-1}) << it.settings;
        EXPECT_EQ(calls().size(), it.accepted ? 14u : 5u) << it.settings;
    }
}

TEST_F(LldpSection, numbers_lose_the_bits_that_their_values_do_not_have) {
    EXPECT_EQ(
        set(R"({"holdtime_multiplier":258,"reinitialization_delay":259,"transmit_delay":65540})"),
        0);
    EXPECT_EQ(lldp.multiplier, 2);
    EXPECT_EQ(lldp.reinit_delay, 3);
    EXPECT_EQ(lldp.transmit_delay, 4);
}

TEST_F(LldpSection, each_failed_call_of_the_settings_ends_them) {
    auto runs = fail_each_call(named, [](cJSON*) {
        Json document(R"({"settings":{"enable":true,"transmission_interval":60}})");
        return vxc_lldp_set(document);
    });
    Lines all = reads;
    all.insert(all.end(), writes.begin(), writes.end());
    ASSERT_EQ(runs.size(), all.size());
    for (std::size_t i = 0; i < runs.size(); ++i) {
        EXPECT_EQ(runs[i].call, all[i]);
        EXPECT_EQ(runs[i].result, 77) << all[i];
        EXPECT_EQ(runs[i].errors, Codes{77}) << all[i];
        EXPECT_EQ(runs[i].calls_after, Lines{}) << all[i];
    }
}

TEST_F(LldpSection, a_failure_in_the_middle_leaves_the_timers_at_their_lowest) {
    fail("sal_lldp_enable_set", 77);
    EXPECT_EQ(set(R"({"transmission_interval":60})"), 77);
    EXPECT_EQ(lldp.interval, 5u);
    EXPECT_EQ(lldp.multiplier, 2);
    EXPECT_EQ(lldp.transmit_delay, 1);
}

TEST_F(LldpSection, a_failed_apply_is_logged_by_dispatch) {
    Json document(R"({"lldp":{"settings":{"transmit_delay":0}}})");
    vxc_set(document);
    EXPECT_EQ(log(), Lines{"LLDP set fail"});
    EXPECT_EQ(recorded(), Codes{-1});
    EXPECT_FALSE(called("cmd_conf_startupConfig_save"));
}

TEST_F(LldpSection, the_platform_checks_one_timer_against_another) {
    EXPECT_EQ(sal_lldp_tx_interval_set(7), sim::code_bad_value); // delay 2 is above 7 / 4
    EXPECT_EQ(sal_lldp_tx_interval_set(20000), sim::code_bad_value);
    EXPECT_EQ(sal_lldp_tx_interval_set(16383), 0);
    EXPECT_EQ(sal_lldp_holdtime_set(5), sim::code_bad_value);
    EXPECT_EQ(lldp.interval, 16383u);
}

TEST_F(LldpSection, neighbours_come_from_a_scenario_and_timers_from_the_startup_configuration) {
    TempFolder other;
    auto scenario = other.path() / "peers.json";
    std::ofstream(scenario) << R"({"hardware":{"lldp":{"neighbours":[
        {"port":3,"chassis_id":"wire","port_id":"gi1","system_name":"core"}]}}})";
    {
        sim::Board first(other.path() / "board", scenario);
        EXPECT_EQ(
            report_of(vxc_lldp_get_remote_device_info).text,
            R"({"remote":[)" + peer_text(4, "wire") + "]}");
        EXPECT_EQ(set(R"({"enable":false,"transmission_interval":100,"transmit_delay":25})"), 0);
        EXPECT_TRUE(first.save_startup_config());
    }
    sim::Board second(other.path() / "board", scenario);
    EXPECT_EQ(second.device.lldp.interval, 100u);
    EXPECT_EQ(second.device.lldp.transmit_delay, 25);
    EXPECT_FALSE(second.device.lldp.enable);
}
