// Multicast snooping: IGMP, its groups, routers and filters.
// Commands from 1664 on.
//
// IPv4 addresses have their most significant byte first in the number.
#pragma once

#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { MCAST_SOURCES = 32 };

// Snooping in a VLAN. 32 bytes.
typedef struct McastSnooping {
    uint32_t enable;
    uint32_t fast_leave;
    uint32_t router_learning;
    uint32_t query_interval_s;
    uint32_t response_interval_s;
    uint32_t robustness;
    uint32_t last_member_count;
    uint32_t last_member_interval_s;
} McastSnooping;

// Querier of a VLAN. 16 bytes.
typedef struct McastQuerier {
    uint32_t enable;
    uint32_t version;
    uint32_t address;        // of the switch as querier
    uint32_t active_address; // of whoever queries now
} McastQuerier;

// A group in a VLAN, and the ports that want it. 32 bytes.
typedef struct McastGroup {
    uint32_t vlan;
    uint32_t group;
    uint32_t source; // 0: any
    uint32_t is_static;
    uint32_t life_s; // until it is forgotten; 0 for a static group
    PortBitmap ports;
} McastGroup;

// A group with its sources on one port. 148 bytes.
typedef struct McastSourceFilter {
    uint32_t vlan;
    uint32_t group;
    uint32_t port;
    uint32_t mode; // 0 these sources only, 1 all but these
    uint32_t source_count;
    uint32_t sources[MCAST_SOURCES];
} McastSourceFilter;

// A static multicast MAC address. 24 bytes.
typedef struct McastMac {
    uint32_t vlan;
    uint8_t mac[MAC_ADDRESS_SIZE];
    uint8_t reserved[2];
    PortBitmap ports;
} McastMac;

// A range of groups that a port filter allows or denies. 16 bytes.
typedef struct McastProfile {
    uint32_t index;  // 1 to 128
    uint32_t action; // 0 deny, 1 permit
    uint32_t first;
    uint32_t last;
} McastProfile;

// Router ports of a VLAN. 36 bytes.
typedef struct McastRouter {
    PortBitmap fixed;
    PortBitmap learned;
    PortBitmap forbidden;
} McastRouter;

// State and counters of a protocol, IGMP or MLD. 68 bytes.
typedef struct McastInfo {
    uint32_t enable;
    uint32_t suppression;
    uint32_t version;
    uint32_t lookup_mode;
    uint32_t unknown_action;
    uint32_t received;
    uint32_t valid;
    uint32_t invalid;
    uint32_t other;
    uint32_t leaves_received, reports_received;
    uint32_t general_queries_received, special_queries_received;
    uint32_t leaves_sent, reports_sent;
    uint32_t general_queries_sent, special_queries_sent;
} McastInfo;

// What a port counted. 16 bytes.
typedef struct McastPortStatistics {
    uint32_t queries;
    uint32_t reports;
    uint32_t leaves;
    uint32_t dropped;
} McastPortStatistics;

// IGMP snooping, and the suppression of reports that a router has already: 0 off, 1 on.
int mcast_igmp_enable_set(uint32_t enable);
int mcast_igmp_suppre_enable_set(uint32_t enable);
int mcast_igmp_suppre_enable_get(uint32_t* enable);

// How packets find their group: 0 by MAC address, 1 by IP address.
int mcast_igmp_lookupMode_set(uint32_t mode);
int mcast_igmp_lookupMode_get(uint32_t* mode);

// State and counters, of the protocol and of a port.
int mcast_igmp_info_get(McastInfo* info);
int mcast_igmp_statistics_clear(void);
int mcast_igmp_portStat_get(uint32_t port, McastPortStatistics* statistics);
int mcast_igmp_portStat_clear(uint32_t port);

// Snooping in a VLAN: its settings; the VLAN comes, goes; the VLANs with snooping.
int mcast_vlan_set(uint32_t vlan, const McastSnooping* entry);
int mcast_vlan_get(uint32_t vlan, McastSnooping* entry);
int mcast_vlan_add(uint32_t vlan);
int mcast_vlan_del(uint32_t vlan);
int mcast_vlanMskConfig_get(VlanMask* vlans);

// Packets of a group that nobody asked for: 0 flood, 1 drop, 2 to the router ports.
int mcast_igmp_unknMcastAction_set(uint32_t action);

// Querier of a VLAN.
int mcast_igmp_querier_set(uint32_t vlan, const McastQuerier* querier);
int mcast_igmp_querier_get(uint32_t vlan, McastQuerier* querier);

// Protocol version: 2 or 3.
int mcast_igmp_operVersion_set(uint32_t version);

// Groups that a port may join, and what becomes of one too many: 0 refused, 1 in place of another.
int mcast_portGroup_limit_set(uint32_t port, uint32_t groups);
int mcast_portGroup_excessAct_set(uint32_t port, uint32_t action);

// Router ports of a VLAN: configured ones, those that may never be one, and all three sets.
int mcast_router_static_port_set(uint32_t vlan, const PortBitmap* ports);
int mcast_router_forbid_port_set(uint32_t vlan, const PortBitmap* ports);
int mcast_router_forbid_port_get(uint32_t vlan, PortBitmap* ports);
int mcast_router_get(uint32_t vlan, McastRouter* router);

// A static group, for any source and for one source. Both make request 1681: the source tells them
// apart.
int mcast_basic_static_groupEntry_set(const McastGroup* entry);
int mcast_igmpv3_static_groupEntry_set(const McastGroup* entry);

// Sources of a static group on a port.
int mcast_igmpv3_static_filter_group_set(const McastSourceFilter* filter);

// Removes all static groups; all groups that are of a type: 0 learned, 1 static, 2 both; all
// groups.
int mcast_static_group_clear(void);
int mcast_igmp_group_del_byType(uint32_t type);
int mcast_table_clear(void);

// Static multicast MAC addresses, by their place from 0; their number; removal of all; the ports of
// the one whose VLAN and address `entry` holds.
int mcast_static_mac_set(uint32_t index, const McastMac* entry);
int mcast_static_mac_get(uint32_t index, McastMac* entry);
int mcast_igmp_staticMacNum_get(uint32_t* entries);
int mcast_static_mac_clear(void);
int mcast_mac_portmask_get(McastMac* entry);

// A range of groups, at the index that it carries, and the range that filters a port; 0 is none.
int mcast_profile_set(const McastProfile* profile);
int mcast_port_filter_set(uint32_t port, uint32_t profile);

// Sizes: room of the table; entries of all kinds, of IGMP, and of those found by address alone.
int sys_mcast_entryNum_ret(uint32_t* entries);
int mcast_databaseSize_get(uint32_t* entries);
int mcast_igmp_databaseSize_get(uint32_t* entries);
int mcast_dipOnly_databaseSize_get(uint32_t* entries);

// Groups by their place from 0: every entry, and only the first entry of each group.
int mcast_database_get(uint32_t index, McastGroup* entry);
int mcast_igmp_groupHead_database_get(uint32_t index, McastGroup* entry);

#ifdef __cplusplus
}
#endif
