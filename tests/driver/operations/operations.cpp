// The driver operations by name and number, with the place of each argument in the record.
#include "tests/driver/operations/operation.h"

#include "driver/acl.h"
#include "driver/acl_mgmt.h"
#include "driver/cablediag.h"
#include "driver/dai.h"
#include "driver/dhcp_snooping.h"
#include "driver/dos.h"
#include "driver/dot1x.h"
#include "driver/eee.h"
#include "driver/fiber.h"
#include "driver/gvrp.h"
#include "driver/isg.h"
#include "driver/l2.h"
#include "driver/lacp.h"
#include "driver/led.h"
#include "driver/lldp.h"
#include "driver/lldp_med.h"
#include "driver/mcast.h"
#include "driver/mcast_entry.h"
#include "driver/mib.h"
#include "driver/mirror.h"
#include "driver/mld.h"
#include "driver/optical.h"
#include "driver/port.h"
#include "driver/port_security.h"
#include "driver/proto_vlan.h"
#include "driver/qos.h"
#include "driver/rate.h"
#include "driver/stp.h"
#include "driver/switch.h"
#include "driver/sys.h"
#include "driver/trunk.h"
#include "driver/vlan.h"
#include "driver/voice_vlan.h"

namespace {

// --- Records of four words by meaning: index, port, VLAN or item, value.
constexpr Field index{0, 4}, port{4, 4}, vlan{8, 4}, item{8, 4}, value{12, 4};

const Layout switch_wide{{value}};
const Layout per_port{.fields = {port, value}, .port_argument = 0};
const Layout per_vlan{{vlan, value}};
const Layout per_index{{index, value}};
const Layout per_index_and_port{.fields = {index, port, value}, .port_argument = 1};
const Layout per_port_and_item{.fields = {port, item, value}, .port_argument = 0};
const Layout clear{};
const Layout clear_port{{port}}; // any number: the driver judges it
const Layout clear_vlan{{vlan}};
const Layout clear_index{{index}};

// --- The same with an entry of `size` bytes behind them.
Layout with_entry(std::vector<Field> words, std::size_t size, int port_argument = -1) {
    words.push_back({16, size});
    return {.fields = std::move(words), .size = 16 + size, .port_argument = port_argument};
}

Layout entry(std::size_t size) { return with_entry({}, size); }
Layout port_entry(std::size_t size) { return with_entry({port}, size, 0); }
Layout vlan_entry(std::size_t size) { return with_entry({vlan}, size); }
Layout index_entry(std::size_t size) { return with_entry({index}, size); }
Layout port_index_entry(std::size_t size) { return with_entry({port, index}, size, 0); }
Layout index_port_entry(std::size_t size) { return with_entry({index, port}, size, 1); }

// --- Records in the order of the arguments, an entry of `size` bytes behind the four words.
const Layout in_order{};
const Layout port_in_order{.port_argument = 0};
const Layout port_on_off{.port_argument = 0, .on_off = true};
Layout in_order_entry(std::size_t size) { return {.size = 16 + size}; }
Layout port_in_order_entry(std::size_t size) { return {.size = 16 + size, .port_argument = 0}; }

Layout lookup(Layout layout) {
    layout.looks_up = true;
    return layout;
}

// --- Texts: the longest with its terminator, and the room for it in the record, whole words.
Layout text(Layout layout, std::size_t size, std::size_t room) {
    layout.size = 16 + room;
    layout.text_size = size;
    return layout;
}

// --- Counters: port or counter, a word unused, 64 bits.
const Layout port_counter{.fields = {{0, 4}, {8, 8}}, .port_argument = 0};
const Layout switch_counter{{{8, 8}}};
const Layout debug_counter{{{0, 4}, {8, 8}}};

// --- The result of a cable test, asked for by its first word.
const Layout cable_result{.fields = {{0, 4}, {0, 12}}, .port_argument = 0};

// --- The access lists' record of 336 bytes.
constexpr Field acl_name{0, 33}, acl_kind{36, 4}, acl_port{40, 4}, acl_index{44, 4},
    acl_sequence{48, 4}, acl_count{52, 4}, acl_ports{56, 12}, acl_entry{68, 72},
    acl_binding{140, 104}, acl_usage{244, 8}, acl_range{276, 16}, acl_range_index{296, 1};

Layout acl(std::vector<Field> fields, int port_argument = -1) {
    return {
        .fields = std::move(fields), .size = 336, .port_argument = port_argument, .text_size = 33};
}

// The first word of one field stands in another, too.
Layout repeating(Layout layout, Field from, Field to) {
    layout.repeated = {{from.at, to.at}};
    return layout;
}

} // namespace

