// The simulated chip, reached as the platform library reaches it: driver function, device node,
// ioctl.
#include <algorithm>
#include <cstring>
#include <thread>

#include "driver/acl.h"
#include "driver/acl_mgmt.h"
#include "driver/cablediag.h"
#include "driver/dai.h"
#include "driver/l2.h"
#include "driver/lldp.h"
#include "driver/mcast.h"
#include "driver/mib.h"
#include "driver/mirror.h"
#include "driver/port.h"
#include "driver/rate.h"
#include "driver/request.h"
#include "driver/stp.h"
#include "driver/switch.h"
#include "driver/trunk.h"
#include "driver/vlan.h"
#include "sim/chip/chip_commands.h"
#include "sim/instruments/codes.h"
#include "tests/driver/operations/operation.h"
#include "tests/support/on_board.h"

namespace {

class ChipTest : public OnBoard {
  protected:
    ChipTest() : chip(board.device.chip) {}

    void plug(std::uint32_t port, sim::ChipTraffic traffic = {}) {
        chip.change([&](sim::ChipState& state) {
            state.ports[port].plugged = true;
            state.ports[port].traffic = traffic;
        });
    }

    sim::Chip& chip;
};

PortBitmap ports(std::initializer_list<std::uint32_t> members) {
    PortBitmap set = {};
    for (std::uint32_t port : members)
        set.words[port / 32] |= 1u << port % 32;
    return set;
}

bool operator==(const PortBitmap& a, const PortBitmap& b) {
    return std::ranges::equal(a.words, b.words);
}

template <class Read> std::uint64_t count(Read read, std::uint32_t port) {
    std::uint64_t value = 77;
    EXPECT_EQ(read(port, &value), 0);
    return value;
}

// ---- Ports ----

TEST_F(ChipTest, a_port_without_its_partner_has_no_link) {
    std::uint32_t up = 7;
    chip.change([](sim::ChipState& state) { state.ports[3].plugged = false; });
    EXPECT_EQ(rsd_port_linkStatus_get(3, &up), 0);
    EXPECT_EQ(up, 0u);
    plug(3);
    EXPECT_EQ(rsd_port_linkStatus_get(3, &up), 0);
    EXPECT_EQ(up, 1u);
}

TEST_F(ChipTest, a_port_taken_down_loses_its_link_and_gets_it_back) {
    plug(3);
    std::uint32_t up = 7, enable = 7;
    EXPECT_EQ(rsd_port_enable_set(3, 0), 0);
    EXPECT_EQ(rsd_port_enable_get(3, &enable), 0);
    EXPECT_EQ(rsd_port_linkStatus_get(3, &up), 0);
    EXPECT_EQ(enable, 0u);
    EXPECT_EQ(up, 0u);
    EXPECT_EQ(rsd_port_enable_set(3, 1), 0);
    EXPECT_EQ(rsd_port_linkStatus_get(3, &up), 0);
    EXPECT_EQ(up, 1u);
}

TEST_F(ChipTest, the_set_of_links_holds_every_port_with_link) {
    chip.change([](sim::ChipState& state) {
        for (sim::ChipPort& port : state.ports)
            port.plugged = false;
    });
    plug(0);
    plug(17);
    PortBitmap links = {};
    EXPECT_EQ(rsd_port_allLinkStatus_get(&links), 0);
    EXPECT_TRUE(links == ports({0, 17}));
}

TEST_F(ChipTest, the_chip_knows_its_ports_by_itself) {
    sim::Chip small(4);
    std::uint32_t words[4] = {4, 1, 0, 0};
    EXPECT_EQ(small.request(3457, words), sim::code_no_port);
    words[0] = 3;
    words[1] = 0;
    EXPECT_EQ(small.request(3457, words), 0);
    EXPECT_FALSE(small.state().ports[3].enabled);
}

// ---- Frame sizes ----

TEST_F(ChipTest, frame_sizes_are_kept_and_a_port_follows_the_switch_until_it_has_its_own) {
    std::uint32_t bytes = 0;
    EXPECT_EQ(rsd_switch_maxFrameSize_set(9216), 0);
    EXPECT_EQ(rsd_switch_maxFrameSize_get(&bytes), 0);
    EXPECT_EQ(bytes, 9216u);
    EXPECT_EQ(rsd_switch_portMaxFrameSize_get(2, &bytes), 0);
    EXPECT_EQ(bytes, 9216u);
    EXPECT_EQ(rsd_switch_portMaxFrameSize_set(2, 1600), 0);
    EXPECT_EQ(rsd_switch_portMaxFrameSize_get(2, &bytes), 0);
    EXPECT_EQ(bytes, 1600u);
    EXPECT_EQ(rsd_switch_maxFrameSize_set(63), sim::code_bad_value);
}

// ---- Counters ----

TEST_F(ChipTest, counters_grow_with_time_on_ports_with_link_only) {
    plug(1, {.rx_packets = 100, .tx_packets = 50, .packet_bytes = 512});
    chip.change([](sim::ChipState& state) {
        state.ports[2].plugged = false;
        state.ports[2].traffic.rx_packets = 100;
    });
    chip.advance(10);
    EXPECT_EQ(count(rsd_mib_etherStatsPkts_get, 1), 1000u);
    EXPECT_EQ(count(rsd_mib_ifInOctets_get, 1), 512000u);
    EXPECT_EQ(count(rsd_mib_ifInUcastPkts_get, 1), 900u);
    EXPECT_EQ(count(rsd_mib_ifInMulticastPkts_get, 1), 60u);
    EXPECT_EQ(count(rsd_mib_ifInBroadcastPkts_get, 1), 40u);
    EXPECT_EQ(count(rsd_mib_ifOutOctets_get, 1), 256000u);
    EXPECT_EQ(count(rsd_mib_etherStatsPkts512to1023Octets_get, 1), 1500u);
    EXPECT_EQ(count(rsd_mib_etherStatsPkts_get, 2), 0u);
}

TEST_F(ChipTest, slow_traffic_is_not_lost_between_short_steps) {
    plug(1, {.rx_packets = 1, .tx_packets = 0, .packet_bytes = 64});
    for (int step = 0; step < 40; ++step)
        chip.advance(0.25);
    EXPECT_EQ(count(rsd_mib_etherStatsPkts64Octets_get, 1), 10u);
}

TEST_F(ChipTest, a_counter_holds_sixty_four_bits_and_is_cleared) {
    constexpr std::uint64_t most = 18446744073709551615u;
    chip.change([](sim::ChipState& state) {
        state.ports[1].counters[3010] = most;
        state.ports[2].counters[3010] = 5;
    });
    EXPECT_EQ(count(rsd_mib_etherStatsOctets_get, 1), most);
    EXPECT_EQ(rsd_mib_cntr_clr(1), 0);
    EXPECT_EQ(count(rsd_mib_etherStatsOctets_get, 1), 0u);
    EXPECT_EQ(count(rsd_mib_etherStatsOctets_get, 2), 5u);
    EXPECT_EQ(rsd_mib_cntrGlobal_clr(), 0);
    EXPECT_EQ(count(rsd_mib_etherStatsOctets_get, 2), 0u);
    EXPECT_EQ(rsd_mib_cntr_clr(28), sim::code_no_port);
}

TEST_F(ChipTest, switch_wide_counters_are_no_ports) {
    chip.change([](sim::ChipState& state) { state.counters[3063] = 12; });
    std::uint64_t value = 0;
    EXPECT_EQ(rsd_mib_cpuStatsPkts_get(&value), 0);
    EXPECT_EQ(value, 12u);
}

// ---- Layer-4 ranges ----

// An entry of the list "web" that refers to a range for its source port.
int create_entry(std::uint32_t sequence, std::uint8_t range) {
    rsd_acl_entry_create("web", 2);
    AclEntry entry = {};
    entry.sequence = sequence;
    entry.valid = ACL_VALID_SOURCE_RANGE;
    entry.source_range = range;
    return rsd_acl_ace_entry_create("web", &entry);
}

std::uint32_t users_of(std::uint8_t range) {
    AclPortRange read = {};
    EXPECT_EQ(rsd_acl_l4port_range_get(&read, range), 0);
    return read.users;
}

TEST_F(ChipTest, equal_ranges_share_an_index_and_are_read_back) {
    const AclPortRange web = {1, 80, 443, 0}, high = {2, 49152, 65535, 0};
    std::uint8_t first = 99, second = 99, other = 99;
    EXPECT_EQ(rsd_acl_l4port_range_set(&web, &first), 0);
    EXPECT_EQ(rsd_acl_l4port_range_set(&high, &other), 0);
    EXPECT_EQ(rsd_acl_l4port_range_set(&web, &second), 0);
    EXPECT_EQ(first, second);
    EXPECT_NE(first, other);

    AclPortRange read = {};
    EXPECT_EQ(rsd_acl_l4port_range_get(&read, first), 0);
    EXPECT_EQ(read.kind, 1u);
    EXPECT_EQ(read.first, 80u);
    EXPECT_EQ(read.last, 443u);
}

TEST_F(ChipTest, a_range_cannot_be_deleted_while_an_entry_refers_to_it) {
    const AclPortRange web = {1, 80, 443, 0};
    std::uint8_t range = 99;
    ASSERT_EQ(rsd_acl_l4port_range_set(&web, &range), 0);
    EXPECT_EQ(users_of(range), 0u);
    EXPECT_EQ(create_entry(10, range), 0);
    EXPECT_EQ(create_entry(20, range), 0);
    EXPECT_EQ(users_of(range), 2u);
    EXPECT_EQ(rsd_acl_l4port_range_del(range), sim::code_busy);

    EXPECT_EQ(rsd_acl_ace_entry_del("web", 10), 0);
    EXPECT_EQ(users_of(range), 1u);
    EXPECT_EQ(rsd_acl_entry_del("web", 2), 0);
    EXPECT_EQ(users_of(range), 0u);
    EXPECT_EQ(rsd_acl_l4port_range_del(range), 0);
    AclPortRange read = {};
    EXPECT_EQ(rsd_acl_l4port_range_get(&read, range), sim::code_not_found);
    EXPECT_EQ(rsd_acl_l4port_range_del(range), sim::code_not_found);
}

TEST_F(ChipTest, ranges_run_out_only_when_entries_refer_to_all_of_them) {
    std::uint8_t index = 99;
    for (std::uint32_t i = 0; i < sim::chip_l4_ranges; ++i) {
        const AclPortRange range = {1, i, 100, 0};
        ASSERT_EQ(rsd_acl_l4port_range_set(&range, &index), 0);
        EXPECT_EQ(index, i);
        if (i != 5) {
            ASSERT_EQ(create_entry(i + 1, index), 0);
        }
    }
    const AclPortRange one_more = {1, 50, 100, 0}, too_many = {1, 51, 100, 0};
    EXPECT_EQ(rsd_acl_l4port_range_set(&one_more, &index), 0);
    EXPECT_EQ(index, 5); // the place of the one that no entry refers to
    EXPECT_EQ(create_entry(100, index), 0);
    index = 99;
    EXPECT_EQ(rsd_acl_l4port_range_set(&too_many, &index), sim::code_table_full);
    EXPECT_EQ(index, 99);
}

TEST_F(ChipTest, a_range_backward_beyond_the_ports_or_of_no_kind_is_refused) {
    std::uint8_t index = 99;
    for (const AclPortRange& range :
         {AclPortRange{1, 2, 1, 0}, AclPortRange{1, 1, 65536, 0}, AclPortRange{0, 1, 2, 0}})
        EXPECT_EQ(rsd_acl_l4port_range_set(&range, &index), sim::code_bad_value);
    EXPECT_EQ(index, 99);
}

// ---- Mirrors and trunks ----

TEST_F(ChipTest, a_mirror_group_is_kept_and_deleted) {
    const MirrorGroup group = {5, 1, ports({1, 2}), ports({2})};
    EXPECT_EQ(rsd_mirror_group_set(2, &group), 0);
    auto mirror = chip.state().mirrors[2];
    ASSERT_TRUE(mirror.has_value());
    EXPECT_EQ(mirror->target, 5u);
    EXPECT_EQ(mirror->rx[0], 6u);
    EXPECT_EQ(mirror->tx[0], 4u);
    EXPECT_EQ(rsd_mirror_group_del(2), 0);
    EXPECT_FALSE(chip.state().mirrors[2].has_value());
    EXPECT_EQ(rsd_mirror_group_set(sim::chip_mirror_groups, &group), sim::code_bad_value);
}

TEST_F(ChipTest, a_trunk_has_its_mode_its_active_members_and_gives_ports_their_parts) {
    const PortBitmap members = ports({4, 5});
    chip.change([](sim::ChipState& state) { state.ports[4].plugged = false; });
    plug(5);
    EXPECT_EQ(rsd_trunk_staticGroup_set(1, &members), 0);
    std::uint32_t mode = 9, role = 9, group = 9;
    EXPECT_EQ(rsd_trunk_mode_get(1, &mode), 0);
    EXPECT_EQ(mode, 1u);
    PortBitmap active = {};
    EXPECT_EQ(rsd_trunk_activeMember_get(1, &active), 0);
    EXPECT_TRUE(active == ports({5}));
    EXPECT_EQ(rsd_trunk_portRole_get(4, &role), 0);
    EXPECT_EQ(role, 2u);
    EXPECT_EQ(rsd_trunk_portRole_get(28 - 8 + 1, &role), 0);
    EXPECT_EQ(role, 5u);
    EXPECT_EQ(rsd_trunk_portRole_get(6, &role), 0);
    EXPECT_EQ(role, 0u);
    EXPECT_EQ(rsd_trunk_memberPortTrunkId_get(5, &group), 0);
    EXPECT_EQ(group, 1u);
    EXPECT_EQ(rsd_trunk_memberPortTrunkId_get(6, &group), sim::code_not_found);

    EXPECT_EQ(rsd_trunk_staticGroup_del(1), 0);
    EXPECT_EQ(rsd_trunk_mode_get(1, &mode), 0);
    EXPECT_EQ(mode, 0u);
    EXPECT_EQ(rsd_trunk_lacpGroup_set(1, &members), 0);
    EXPECT_EQ(rsd_trunk_portRole_get(28 - 8 + 1, &role), 0);
    EXPECT_EQ(role, 4u);
}

// ---- Cable tests ----

TEST_F(ChipTest, a_cable_test_finds_the_fault_that_is_there_when_it_runs) {
    CableResult result = {99, {}, {}};
    EXPECT_EQ(cablediag_getret(&result, 3), sim::code_not_found);
    EXPECT_EQ(result.port, 99u);
    chip.change([](sim::ChipState& state) {
        state.ports[3].cable = {{{0, 30}, {0, 30}, {2, 12}, {0, 30}}};
    });
    EXPECT_EQ(rsd_cablediag_copper_set(3), 0);
    chip.change([](sim::ChipState& state) { state.ports[3].cable = {}; });
    EXPECT_EQ(cablediag_getret(&result, 3), 0);
    EXPECT_EQ(result.port, 3u);
    EXPECT_EQ(result.pair_state[2], 2);
    EXPECT_EQ(result.length_m[2], 12);
    EXPECT_EQ(result.length_m[0], 30);
}

TEST_F(ChipTest, a_fibre_port_has_no_cable_to_test) {
    EXPECT_EQ(rsd_cablediag_copper_set(28 - 10), sim::code_bad_value);
}

// ---- What is only stored ----

TEST_F(ChipTest, a_read_gives_back_what_its_write_took) {
    std::uint32_t value = 9;
    EXPECT_EQ(dai_port_trust_set(4, 1), 0);
    EXPECT_EQ(dai_port_trust_get(4, &value), 0);
    EXPECT_EQ(value, 1u);
    EXPECT_EQ(dai_port_trust_get(5, &value), 0);
    EXPECT_EQ(value, 0u);

    EXPECT_EQ(rsd_rate_egrQueueCtrlRate_set(2, 7, 64000), 0);
    EXPECT_EQ(rsd_rate_egrQueueCtrlRate_get(2, 7, &value), 0);
    EXPECT_EQ(value, 64000u);
    EXPECT_EQ(rsd_rate_egrQueueCtrlRate_get(2, 6, &value), 0);
    EXPECT_EQ(value, 0u);

    EXPECT_EQ(stp_mstPortPathCost_set(3, 4, 20000), 0);
    EXPECT_EQ(stp_mstPortPathCost_get(3, 4, &value), 0);
    EXPECT_EQ(value, 20000u);

    char name[33] = "";
    EXPECT_EQ(stp_mstConfigName_set("campus"), 0);
    EXPECT_EQ(stp_mstConfigName_get(name), 0);
    EXPECT_STREQ(name, "campus");

    const ChipVlan written = {20, 1, ports({1}), ports({2}), "printers", {}};
    ChipVlan read = {};
    EXPECT_EQ(rsd_vlan_adminEntry_set(20, &written), 0);
    EXPECT_EQ(rsd_vlan_adminEntry_get(20, &read), 0);
    EXPECT_EQ(std::memcmp(&read, &written, sizeof read), 0);
}

TEST_F(ChipTest, an_address_that_was_added_is_found_and_another_is_not) {
    L2MacEntry entry = {0, 10, {2, 0, 0, 0, 0, 1}, {}, 1, 0, ports({6})};
    EXPECT_EQ(rsd_l2_macEntry_add(&entry), 0);
    L2MacEntry wanted = {0, 10, {2, 0, 0, 0, 0, 1}, {}, 0, 0, {}};
    EXPECT_EQ(rsd_l2_macEntry_search(&wanted), 0);
    EXPECT_TRUE(wanted.ports == ports({6}));
    wanted.vlan = 11;
    EXPECT_EQ(rsd_l2_macEntry_search(&wanted), sim::code_not_found);
}

TEST_F(ChipTest, a_rule_of_a_management_list_is_found_by_name_and_priority) {
    const AclMgmtEntry rule = {"office", {}, 10, 1, 3, 0xC0000200, 0xFFFFFF00, ports({1})};
    EXPECT_EQ(rsd_acl_mgmt_ace_add(&rule), 0);
    AclMgmtEntry wanted = {"office", {}, 10, 0, 0, 0, 0, {}};
    EXPECT_EQ(rsd_acl_mgmt_ace_get(&wanted), 0);
    EXPECT_EQ(wanted.address, 0xC0000200);
}

TEST_F(ChipTest, a_list_that_is_empty_has_no_first_entry) {
    L2MacEntry entry = {};
    EXPECT_EQ(rsd_l2_macEntry_get(0, &entry), sim::code_not_found);
    std::uint32_t entries = 9;
    EXPECT_EQ(rsd_l2_macTbl_size_get(&entries), 0);
    EXPECT_EQ(entries, 0u);
}

TEST_F(ChipTest, an_answer_can_be_preset_until_a_clear_forgets_it) {
    struct {
        std::uint32_t words[4];
        LldpVlanNameTlv tlv;
    } record = {{2, 7, 0, 0}, {20, "printers", {}}}; // of the third neighbour of port 7
    static_assert(offsetof(decltype(record), tlv) == 16);
    chip.preset(2501, &record);
    LldpVlanNameTlv tlv = {};
    EXPECT_EQ(lldp_portRemoteVlanNameTlv_get(7, 2, &tlv), 0);
    EXPECT_STREQ(tlv.name, "printers");
    EXPECT_EQ(lldp_portRemoteEntry_clear(6), 0);
    EXPECT_EQ(lldp_portRemoteVlanNameTlv_get(7, 2, &tlv), 0);
    EXPECT_EQ(lldp_portRemoteEntry_clear(7), 0);
    EXPECT_EQ(lldp_portRemoteVlanNameTlv_get(7, 2, &tlv), sim::code_not_found);
}

TEST_F(ChipTest, every_operation_of_the_driver_is_a_command_of_the_chip) {
    for (const Operation& operation : operations()) {
        const bool at_port = operation.port_argument >= 0;
        const int code = at_port ? operation.call_at_port(5) : operation.call();
        EXPECT_NE(code, sim::code_failed) << operation.name;
        EXPECT_FALSE(at_port && code == 30) << operation.name;
        EXPECT_NE(code, 501) << operation.name;
    }
}

TEST_F(ChipTest, a_number_that_is_no_command_is_refused) {
    std::uint32_t words[4] = {};
    for (std::uint32_t number : {0u, 2u, 771u, 1731u, 3073u, 4682u, 5000u})
        EXPECT_EQ(chip.request(number, words), sim::code_failed) << number;
}

TEST_F(ChipTest, the_stored_commands_are_in_order_and_each_reads_write_has_the_same_record) {
    auto commands = sim::stored_commands();
    EXPECT_TRUE(
        std::ranges::is_sorted(commands, std::ranges::less_equal{}, &sim::StoredCommand::number));
    for (const sim::StoredCommand& command : commands)
        if (command.written_by != 0) {
            const sim::StoredCommand* write = sim::stored_command(command.written_by);
            ASSERT_NE(write, nullptr) << command.number;
            EXPECT_EQ(write->size, command.size) << command.number;
        }
}

// ---- Through the agent's edges ----

TEST_F(ChipTest, without_its_driver_every_request_is_501) {
    board.device.driver_loaded = false;
    std::uint32_t enable = 7;
    EXPECT_EQ(rsd_port_enable_get(0, &enable), 501);
    EXPECT_EQ(enable, 7u);
}

TEST_F(ChipTest, requests_may_come_from_many_threads_while_time_passes) {
    plug(0, {.rx_packets = 1000, .tx_packets = 1000, .packet_bytes = 64});
    std::vector<std::thread> threads;
    for (std::uint32_t port = 0; port < 8; ++port)
        threads.emplace_back([&, port] {
            for (std::uint32_t i = 0; i < 200; ++i) {
                std::uint32_t words[4] = {0, port, 0, i};
                EXPECT_EQ(chip.request(515, words), 0);
                words[3] = 0;
                EXPECT_EQ(chip.request(579, words), 0);
                EXPECT_EQ(words[3], i);
                chip.advance(0.001);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(count(rsd_mib_etherStatsPkts_get, 0), 1600u);
    EXPECT_EQ(count(rsd_mib_ifInUcastPkts_get, 0), 1440u);
    EXPECT_EQ(count(rsd_mib_ifInMulticastPkts_get, 0), 96u);
    EXPECT_EQ(count(rsd_mib_ifInBroadcastPkts_get, 0), 64u);
}

} // namespace
