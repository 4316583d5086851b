// The tables of the simulated chip, through the driver functions: what is added is found, counted
// and walked, and what is deleted or cleared is not.
#include <cstdint>
#include <string>

#include "driver/acl.h"
#include "driver/acl_mgmt.h"
#include "driver/dai.h"
#include "driver/gvrp.h"
#include "driver/isg.h"
#include "driver/l2.h"
#include "driver/lacp.h"
#include "driver/mcast.h"
#include "driver/mcast_entry.h"
#include "driver/mib.h"
#include "driver/mld.h"
#include "driver/port_security.h"
#include "driver/vlan.h"
#include "sim/instruments/codes.h"
#include "tests/support/on_board.h"

namespace {

using sim::code_not_found;

class ChipTables : public OnBoard {};

PortBitmap ports(std::initializer_list<std::uint32_t> members) {
    PortBitmap set = {};
    for (std::uint32_t port : members)
        set.words[port / 32] |= 1u << port % 32;
    return set;
}

// What a count tells; 0 must be returned.
template <class Count> std::uint32_t told(Count count) {
    std::uint32_t number = 99;
    EXPECT_EQ(count(&number), 0);
    return number;
}

// --- MAC addresses.

L2MacEntry address(std::uint8_t last, std::uint32_t port, std::uint32_t vlan = 10) {
    return {0, vlan, {2, 0, 0, 0, 0, last}, {}, 1, 0, ports({port})};
}

int search(L2MacEntry entry) { return rsd_l2_macEntry_search(&entry); }
int search_secure(L2MacEntry entry) { return rsd_l2_secure_macEntry_search(&entry); }
void add(const L2MacEntry& entry) { EXPECT_EQ(rsd_l2_macEntry_add(&entry), 0); }
void add_secure(const L2MacEntry& entry) { EXPECT_EQ(rsd_l2_secure_macEntry_add(&entry), 0); }

TEST_F(ChipTables, an_address_that_was_removed_is_found_no_more_and_the_others_stay) {
    add(address(1, 6));
    add(address(1, 6, 11));
    add(address(2, 6));
    const L2MacEntry gone = address(1, 6);
    EXPECT_EQ(rsd_l2_macEntry_del(&gone), 0);
    EXPECT_EQ(search(gone), code_not_found);
    EXPECT_EQ(search(address(1, 6, 11)), 0);
    EXPECT_EQ(search(address(2, 6)), 0);
    EXPECT_EQ(rsd_l2_macEntry_del(&gone), code_not_found);
    EXPECT_EQ(told(rsd_l2_macTbl_size_get), 2u);
}

TEST_F(ChipTables, addresses_are_cleared_by_port_and_all_but_for_those_of_port_security) {
    add(address(1, 6));
    add(address(2, 7));
    add_secure(address(3, 6));
    EXPECT_EQ(rsd_l2_macEntry_clear_byPort(6), 0);
    EXPECT_EQ(search(address(1, 6)), code_not_found);
    EXPECT_EQ(search(address(2, 7)), 0);
    EXPECT_EQ(rsd_l2_macEntry_clear(), 0);
    EXPECT_EQ(search(address(2, 7)), code_not_found);
    EXPECT_EQ(search_secure(address(3, 6)), 0);
    EXPECT_EQ(rsd_l2_macEntry_clear_byPort(28), sim::code_no_port);
}

TEST_F(ChipTables, secure_addresses_are_a_table_of_their_own_and_counted_by_port) {
    add_secure(address(1, 6));
    add_secure(address(2, 6));
    EXPECT_EQ(search(address(1, 6)), code_not_found);
    EXPECT_EQ(told([](auto* count) { return rsd_port_security_learningCnt_get(6, count); }), 2u);
    EXPECT_EQ(told([](auto* count) { return rsd_port_security_learningCnt_get(7, count); }), 0u);
    L2MacEntry read = {};
    EXPECT_EQ(rsd_l2_secure_macEntry_get(1, &read), 0);
    EXPECT_EQ(read.mac[5], 2);
    const L2MacEntry gone = address(1, 6);
    EXPECT_EQ(rsd_l2_secure_macEntry_del(&gone), 0);
    EXPECT_EQ(search_secure(gone), code_not_found);
    EXPECT_EQ(rsd_l2_secure_macEntry_get(1, &read), code_not_found);
}

TEST_F(ChipTables, addresses_are_read_by_place_as_of_the_last_snapshot) {
    for (std::uint8_t last = 1; last <= 40; ++last)
        add(address(last, 6));
    L2MacEntry entry = {};
    EXPECT_EQ(rsd_l2_macEntry_get(0, &entry), code_not_found);
    EXPECT_EQ(told(rsd_l2_macTbl_generate), 40u);
    EXPECT_EQ(rsd_l2_macEntry_clear(), 0);
    EXPECT_EQ(rsd_l2_macEntry_get(39, &entry), 0);
    EXPECT_EQ(entry.mac[5], 40);
    EXPECT_EQ(rsd_l2_macEntry_get(40, &entry), code_not_found);
    L2MacBatch batch = {};
    EXPECT_EQ(rsd_l2_macEntry_batch_get(0, &batch), 0);
    EXPECT_EQ(batch.count, 32u);
    EXPECT_EQ(rsd_l2_macEntry_batch_get(32, &batch), 0);
    EXPECT_EQ(batch.count, 8u);
    EXPECT_EQ(batch.entries[7].mac[5], 40);
    EXPECT_EQ(rsd_l2_macEntry_batch_get(40, &batch), code_not_found);
    EXPECT_EQ(told(rsd_l2_macTbl_size_get), 0u);
}

TEST_F(ChipTables, the_room_for_addresses_is_told_and_runs_out) {
    EXPECT_EQ(told(rsd_l2_maxEntryNum_get), 16384u);
    EXPECT_EQ(told(rsd_l2_userMaxEntryNum_get), 256u);
    for (std::uint32_t i = 0; i < 256; ++i)
        add_secure(address(static_cast<std::uint8_t>(i), 6));
    const L2MacEntry too_many = address(0, 6, 11);
    EXPECT_EQ(rsd_l2_secure_macEntry_add(&too_many), sim::code_table_full);
}

// --- Access lists.

AclEntry entry_of(std::uint32_t sequence, std::uint32_t action = 1) {
    AclEntry entry = {};
    entry.sequence = sequence;
    entry.action = action;
    return entry;
}

int create_entry(const char* list, std::uint32_t sequence) {
    const AclEntry entry = entry_of(sequence);
    return rsd_acl_ace_entry_create(list, &entry);
}

TEST_F(ChipTables, access_lists_are_counted_named_and_known_by_their_kind) {
    EXPECT_EQ(rsd_acl_entry_create("web", 2), 0);
    EXPECT_EQ(rsd_acl_entry_create("printers", 1), 0);
    EXPECT_EQ(rsd_acl_entry_create("mail", 2), 0);
    EXPECT_EQ(rsd_acl_entry_create("web", 1), sim::code_exists);
    EXPECT_EQ(rsd_acl_entry_create("other", 3), sim::code_bad_value);
    const auto lists_of = [](std::uint32_t kind) {
        return told([&](auto* count) { return rsd_acl_entry_countByType_get(kind, count); });
    };
    EXPECT_EQ(lists_of(1), 1u);
    EXPECT_EQ(lists_of(2), 2u);
    char name[ACL_NAME_SIZE] = "";
    EXPECT_EQ(rsd_acl_entry_nameByIdx_get(name, 2, 1), 0);
    EXPECT_STREQ(name, "mail");
    EXPECT_EQ(rsd_acl_entry_nameByIdx_get(name, 2, 2), code_not_found);
    std::uint32_t kind = 9;
    EXPECT_EQ(rsd_acl_entry_typeByName_get("web", &kind), 0);
    EXPECT_EQ(kind, 2u);
    EXPECT_EQ(rsd_acl_entry_del("web", 1), code_not_found);
    EXPECT_EQ(rsd_acl_entry_del("web", 2), 0);
    EXPECT_EQ(rsd_acl_entry_typeByName_get("web", &kind), code_not_found);
    EXPECT_EQ(kind, 2u);
    EXPECT_EQ(lists_of(2), 1u);
}

TEST_F(ChipTables, entries_of_an_access_list_stand_in_the_order_of_their_sequence) {
    EXPECT_EQ(create_entry("web", 20), code_not_found);
    EXPECT_EQ(rsd_acl_entry_create("web", 2), 0);
    EXPECT_EQ(create_entry("web", 20), 0);
    EXPECT_EQ(create_entry("web", 10), 0);
    EXPECT_EQ(create_entry("web", 10), sim::code_exists);
    const AclEntry denied = entry_of(20, 0), unknown = entry_of(30);
    EXPECT_EQ(rsd_acl_ace_entry_modify("web", &denied), 0);
    EXPECT_EQ(rsd_acl_ace_entry_modify("web", &unknown), code_not_found);
    const auto entries = [] {
        return told([](auto* count) { return rsd_ace_entry_count_get("web", 2, count); });
    };
    EXPECT_EQ(entries(), 2u);
    AclEntry read = {};
    EXPECT_EQ(rsd_ace_entry_byIdx_get("web", 2, 1, &read), 0);
    EXPECT_EQ(read.sequence, 20u);
    EXPECT_EQ(read.action, 0u);
    EXPECT_EQ(rsd_ace_entry_byIdx_get("web", 2, 2, &read), code_not_found);
    EXPECT_EQ(rsd_acl_ace_entry_del("web", 10), 0);
    EXPECT_EQ(rsd_acl_ace_entry_del("web", 10), code_not_found);
    EXPECT_EQ(entries(), 1u);
    std::uint32_t count = 9;
    EXPECT_EQ(rsd_ace_entry_count_get("web", 1, &count), code_not_found);
}

TEST_F(ChipTables, a_list_is_bound_to_ports_and_stays_while_it_is) {
    EXPECT_EQ(rsd_acl_entry_create("web", 2), 0);
    EXPECT_EQ(create_entry("web", 10), 0);
    AclBinding binding = {2, {"", "", "web"}, 0};
    const PortBitmap bound_ports = ports({3, 27}), one = ports({3});
    EXPECT_EQ(rsd_acl_entry_bind(&binding, &bound_ports), 0);
    AclBinding read = {};
    EXPECT_EQ(rsd_acl_entry_portBinding_get(27, &read), 0);
    EXPECT_STREQ(read.name[2], "web");
    EXPECT_STREQ(read.name[1], "");
    EXPECT_EQ(rsd_acl_entry_portBinding_get(4, &read), 0);
    EXPECT_STREQ(read.name[2], "");
    AclUsage usage = {};
    EXPECT_EQ(rsd_acl_pieUsage_get(&usage), 0);
    EXPECT_EQ(usage.used, 1u);
    EXPECT_EQ(rsd_acl_entry_del("web", 2), sim::code_busy);
    EXPECT_EQ(rsd_acl_entry_unbind(2, &one), 0);
    EXPECT_EQ(rsd_acl_entry_portBinding_get(3, &read), 0);
    EXPECT_STREQ(read.name[2], "");
    EXPECT_EQ(rsd_acl_entry_unbind(2, &bound_ports), 0);
    EXPECT_EQ(rsd_acl_entry_del("web", 2), 0);
    EXPECT_EQ(rsd_acl_entry_bind(&binding, &bound_ports), code_not_found);
}

// --- Management access lists.

AclMgmtEntry rule(const std::string& list, std::uint32_t priority) {
    AclMgmtEntry entry = {};
    list.copy(entry.name, ACL_MGMT_NAME_SIZE - 1);
    entry.priority = priority;
    return entry;
}

int find(AclMgmtEntry entry) { return rsd_acl_mgmt_ace_get(&entry); }

TEST_F(ChipTables, a_management_rule_that_was_deleted_is_found_no_more) {
    EXPECT_EQ(rsd_acl_mgmt_list_add("office"), 0);
    EXPECT_EQ(rsd_acl_mgmt_list_add("office"), sim::code_exists);
    EXPECT_EQ(rsd_acl_mgmt_list_add("lab"), 0);
    for (const AclMgmtEntry& entry : {rule("office", 1), rule("office", 2), rule("lab", 1)})
        EXPECT_EQ(rsd_acl_mgmt_ace_add(&entry), 0);
    const AclMgmtEntry gone = rule("office", 1);
    EXPECT_EQ(rsd_acl_mgmt_ace_add(&gone), sim::code_exists);
    EXPECT_EQ(rsd_acl_mgmt_ace_del(&gone), 0);
    EXPECT_EQ(find(gone), code_not_found);
    EXPECT_EQ(rsd_acl_mgmt_ace_del(&gone), code_not_found);
    EXPECT_EQ(find(rule("lab", 1)), 0);
    EXPECT_EQ(told(rsd_acl_mgmt_all_acenum_get), 2u);
    AclMgmtCount count = {"office", {}, 9};
    EXPECT_EQ(rsd_acl_mgmt_list_acenum_get(&count), 0);
    EXPECT_EQ(count.rules, 1u);
}

TEST_F(ChipTables, management_lists_are_named_put_in_force_and_deleted_with_their_rules) {
    EXPECT_EQ(rsd_acl_mgmt_list_add("office"), 0);
    EXPECT_EQ(rsd_acl_mgmt_list_add("lab"), 0);
    const AclMgmtEntry of_lab = rule("lab", 1);
    EXPECT_EQ(rsd_acl_mgmt_ace_add(&of_lab), 0);
    EXPECT_EQ(told(rsd_acl_mgmt_list_num_get), 2u);
    char name[ACL_MGMT_NAME_SIZE] = "";
    EXPECT_EQ(rsd_acl_mgmt_name_get(1, name), 0);
    EXPECT_STREQ(name, "lab");
    EXPECT_EQ(rsd_acl_mgmt_name_get(2, name), code_not_found);

    const AclMgmtClass lab = {"lab", {}, 1}, unknown = {"unknown", {}, 1};
    AclMgmtClass read = {};
    EXPECT_EQ(rsd_acl_mgmt_class_get(&read), code_not_found);
    EXPECT_EQ(rsd_acl_mgmt_class_add(&unknown), code_not_found);
    EXPECT_EQ(rsd_acl_mgmt_class_add(&lab), 0);
    EXPECT_EQ(rsd_acl_mgmt_class_get(&read), 0);
    EXPECT_STREQ(read.name, "lab");
    EXPECT_EQ(rsd_acl_mgmt_list_del("lab"), sim::code_busy);
    EXPECT_EQ(rsd_acl_mgmt_class_del(&lab), 0);
    EXPECT_EQ(rsd_acl_mgmt_class_get(&read), code_not_found);
    EXPECT_EQ(rsd_acl_mgmt_list_del("lab"), 0);
    EXPECT_EQ(find(of_lab), code_not_found);
    EXPECT_EQ(told(rsd_acl_mgmt_list_num_get), 1u);
    EXPECT_EQ(rsd_acl_mgmt_list_del("lab"), code_not_found);
}

// --- Multicast.

void add_group(std::uint32_t vlan, std::uint32_t group, std::uint32_t source = 0) {
    const McastGroup entry = {vlan, group, source, 0, 0, ports({1})};
    EXPECT_EQ(mcast_igmpv3_static_groupEntry_set(&entry), 0);
}

TEST_F(ChipTables, static_groups_are_walked_counted_and_cleared) {
    add_group(1, 0xE1000001);
    add_group(1, 0xE1000002, 0xC0000201);
    add_group(1, 0xE1000002, 0xC0000202);
    add_group(1, 0xE1000002, 0xC0000202); // the same again
    EXPECT_EQ(told(mcast_igmp_databaseSize_get), 3u);
    EXPECT_EQ(told(mcast_dipOnly_databaseSize_get), 1u);
    McastGroup read = {};
    EXPECT_EQ(mcast_database_get(2, &read), 0);
    EXPECT_EQ(read.source, 0xC0000202u);
    EXPECT_EQ(read.is_static, 1u);
    EXPECT_EQ(mcast_database_get(3, &read), code_not_found);
    EXPECT_EQ(mcast_igmp_groupHead_database_get(1, &read), 0);
    EXPECT_EQ(read.source, 0xC0000201u);
    EXPECT_EQ(mcast_igmp_groupHead_database_get(2, &read), code_not_found);

    IpMcastEntry entry = {};
    EXPECT_EQ(rsd_ipMcastEntry_getFirst(&entry), 0);
    EXPECT_EQ(entry.group, 0xE1000001u);
    EXPECT_EQ(rsd_ipMcastEntry_getNext(&entry), 0);
    EXPECT_EQ(rsd_ipMcastEntry_getNext(&entry), 0);
    EXPECT_EQ(entry.source, 0xC0000202u);
    EXPECT_EQ(rsd_ipMcastEntry_getNext(&entry), code_not_found);

    EXPECT_EQ(mcast_igmp_group_del_byType(0), 0); // learned ones only
    EXPECT_EQ(told(mcast_igmp_databaseSize_get), 3u);
    EXPECT_EQ(mcast_static_group_clear(), 0);
    EXPECT_EQ(told(mcast_igmp_databaseSize_get), 0u);
    EXPECT_EQ(rsd_ipMcastEntry_getFirst(&entry), code_not_found);
    add_group(1, 0xE1000001);
    EXPECT_EQ(mcast_table_clear(), 0);
    EXPECT_EQ(mcast_database_get(0, &read), code_not_found);
}

TEST_F(ChipTables, static_multicast_addresses_are_found_walked_and_cleared) {
    const McastMac first = {10, {1, 0, 0x5E, 0, 0, 1}, {}, ports({1})};
    const McastMac second = {10, {0x33, 0x33, 0, 0, 0, 1}, {}, ports({2})};
    EXPECT_EQ(mcast_static_mac_set(0, &first), 0);
    EXPECT_EQ(mcast_static_mac_set(5, &second), 0);
    EXPECT_EQ(told(mcast_igmp_staticMacNum_get), 2u);
    EXPECT_EQ(told(mcast_mld_staticMacNum_get), 1u);
    McastMac wanted = {10, {0x33, 0x33, 0, 0, 0, 1}, {}, {}};
    EXPECT_EQ(mcast_mac_portmask_get(&wanted), 0);
    EXPECT_EQ(wanted.ports.words[0], 4u);
    McastMac read = {};
    EXPECT_EQ(mcast_static_mac_get(5, &read), 0);
    EXPECT_EQ(mcast_static_mac_get(1, &read), code_not_found);
    L2McastEntry entry = {};
    EXPECT_EQ(rsd_l2McastEntry_getFirst(&entry), 0);
    EXPECT_EQ(rsd_l2McastEntry_getNext(&entry), 0);
    EXPECT_EQ(entry.mac[0], 0x33);
    EXPECT_EQ(rsd_l2McastEntry_getNext(&entry), code_not_found);
    EXPECT_EQ(mcast_static_mac_clear(), 0);
    EXPECT_EQ(mcast_mac_portmask_get(&wanted), code_not_found);
    EXPECT_EQ(told(mcast_igmp_staticMacNum_get), 0u);
    EXPECT_EQ(rsd_l2McastEntry_getFirst(&entry), code_not_found);
}

TEST_F(ChipTables, vlans_with_snooping_come_and_go) {
    EXPECT_EQ(mcast_vlan_add(10), 0);
    EXPECT_EQ(mcast_vlan_add(33), 0);
    const McastSnooping settings = {1, 1, 0, 125, 10, 2, 2, 1};
    EXPECT_EQ(mcast_vlan_set(10, &settings), 0);
    VlanMask vlans = {};
    EXPECT_EQ(mcast_vlanMskConfig_get(&vlans), 0);
    EXPECT_EQ(vlans.words[0], 1u << 10);
    EXPECT_EQ(vlans.words[1], 2u);
    EXPECT_EQ(mcast_vlan_del(10), 0);
    McastSnooping read = {};
    EXPECT_EQ(mcast_vlan_get(10, &read), sim::code_no_vlan);
    EXPECT_EQ(mcast_vlanMskConfig_get(&vlans), 0);
    EXPECT_EQ(vlans.words[0], 0u);
    EXPECT_EQ(mcast_vlan_del(10), sim::code_no_vlan);
}

TEST_F(ChipTables, the_state_of_a_protocol_is_what_was_set_and_a_clear_takes_the_counters_only) {
    EXPECT_EQ(mcast_igmp_enable_set(1), 0);
    EXPECT_EQ(mcast_igmp_operVersion_set(3), 0);
    EXPECT_EQ(mcast_mld_operVersion_set(2), 0);
    device.chip.change([](sim::ChipState& chip) { chip.multicast.igmp.received = 7; });
    McastInfo info = {};
    EXPECT_EQ(mcast_igmp_info_get(&info), 0);
    EXPECT_EQ(info.received, 7u);
    EXPECT_EQ(mcast_igmp_statistics_clear(), 0);
    EXPECT_EQ(mcast_igmp_info_get(&info), 0);
    EXPECT_EQ(info.received, 0u);
    EXPECT_EQ(info.enable, 1u);
    EXPECT_EQ(info.version, 3u);
    EXPECT_EQ(mcast_mld_info_get(&info), 0);
    EXPECT_EQ(info.version, 2u);
    EXPECT_EQ(info.enable, 0u);
}

// --- VLANs and registration.

std::uint32_t vlan_exists(std::uint32_t vid) {
    return told([&](auto* exists) { return rsd_vlan_adminEntryExist_get(vid, exists); });
}

TEST_F(ChipTables, a_vlan_comes_is_counted_and_goes_with_its_members) {
    EXPECT_EQ(told(rsd_vlan_operEntryNum_get), 1u);
    device.chip.advance(12.5);
    EXPECT_EQ(rsd_vlan_adminEntry_create(20), 0);
    EXPECT_EQ(rsd_vlan_adminEntry_create(20), sim::code_exists);
    EXPECT_EQ(rsd_vlan_adminEntry_create(4095), sim::code_bad_value);
    EXPECT_EQ(rsd_vlan_name_set(20, "printers"), 0);
    EXPECT_EQ(rsd_vlan_name_set(21, "nobody"), sim::code_no_vlan);
    EXPECT_EQ(vlan_exists(20), 1u);
    EXPECT_EQ(vlan_exists(21), 0u);
    EXPECT_EQ(
        told([](auto* time) { return rsd_vlan_mibDot1qVlanCreationTime_get(20, time); }), 1250u);
    ChipVlan read = {};
    EXPECT_EQ(rsd_vlan_operEntrySort_get(1, &read), 0);
    EXPECT_EQ(read.vid, 20u);
    EXPECT_STREQ(read.name, "printers");
    EXPECT_EQ(rsd_vlan_operEntrySort_get(2, &read), code_not_found);

    VlanMask mask = {};
    mask.words[0] = 1u << 20;
    EXPECT_EQ(rsd_vlan_portAdminVlanmask_add(3, 3, &mask), 0);
    const auto membership = [] {
        return told([](auto* kind) { return rsd_vlan_portOperVlanMembership_get(3, 20, kind); });
    };
    EXPECT_EQ(membership(), 3u);
    EXPECT_EQ(rsd_vlan_adminEntry_destroy(20), 0);
    EXPECT_EQ(membership(), 0u);
    EXPECT_EQ(vlan_exists(20), 0u);
    EXPECT_EQ(rsd_vlan_adminEntry_get(20, &read), sim::code_no_vlan);
    EXPECT_EQ(told(rsd_vlan_mibDot1qVlanNumDeletes_get), 1u);
    EXPECT_EQ(rsd_vlan_adminEntry_destroy(20), sim::code_no_vlan);
    EXPECT_EQ(rsd_vlan_adminEntry_destroy(1), sim::code_busy);
}

TEST_F(ChipTables, vlans_of_a_port_are_added_to_and_taken_from) {
    VlanMask two = {}, one = {}, read = {};
    two.words[1] = 6;
    one.words[1] = 2;
    EXPECT_EQ(rsd_vlan_portAdminVlanmask_add(3, 2, &two), 0);
    EXPECT_EQ(rsd_vlan_portAdminVlanmask_del(3, 2, &one), 0);
    EXPECT_EQ(rsd_vlan_portAdminVlanmask_get(3, 2, &read), 0);
    EXPECT_EQ(read.words[1], 4u);
    EXPECT_EQ(rsd_vlan_portAdminVlanmask_get(3, 3, &read), 0);
    EXPECT_EQ(read.words[1], 0u);
    EXPECT_EQ(told([](auto* is) { return rsd_vlan_portAdminVlanMember_get(3, 34, is); }), 1u);
    EXPECT_EQ(told([](auto* is) { return rsd_vlan_portAdminVlanMember_get(3, 33, is); }), 0u);
}

TEST_F(ChipTables, registration_forgets_a_vlan_that_went) {
    for (std::uint32_t vid : {10, 20, 33}) {
        const GvrpVlan entry = {vid, 0, ports({1}), {}};
        EXPECT_EQ(gvrp_add_edit_static_vlan(&entry), 0);
    }
    EXPECT_EQ(gvrp_del_static_vlan(20), 0);
    EXPECT_EQ(gvrp_del_static_vlan(20), code_not_found);
    EXPECT_EQ(told(gvrp_vlan_db_size_get), 2u);
    GvrpVlan read = {};
    EXPECT_EQ(gvrp_vlan_db_get(1, &read), 0);
    EXPECT_EQ(read.vlan, 33u);
    EXPECT_EQ(gvrp_vlan_db_get(2, &read), code_not_found);
    VlanMask vlans = {};
    EXPECT_EQ(gvrp_vlanMaskExist_get(&vlans), 0);
    EXPECT_EQ(vlans.words[0], 1u << 10);
    EXPECT_EQ(vlans.words[1], 2u);
}

// --- Bindings, candidates, counters.

TEST_F(ChipTables, bindings_are_counted_by_port_limited_and_removed) {
    IsgBinding binding = {3, 10, 0xC0000201, 0xFFFFFFFF, 0, 0, {2, 0, 0, 0, 0, 1}, {}};
    EXPECT_EQ(isg_bindingEntry_set(&binding), 0);
    binding.address = 0xC0000202;
    binding.kind = 1;
    EXPECT_EQ(isg_bindingEntry_set(&binding), 0);
    EXPECT_EQ(isg_bindingEntry_set(&binding), 0); // replaces itself
    EXPECT_EQ(told([](auto* count) { return isg_port_currentEntryNum_get(3, count); }), 2u);
    EXPECT_EQ(isg_port_maxEntryNum_set(3, 2), 0);
    binding.address = 0xC0000203;
    EXPECT_EQ(isg_bindingEntry_set(&binding), sim::code_table_full);
    IsgBinding read = {};
    EXPECT_EQ(isg_bindingEntryByIndex_get(1, &read), 0);
    EXPECT_EQ(read.address, 0xC0000202u);
    EXPECT_EQ(isg_bindingEntryDhcp_del(&read), 0);
    EXPECT_EQ(isg_bindingEntryByIndex_get(1, &read), code_not_found);
    EXPECT_EQ(isg_bindingEntryByIndex_get(0, &read), 0);
    EXPECT_EQ(isg_bindingEntryDhcp_del(&read), code_not_found); // not learned
    EXPECT_EQ(isg_bindingEntry_del(&read), 0);
    EXPECT_EQ(told([](auto* count) { return isg_port_currentEntryNum_get(3, count); }), 0u);
    EXPECT_EQ(isg_bindingEntry_del(&read), code_not_found);
}

TEST_F(ChipTables, candidates_beyond_the_eighth_are_spare_until_the_group_ends) {
    const PortBitmap members = ports({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
    EXPECT_EQ(lacp_group_set(2, &members), 0);
    LacpState state = {};
    EXPECT_EQ(lacp_backupMember_get(2, &state), 0);
    EXPECT_EQ(state.spare_members.words[0], 3u << 8);
    EXPECT_EQ(lacp_group_del(2), 0);
    EXPECT_EQ(lacp_backupMember_get(2, &state), 0);
    EXPECT_EQ(state.spare_members.words[0], 0u);
}

TEST_F(ChipTables, counters_of_a_protocol_are_forgotten_by_their_clear) {
    struct {
        std::uint32_t words[4];
        DaiMib mib;
    } record = {{0, 3, 0, 0}, {5, 0, 0, 0, 0, 0, 0}};
    device.chip.preset(584, &record);
    DaiMib mib = {};
    EXPECT_EQ(dai_portMib_clear(4), 0);
    EXPECT_EQ(dai_portMib_get(3, &mib), 0);
    EXPECT_EQ(mib.received, 5u);
    EXPECT_EQ(dai_portMib_clear(3), 0);
    EXPECT_EQ(dai_portMib_get(3, &mib), 0);
    EXPECT_EQ(mib.received, 0u);
}

// --- Traffic.

std::uint64_t counter(int (*read)(std::uint32_t, std::uint64_t*), std::uint32_t port) {
    std::uint64_t value = 0;
    EXPECT_EQ(read(port, &value), 0);
    return value;
}

TEST_F(ChipTables, slow_traffic_has_its_multicast_and_broadcast_too) {
    device.chip.change([](sim::ChipState& chip) {
        chip.ports[1].plugged = true;
        chip.ports[1].traffic = {.rx_packets = 10, .tx_packets = 0, .packet_bytes = 64};
    });
    for (int second = 0; second < 100; ++second)
        device.chip.advance(1);
    EXPECT_EQ(counter(rsd_mib_ifInUcastPkts_get, 1), 900u);
    EXPECT_EQ(counter(rsd_mib_ifInMulticastPkts_get, 1), 60u);
    EXPECT_EQ(counter(rsd_mib_ifInBroadcastPkts_get, 1), 40u);
    EXPECT_EQ(counter(rsd_mib_ifInNUcastPkts_get, 1), 100u);
}

TEST_F(ChipTables, a_frame_counts_by_its_size_up_to_1518_bytes_and_as_oversize_above) {
    const auto pass = [&](std::uint32_t bytes) {
        device.chip.change([&](sim::ChipState& chip) {
            chip.ports[1].plugged = true;
            chip.ports[1].traffic = {.rx_packets = 1, .tx_packets = 0, .packet_bytes = bytes};
        });
        device.chip.advance(1);
    };
    pass(1518);
    EXPECT_EQ(counter(rsd_mib_etherStatsPkts1024to1518Octets_get, 1), 1u);
    EXPECT_EQ(counter(rsd_mib_etherStatsOverSizePkts_get, 1), 0u);
    pass(1519);
    EXPECT_EQ(counter(rsd_mib_etherStatsPkts1024to1518Octets_get, 1), 1u);
    EXPECT_EQ(counter(rsd_mib_etherStatsOverSizePkts_get, 1), 1u);
}

} // namespace
