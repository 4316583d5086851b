// The report of PoE and ports: members, order of calls, learned addresses, failures.
#include "sections/port/report.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <nlohmann/json.hpp>
#include <set>

#include "base/errors.h"
#include "base/state.h"
#include "platform/poe.h"
#include "platform/vlan.h"
#include "sections/port/speed.h"
#include "tests/sections/odd_switch.h"
#include "tests/support/on_board.h"
#include "tests/support/short_of_memory.h"
#include "tests/support/sized_board.h"

namespace {

using Document = nlohmann::ordered_json;

Document report(int expected = 0) {
    Report made = report_of(vxc_port_get);
    EXPECT_EQ(made.result, expected);
    return Document::parse(made.text);
}

Lines keys(const Document& object) {
    Lines names;
    for (const auto& member : object.items())
        names.push_back(member.key());
    return names;
}

sim::MacAddress address(std::uint8_t last, std::initializer_list<int> ports, int vlan = 1) {
    sim::MacAddress made;
    made.mac[0] = 0x02;
    made.mac[5] = last;
    made.vlan = vlan;
    for (int port : ports)
        sim::set_bit(made.ports, port, true);
    return made;
}

class PortReport : public OnBoard {
  protected:
    sim::PoePort& poe(int port) { return device.poe.ports[static_cast<std::size_t>(port)]; }
    sim::Port& port(int p) { return device.ports.port[static_cast<std::size_t>(p)]; }
    void plug(int p, bool in) {
        device.chip.change(
            [&](sim::ChipState& s) { s.ports[static_cast<std::size_t>(p)].plugged = in; });
    }
    // The trace from the first call on `p` to that on the next port.
    Lines calls_of_port(int p) const {
        Lines lines = trace();
        auto begin = std::find(
            lines.begin(), lines.end(), "sal_port_enable_get(" + std::to_string(p) + ") = 0");
        auto end =
            std::find(begin, lines.end(), "sal_port_enable_get(" + std::to_string(p + 1) + ") = 0");
        Lines names;
        for (auto line = begin; line != end; ++line)
            names.push_back(line->substr(0, line->find('(')));
        return names;
    }
};

const Lines counter_calls = {
    "user_mibtbls[0]",
    "user_mibtbls[1]",
    "user_mibtbls[2]",
    "user_mibtbls[3]",
    "user_mibtbls[8]",
    "user_mibtbls[9]",
    "user_mibtbls[4]",
    "user_mibtbls[5]",
    "user_mibtbls[6]",
    "user_mibtbls[7]",
    "user_mibtbls[10]",
    "user_mibtbls[11]",
    "sal_mib_etherStatsDropEvents_get",
    "sal_mib_etherStatsOctets_get",
    "sal_mib_etherStatsPkts_get",
    "sal_mib_etherStatsBcastPkts_get",
    "sal_mib_etherStatsMcastPkts_get",
    "sal_mib_etherStatsCRCAlignErrs_get",
    "sal_mib_etherStatsUnderSizePkts_get",
    "sal_mib_etherStatsOverSizePkts_get",
    "sal_mib_etherStatsFragments_get",
    "sal_mib_etherStatsJabbers_get",
    "sal_mib_etherStatsCollisions_get",
    "sal_mib_etherStatsPkts64Octets_get",
    "sal_mib_etherStatsPkts65to127Octets_get",
    "sal_mib_etherStatsPkts128to255Octets_get",
    "sal_mib_etherStatsPkts256to511Octets_get",
    "sal_mib_etherStatsPkts512to1023Octets_get",
    "sal_mib_etherStatsPkts1024to1518Octets_get",
};

const Lines state_calls = {
    "sal_port_enable_get",        "sal_port_linkStatus_get",
    "sal_vlan_portAdminPvid_get", "sal_vlan_portAdminVlanmask_get",
    "sys_util_vlanmask2Str",      "sal_vlan_portAdminVlanmask_get",
    "sys_util_vlanmask2Str",
};

const Lines poe_calls = {
    "sal_poe_port_ext_config_query_get",
    "sal_poe_port_config_query_get",
    "sal_poe_port_status_query_get",
    "sal_poe_port_measurements_query_get",
};

const Lines closing_calls = {
    "sal_qos_portCos_get",
    "sal_qos_portTrustState_get",
    "sal_vlan_portVoiceVlanEnable_get",
    "sal_vlan_portVoiceVlancosMode_get",
};

Lines join(std::initializer_list<Lines> parts) {
    Lines all;
    for (const Lines& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

const Lines member_order = {
    "id",           "status",       "enable",          "connkeeper_reset",
    "pvid",         "tagged_vlans", "untagged_vlans",  "connected_device_mac_list",
    "poe",          "rate_limit",   "link_speed_mode", "link_speed_neg",
    "flow_control", "isolation",    "statistics",      "qos",
    "acl",          "voice_vlan",
};

} // namespace

// ---- Shape

TEST_F(PortReport, last_ten_ports_are_two_fibre_ports_and_eight_groups) {
    Lines ids;
    Document made = report();
    for (const Document& element : made["ports"])
        ids.push_back(element["id"]);
    ASSERT_EQ(ids.size(), 28u);
    EXPECT_EQ(ids[0], "1");
    EXPECT_EQ(ids[17], "18");
    EXPECT_EQ(ids[28 - 10], "F1");
    EXPECT_EQ(ids[28 - 9], "F2");
    EXPECT_EQ(ids[28 - 8], "trunk1");
    EXPECT_EQ(ids[28 - 1], "trunk8");
}

TEST_F(PortReport, members_stand_in_their_order) {
    Document made = report();
    EXPECT_EQ(keys(made), (Lines{"poe", "ports"}));
    EXPECT_EQ(keys(made["poe"]), (Lines{"total_power_watts", "available_power_watts"}));
    Document& first = made["ports"][0];
    EXPECT_EQ(keys(first), member_order);
    EXPECT_EQ(
        keys(first["poe"]),
        (Lines{
            "enable", "priority", "power_limit_type", "power_limit_user", "power_draw", "status"}));
    EXPECT_EQ(
        keys(first["rate_limit"]),
        (Lines{"enable_tx", "enable_rx", "tx_limit_kbps", "rx_limit_kbps"}));
    Document& statistics = first["statistics"];
    EXPECT_EQ(keys(statistics), (Lines{"rx_bytes", "tx_bytes", "rmon"}));
    for (const char* direction : {"rx_bytes", "tx_bytes"})
        EXPECT_EQ(
            keys(statistics[direction]),
            (Lines{"all", "ucast", "nucast", "discard", "mcast", "bcast"}));
    EXPECT_EQ(
        keys(statistics["rmon"]),
        (Lines{
            "drop_events", "octets", "pkts", "broadcast_pkts", "multicast_pkts", "crc_align_errors",
            "under_size_pkts", "over_size_pkts", "fragments", "jabbers", "collisions",
            "octets_0_64_pkts", "octets_65_127_pkts", "octets_128_255_pkts", "octets_256_511_pkts",
            "octets_512_1023_pkts", "octets_1024_1518_pkts"}));
    EXPECT_EQ(keys(first["qos"]), (Lines{"cos_value", "trust"}));
    EXPECT_EQ(keys(first["acl"]), (Lines{"mac", "ipv4"}));
    EXPECT_EQ(keys(first["voice_vlan"]), (Lines{"enable", "cos_mode"}));
}

TEST_F(PortReport, a_port_as_the_cloud_reads_it) {
    port(2).isolated = true;
    port(2).flow_control = true;
    port(2).enable = false;
    device.vlans.table[7].name = "seven";
    device.vlans.table[8].name = "eight";
    sim::set_bit(device.vlans.table[7].tagged, 2, true);
    sim::set_bit(device.vlans.table[8].tagged, 2, true);
    device.vlans.pvid[2] = 7;
    device.rates.ports[2].ingress = {true, 512};
    device.qos.ports[2] = {5, false};
    device.macs.learned = {address(0x21, {2}, 7)};
    poe(2).priority = 3;
    Document made = report()["ports"][2];
    made.erase("statistics");
    EXPECT_EQ(
        made.dump(),
        R"({"id":"3","status":0,"enable":false,"connkeeper_reset":false,"pvid":7,)"
        R"("tagged_vlans":"7-8","untagged_vlans":"1",)"
        R"("connected_device_mac_list":["02:00:00:00:00:21"],)"
        R"("poe":{"enable":true,"priority":3,"power_limit_type":0,"power_limit_user":30,)"
        R"("power_draw":0,"status":1},)"
        R"("rate_limit":{"enable_tx":false,"enable_rx":true,"tx_limit_kbps":0,)"
        R"("rx_limit_kbps":512},)"
        R"("link_speed_mode":0,"link_speed_neg":0,"flow_control":true,"isolation":true,)"
        R"("qos":{"cos_value":5,"trust":false},"acl":{"mac":"","ipv4":""},)"
        R"("voice_vlan":{"enable":false,"cos_mode":0}})");
}

// Pairs with a gap of one are the longest list: a run of three is no longer than one of two.
TEST_F(PortReport, the_longest_vlan_list_is_whole) {
    std::string list;
    for (int vid = 1; vid <= VLAN_LAST; vid += 3) {
        for (int member : {vid, vid + 1}) {
            device.vlans.table[member].name = "pair";
            sim::set_bit(device.vlans.table[member].tagged, 2, true);
        }
        list += (list.empty() ? "" : ",") + std::to_string(vid) + "-" + std::to_string(vid + 1);
    }
    EXPECT_EQ(list.size(), 12911u);
    device.vlans.table[1].untagged = {};
    Document made = report();
    EXPECT_EQ(made["ports"][2]["tagged_vlans"], list);
    EXPECT_EQ(made["ports"][2]["untagged_vlans"], "");
    EXPECT_EQ(made["ports"][3]["tagged_vlans"], "");
}

TEST(VlanText, has_room_for_any_mask) {
    for (int gap = 0; gap < 3; ++gap) {
        sim::Board board{TempFolder().path()};
        VlanMask mask = {};
        for (int vid = 0; vid < VLAN_COUNT; ++vid) {
            if (vid % 3 != gap)
                mask.words[vid / 32] |= 1u << vid % 32;
        }
        std::string text(65536, '\0');
        VlanMask again = {};
        ASSERT_EQ(sys_util_vlanmask2Str(&mask, text.data()), 0);
        ASSERT_EQ(sys_util_str2Vlanmask(text.c_str(), &again), 0);
        EXPECT_EQ(std::memcmp(&mask, &again, sizeof mask), 0) << "gap at " << gap;
    }
}

TEST_F(PortReport, every_list_of_vlans_is_rendered_into_a_buffer_of_zeros) {
    OddSwitch odd;
    report();
    EXPECT_EQ(odd.vlan_lists, 2 * 28);
    EXPECT_EQ(odd.used_buffers, 0);
}

TEST_F(PortReport, calls_before_the_ports_come_in_their_order) {
    device.macs.learned = {address(1, {0})};
    report();
    Lines first = calls();
    first.resize(9);
    EXPECT_EQ(
        first,
        (Lines{
            "sal_poe_total_power_allocated_query_get", "sal_poe_system_power_management_query_get",
            "sal_l2_macTbl_generate", "sal_l2_macTbl_size_get", "sal_sys_macAddr_get",
            "sal_l2_macEntry_get", "sal_l2_static_macEntry_search", "sys_util_mac2Str",
            "sal_acl_entry_portBinding_get"}));
}

TEST_F(PortReport, a_copper_port_with_link_is_asked_everything) {
    device.rates.ports[0].ingress.enable = device.rates.ports[0].egress.enable = true;
    report();
    EXPECT_EQ(
        calls_of_port(0),
        join(
            {state_calls,
             poe_calls,
             {"sal_rate_igrBandwidthCtrlEnable_get", "sal_rate_igrBandwidthCtrlRate_get",
              "sal_rate_egrBandwidthCtrlEnable_get", "sal_rate_egrBandwidthCtrlRate_get",
              "sal_port_speed_get", "sal_port_duplex_get", "sal_port_speedDuplex_get",
              "sal_port_flowCtrl_get", "sal_port_protected_get"},
             counter_calls,
             closing_calls}));
}

TEST_F(PortReport, a_group_beyond_the_poe_ports_is_asked_least) {
    report();
    EXPECT_EQ(
        calls_of_port(27), join(
                               {state_calls,
                                {"sal_port_speed_get", "sal_port_duplex_get",
                                 "sal_port_flowCtrl_get", "sal_port_protected_get"},
                                counter_calls,
                                closing_calls}));
}

TEST_F(PortReport, membership_kinds_are_asked_tagged_first) {
    report();
    Lines lines = trace();
    EXPECT_NE(
        std::find(lines.begin(), lines.end(), "sal_vlan_portAdminVlanmask_get(3, 2) = 0"),
        lines.end());
    auto tagged = std::find(lines.begin(), lines.end(), "sal_vlan_portAdminVlanmask_get(3, 2) = 0");
    EXPECT_EQ(tagged[2], "sal_vlan_portAdminVlanmask_get(3, 3) = 0");
}

TEST_F(PortReport, groups_have_no_rate_limit_and_fibre_ports_have_one) {
    Document made = report();
    for (std::size_t p = 0; p < 28; ++p)
        EXPECT_EQ(made["ports"][p].contains("rate_limit"), p <= 28 - 9) << p;
}

TEST(PortReportSizes, only_the_first_24_ports_have_poe_whatever_the_size) {
    for (int size : {11, 28, 96}) {
        SizedBoard sized(size);
        Document made = report();
        ASSERT_EQ(made["ports"].size(), static_cast<std::size_t>(size));
        for (std::size_t p = 0; p < made["ports"].size(); ++p)
            EXPECT_EQ(made["ports"][p].contains("poe"), p < 24) << size << " " << p;
    }
}

TEST(PortReportSizes, number_of_ports_is_asked_again_and_again) {
    SizedBoard sized(11);
    report();
    Lines calls = sized.board.trace.calls();
    EXPECT_GE(std::count(calls.begin(), calls.end(), "sys_logic_port_num_ret"), 3 * 11);
}

// ---- PoE

TEST_F(PortReport, total_power_is_whole_and_available_power_is_not) {
    device.poe.budget = 3705;
    for (sim::PoePort& p : device.poe.ports)
        p.demand = 0;
    Document made = report();
    EXPECT_EQ(made["poe"]["total_power_watts"], 370);
    EXPECT_EQ(made["poe"]["available_power_watts"], 370.5);
}

TEST_F(PortReport, draw_of_all_ports_is_taken_from_the_budget) {
    Document made = report();
    EXPECT_EQ(made["ports"][0]["poe"]["power_draw"], 12.3);
    EXPECT_EQ(made["ports"][1]["poe"]["power_draw"], 3.8);
    EXPECT_EQ(made["poe"]["available_power_watts"], 353.9);
    EXPECT_EQ(made["ports"][0]["poe"]["status"], POE_STATUS_DELIVERING);
}

TEST_F(PortReport, available_power_is_negative_when_more_is_drawn_than_there_is) {
    device.poe.mode = 2;
    device.poe.budget = 100;
    Document made = report();
    EXPECT_EQ(made["poe"]["total_power_watts"], 10);
    EXPECT_EQ(made["poe"]["available_power_watts"], -6.1);
}

TEST_F(PortReport, sum_of_draws_wraps_at_16_bits) {
    device.poe.mode = 2;
    device.poe.budget = 3700;
    poe(0).demand = 65535;
    poe(1).demand = 11;
    Document made = report();
    EXPECT_EQ(made["ports"][0]["poe"]["power_draw"], 6553.5);
    EXPECT_EQ(made["poe"]["available_power_watts"], 369.0);
}

TEST_F(PortReport, power_limits_are_in_the_clouds_units) {
    poe(0).user_limit = 32;
    poe(0).limit_type = 0;
    poe(1).user_limit = 150;
    poe(1).limit_type = 2;
    Document made = report();
    EXPECT_EQ(made["ports"][0]["poe"]["power_limit_user"], 6);
    EXPECT_EQ(made["ports"][0]["poe"]["power_limit_type"], -1);
    EXPECT_EQ(made["ports"][1]["poe"]["power_limit_user"], 30);
    EXPECT_EQ(made["ports"][1]["poe"]["power_limit_type"], 1);
}

// ---- Marks, rates, speeds

TEST_F(PortReport, reset_marks_are_shown) {
    mark_port_reset(3);
    mark_port_reset(27);
    Document made = report();
    for (std::size_t p = 0; p < 28; ++p)
        EXPECT_EQ(made["ports"][p]["connkeeper_reset"], p == 3 || p == 27) << p;
}

TEST_F(PortReport, any_mark_but_0_is_one) {
    gCattr.port_reset_flags[3] = 0x100;
    gCattr.port_reset_flags[4] = 0x80000000u;
    Document made = report();
    for (std::size_t p = 0; p < 28; ++p)
        EXPECT_EQ(made["ports"][p]["connkeeper_reset"], p == 3 || p == 4) << p;
}

TEST(PortReportSizes, ports_beyond_the_reset_marks_have_none) {
    SizedBoard sized(96);
    mark_port_reset(71);
    Document made = report();
    EXPECT_EQ(made["ports"][71]["connkeeper_reset"], true);
    for (std::size_t p = 72; p < 96; ++p)
        EXPECT_EQ(made["ports"][p]["connkeeper_reset"], false);
}

TEST_F(PortReport, a_rate_is_read_only_where_its_limit_is_on) {
    device.rates.ports[4].ingress = {false, 300};
    device.rates.ports[4].egress = {true, 400};
    Document limit = report()["ports"][4]["rate_limit"];
    EXPECT_EQ(
        limit.dump(),
        R"({"enable_tx":true,"enable_rx":false,"tx_limit_kbps":400,"rx_limit_kbps":0})");
    Lines names = calls_of_port(4);
    EXPECT_EQ(std::count(names.begin(), names.end(), "sal_rate_igrBandwidthCtrlRate_get"), 0);
    EXPECT_EQ(std::count(names.begin(), names.end(), "sal_rate_egrBandwidthCtrlRate_get"), 1);
}

TEST_F(PortReport, without_link_the_negotiated_speed_repeats_the_mode) {
    port(7).speed_automatic = false;
    port(7).speed = 1;
    port(7).duplex = 1;
    Document made = report();
    EXPECT_EQ(made["ports"][6]["link_speed_mode"], 0);
    EXPECT_EQ(made["ports"][6]["link_speed_neg"], 0);
    EXPECT_EQ(made["ports"][7]["link_speed_mode"], 3);
    EXPECT_EQ(made["ports"][7]["link_speed_neg"], 3);
    EXPECT_FALSE(made["ports"][7]["status"] == 1);
}

TEST_F(PortReport, with_link_the_negotiated_speed_is_the_running_one) {
    device.chip.change([](sim::ChipState& s) {
        s.ports[0].speed = 1;
        s.ports[0].duplex = 0;
    });
    Document made = report();
    EXPECT_EQ(made["ports"][0]["status"], 1);
    EXPECT_EQ(made["ports"][0]["link_speed_mode"], 0);
    EXPECT_EQ(made["ports"][0]["link_speed_neg"], 3);
    EXPECT_EQ(made["ports"][18]["link_speed_neg"], 6);
}

TEST(SpeedCodes, configured_modes) {
    // By speed 0 to 6, for duplex 0, 1 and 2.
    const int expected[3][7] = {
        {4, 2, 1, 2, 6, 1, 7}, {5, 3, 7, 3, 7, 7, 7}, {7, 7, 7, 7, 7, 7, 7}};
    for (std::uint32_t duplex = 0; duplex < 3; ++duplex)
        for (std::uint32_t speed = 0; speed < 7; ++speed) {
            PortDuplex d{0, duplex};
            PortSpeed forced{0, speed}, automatic{1, speed}, odd{2, speed};
            EXPECT_EQ(configured_speed_code(&forced, &d), expected[duplex][speed]);
            EXPECT_EQ(configured_speed_code(&automatic, &d), 0);
            EXPECT_EQ(configured_speed_code(&odd, &d), expected[duplex][speed]);
        }
}

TEST(SpeedCodes, running_links) {
    const int expected[3][7] = {
        {5, 3, 7, 3, 7, 7, 7}, {4, 2, 1, 2, 1, 6, 7}, {7, 7, 7, 7, 7, 7, 7}};
    for (std::uint32_t duplex = 0; duplex < 3; ++duplex)
        for (std::uint32_t speed = 0; speed < 7; ++speed) {
            PortLinkMode mode{speed, duplex};
            EXPECT_EQ(running_speed_code(&mode), expected[duplex][speed]);
        }
}

// ---- Counters

TEST_F(PortReport, each_counter_feeds_its_own_key) {
    // Command numbers of the chip's reads, in the order of the keys.
    const std::uint32_t rx[] = {3048, 3049, 3050, 3053, 3052, 3051};
    const std::uint32_t rmon[] = {3009, 3010, 3011, 3012, 3013, 3014, 3015, 3016, 3017,
                                  3018, 3019, 3020, 3021, 3022, 3023, 3024, 3025};
    device.chip.change([&](sim::ChipState& s) {
        for (std::uint32_t command = 3009; command < 3064; ++command)
            s.ports[3].counters[command] = 0xFFFFFFFFFFFF0000u + command;
    });
    Document made = report()["ports"][3]["statistics"];
    auto expect = [](const Document& object, const auto& commands) {
        std::size_t i = 0;
        for (const auto& member : object.items())
            EXPECT_EQ(member.value().get<std::uint64_t>(), 0xFFFFFFFFFFFF0000u + commands[i++])
                << member.key();
    };
    expect(made["rx_bytes"], rx);
    expect(made["rmon"], rmon);
    std::set<std::uint64_t> different;
    for (const auto& member : made["tx_bytes"].items())
        different.insert(member.value().get<std::uint64_t>());
    EXPECT_EQ(different.size(), 6u);
}

TEST_F(PortReport, counters_grow_with_time_where_there_is_link) {
    Document before = report();
    board.clock.sleep(10);
    Document after = report();
    EXPECT_EQ(before["ports"][0]["statistics"]["rx_bytes"]["all"], 0);
    EXPECT_EQ(after["ports"][0]["statistics"]["rx_bytes"]["all"], 10 * 120 * 512);
    EXPECT_EQ(after["ports"][0]["statistics"]["tx_bytes"]["all"], 10 * 80 * 512);
    EXPECT_EQ(after["ports"][0]["statistics"]["rmon"]["pkts"], 1200);
    EXPECT_EQ(after["ports"][2]["statistics"]["rx_bytes"]["all"], 0);
}

// ---- Learned addresses

TEST_F(PortReport, an_empty_table_gives_empty_lists) {
    device.macs.learned.clear();
    Document made = report();
    for (const Document& element : made["ports"])
        EXPECT_EQ(element["connected_device_mac_list"].dump(), "[]");
}

TEST_F(PortReport, own_static_and_unlearned_addresses_are_not_listed) {
    sim::MacAddress own = address(0, {0});
    std::memcpy(own.mac, device.system.mac, sizeof own.mac);
    sim::MacAddress placed = address(2, {0});
    placed.learned = false;
    device.macs.learned = {address(1, {0}), own, placed, address(4, {0})};
    device.macs.fixed = {address(3, {0})};
    Document made = report();
    EXPECT_EQ(
        made["ports"][0]["connected_device_mac_list"].dump(),
        R"(["02:00:00:00:00:01","02:00:00:00:00:04"])");
    // Neither the own address nor one with the flag is asked about.
    Lines names = calls();
    EXPECT_EQ(std::count(names.begin(), names.end(), "sal_l2_static_macEntry_search"), 3);
    EXPECT_EQ(std::count(names.begin(), names.end(), "sal_l2_macEntry_get"), 5);
}

TEST_F(PortReport, an_address_that_is_the_own_one_but_for_a_byte_is_listed) {
    device.macs.learned.clear();
    for (std::size_t byte = 0; byte < sizeof device.system.mac; ++byte) {
        sim::MacAddress other = address(0, {0});
        std::memcpy(other.mac, device.system.mac, sizeof other.mac);
        other.mac[byte] ^= 0x40;
        device.macs.learned.push_back(other);
    }
    EXPECT_EQ(report()["ports"][0]["connected_device_mac_list"].size(), sizeof device.system.mac);
}

TEST_F(PortReport, an_address_on_several_ports_is_listed_on_each_in_table_order) {
    device.macs.learned = {address(9, {1, 27}), address(5, {0, 1, 19}), address(7, {1})};
    Document made = report();
    auto list = [&](std::size_t p) { return made["ports"][p]["connected_device_mac_list"].dump(); };
    EXPECT_EQ(list(0), R"(["02:00:00:00:00:05"])");
    EXPECT_EQ(list(1), R"(["02:00:00:00:00:09","02:00:00:00:00:05","02:00:00:00:00:07"])");
    EXPECT_EQ(list(19), R"(["02:00:00:00:00:05"])");
    EXPECT_EQ(list(27), R"(["02:00:00:00:00:09"])");
    EXPECT_EQ(list(2), "[]");
}

TEST_F(PortReport, a_static_address_of_another_vlan_does_not_hide_a_learned_one) {
    device.macs.learned = {address(3, {0}, 1)};
    device.macs.fixed = {address(3, {1}, 2)};
    Document made = report();
    EXPECT_EQ(made["ports"][0]["connected_device_mac_list"].dump(), R"(["02:00:00:00:00:03"])");
}

TEST_F(PortReport, bits_beyond_the_ports_are_ignored) {
    device.macs.learned = {address(1, {95}), address(2, {0, 28, 95})};
    Document made = report();
    EXPECT_EQ(made["ports"][0]["connected_device_mac_list"].dump(), R"(["02:00:00:00:00:02"])");
    EXPECT_EQ(made["ports"][27]["connected_device_mac_list"].dump(), "[]");
}

TEST(PortReportSizes, a_full_table_is_read_once_and_sorted_by_port) {
    SizedBoard sized(96);
    auto& learned = sized.device.macs.learned;
    learned.clear();
    for (int i = 0; i < 16384; ++i) {
        learned.push_back(address(static_cast<std::uint8_t>(i), {i * 7 % 96}));
        learned.back().mac[4] = static_cast<std::uint8_t>(i >> 8);
    }
    Document made = report();
    Lines calls = sized.board.trace.calls();
    auto count = [&](const char* name) { return std::count(calls.begin(), calls.end(), name); };
    EXPECT_EQ(count("sal_l2_macTbl_generate"), 1);
    EXPECT_EQ(count("sal_l2_macEntry_get"), 16384);
    EXPECT_EQ(count("sys_util_mac2Str"), 16384);
    std::map<int, Lines> expected;
    for (int i = 0; i < 16384; ++i)
        expected[i * 7 % 96].push_back(sim::show_mac(learned[static_cast<std::size_t>(i)].mac));
    for (int p = 0; p < 96; ++p)
        EXPECT_EQ(
            made["ports"][static_cast<std::size_t>(p)]["connected_device_mac_list"].get<Lines>(),
            expected[p]);
}

// ---- Failures

namespace {

// What a failing call leaves of the report, beside the first lines of it.
struct Remains {
    const char* call;
    int per_port;            // how often one port makes the call; 0: made before the ports
    const char* last_member; // of the failing port's object; null: there is none
};

const Remains remains[] = {
    {"sal_poe_total_power_allocated_query_get", 0, nullptr},
    {"sal_poe_system_power_management_query_get", 0, nullptr},
    {"sal_l2_macTbl_generate", 0, nullptr},
    {"sal_l2_macTbl_size_get", 0, nullptr},
    {"sal_sys_macAddr_get", 0, nullptr},
    {"sal_l2_macEntry_get", 0, nullptr},
    {"sal_l2_static_macEntry_search", 0, nullptr},
    {"sys_util_mac2Str", 0, nullptr},
    {"sal_acl_entry_portBinding_get", 0, nullptr},
    {"sal_port_enable_get", 1, nullptr},
    {"sal_port_linkStatus_get", 1, nullptr},
    {"sal_vlan_portAdminPvid_get", 1, nullptr},
    {"sal_vlan_portAdminVlanmask_get", 2, nullptr},
    {"sys_util_vlanmask2Str", 2, nullptr},
    {"sal_poe_port_ext_config_query_get", 1, nullptr},
    {"sal_poe_port_config_query_get", 1, nullptr},
    {"sal_poe_port_status_query_get", 1, nullptr},
    {"sal_poe_port_measurements_query_get", 1, nullptr},
    {"sal_rate_igrBandwidthCtrlEnable_get", 1, nullptr},
    {"sal_rate_igrBandwidthCtrlRate_get", 1, nullptr},
    {"sal_rate_egrBandwidthCtrlEnable_get", 1, nullptr},
    {"sal_rate_egrBandwidthCtrlRate_get", 1, nullptr},
    {"sal_port_speed_get", 1, nullptr},
    {"sal_port_duplex_get", 1, nullptr},
    {"sal_port_speedDuplex_get", 1, nullptr},
    {"sal_port_flowCtrl_get", 1, nullptr},
    {"sal_port_protected_get", 1, "flow_control"},
    {"user_mibtbls", 1, "isolation"},
    {"sal_mib_etherStats", 1, "isolation"},
    {"sal_qos_portCos_get", 1, "statistics"},
    {"sal_qos_portTrustState_get", 1, "statistics"},
    {"sal_vlan_portVoiceVlanEnable_get", 1, "acl"},
    {"sal_vlan_portVoiceVlancosMode_get", 1, "acl"},
};

const Remains& remains_of(const std::string& call) {
    for (const Remains& row : remains)
        if (call == row.call ||
            (call.starts_with(row.call) && row.per_port == 1 && row.last_member))
            return row;
    ADD_FAILURE() << "no outcome is known for " << call;
    return remains[0];
}

Document cut_report(const Document& whole, const FailedRun& run) {
    const Remains& row = remains_of(run.call);
    Document left = whole;
    left["poe"].erase("available_power_watts");
    if (run.call.starts_with("sal_poe_total") || run.call.starts_with("sal_poe_system"))
        return {{"poe", Document::object()}};
    Document ports = Document::array();
    if (row.per_port > 0) {
        std::size_t failing = static_cast<std::size_t>((run.nth - 1) / row.per_port);
        for (std::size_t p = 0; p < failing; ++p)
            ports.push_back(whole["ports"][p]);
        if (row.last_member) {
            Document partial = Document::object();
            for (const auto& member : whole["ports"][failing].items()) {
                partial[member.key()] = member.value();
                if (member.key() == row.last_member)
                    break;
            }
            ports.push_back(partial);
        }
    }
    left["ports"] = ports;
    return left;
}

} // namespace

TEST(PortReportFailures, the_first_failing_call_ends_the_report_and_what_is_there_stays) {
    auto prepare = [](sim::Board& board) {
        sim::Switch& s = board.device;
        s.macs.learned = {address(1, {0, 1}), address(2, {1})};
        s.rates.ports[0].ingress.enable = s.rates.ports[0].egress.enable = true;
        s.rates.ports[1].ingress.enable = s.rates.ports[1].egress.enable = true;
        s.chip.change([](sim::ChipState& chip) {
            for (std::size_t p = 0; p < chip.ports.size(); ++p)
                chip.ports[p].plugged = p < 2;
        });
    };
    Document whole;
    {
        SizedBoard sized(11);
        prepare(sized.board);
        whole = report();
    }
    auto runs = fail_each_call(prepare, vxc_port_get, 77, ports_scenario(11));
    EXPECT_GT(runs.size(), 400u);
    for (const FailedRun& run : runs) {
        SCOPED_TRACE(run.call + " " + std::to_string(run.nth));
        EXPECT_EQ(run.result, 77);
        EXPECT_EQ(run.errors, Codes{77});
        EXPECT_EQ(run.calls_after, Lines{});
        EXPECT_EQ(run.report, cut_report(whole, run).dump());
    }
}

TEST_F(PortReport, a_failing_counter_of_port_6_leaves_5_ports_and_a_part) {
    fail("sal_mib_etherStatsJabbers_get", 12, 6);
    Document made = report(12);
    ASSERT_EQ(made["ports"].size(), 6u);
    for (std::size_t p = 0; p < 5; ++p)
        EXPECT_EQ(keys(made["ports"][p]), member_order);
    EXPECT_EQ(keys(made["ports"][5]).back(), "isolation");
    EXPECT_FALSE(made["poe"].contains("available_power_watts"));
    EXPECT_EQ(recorded(), Codes{12});
}

// The address is on one port only, so that a table without room for it costs one element, too.
TEST(PortReportFailures, a_failing_allocation_costs_one_member_and_the_next_report_nothing) {
    SizedBoard sized(11);
    sized.device.macs.learned = {address(1, {0})};
    EXPECT_GT(starve(sized.board, vxc_port_get), 100u);
}
