// The uplink port: gateway, ARP table, MAC address table.
#include "sections/uplink_port.h"

#include <map>

#include "platform/types.h"
#include "tests/support/on_board.h"

namespace {

const std::string header =
    "IP address       HW type     Flags       HW address            Mask     Device\n";
const std::string gateway_line =
    "192.168.1.1      0x1         0x2         02:aa:00:00:00:03     *        eth0\n";
const std::string other_line =
    "192.168.1.20     0x1         0x2         02:aa:00:00:00:01     *        eth0\n";

class UplinkPort : public OnBoard {
  protected:
    std::string report() {
        Report report = report_of(vxc_uplink_port_get);
        EXPECT_EQ(report.result, 0);
        EXPECT_EQ(recorded(), Codes{});
        return report.text;
    }

    // What is reported when the ARP table is this text.
    std::string report_with(const std::string& table) {
        device.network.arp_text = table;
        return report();
    }

    void put_learned(const std::vector<std::pair<int, PortBitmap>>& addresses) {
        device.macs.learned.clear();
        for (auto [last_byte, ports] : addresses) {
            sim::MacAddress address;
            address.mac[0] = 0x02;
            address.mac[1] = 0xAA;
            address.mac[5] = static_cast<std::uint8_t>(last_byte);
            address.ports = ports;
            device.macs.learned.push_back(address);
        }
    }

    long entries_read() const {
        Lines names = calls();
        return std::count(names.begin(), names.end(), "sal_l2_macEntry_get");
    }
};

PortBitmap ports(std::initializer_list<int> bits) {
    PortBitmap set{};
    for (int bit : bits)
        set.words[bit / 32] |= 1u << bit % 32;
    return set;
}

std::string uplink(int port) { return "{\"uplink_port\":" + std::to_string(port) + "}"; }

} // namespace

TEST_F(UplinkPort, is_the_port_behind_which_the_gateway_is) {
    EXPECT_EQ(report(), uplink(5));
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_sys_gateway_get() = 0", "sys_util_ip2Str(3232235777) = 0",
                     "sal_l2_macTbl_generate() = 0", "sal_l2_macTbl_size_get() = 0",
                     "system(\"cat /proc/net/arp > /tmp/arpinfo\") = 0",
                     "sn_sys_util_str2Mac(\"02:aa:00:00:00:03\") = 0", "sal_l2_macEntry_get(0) = 0",
                     "sal_l2_macEntry_get(1) = 0", "sal_l2_macEntry_get(2) = 0"}));
    EXPECT_TRUE(file("/tmp/arpinfo").starts_with(header));
}

TEST_F(UplinkPort, is_found_behind_other_neighbours) {
    EXPECT_EQ(report_with(header + other_line + other_line + gateway_line), uplink(5));
}

TEST_F(UplinkPort, is_0_when_the_arp_table_cannot_be_opened) {
    board.faults.plan({sim::Edge::file, "/tmp/arpinfo", 1, true, 1, 0});
    EXPECT_EQ(report(), uplink(0));
    EXPECT_FALSE(called("sal_l2_macEntry_get"));
}

TEST_F(UplinkPort, of_a_gateway_without_a_neighbour_is_the_port_of_the_last_entry) {
    put_learned({{1, ports({3})}, {2, ports({8})}, {4, ports({10})}});
    for (const std::string& table : {header, std::string(), header + other_line.substr(0, 20)}) {
        forget();
        EXPECT_EQ(report_with(table), uplink(11));
        EXPECT_EQ(entries_read(), 3);
        EXPECT_FALSE(called("sn_sys_util_str2Mac"));
    }
}

TEST_F(UplinkPort, of_a_gateway_that_never_talked_is_the_port_of_the_last_entry) {
    put_learned({{1, ports({3})}, {2, ports({8})}});
    EXPECT_EQ(report_with(header + gateway_line), uplink(9));
}

TEST_F(UplinkPort, entry_0_is_read_of_an_empty_table) {
    put_learned({});
    EXPECT_EQ(report(), uplink(0));
    EXPECT_EQ(entries_read(), 1);
}

TEST_F(UplinkPort, the_walk_ends_at_the_gateway) {
    put_learned({{1, ports({3})}, {3, ports({6})}, {3, ports({7})}});
    EXPECT_EQ(report(), uplink(7));
    EXPECT_EQ(entries_read(), 2);
}

TEST_F(UplinkPort, an_address_that_only_begins_like_the_gateway_is_passed_over) {
    EXPECT_EQ(
        report_with(
            header +
            "192.168.1.10     0x1         0x2         02:aa:00:00:00:01     *        eth0\n" +
            gateway_line),
        uplink(5));
}

TEST_F(UplinkPort, the_gateway_counts_in_the_address_column_only) {
    EXPECT_EQ(
        report_with(
            header + "192.168.1.9 0x1 0x2 02:aa:00:00:00:01 * 192.168.1.1\n" + gateway_line),
        uplink(5));
}