// Clears of debug counters make no request and are not here.
std::vector<Operation> operations(Samples samples) {
    OperationList list(samples);
    // The system
    list.add("rsd_sys_ipAddr_set", 1, rsd_sys_ipAddr_set, in_order);
    list.add("rsd_sys_info_set", 3, rsd_sys_info_set, in_order_entry(200));
    list.add("rsd_sys_status_set", 5, rsd_sys_status_set, in_order);
    list.add("rsd_sys_macAddr_get", 65, rsd_sys_macAddr_get, in_order_entry(8));
    list.add("rsd_sys_portMacAddr_get", 66, rsd_sys_portMacAddr_get, port_in_order_entry(8));
    list.add("rsd_sys_info_get", 67, rsd_sys_info_get, in_order_entry(200));
    list.add("rsd_sys_jiffies_get", 68, rsd_sys_jiffies_get, in_order);
    list.add("rsd_sys_hz_get", 69, rsd_sys_hz_get, in_order);
    list.add("rsd_sys_cpuFreq_get", 70, rsd_sys_cpuFreq_get, in_order);
    list.add("rsd_sys_resetStatus_get", 71, rsd_sys_resetStatus_get, in_order);
    list.add("rsd_sys_status_get", 72, rsd_sys_status_get, in_order);
    // Access control lists
    list.add("rsd_acl_entry_create", 257, rsd_acl_entry_create, acl({acl_name, acl_kind}));
    list.add("rsd_acl_entry_del", 258, rsd_acl_entry_del, acl({acl_name, acl_kind}));
    list.add(
        "rsd_acl_entry_bind", 259, rsd_acl_entry_bind,
        repeating(acl({acl_binding, acl_ports}), acl_binding, acl_kind));
    list.add("rsd_acl_entry_unbind", 260, rsd_acl_entry_unbind, acl({acl_kind, acl_ports}));
    list.add(
        "rsd_acl_ace_entry_create", 261, rsd_acl_ace_entry_create,
        repeating(acl({acl_name, acl_entry}), acl_entry, acl_sequence));
    list.add(
        "rsd_acl_ace_entry_modify", 262, rsd_acl_ace_entry_modify,
        repeating(acl({acl_name, acl_entry}), acl_entry, acl_sequence));
    list.add("rsd_acl_ace_entry_del", 263, rsd_acl_ace_entry_del, acl({acl_name, acl_sequence}));
    list.add("rsd_acl_l4port_range_del", 264, rsd_acl_l4port_range_del, acl({acl_range_index}));
    list.add(
        "rsd_acl_entry_countByType_get", 321, rsd_acl_entry_countByType_get,
        acl({acl_kind, acl_count}));
    list.add(
        "rsd_acl_entry_nameByIdx_get", 322, rsd_acl_entry_nameByIdx_get,
        acl({acl_name, acl_kind, acl_index}));
    list.add(
        "rsd_acl_entry_typeByName_get", 323, rsd_acl_entry_typeByName_get,
        acl({acl_name, acl_kind}));
    list.add(
        "rsd_acl_entry_portBinding_get", 324, rsd_acl_entry_portBinding_get,
        acl({acl_port, acl_binding}, 0));
    list.add(
        "rsd_ace_entry_count_get", 325, rsd_ace_entry_count_get,
        acl({acl_name, acl_kind, acl_count}));
    list.add(
        "rsd_ace_entry_byIdx_get", 326, rsd_ace_entry_byIdx_get,
        acl({acl_name, acl_kind, acl_index, acl_entry}));
    list.add(
        "rsd_acl_l4port_range_get", 327, rsd_acl_l4port_range_get,
        acl({acl_range, acl_range_index}));
    list.add(
        "rsd_acl_l4port_range_set", 328, rsd_acl_l4port_range_set,
        acl({acl_range, acl_range_index}));
    list.add("rsd_acl_pieUsage_get", 329, rsd_acl_pieUsage_get, acl({acl_usage}));
    // Copper cable diagnosis
    list.add("rsd_cablediag_copper_set", 385, rsd_cablediag_copper_set, port_in_order);
    list.add("rsd_cablediag_copper_get", 449, rsd_cablediag_copper_get, cable_result);
    // Dynamic ARP inspection
    list.add("dai_enable_set", 513, dai_enable_set, switch_wide);
    list.add("dai_vlan_enable_set", 514, dai_vlan_enable_set, per_vlan);
    list.add("dai_port_trust_set", 515, dai_port_trust_set, per_port);
    list.add("dai_port_smacChk_set", 516, dai_port_smacChk_set, per_port);
    list.add("dai_port_dmacChk_set", 517, dai_port_dmacChk_set, per_port);
    list.add("dai_port_ipChk_set", 518, dai_port_ipChk_set, per_port);
    list.add("dai_port_ipZeroAllow_set", 519, dai_port_ipZeroAllow_set, per_port);
    list.add("dai_portMib_clear", 520, dai_portMib_clear, clear_port);
    list.add("dai_vlanMib_clear", 521, dai_vlanMib_clear, clear_vlan);
    list.add("dai_arp_rateLimit_set", 522, dai_arp_rateLimit_set, per_port);
    list.add("dai_enable_get", 577, dai_enable_get, switch_wide);
    list.add("dai_vlan_enable_get", 578, dai_vlan_enable_get, per_vlan);
    list.add("dai_port_trust_get", 579, dai_port_trust_get, per_port);
    list.add("dai_port_smacChk_get", 580, dai_port_smacChk_get, per_port);
    list.add("dai_port_dmacChk_get", 581, dai_port_dmacChk_get, per_port);
    list.add("dai_port_ipChk_get", 582, dai_port_ipChk_get, per_port);
    list.add("dai_port_ipZeroAllow_get", 583, dai_port_ipZeroAllow_get, per_port);
    list.add("dai_portMib_get", 584, dai_portMib_get, port_entry(28));
    list.add("dai_vlanMib_get", 585, dai_vlanMib_get, vlan_entry(28));
    // DHCP snooping and the relay agent option (82)
    list.add("dhcp_snooping_enable_set", 641, dhcp_snooping_enable_set, switch_wide);
    list.add("dhcp_snooping_vlan_enable_set", 642, dhcp_snooping_vlan_enable_set, per_vlan);
    list.add("dhcp_snooping_port_trust_set", 643, dhcp_snooping_port_trust_set, per_port);
    list.add("dhcp_snooping_portChaddrChk_set", 644, dhcp_snooping_portChaddrChk_set, per_port);
    list.add("dhcp_option82_enable_set", 645, dhcp_option82_enable_set, switch_wide);
    list.add("dhcp_option82_action_set", 646, dhcp_option82_action_set, switch_wide);
    list.add("dhcp_option82_format_set", 647, dhcp_option82_format_set, switch_wide);
    list.add("dhcp_option82_remoteID_set", 648, dhcp_option82_remoteID_set, text(in_order, 64, 64));
    list.add("dhcp_option82_circuitID_set", 649, dhcp_option82_circuitID_set, port_entry(68));
    list.add("dhcp_snooping_portMib_clear", 650, dhcp_snooping_portMib_clear, clear_port);
    list.add("dhcp_snooping_rateLimit_set", 651, dhcp_snooping_rateLimit_set, per_port);
    list.add("dhcp_snooping_enable_get", 705, dhcp_snooping_enable_get, switch_wide);
    list.add("dhcp_snooping_vlan_enable_get", 706, dhcp_snooping_vlan_enable_get, per_vlan);
    list.add("dhcp_snooping_port_trust_get", 707, dhcp_snooping_port_trust_get, per_port);
    list.add("dhcp_snooping_portChaddrChk_get", 708, dhcp_snooping_portChaddrChk_get, per_port);
    list.add("dhcp_option82_enable_get", 709, dhcp_option82_enable_get, switch_wide);
    list.add("dhcp_option82_action_get", 710, dhcp_option82_action_get, switch_wide);
    list.add("dhcp_option82_format_get", 711, dhcp_option82_format_get, switch_wide);
    list.add("dhcp_option82_remoteID_get", 712, dhcp_option82_remoteID_get, text(in_order, 64, 64));
    list.add("dhcp_snooping_portMib_get", 713, dhcp_snooping_portMib_get, port_entry(20));
    // Port-based network access control (802.1X)
    list.add("dot1x_enable_set", 770, dot1x_enable_set, switch_wide);
    list.add("dot1x_gateway_set", 772, dot1x_gateway_set, switch_wide);
    list.add("dot1x_portReauthEbl_set", 773, dot1x_portReauthEbl_set, per_port);
    list.add("dot1x_portReauthPeriod_set", 774, dot1x_portReauthPeriod_set, per_port);
    list.add("dot1x_radiusSrv_set", 775, dot1x_radiusSrv_set, entry(84));
    list.add("dot1x_portMode_set", 777, dot1x_portMode_set, per_port);
    list.add("dot1x_guestVlan_set", 778, dot1x_guestVlan_set, switch_wide);
    list.add("dot1x_guestVlan_port_set", 779, dot1x_guestVlan_port_set, per_port);
    list.add("dot1x_timeoutQuiet_set", 780, dot1x_timeoutQuiet_set, switch_wide);
    list.add("dot1x_portTimeoutSupplicant_set", 781, dot1x_portTimeoutSupplicant_set, per_port);
    list.add("dot1x_portMaxReq_set", 782, dot1x_portMaxReq_set, per_port);
    list.add("dot1x_authPortCurState_get", 834, dot1x_authPortCurState_get, per_port);
    list.add("dot1x_authPortStatus_get", 835, dot1x_authPortStatus_get, per_port);
    list.add("dot1x_gateway_get", 836, dot1x_gateway_get, switch_wide);
    list.add("dot1x_portReauthEbl_get", 837, dot1x_portReauthEbl_get, per_port);
    list.add("dot1x_guestVlan_state_port_get", 838, dot1x_guestVlan_state_port_get, per_port);
    list.add(
        "dot1x_mibRadiusClientStatInfo_get", 839, dot1x_mibRadiusClientStatInfo_get,
        index_entry(48));
    list.add("dot1x_authedHost_get", 840, dot1x_authedHost_get, port_index_entry(16));
    list.add("dot1x_portReauthLifeTime_get", 841, dot1x_portReauthLifeTime_get, per_port);
    // Denial-of-service guards
    list.add("rsd_dos_typeEnable_set", 897, rsd_dos_typeEnable_set, in_order);
    list.add("rsd_dos_maxPingLen_set", 898, rsd_dos_maxPingLen_set, in_order);
    list.add("rsd_dos_minIPv6FragLen_set", 899, rsd_dos_minIPv6FragLen_set, in_order);
    list.add("rsd_dos_smurfNetmaskLen_set", 900, rsd_dos_smurfNetmaskLen_set, in_order);
    list.add("rsd_dos_minTCPHdrLen_set", 901, rsd_dos_minTCPHdrLen_set, in_order);
    list.add("rsd_dos_portEnable_set", 902, rsd_dos_portEnable_set, port_in_order);
    list.add("rsd_dos_portLength_set", 903, rsd_dos_portLength_set, port_in_order);
    // Energy-efficient Ethernet
    list.add("rsd_eee_portEnable_set", 1153, rsd_eee_portEnable_set, port_in_order);
    list.add("rsd_eee_enablePortmask_set", 1154, rsd_eee_enablePortmask_set, in_order_entry(12));
    list.add("rsd_eee_portEnable_get", 1217, rsd_eee_portEnable_get, port_in_order);
    list.add("rsd_eee_portState_get", 1218, rsd_eee_portState_get, port_in_order);
    list.add("rsd_eee_enablePortmask_get", 1219, rsd_eee_enablePortmask_get, in_order_entry(12));
    // Fibre modules
    list.add("rsd_fiber_oeStatus_get", 1345, rsd_fiber_oeStatus_get, port_in_order);
    list.add("rsd_fiber_losStatus_get", 1346, rsd_fiber_losStatus_get, port_in_order);
    list.add("rsd_fiber_detectStatus_get", 1347, rsd_fiber_detectStatus_get, port_in_order);
    // Dynamic VLAN registration (GVRP)
    list.add("gvrp_enable_set", 1537, gvrp_enable_set, switch_wide);
    list.add("gvrp_port_enable_set", 1538, gvrp_port_enable_set, per_port);
    list.add("gvrp_port_regmode_set", 1539, gvrp_port_regmode_set, per_port);
    list.add("gvrp_port_forbidVlan_set", 1540, gvrp_port_forbidVlan_set, per_port_and_item);
    list.add("gvrp_add_edit_static_vlan", 1541, gvrp_add_edit_static_vlan, entry(32));
    list.add("gvrp_del_static_vlan", 1544, gvrp_del_static_vlan, clear_vlan);
    list.add("gvrp_vlan_db_set", 1545, gvrp_vlan_db_set, index_entry(32));
    list.add("gvrp_timer_set", 1546, gvrp_timer_set, per_index);
    list.add("gvrp_statistics_clear", 1547, gvrp_statistics_clear, clear_port);
    list.add("gvrp_error_statistics_clear", 1548, gvrp_error_statistics_clear, clear_port);
    list.add("gvrp_info_get", 1601, gvrp_info_get, entry(28));
    list.add("gvrp_vlan_db_get", 1602, gvrp_vlan_db_get, index_entry(32));
    list.add("gvrp_port_statistics_get", 1603, gvrp_port_statistics_get, port_entry(48));
    list.add(
        "gvrp_port_error_statistics_get", 1604, gvrp_port_error_statistics_get, port_entry(20));
    list.add("gvrp_vlanMaskExist_get", 1605, gvrp_vlanMaskExist_get, entry(512));
    list.add("gvrp_gidtt_machine_get", 1606, gvrp_gidtt_machine_get, per_port_and_item);
    list.add("gvrp_vlan_db_size_get", 1607, gvrp_vlan_db_size_get, switch_wide);
    // Multicast snooping
    list.add("mcast_igmp_enable_set", 1665, mcast_igmp_enable_set, switch_wide);
    list.add("mcast_igmp_suppre_enable_set", 1666, mcast_igmp_suppre_enable_set, switch_wide);
    list.add("mcast_igmp_lookupMode_set", 1667, mcast_igmp_lookupMode_set, switch_wide);
    list.add("mcast_igmp_statistics_clear", 1668, mcast_igmp_statistics_clear, clear);
    list.add("mcast_igmp_portStat_clear", 1669, mcast_igmp_portStat_clear, clear_port);
    list.add("mcast_vlan_set", 1670, mcast_vlan_set, vlan_entry(32));
    list.add("mcast_vlan_del", 1671, mcast_vlan_del, clear_vlan);
    list.add("mcast_vlan_add", 1672, mcast_vlan_add, clear_vlan);
    list.add("mcast_table_clear", 1673, mcast_table_clear, clear);
    list.add("mcast_igmp_unknMcastAction_set", 1674, mcast_igmp_unknMcastAction_set, switch_wide);
    list.add("mcast_igmp_querier_set", 1675, mcast_igmp_querier_set, vlan_entry(16));
    list.add("mcast_igmp_operVersion_set", 1676, mcast_igmp_operVersion_set, switch_wide);
    list.add("mcast_portGroup_limit_set", 1677, mcast_portGroup_limit_set, per_port);
    list.add("mcast_portGroup_excessAct_set", 1678, mcast_portGroup_excessAct_set, per_port);
    list.add("mcast_router_static_port_set", 1679, mcast_router_static_port_set, vlan_entry(12));
    list.add("mcast_router_forbid_port_set", 1680, mcast_router_forbid_port_set, vlan_entry(12));
    list.add(
        "mcast_basic_static_groupEntry_set", 1681, mcast_basic_static_groupEntry_set, entry(32));
    list.add(
        "mcast_igmpv3_static_groupEntry_set", 1681, mcast_igmpv3_static_groupEntry_set, entry(32));
    list.add("mcast_static_mac_set", 1682, mcast_static_mac_set, index_entry(24));
    list.add(
        "mcast_igmpv3_static_filter_group_set", 1683, mcast_igmpv3_static_filter_group_set,
        entry(148));
    list.add("mcast_static_group_clear", 1684, mcast_static_group_clear, clear);
    list.add("mcast_static_mac_clear", 1685, mcast_static_mac_clear, clear);
    list.add("mcast_profile_set", 1686, mcast_profile_set, entry(16));
    list.add("mcast_port_filter_set", 1687, mcast_port_filter_set, per_port);
    list.add("mcast_igmp_group_del_byType", 1688, mcast_igmp_group_del_byType, switch_wide);
    list.add("sys_mcast_entryNum_ret", 1729, sys_mcast_entryNum_ret, switch_wide);
    list.add("mcast_igmp_suppre_enable_get", 1730, mcast_igmp_suppre_enable_get, switch_wide);
    list.add("mcast_igmp_info_get", 1732, mcast_igmp_info_get, entry(68));
    list.add("mcast_igmp_portStat_get", 1733, mcast_igmp_portStat_get, port_entry(16));
    list.add("mcast_igmp_lookupMode_get", 1734, mcast_igmp_lookupMode_get, switch_wide);
    list.add("mcast_databaseSize_get", 1735, mcast_databaseSize_get, switch_wide);
    list.add("mcast_igmp_databaseSize_get", 1736, mcast_igmp_databaseSize_get, switch_wide);
    list.add("mcast_igmp_staticMacNum_get", 1737, mcast_igmp_staticMacNum_get, switch_wide);
    list.add("mcast_dipOnly_databaseSize_get", 1738, mcast_dipOnly_databaseSize_get, switch_wide);
    list.add("mcast_database_get", 1739, mcast_database_get, index_entry(32));
    list.add("mcast_vlan_get", 1740, mcast_vlan_get, vlan_entry(32));
    list.add("mcast_vlanMskConfig_get", 1741, mcast_vlanMskConfig_get, entry(512));
    list.add("mcast_router_get", 1742, mcast_router_get, vlan_entry(36));
    list.add(
        "mcast_igmp_groupHead_database_get", 1743, mcast_igmp_groupHead_database_get,
        index_entry(32));
    list.add("mcast_router_forbid_port_get", 1744, mcast_router_forbid_port_get, vlan_entry(12));
    list.add("mcast_igmp_querier_get", 1745, mcast_igmp_querier_get, vlan_entry(16));
    list.add("mcast_static_mac_get", 1746, mcast_static_mac_get, index_entry(24));
    list.add("mcast_mac_portmask_get", 1747, mcast_mac_portmask_get, lookup(entry(24)));
    // The chip's multicast entries, walked from first to last
    list.add("rsd_l2McastEntry_getFirst", 1857, rsd_l2McastEntry_getFirst, in_order_entry(28));
    list.add(
        "rsd_l2McastEntry_getNext", 1858, rsd_l2McastEntry_getNext, lookup(in_order_entry(28)));
    list.add("rsd_ipMcastEntry_getFirst", 1859, rsd_ipMcastEntry_getFirst, in_order_entry(28));
    list.add(
        "rsd_ipMcastEntry_getNext", 1860, rsd_ipMcastEntry_getNext, lookup(in_order_entry(28)));
    // IP source guard
    list.add("isg_port_enable_set", 1921, isg_port_enable_set, per_port);
    list.add("isg_bindingEntry_set", 1922, isg_bindingEntry_set, entry(32));
    list.add("isg_bindingEntry_del", 1923, isg_bindingEntry_del, entry(32));
    list.add("isg_bindingEntryDhcp_del", 1924, isg_bindingEntryDhcp_del, entry(32));
    list.add("isg_port_maxEntryNum_set", 1925, isg_port_maxEntryNum_set, per_port);
    list.add("isg_db_set", 1926, isg_db_set, entry(260));
    list.add("isg_db_timer_set", 1927, isg_db_timer_set, switch_wide);
    list.add("isg_bindingEntryByIndex_get", 1985, isg_bindingEntryByIndex_get, index_entry(32));
    list.add("isg_port_currentEntryNum_get", 1986, isg_port_currentEntryNum_get, per_port);
    list.add("isg_bindingMaxEntryNum_get", 1987, isg_bindingMaxEntryNum_get, switch_wide);
    list.add("isg_db_timer_get", 1988, isg_db_timer_get, switch_wide);
    // Layer-2 table
    list.add("rsd_l2_macEntry_clear", 2049, rsd_l2_macEntry_clear, in_order);
    list.add("rsd_l2_macEntry_clear_byPort", 2050, rsd_l2_macEntry_clear_byPort, in_order);
    list.add("rsd_l2_macEntry_add", 2051, rsd_l2_macEntry_add, in_order_entry(36));
    list.add("rsd_l2_macEntry_del", 2052, rsd_l2_macEntry_del, in_order_entry(36));
    list.add("rsd_l2_secure_macEntry_add", 2053, rsd_l2_secure_macEntry_add, in_order_entry(36));
    list.add("rsd_l2_secure_macEntry_del", 2054, rsd_l2_secure_macEntry_del, in_order_entry(36));
    list.add(
        "rsd_l2_lookupMissFloodPortMask_set", 2055, rsd_l2_lookupMissFloodPortMask_set,
        in_order_entry(12));
    list.add("rsd_l2_aging_set", 2057, rsd_l2_aging_set, in_order);
    list.add("rsd_l2_macTbl_generate", 2113, rsd_l2_macTbl_generate, in_order);
    list.add("rsd_l2_macTbl_size_get", 2114, rsd_l2_macTbl_size_get, in_order);
    list.add("rsd_l2_macEntry_search", 2115, rsd_l2_macEntry_search, lookup(in_order_entry(36)));
    list.add("rsd_l2_macEntry_get", 2116, rsd_l2_macEntry_get, in_order_entry(36));
    list.add("rsd_l2_macEntry_batch_get", 2117, rsd_l2_macEntry_batch_get, in_order_entry(1156));
    list.add("rsd_l2_secure_macEntry_get", 2118, rsd_l2_secure_macEntry_get, in_order_entry(36));
    list.add(
        "rsd_l2_secure_macEntry_search", 2119, rsd_l2_secure_macEntry_search,
        lookup(in_order_entry(36)));
    list.add("rsd_l2_aging_get", 2121, rsd_l2_aging_get, in_order);
    list.add("rsd_l2_maxEntryNum_get", 2123, rsd_l2_maxEntryNum_get, in_order);
    list.add("rsd_l2_userMaxEntryNum_get", 2124, rsd_l2_userMaxEntryNum_get, in_order);
    list.add("rsd_l2_disableLearningNum_get", 2125, rsd_l2_disableLearningNum_get, in_order);
    // Link aggregation control protocol
    list.add("lacp_enable_set", 2177, lacp_enable_set, switch_wide);
    list.add("lacp_system_priority_set", 2178, lacp_system_priority_set, switch_wide);
    list.add("lacp_group_set", 2179, lacp_group_set, index_entry(12));
    list.add("lacp_group_del", 2180, lacp_group_del, clear_index);
    list.add("lacp_portActivity_set", 2181, lacp_portActivity_set, per_port);
    list.add("lacp_portPriority_set", 2182, lacp_portPriority_set, per_port);
    list.add("lacp_portTimeout_set", 2183, lacp_portTimeout_set, per_port);
    list.add("lacp_portCounter_reset", 2184, lacp_portCounter_reset, clear_port);
    list.add("lacp_enable_get", 2241, lacp_enable_get, switch_wide);
    list.add("lacp_system_priority_get", 2242, lacp_system_priority_get, switch_wide);
    list.add("lacp_backupMember_get", 2243, lacp_backupMember_get, index_entry(44));
    list.add("lacp_port_state_get", 2243, lacp_port_state_get, port_entry(44));
    list.add("lacp_portCounter_get", 2245, lacp_portCounter_get, port_entry(20));
    // LEDs
    list.add("rsd_led_portEnable_set", 2305, rsd_led_portEnable_set, port_in_order);
    list.add("rsd_led_switchEnable_set", 2306, rsd_led_switchEnable_set, in_order);
    list.add("rsd_led_swctrl_set", 2307, rsd_led_swctrl_set, in_order);
    list.add("rsd_led_systemCtrl_set", 2308, rsd_led_systemCtrl_set, in_order);
    list.add("rsd_led_portEnable_get", 2369, rsd_led_portEnable_get, port_in_order);
    // Link layer discovery
    list.add("lldp_enable_set", 2433, lldp_enable_set, switch_wide);
    list.add("lldp_port_set", 2434, lldp_port_set, per_port);
    list.add("lldp_holdtime_set", 2435, lldp_holdtime_set, switch_wide);
    list.add("lldp_tx_interval_set", 2436, lldp_tx_interval_set, switch_wide);
    list.add("lldp_reinit_delay_set", 2437, lldp_reinit_delay_set, switch_wide);
    list.add("lldp_statistics_clear", 2438, lldp_statistics_clear, clear);
    list.add("lldp_disableAction_set", 2439, lldp_disableAction_set, switch_wide);
    list.add("lldp_portTlvSel_set", 2440, lldp_portTlvSel_set, per_port);
    list.add("lldp_portTlvPvidEnable_set", 2441, lldp_portTlvPvidEnable_set, per_port);
    list.add("lldp_portTlvVlanmask_set", 2442, lldp_portTlvVlanmask_set, port_entry(512));
    list.add("lldp_tx_delay_set", 2443, lldp_tx_delay_set, switch_wide);
    list.add("lldp_portRemoteEntry_clear", 2444, lldp_portRemoteEntry_clear, clear_port);
    list.add("lldp_enable_get", 2497, lldp_enable_get, switch_wide);
    list.add("lldp_port_get", 2498, lldp_port_get, per_port);
    list.add("lldp_portLocalEntryInfo_get", 2499, lldp_portLocalEntryInfo_get, port_entry(1304));
    list.add(
        "lldp_portRemoteEntryInfo_get", 2500, lldp_portRemoteEntryInfo_get, port_index_entry(1312));
    list.add(
        "lldp_portRemoteVlanNameTlv_get", 2501, lldp_portRemoteVlanNameTlv_get,
        port_index_entry(40));
    list.add("lldp_portTlvOverload_get", 2502, lldp_portTlvOverload_get, port_entry(12));
    list.add("lldp_statistic_get", 2503, lldp_statistic_get, port_entry(28));
    list.add("lldp_portEntry_get", 2504, lldp_portEntry_get, port_entry(16));
    list.add("lldp_portTlvPvidEnable_get", 2505, lldp_portTlvPvidEnable_get, per_port);
    list.add("lldp_portTlvVlanmask_get", 2506, lldp_portTlvVlanmask_get, port_entry(512));
    list.add("lldp_tx_delay_get", 2507, lldp_tx_delay_get, switch_wide);
    list.add("lldp_remoteTableChangeTime_get", 2510, lldp_remoteTableChangeTime_get, switch_wide);
    // Link layer discovery for media endpoints
    list.add("lldp_medFastRepeatCount_set", 2561, lldp_medFastRepeatCount_set, switch_wide);
    list.add("lldp_medNetworkPolicy_set", 2562, lldp_medNetworkPolicy_set, entry(24));
    list.add("lldp_medNetworkPolicyAuto_set", 2563, lldp_medNetworkPolicyAuto_set, switch_wide);
    list.add("lldp_portMedTlvSel_set", 2564, lldp_portMedTlvSel_set, per_port);
    list.add("lldp_portMedEnable_set", 2565, lldp_portMedEnable_set, per_port);
    list.add(
        "lldp_portMedNetworkPolicyBind_set", 2566, lldp_portMedNetworkPolicyBind_set, per_port);
    list.add("lldp_portMedLocation_set", 2567, lldp_portMedLocation_set, port_entry(208));
    list.add("lldp_medInventory_set", 2568, lldp_medInventory_set, entry(232));
    list.add(
        "lldp_portMedLocalEntryInfo_get", 2625, lldp_portMedLocalEntryInfo_get, port_entry(472));
    list.add(
        "lldp_portMedRemoteEntryInfo_get", 2626, lldp_portMedRemoteEntryInfo_get,
        port_index_entry(472));
    list.add("lldp_medNetworkPolicyAuto_get", 2627, lldp_medNetworkPolicyAuto_get, switch_wide);
    list.add("lldp_portMedTlvSel_get", 2628, lldp_portMedTlvSel_get, per_port);
    list.add("lldp_portMedEnable_get", 2629, lldp_portMedEnable_get, per_port);
    list.add(
        "lldp_portMedNetworkPolicyBind_get", 2630, lldp_portMedNetworkPolicyBind_get, per_port);
    list.add("lldp_portMedLocation_get", 2631, lldp_portMedLocation_get, port_entry(208));
    list.add("lldp_medInventory_get", 2632, lldp_medInventory_get, entry(232));
    // Management access lists
    list.add("rsd_acl_mgmt_list_add", 2817, rsd_acl_mgmt_list_add, text(in_order, 33, 36));
    list.add("rsd_acl_mgmt_list_del", 2818, rsd_acl_mgmt_list_del, text(in_order, 33, 36));
    list.add("rsd_acl_mgmt_ace_add", 2819, rsd_acl_mgmt_ace_add, in_order_entry(68));
    list.add("rsd_acl_mgmt_ace_del", 2820, rsd_acl_mgmt_ace_del, in_order_entry(68));
    list.add("rsd_acl_mgmt_class_add", 2821, rsd_acl_mgmt_class_add, in_order_entry(40));
    list.add("rsd_acl_mgmt_class_del", 2822, rsd_acl_mgmt_class_del, in_order_entry(40));
    list.add("rsd_acl_mgmt_list_num_get", 2881, rsd_acl_mgmt_list_num_get, in_order);
    list.add("rsd_acl_mgmt_name_get", 2882, rsd_acl_mgmt_name_get, text(in_order, 33, 36));
    list.add(
        "rsd_acl_mgmt_list_acenum_get", 2883, rsd_acl_mgmt_list_acenum_get,
        lookup(in_order_entry(40)));
    list.add("rsd_acl_mgmt_all_acenum_get", 2884, rsd_acl_mgmt_all_acenum_get, in_order);
    list.add("rsd_acl_mgmt_ace_get", 2885, rsd_acl_mgmt_ace_get, lookup(in_order_entry(68)));
    list.add("rsd_acl_mgmt_class_get", 2886, rsd_acl_mgmt_class_get, in_order_entry(40));
    // Counters. A counter is 64 bits wide and grows until it is cleared
    list.add("rsd_mib_cntr_clr", 2945, rsd_mib_cntr_clr, in_order);
    list.add("rsd_mib_cntrGlobal_clr", 2946, rsd_mib_cntrGlobal_clr, in_order);
    list.add(
        "rsd_mib_etherStatsDropEvents_get", 3009, rsd_mib_etherStatsDropEvents_get, port_counter);
    list.add("rsd_mib_etherStatsOctets_get", 3010, rsd_mib_etherStatsOctets_get, port_counter);
    list.add("rsd_mib_etherStatsPkts_get", 3011, rsd_mib_etherStatsPkts_get, port_counter);
    list.add(
        "rsd_mib_etherStatsBcastPkts_get", 3012, rsd_mib_etherStatsBcastPkts_get, port_counter);
    list.add(
        "rsd_mib_etherStatsMcastPkts_get", 3013, rsd_mib_etherStatsMcastPkts_get, port_counter);
    list.add(
        "rsd_mib_etherStatsCRCAlignErrs_get", 3014, rsd_mib_etherStatsCRCAlignErrs_get,
        port_counter);
    list.add(
        "rsd_mib_etherStatsUnderSizePkts_get", 3015, rsd_mib_etherStatsUnderSizePkts_get,
        port_counter);
    list.add(
        "rsd_mib_etherStatsOverSizePkts_get", 3016, rsd_mib_etherStatsOverSizePkts_get,
        port_counter);
    list.add(
        "rsd_mib_etherStatsFragments_get", 3017, rsd_mib_etherStatsFragments_get, port_counter);
    list.add("rsd_mib_etherStatsJabbers_get", 3018, rsd_mib_etherStatsJabbers_get, port_counter);
    list.add(
        "rsd_mib_etherStatsCollisions_get", 3019, rsd_mib_etherStatsCollisions_get, port_counter);
    list.add(
        "rsd_mib_etherStatsPkts64Octets_get", 3020, rsd_mib_etherStatsPkts64Octets_get,
        port_counter);
    list.add(
        "rsd_mib_etherStatsPkts65to127Octets_get", 3021, rsd_mib_etherStatsPkts65to127Octets_get,
        port_counter);
    list.add(
        "rsd_mib_etherStatsPkts128to255Octets_get", 3022, rsd_mib_etherStatsPkts128to255Octets_get,
        port_counter);
    list.add(
        "rsd_mib_etherStatsPkts256to511Octets_get", 3023, rsd_mib_etherStatsPkts256to511Octets_get,
        port_counter);
    list.add(
        "rsd_mib_etherStatsPkts512to1023Octets_get", 3024,
        rsd_mib_etherStatsPkts512to1023Octets_get, port_counter);
    list.add(
        "rsd_mib_etherStatsPkts1024to1518Octets_get", 3025,
        rsd_mib_etherStatsPkts1024to1518Octets_get, port_counter);
    list.add("rsd_mib_ifOutUcastPkts_get", 3026, rsd_mib_ifOutUcastPkts_get, port_counter);
    list.add("rsd_mib_ifOutNUcastPkts_get", 3027, rsd_mib_ifOutNUcastPkts_get, port_counter);
    list.add("rsd_mib_ifOutOctets_get", 3028, rsd_mib_ifOutOctets_get, port_counter);
    list.add("rsd_mib_TXCRCCheckFailCnt_get", 3029, rsd_mib_TXCRCCheckFailCnt_get, port_counter);
    list.add(
        "rsd_mib_etherStatsDropInOverrun_get", 3030, rsd_mib_etherStatsDropInOverrun_get,
        port_counter);
    list.add(
        "rsd_mib_dot1dTpPortInDiscards_get", 3031, rsd_mib_dot1dTpPortInDiscards_get, port_counter);
    list.add(
        "rsd_mib_dot1d_delayexceededdiscards_get", 3032, rsd_mib_dot1d_delayexceededdiscards_get,
        port_counter);
    list.add(
        "rsd_mib_dot1d_tpHCPortInDiscards_get", 3033, rsd_mib_dot1d_tpHCPortInDiscards_get,
        port_counter);
    list.add(
        "rsd_mib_dot1dTpLearnedEntryDiscards_get", 3034, rsd_mib_dot1dTpLearnedEntryDiscards_get,
        switch_counter);
    list.add("rsd_mib_OutUnicastPktsCnt_get", 3035, rsd_mib_OutUnicastPktsCnt_get, port_counter);
    list.add(
        "rsd_mib_OutMulticastPktsCnt_get", 3036, rsd_mib_OutMulticastPktsCnt_get, port_counter);
    list.add(
        "rsd_mib_OutBroadcastPktsCnt_get", 3037, rsd_mib_OutBroadcastPktsCnt_get, port_counter);
    list.add(
        "rsd_mib_EgressLackResourceDrop_get", 3038, rsd_mib_EgressLackResourceDrop_get,
        port_counter);
    list.add("rsd_mib_dot3StatsFCSErrors_get", 3039, rsd_mib_dot3StatsFCSErrors_get, port_counter);
    list.add(
        "rsd_mib_dot3StatsSingleCollisionFrames_get", 3040,
        rsd_mib_dot3StatsSingleCollisionFrames_get, port_counter);
    list.add(
        "rsd_mib_dot3StatsMultipleCollisionFrames_get", 3041,
        rsd_mib_dot3StatsMultipleCollisionFrames_get, port_counter);
    list.add(
        "rsd_mib_dot3StatsDeferredTransmissions_get", 3042,
        rsd_mib_dot3StatsDeferredTransmissions_get, port_counter);
    list.add(
        "rsd_mib_dot3StatsLateCollisions_get", 3043, rsd_mib_dot3StatsLateCollisions_get,
        port_counter);
    list.add(
        "rsd_mib_dot3StatsExcessiveCollisions_get", 3044, rsd_mib_dot3StatsExcessiveCollisions_get,
        port_counter);
    list.add(
        "rsd_mib_dot3StatsSymbolErrors_get", 3045, rsd_mib_dot3StatsSymbolErrors_get, port_counter);
    list.add(
        "rsd_mib_dot3_status_alignment_errors_get", 3046, rsd_mib_dot3_status_alignment_errors_get,
        port_counter);
    list.add(
        "rsd_mib_dot3StatsFrameTooLongs_get", 3047, rsd_mib_dot3StatsFrameTooLongs_get,
        port_counter);
    list.add("rsd_mib_ifInOctets_get", 3048, rsd_mib_ifInOctets_get, port_counter);
    list.add("rsd_mib_ifInUcastPkts_get", 3049, rsd_mib_ifInUcastPkts_get, port_counter);
    list.add("rsd_mib_ifInNUcastPkts_get", 3050, rsd_mib_ifInNUcastPkts_get, port_counter);
    list.add("rsd_mib_ifInBroadcastPkts_get", 3051, rsd_mib_ifInBroadcastPkts_get, port_counter);
    list.add("rsd_mib_ifInMulticastPkts_get", 3052, rsd_mib_ifInMulticastPkts_get, port_counter);
    list.add("rsd_mib_ifInDiscards_get", 3053, rsd_mib_ifInDiscards_get, port_counter);
    list.add("rsd_mib_ifOutMcastPkts_get", 3054, rsd_mib_ifOutMcastPkts_get, port_counter);
    list.add("rsd_mib_ifOutBcastPkts_get", 3055, rsd_mib_ifOutBcastPkts_get, port_counter);
    list.add(
        "rsd_mib_dot3ControlInUnknownOpcodes_get", 3056, rsd_mib_dot3ControlInUnknownOpcodes_get,
        port_counter);
    list.add("rsd_mib_dot3OutPauseFrames_get", 3057, rsd_mib_dot3OutPauseFrames_get, port_counter);
    list.add("rsd_mib_dot3InPauseFrames_get", 3058, rsd_mib_dot3InPauseFrames_get, port_counter);
    list.add(
        "rsd_mib_FlowCtrlOnDropPktCnt_get", 3059, rsd_mib_FlowCtrlOnDropPktCnt_get, port_counter);
    list.add("rsd_mib_SmartTriggerHit0_get", 3060, rsd_mib_SmartTriggerHit0_get, port_counter);
    list.add("rsd_mib_SmartTriggerHit1_get", 3061, rsd_mib_SmartTriggerHit1_get, port_counter);
    list.add("rsd_mib_ifOutDiscards_get", 3062, rsd_mib_ifOutDiscards_get, port_counter);
    list.add("rsd_mib_cpuStatsPkts_get", 3063, rsd_mib_cpuStatsPkts_get, switch_counter);
    list.add("rsd_mib_debug_globalCntr_get", 3064, rsd_mib_debug_globalCntr_get, debug_counter);
    // Port mirroring
    list.add("rsd_mirror_group_set", 3077, rsd_mirror_group_set, in_order_entry(32));
    list.add("rsd_mirror_group_del", 3078, rsd_mirror_group_del, in_order);
    list.add("rsd_mirror_egrMode_set", 3079, rsd_mirror_egrMode_set, in_order);
    list.add("rsd_mirror_egrMode_get", 3140, rsd_mirror_egrMode_get, in_order);
    // Multicast snooping for IPv6
    list.add("mcast_mld_enable_set", 3201, mcast_mld_enable_set, switch_wide);
    list.add("mcast_mld_suppre_enable_set", 3202, mcast_mld_suppre_enable_set, switch_wide);
    list.add("mcast_mld_statistics_clear", 3203, mcast_mld_statistics_clear, clear);
    list.add("mcast_mld_lookupMode_set", 3204, mcast_mld_lookupMode_set, switch_wide);
    list.add("mcast_mld_group_del_byType", 3205, mcast_mld_group_del_byType, switch_wide);
    list.add("mcast_mld_operVersion_set", 3206, mcast_mld_operVersion_set, switch_wide);
    list.add("mcast_mld_unknMcastAction_set", 3207, mcast_mld_unknMcastAction_set, switch_wide);
    list.add("mcast_mld_info_get", 3265, mcast_mld_info_get, entry(68));
    list.add("mcast_mld_lookupMode_get", 3266, mcast_mld_lookupMode_get, switch_wide);
    list.add("mcast_mld_databaseSize_get", 3267, mcast_mld_databaseSize_get, switch_wide);
    list.add("mcast_mld_staticMacNum_get", 3268, mcast_mld_staticMacNum_get, switch_wide);
    // Fibre modules
    list.add("rsd_optical_data_get", 3393, rsd_optical_data_get, port_in_order_entry(24));
    // Ports
    list.add("rsd_port_enable_set", 3457, rsd_port_enable_set, port_on_off);
    list.add("rsd_port_rxEnable_set", 3458, rsd_port_rxEnable_set, port_in_order);
    list.add("rsd_port_comboMediaPrefer_set", 3459, rsd_port_comboMediaPrefer_set, port_in_order);
    list.add("rsd_port_media_set", 3460, rsd_port_media_set, port_in_order);
    list.add("rsd_port_protected_set", 3461, rsd_port_protected_set, port_in_order);
    list.add("rsd_port_autoNegoEnable_set", 3462, rsd_port_autoNegoEnable_set, port_in_order);
    list.add("rsd_port_autoNegoAbility_set", 3463, rsd_port_autoNegoAbility_set, port_in_order);
    list.add("rsd_port_forceModeAbility_set", 3464, rsd_port_forceModeAbility_set, port_in_order);
    list.add("rsd_port_flowCtrl_set", 3465, rsd_port_flowCtrl_set, port_in_order);
    list.add("rsd_port_descp_set", 3466, rsd_port_descp_set, text(port_in_order, 256, 256));
    list.add("rsd_port_errDisableRecovery_set", 3467, rsd_port_errDisableRecovery_set, in_order);
    list.add("rsd_port_errDisableTime_set", 3468, rsd_port_errDisableTime_set, in_order);
    list.add(
        "rsd_port_backpressureEnable_set", 3469, rsd_port_backpressureEnable_set, port_in_order);
    list.add("rsd_port_flowCtrlAuto_set", 3470, rsd_port_flowCtrlAuto_set, port_in_order);
    list.add("rsd_port_10GMedia_set", 3471, rsd_port_10GMedia_set, port_in_order);
    list.add(
        "rsd_port_fiberNwayForceLinkEnable_set", 3472, rsd_port_fiberNwayForceLinkEnable_set,
        port_in_order);
    list.add("rsd_port_enable_get", 3521, rsd_port_enable_get, port_in_order);
    list.add("rsd_port_linkStatus_get", 3522, rsd_port_linkStatus_get, port_in_order);
    list.add("rsd_port_allLinkStatus_get", 3523, rsd_port_allLinkStatus_get, in_order_entry(12));
    list.add("rsd_port_comboMediaPrefer_get", 3524, rsd_port_comboMediaPrefer_get, port_in_order);
    list.add("rsd_port_linkMedia_get", 3525, rsd_port_linkMedia_get, port_in_order);
    list.add("rsd_port_media_get", 3526, rsd_port_media_get, port_in_order);
    list.add("rsd_port_speedDuplex_get", 3528, rsd_port_speedDuplex_get, port_in_order);
    list.add("rsd_port_flowCtrl_get", 3529, rsd_port_flowCtrl_get, port_in_order);
    list.add("rsd_port_flowCtrlStatus_get", 3530, rsd_port_flowCtrlStatus_get, port_in_order);
    list.add("rsd_port_autoNegoAbility_get", 3532, rsd_port_autoNegoAbility_get, port_in_order);
    list.add("rsd_port_forceModeAbility_get", 3533, rsd_port_forceModeAbility_get, port_in_order);
    list.add("rsd_port_flowCtrlAuto_get", 3534, rsd_port_flowCtrlAuto_get, port_in_order);
    list.add("rsd_port_errDisable_get", 3535, rsd_port_errDisable_get, port_in_order);
    list.add("rsd_port_errDisableRecovery_get", 3536, rsd_port_errDisableRecovery_get, in_order);
    list.add("rsd_port_errDisableTime_get", 3537, rsd_port_errDisableTime_get, in_order);
    list.add(
        "rsd_port_errDisableCurrTime_set", 3538, rsd_port_errDisableCurrTime_set, port_in_order);
    list.add(
        "rsd_port_errDisableCurrTime_get", 3539, rsd_port_errDisableCurrTime_get, port_in_order);
    list.add("rsd_port_linkChangeTime_get", 3540, rsd_port_linkChangeTime_get, port_in_order);
    list.add("rsd_port_logic2Physic_get", 3544, rsd_port_logic2Physic_get, port_in_order);
    list.add("rsd_port_physic2Logic_get", 3545, rsd_port_physic2Logic_get, in_order);
    list.add("rsd_port_10GMedia_get", 3546, rsd_port_10GMedia_get, port_in_order);
    // Port security
    list.add("rsd_port_securityEnable_set", 3586, rsd_port_securityEnable_set, port_in_order);
    list.add("rsd_port_security_set", 3587, rsd_port_security_set, port_in_order_entry(16));
    list.add("rsd_port_securityEntryNum_set", 3588, rsd_port_securityEntryNum_set, port_in_order);
    list.add("rsd_port_securityAction_set", 3589, rsd_port_securityAction_set, port_in_order);
    list.add("rsd_portSecurity_global_get", 3649, rsd_portSecurity_global_get, in_order_entry(12));
    list.add("rsd_port_securityEnable_get", 3650, rsd_port_securityEnable_get, port_in_order);
    list.add("rsd_port_security_get", 3651, rsd_port_security_get, port_in_order_entry(16));
    list.add("rsd_port_securityEntryNum_get", 3652, rsd_port_securityEntryNum_get, port_in_order);
    list.add("rsd_port_securityAction_get", 3653, rsd_port_securityAction_get, port_in_order);
    list.add(
        "rsd_port_security_learningCnt_get", 3654, rsd_port_security_learningCnt_get,
        port_in_order);
    // Quality of service
    list.add("rsd_qos_mode_set", 3713, rsd_qos_mode_set, in_order);
    list.add("rsd_qos_trustType_set", 3714, rsd_qos_trustType_set, in_order);
    list.add("rsd_qos_portTrustType_set", 3715, rsd_qos_portTrustType_set, port_in_order);
    list.add("rsd_qos_portQueueWeight_set", 3716, rsd_qos_portQueueWeight_set, port_in_order);
    list.add("rsd_qos_portCos_set", 3717, rsd_qos_portCos_set, port_in_order);
    list.add("rsd_qos_cosQueue_set", 3718, rsd_qos_cosQueue_set, in_order);
    list.add("rsd_qos_dscpQueue_set", 3719, rsd_qos_dscpQueue_set, in_order);
    list.add("rsd_qos_ippQueue_set", 3720, rsd_qos_ippQueue_set, in_order);
    list.add("rsd_qos_queueCos_set", 3721, rsd_qos_queueCos_set, in_order);
    list.add("rsd_qos_queueDscp_set", 3722, rsd_qos_queueDscp_set, in_order);
    list.add("rsd_qos_queueIpp_set", 3723, rsd_qos_queueIpp_set, in_order);
    list.add("rsd_qos_portRemarkCos_set", 3724, rsd_qos_portRemarkCos_set, port_in_order);
    list.add("rsd_qos_portRemarkDscp_set", 3725, rsd_qos_portRemarkDscp_set, port_in_order);
    list.add("rsd_qos_portRemarkIpp_set", 3726, rsd_qos_portRemarkIpp_set, port_in_order);
    list.add("rsd_qos_ipRemarkAbility_check", 3777, rsd_qos_ipRemarkAbility_check, in_order);
    // Rates
    list.add("rsd_rate_stormControlRate_set", 3841, rsd_rate_stormControlRate_set, port_in_order);
    list.add(
        "rsd_rate_stormControlEnable_set", 3842, rsd_rate_stormControlEnable_set, port_in_order);
    list.add(
        "rsd_rate_stormControlAction_set", 3843, rsd_rate_stormControlAction_set, port_in_order);
    list.add("rsd_rate_stormCtrlIncludeIfg_set", 3844, rsd_rate_stormCtrlIncludeIfg_set, in_order);
    list.add(
        "rsd_rate_stormCtrlRefreshMode_set", 3845, rsd_rate_stormCtrlRefreshMode_set, in_order);
    list.add(
        "rsd_rate_igrBandwidthCtrlEnable_set", 3846, rsd_rate_igrBandwidthCtrlEnable_set,
        port_in_order);
    list.add(
        "rsd_rate_igrBandwidthCtrlRate_set", 3847, rsd_rate_igrBandwidthCtrlRate_set,
        port_in_order);
    list.add(
        "rsd_rate_igrBandwidthCtrlBurstSize_set", 3848, rsd_rate_igrBandwidthCtrlBurstSize_set,
        in_order);
    list.add(
        "rsd_rate_portIgrBandwidthCtrlBurstSize_set", 3849,
        rsd_rate_portIgrBandwidthCtrlBurstSize_set, port_in_order);
    list.add(
        "rsd_rate_egrBandwidthCtrlEnable_set", 3850, rsd_rate_egrBandwidthCtrlEnable_set,
        port_in_order);
    list.add(
        "rsd_rate_egrBandwidthCtrlRate_set", 3851, rsd_rate_egrBandwidthCtrlRate_set,
        port_in_order);
    list.add(
        "rsd_rate_egrBandwidthCtrlBurstSize_set", 3852, rsd_rate_egrBandwidthCtrlBurstSize_set,
        in_order);
    list.add(
        "rsd_rate_portEgrBandwidthCtrlBurstSize_set", 3853,
        rsd_rate_portEgrBandwidthCtrlBurstSize_set, port_in_order);
    list.add("rsd_rate_egrQueueCtrlRate_set", 3854, rsd_rate_egrQueueCtrlRate_set, port_in_order);
    list.add(
        "rsd_rate_egrQueueCtrlEnable_set", 3855, rsd_rate_egrQueueCtrlEnable_set, port_in_order);
    list.add(
        "rsd_rate_egrSysQueueCtrlBurstSize_set", 3856, rsd_rate_egrSysQueueCtrlBurstSize_set,
        in_order);
    list.add(
        "rsd_rate_portEgrQueueCtrlBurstSize_set", 3857, rsd_rate_portEgrQueueCtrlBurstSize_set,
        port_in_order);
    list.add(
        "rsd_rate_igrBandwidthCtrlIncludeIfg_set", 3858, rsd_rate_igrBandwidthCtrlIncludeIfg_set,
        in_order);
    list.add(
        "rsd_rate_egrBandwidthCtrlIncludeIfg_set", 3859, rsd_rate_egrBandwidthCtrlIncludeIfg_set,
        in_order);
    list.add("rsd_rate_cpuEgrBandwidthCtrl_set", 3860, rsd_rate_cpuEgrBandwidthCtrl_set, in_order);
    list.add(
        "rsd_rate_cpuEgrQueueCtrlEnable_set", 3861, rsd_rate_cpuEgrQueueCtrlEnable_set, in_order);
    list.add("rsd_rate_stormControlRate_get", 3907, rsd_rate_stormControlRate_get, port_in_order);
    list.add("rsd_rate_stormCtrlIncludeIfg_get", 3908, rsd_rate_stormCtrlIncludeIfg_get, in_order);
    list.add(
        "rsd_rate_stormCtrlRefreshMode_get", 3909, rsd_rate_stormCtrlRefreshMode_get, in_order);
    list.add(
        "rsd_rate_igrBandwidthCtrlEnable_get", 3910, rsd_rate_igrBandwidthCtrlEnable_get,
        port_in_order);
    list.add(
        "rsd_rate_igrBandwidthCtrlBurstSize_get", 3912, rsd_rate_igrBandwidthCtrlBurstSize_get,
        in_order);
    list.add(
        "rsd_rate_igrBandwidthCtrlRate_get", 3913, rsd_rate_igrBandwidthCtrlRate_get,
        port_in_order);
    list.add(
        "rsd_rate_egrBandwidthCtrlEnable_get", 3914, rsd_rate_egrBandwidthCtrlEnable_get,
        port_in_order);
    list.add(
        "rsd_rate_egrBandwidthCtrlBurstSize_get", 3916, rsd_rate_egrBandwidthCtrlBurstSize_get,
        in_order);
    list.add(
        "rsd_rate_egrBandwidthCtrlRate_get", 3917, rsd_rate_egrBandwidthCtrlRate_get,
        port_in_order);
    list.add(
        "rsd_rate_egrQueueCtrlEnable_get", 3919, rsd_rate_egrQueueCtrlEnable_get, port_in_order);
    list.add("rsd_rate_egrQueueCtrlRate_get", 3920, rsd_rate_egrQueueCtrlRate_get, port_in_order);
    list.add(
        "rsd_rate_portEgrQueueCtrlBurstSize_get", 3921, rsd_rate_portEgrQueueCtrlBurstSize_get,
        port_in_order);
    list.add(
        "rsd_rate_igrBandwidthCtrlIncludeIfg_get", 3922, rsd_rate_igrBandwidthCtrlIncludeIfg_get,
        in_order);
    list.add(
        "rsd_rate_egrBandwidthCtrlIncludeIfg_get", 3923, rsd_rate_egrBandwidthCtrlIncludeIfg_get,
        in_order);
    list.add("rsd_rate_cpuEgrBandwidthCtrl_get", 3924, rsd_rate_cpuEgrBandwidthCtrl_get, in_order);
    list.add(
        "rsd_rate_cpuEgrQueueCtrlEnable_get", 3925, rsd_rate_cpuEgrQueueCtrlEnable_get, in_order);
    list.add(
        "rsd_rate_cpuEgrBandwidthCtrlRateMode_get", 3926, rsd_rate_cpuEgrBandwidthCtrlRateMode_get,
        in_order);
    // Spanning tree
    list.add("stp_enable_set", 3969, stp_enable_set, switch_wide);
    list.add("stp_forwardBpdu_set", 3970, stp_forwardBpdu_set, switch_wide);
    list.add("stp_forceVersion_set", 3971, stp_forceVersion_set, switch_wide);
    list.add("stp_helloTime_set", 3972, stp_helloTime_set, switch_wide);
    list.add("stp_maxHops_set", 3973, stp_maxHops_set, switch_wide);
    list.add("stp_forwardDelay_set", 3974, stp_forwardDelay_set, switch_wide);
    list.add("stp_maximumAge_set", 3975, stp_maximumAge_set, switch_wide);
    list.add("stp_txHoldCount_set", 3976, stp_txHoldCount_set, switch_wide);
    list.add("stp_pathcostMethod_set", 3977, stp_pathcostMethod_set, switch_wide);
    list.add("stp_portAdminEnable_set", 3978, stp_portAdminEnable_set, per_port);
    list.add("stp_portForwardBpdu_set", 3979, stp_portForwardBpdu_set, per_port);
    list.add("stp_portPathCost_set", 3980, stp_portPathCost_set, per_port);
    list.add("stp_portEdgePort_set", 3981, stp_portEdgePort_set, per_port);
    list.add("stp_portBpduFilter_set", 3982, stp_portBpduFilter_set, per_port);
    list.add("stp_portBpduGuard_set", 3983, stp_portBpduGuard_set, per_port);
    list.add("stp_portPointToPointMac_set", 3984, stp_portPointToPointMac_set, per_port);
    list.add("stp_portMcheck_set", 3985, stp_portMcheck_set, per_port);
    list.add("stp_mstConfigName_set", 3986, stp_mstConfigName_set, text(in_order, 33, 36));
    list.add("stp_mstConfigRevision_set", 3987, stp_mstConfigRevision_set, switch_wide);
    list.add("stp_mstVlanInstance_set", 3988, stp_mstVlanInstance_set, per_vlan);
    list.add("stp_mstVlanmask_set", 3989, stp_mstVlanmask_set, index_entry(512));
    list.add("stp_mstPriority_set", 3990, stp_mstPriority_set, per_index);
    list.add("stp_mstPortPathCost_set", 3991, stp_mstPortPathCost_set, per_index_and_port);
    list.add("stp_mstPortPriority_set", 3992, stp_mstPortPriority_set, per_index_and_port);
    list.add("stp_enable_get", 4033, stp_enable_get, switch_wide);
    list.add("stp_forwardBpdu_get", 4034, stp_forwardBpdu_get, switch_wide);
    list.add("stp_forceVersion_get", 4035, stp_forceVersion_get, switch_wide);
    list.add("stp_helloTime_get", 4036, stp_helloTime_get, switch_wide);
    list.add("stp_maxHops_get", 4037, stp_maxHops_get, switch_wide);
    list.add("stp_forwardDelay_get", 4038, stp_forwardDelay_get, switch_wide);
    list.add("stp_maximumAge_get", 4039, stp_maximumAge_get, switch_wide);
    list.add("stp_txHoldCount_get", 4040, stp_txHoldCount_get, switch_wide);
    list.add("stp_pathcostMethod_get", 4041, stp_pathcostMethod_get, switch_wide);
    list.add("stp_portAdminEnable_get", 4042, stp_portAdminEnable_get, per_port);
    list.add("stp_portForwardBpdu_get", 4043, stp_portForwardBpdu_get, per_port);
    list.add("stp_portPathCost_get", 4044, stp_portPathCost_get, per_port);
    list.add("stp_portEdgePort_get", 4045, stp_portEdgePort_get, per_port);
    list.add("stp_portBpduFilter_get", 4046, stp_portBpduFilter_get, per_port);
    list.add("stp_portBpduGuard_get", 4047, stp_portBpduGuard_get, per_port);
    list.add("stp_portPointToPointMac_get", 4048, stp_portPointToPointMac_get, per_port);
    list.add("stp_portMcheck_get", 4049, stp_portMcheck_get, per_port);
    list.add("stp_mstConfigName_get", 4050, stp_mstConfigName_get, text(in_order, 33, 36));
    list.add("stp_mstConfigRevision_get", 4051, stp_mstConfigRevision_get, switch_wide);
    list.add("stp_mstVlanInstance_get", 4052, stp_mstVlanInstance_get, per_vlan);
    list.add("stp_mstPriority_get", 4054, stp_mstPriority_get, per_index);
    list.add("stp_mstPortPathCost_get", 4055, stp_mstPortPathCost_get, per_index_and_port);
    list.add("stp_mstPortPriority_get", 4056, stp_mstPortPriority_get, per_index_and_port);
    list.add("stp_info_get", 4057, stp_info_get, entry(44));
    list.add("stp_portInfo_get", 4058, stp_portInfo_get, port_entry(24));
    list.add("stp_mstInfo_get", 4059, stp_mstInfo_get, index_entry(36));
    list.add("stp_mstPortInfo_get", 4060, stp_mstPortInfo_get, index_port_entry(28));
    list.add("stp_mstPortMsg_get", 4061, stp_mstPortMsg_get, index_port_entry(24));
    // The switch chip as a whole
    list.add("rsd_switch_maxFrameSize_set", 4097, rsd_switch_maxFrameSize_set, in_order);
    list.add(
        "rsd_switch_portMaxFrameSize_set", 4098, rsd_switch_portMaxFrameSize_set, port_in_order);
    list.add("rsd_switch_maxFrameSize_get", 4161, rsd_switch_maxFrameSize_get, in_order);
    list.add(
        "rsd_switch_portMaxFrameSize_get", 4162, rsd_switch_portMaxFrameSize_get, port_in_order);
    // Link aggregation in the chip. Groups (trunks) are numbered from 0
    list.add("rsd_trunk_staticGroup_set", 4353, rsd_trunk_staticGroup_set, in_order_entry(12));
    list.add("rsd_trunk_staticGroup_del", 4354, rsd_trunk_staticGroup_del, in_order);
    list.add("rsd_trunk_lacpGroup_set", 4355, rsd_trunk_lacpGroup_set, in_order_entry(12));
    list.add("rsd_trunk_lacpGroup_del", 4356, rsd_trunk_lacpGroup_del, in_order);
    list.add("rsd_trunk_hashAlgo_set", 4357, rsd_trunk_hashAlgo_set, in_order);
    list.add("rsd_trunk_mode_get", 4417, rsd_trunk_mode_get, in_order);
    list.add("rsd_trunk_activeMember_get", 4418, rsd_trunk_activeMember_get, in_order_entry(12));
    list.add("rsd_trunk_portRole_get", 4419, rsd_trunk_portRole_get, port_in_order);
    list.add(
        "rsd_trunk_memberPortTrunkId_get", 4421, rsd_trunk_memberPortTrunkId_get, port_in_order);
    // VLANs
    list.add("rsd_vlan_defaultVid_set", 4481, rsd_vlan_defaultVid_set, in_order);
    list.add("rsd_vlan_adminEntry_create", 4482, rsd_vlan_adminEntry_create, in_order);
    list.add("rsd_vlan_adminEntry_destroy", 4483, rsd_vlan_adminEntry_destroy, in_order);
    list.add("rsd_vlan_adminEntry_set", 4484, rsd_vlan_adminEntry_set, in_order_entry(68));
    list.add("rsd_vlan_name_set", 4485, rsd_vlan_name_set, text(in_order, 33, 36));
    list.add("rsd_vlan_portAdminMode_set", 4486, rsd_vlan_portAdminMode_set, port_in_order);
    list.add(
        "rsd_vlan_portAdminRoleUplinkEnable_set", 4487, rsd_vlan_portAdminRoleUplinkEnable_set,
        port_in_order);
    list.add(
        "rsd_vlan_portAdminAcceptFrameType_set", 4488, rsd_vlan_portAdminAcceptFrameType_set,
        port_in_order);
    list.add(
        "rsd_vlan_portAdminIgrFilterEnable_set", 4489, rsd_vlan_portAdminIgrFilterEnable_set,
        port_in_order);
    list.add("rsd_vlan_portAdminPvid_set", 4490, rsd_vlan_portAdminPvid_set, port_in_order);
    list.add(
        "rsd_vlan_portAdminVlanmask_add", 4491, rsd_vlan_portAdminVlanmask_add,
        port_in_order_entry(512));
    list.add(
        "rsd_vlan_portAdminVlanmask_del", 4492, rsd_vlan_portAdminVlanmask_del,
        port_in_order_entry(512));
    list.add(
        "rsd_vlan_portTrunkAllowedVlan_set", 4493, rsd_vlan_portTrunkAllowedVlan_set,
        port_in_order_entry(512));
    list.add("rsd_vlan_dot1qTunnelTpid_set", 4494, rsd_vlan_dot1qTunnelTpid_set, in_order);
    list.add(
        "rsd_vlan_portDot1qTunnelTpid_set", 4495, rsd_vlan_portDot1qTunnelTpid_set, port_in_order);
    list.add("rsd_vlan_mgmtVid_set", 4496, rsd_vlan_mgmtVid_set, in_order);
    list.add("rsd_vlan_guestVid_set", 4497, rsd_vlan_guestVid_set, in_order);
    list.add("rsd_vlan_voiceVid_set", 4501, rsd_vlan_voiceVid_set, in_order);
    list.add("rsd_vlan_defaultVid_get", 4545, rsd_vlan_defaultVid_get, in_order);
    list.add("rsd_vlan_adminEntryExist_get", 4546, rsd_vlan_adminEntryExist_get, in_order);
    list.add("rsd_vlan_adminEntry_get", 4547, rsd_vlan_adminEntry_get, in_order_entry(68));
    list.add("rsd_vlan_operEntryNum_get", 4549, rsd_vlan_operEntryNum_get, in_order);
    list.add("rsd_vlan_operEntryExist_get", 4550, rsd_vlan_operEntryExist_get, in_order);
    list.add("rsd_vlan_operEntry_get", 4551, rsd_vlan_operEntry_get, in_order_entry(68));
    list.add("rsd_vlan_operEntrySort_get", 4552, rsd_vlan_operEntrySort_get, in_order_entry(68));
    list.add(
        "rsd_vlan_portAdminAcceptFrameType_get", 4555, rsd_vlan_portAdminAcceptFrameType_get,
        port_in_order);
    list.add(
        "rsd_vlan_portAdminIgrFilterEnable_get", 4556, rsd_vlan_portAdminIgrFilterEnable_get,
        port_in_order);
    list.add("rsd_vlan_portAdminPvid_get", 4557, rsd_vlan_portAdminPvid_get, port_in_order);
    list.add(
        "rsd_vlan_portAdminVlanmask_get", 4558, rsd_vlan_portAdminVlanmask_get,
        port_in_order_entry(512));
    list.add(
        "rsd_vlan_portAdminVlanMember_get", 4559, rsd_vlan_portAdminVlanMember_get, port_in_order);
    list.add(
        "rsd_vlan_portAdminVlanMembership_get", 4560, rsd_vlan_portAdminVlanMembership_get,
        port_in_order);
    list.add("rsd_vlan_guestVid_get", 4561, rsd_vlan_guestVid_get, in_order);
    list.add("rsd_vlan_portOperPvid_get", 4562, rsd_vlan_portOperPvid_get, port_in_order);
    list.add(
        "rsd_vlan_portOperVlanMember_get", 4563, rsd_vlan_portOperVlanMember_get, port_in_order);
    list.add(
        "rsd_vlan_portOperVlanMembership_get", 4564, rsd_vlan_portOperVlanMembership_get,
        port_in_order);
    list.add("rsd_vlan_dot1qTunnelTpid_get", 4565, rsd_vlan_dot1qTunnelTpid_get, in_order);
    list.add(
        "rsd_vlan_portDot1qTunnelTpid_get", 4566, rsd_vlan_portDot1qTunnelTpid_get, port_in_order);
    list.add(
        "rsd_vlan_mibDot1qVlanNumDeletes_get", 4567, rsd_vlan_mibDot1qVlanNumDeletes_get, in_order);
    list.add(
        "rsd_vlan_mibDot1qVlanCreationTime_get", 4568, rsd_vlan_mibDot1qVlanCreationTime_get,
        in_order);
    list.add(
        "rsd_vlan_portVoiceVlanActive_get", 4573, rsd_vlan_portVoiceVlanActive_get, port_in_order);
    list.add(
        "rsd_vlan_adminVlanMaxEntryNum_get", 4574, rsd_vlan_adminVlanMaxEntryNum_get, in_order);
    // Voice VLAN
    list.add("voice_vlan_state_set", 4609, voice_vlan_state_set, switch_wide);
    list.add("voice_vlan_port_enable_set", 4610, voice_vlan_port_enable_set, per_port);
    list.add("voice_vlan_port_mode_set", 4611, voice_vlan_port_mode_set, per_port);
    list.add("voice_vlan_cos_mode_set", 4612, voice_vlan_cos_mode_set, switch_wide);
    list.add("voice_vlan_1pRemark_enable_set", 4613, voice_vlan_1pRemark_enable_set, switch_wide);
    list.add("voice_vlan_qos_set", 4614, voice_vlan_qos_set, switch_wide);
    list.add("voice_vlan_aging_set", 4615, voice_vlan_aging_set, switch_wide);
    list.add("voice_vlan_oui_set", 4617, voice_vlan_oui_set, entry(48));
    list.add("voice_vlan_state_get", 4673, voice_vlan_state_get, switch_wide);
    list.add("voice_vlan_port_enable_get", 4674, voice_vlan_port_enable_get, per_port);
    list.add("voice_vlan_port_mode_get", 4675, voice_vlan_port_mode_get, per_port);
    list.add("voice_vlan_cos_mode_get", 4676, voice_vlan_cos_mode_get, switch_wide);
    list.add("voice_vlan_qos_get", 4678, voice_vlan_qos_get, switch_wide);
    // VLANs by protocol
    list.add("rsd_vlan_protoGroup_set", 4737, rsd_vlan_protoGroup_set, in_order_entry(8));
    list.add("rsd_vlan_portProtoVlan_set", 4738, rsd_vlan_portProtoVlan_set, port_in_order);
    list.add("rsd_vlan_portProtoVlan_disable", 4739, rsd_vlan_portProtoVlan_disable, port_in_order);
    return list.all;
}
