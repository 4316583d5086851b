// Multicast snooping: IGMP, its groups, routers and filters.
#include "driver/mcast.h"

#include "driver/shapes.h"

static_assert(sizeof(McastSnooping) == 32, "the driver's record");
static_assert(sizeof(McastQuerier) == 16, "the driver's record");
static_assert(sizeof(McastGroup) == 32, "the driver's record");
static_assert(sizeof(McastSourceFilter) == 148, "the driver's record");
static_assert(sizeof(McastMac) == 24, "the driver's record");
static_assert(sizeof(McastProfile) == 16, "the driver's record");
static_assert(sizeof(McastRouter) == 36, "the driver's record");
static_assert(sizeof(McastInfo) == 68, "the driver's record");
static_assert(sizeof(McastPortStatistics) == 16, "the driver's record");

// clang-format off
int mcast_igmp_enable_set(uint32_t enable)                                { return request_set(1665, enable); }
int mcast_igmp_suppre_enable_set(uint32_t enable)                         { return request_set(1666, enable); }
int mcast_igmp_lookupMode_set(uint32_t mode)                              { return request_set(1667, mode); }
int mcast_igmp_statistics_clear()                                         { return request_clear(1668); }
int mcast_igmp_portStat_clear(uint32_t port)                              { return request_port_clear(1669, port); }
int mcast_vlan_set(uint32_t vlan, const McastSnooping* entry)             { return request_vlan_entry_set(1670, vlan, entry); }
int mcast_vlan_del(uint32_t vlan)                                         { return request_vlan_clear(1671, vlan); }
int mcast_vlan_add(uint32_t vlan)                                         { return request_vlan_clear(1672, vlan); }
int mcast_table_clear()                                                   { return request_clear(1673); }
int mcast_igmp_unknMcastAction_set(uint32_t action)                       { return request_set(1674, action); }
int mcast_igmp_querier_set(uint32_t vlan, const McastQuerier* querier)    { return request_vlan_entry_set(1675, vlan, querier); }
int mcast_igmp_operVersion_set(uint32_t version)                          { return request_set(1676, version); }
int mcast_portGroup_limit_set(uint32_t port, uint32_t groups)             { return request_port_set(1677, port, groups); }
int mcast_portGroup_excessAct_set(uint32_t port, uint32_t action)         { return request_port_set(1678, port, action); }
int mcast_router_static_port_set(uint32_t vlan, const PortBitmap* ports)  { return request_vlan_entry_set(1679, vlan, ports); }
int mcast_router_forbid_port_set(uint32_t vlan, const PortBitmap* ports)  { return request_vlan_entry_set(1680, vlan, ports); }
int mcast_basic_static_groupEntry_set(const McastGroup* entry)            { return request_entry_set(1681, entry); }
int mcast_igmpv3_static_groupEntry_set(const McastGroup* entry)           { return request_entry_set(1681, entry); }
int mcast_static_mac_set(uint32_t index, const McastMac* entry)           { return request_index_entry_set(1682, index, entry); }
int mcast_igmpv3_static_filter_group_set(const McastSourceFilter* filter) { return request_entry_set(1683, filter); }
int mcast_static_group_clear()                                            { return request_clear(1684); }
int mcast_static_mac_clear()                                              { return request_clear(1685); }
int mcast_profile_set(const McastProfile* profile)                        { return request_entry_set(1686, profile); }
int mcast_port_filter_set(uint32_t port, uint32_t profile)                { return request_port_set(1687, port, profile); }
int mcast_igmp_group_del_byType(uint32_t type)                            { return request_set(1688, type); }

int sys_mcast_entryNum_ret(uint32_t* entries)                               { return request_get(1729, entries); }
int mcast_igmp_suppre_enable_get(uint32_t* enable)                          { return request_get(1730, enable); }
int mcast_igmp_info_get(McastInfo* info)                                    { return request_entry_get(1732, info); }
int mcast_igmp_portStat_get(uint32_t port, McastPortStatistics* statistics) { return request_port_entry_get(1733, port, statistics); }
int mcast_igmp_lookupMode_get(uint32_t* mode)                               { return request_get(1734, mode); }
int mcast_databaseSize_get(uint32_t* entries)                               { return request_get(1735, entries); }
int mcast_igmp_databaseSize_get(uint32_t* entries)                          { return request_get(1736, entries); }
int mcast_igmp_staticMacNum_get(uint32_t* entries)                          { return request_get(1737, entries); }
int mcast_dipOnly_databaseSize_get(uint32_t* entries)                       { return request_get(1738, entries); }
int mcast_database_get(uint32_t index, McastGroup* entry)                   { return request_index_entry_get(1739, index, entry); }
int mcast_vlan_get(uint32_t vlan, McastSnooping* entry)                     { return request_vlan_entry_get(1740, vlan, entry); }
int mcast_vlanMskConfig_get(VlanMask* vlans)                                { return request_entry_get(1741, vlans); }
int mcast_router_get(uint32_t vlan, McastRouter* router)                    { return request_vlan_entry_get(1742, vlan, router); }
int mcast_igmp_groupHead_database_get(uint32_t index, McastGroup* entry)    { return request_index_entry_get(1743, index, entry); }
int mcast_router_forbid_port_get(uint32_t vlan, PortBitmap* ports)          { return request_vlan_entry_get(1744, vlan, ports); }
int mcast_igmp_querier_get(uint32_t vlan, McastQuerier* querier)            { return request_vlan_entry_get(1745, vlan, querier); }
int mcast_static_mac_get(uint32_t index, McastMac* entry)                   { return request_index_entry_get(1746, index, entry); }
int mcast_mac_portmask_get(McastMac* entry)                                 { return request_entry_find(1747, entry); }
// clang-format on