TEST_F(UplinkPort, columns_may_be_apart_in_any_way) {
    EXPECT_EQ(report_with(header + "192.168.1.1\t0x1\n0x2 \r\n 02:aa:00:00:00:03"), uplink(5));
}

TEST_F(UplinkPort, a_table_that_ends_in_the_gateways_line_has_no_hardware_address) {
    put_learned({{3, ports({6})}, {9, ports({20})}});
    for (const char* rest :
         {"192.168.1.1", "192.168.1.1 ", "192.168.1.1 0x1 0x2", "192.168.1.1 0x1 0x2\n"}) {
        forget();
        EXPECT_EQ(report_with(header + rest), uplink(21)) << rest;
        EXPECT_FALSE(called("sn_sys_util_str2Mac"));
    }
}

TEST_F(UplinkPort, a_header_of_more_than_100_characters_ends_there) {
    // The rest of it is one word each of two neighbours that are none.
    std::string table = std::string(100, 'h') + "a b c d e f 1 2 3 4 5 6\n" + gateway_line;
    EXPECT_EQ(report_with(table), uplink(5));
}

TEST_F(UplinkPort, a_header_of_exactly_100_characters_is_read_whole) {
    // A character of it that was left would be taken for an address and shift the columns.
    EXPECT_EQ(report_with(std::string(100, 'h') + "\n" + gateway_line), uplink(5));
}

TEST_F(UplinkPort, words_of_any_length_are_survived) {
    std::string line = std::string(5000, '1') + " " + std::string(5000, '2') + " 3 " +
                       std::string(5000, '4') + " 5 " + std::string(5000, '6') + "\n";
    EXPECT_EQ(report_with(header + line + gateway_line), uplink(5));
}

TEST_F(UplinkPort, binary_junk_is_survived) {
    std::string junk;
    for (int i = 0; i < 20000; ++i)
        junk += static_cast<char>(i * 41 % 256);
    put_learned({{1, ports({3})}});
    EXPECT_EQ(report_with(junk), uplink(4));
    EXPECT_EQ(report_with(header + "192.168.1.1 0x1 0x2 " + junk), uplink(4));
}

TEST_F(UplinkPort, of_several_ports_is_the_first) {
    const std::map<int, PortBitmap> sets = {{1, ports({0, 2})},    {2, ports({1, 2, 3, 4})},
                                            {12, ports({11, 13})}, {20, ports({19, 20, 21, 27})},
                                            {0, ports({})},        {28, ports({27})}};
    for (const auto& [first, set] : sets) {
        put_learned({{3, set}});
        EXPECT_EQ(report(), uplink(first));
    }
}

TEST_F(UplinkPort, of_every_other_port_is_survived) {
    PortBitmap every_other{{0x55555555, 0x55555555, 0x55555555}};
    put_learned({{3, every_other}});
    EXPECT_EQ(report(), uplink(1));
}

TEST_F(UplinkPort, every_call_may_fail_and_what_is_reported_then) {
    struct Outcome {
        const char* call;
        int port;
    };
    const Outcome outcomes[] = {
        {"sal_sys_gateway_get", 8},    // 0.0.0.0 is in no table: the last entry
        {"sys_util_ip2Str", 8},        // nor is an empty text
        {"sal_l2_macTbl_generate", 5}, // the snapshot of before
        {"sal_l2_macTbl_size_get", 1}, // entry 0 alone
        {"sn_sys_util_str2Mac", 8},    // no entry has no address
        {"sal_l2_macEntry_get", 5},    {"sal_l2_macEntry_get", 5},
        {"sal_l2_macEntry_get", 8}, // the gateway's own: the last entry
    };
    auto runs = fail_each_call(
        [](sim::Board& fresh) { fresh.device.macs.snapshot = fresh.device.macs.learned; },
        vxc_uplink_port_get);
    ASSERT_EQ(runs.size(), std::size(outcomes));
    for (std::size_t i = 0; i < runs.size(); ++i) {
        EXPECT_EQ(runs[i].call, outcomes[i].call);
        EXPECT_EQ(runs[i].result, 0) << runs[i].call;
        EXPECT_EQ(runs[i].report, uplink(outcomes[i].port)) << runs[i].call << runs[i].nth;
        EXPECT_EQ(runs[i].errors, Codes{}) << runs[i].call;
    }
}

TEST_F(UplinkPort, an_entry_that_cannot_be_read_leaves_the_one_before) {
    put_learned({{1, ports({3})}, {2, ports({8})}});
    fail("sal_l2_macEntry_get", 9, 2);
    EXPECT_EQ(report(), uplink(4));
}

TEST_F(UplinkPort, a_missing_object_is_code_498) {
    EXPECT_EQ(vxc_uplink_port_get(nullptr), 498);
    EXPECT_EQ(trace(), Lines{});
}
