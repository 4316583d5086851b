// Link layer discovery.
#include "driver/lldp.h"

#include "driver/shapes.h"

static_assert(sizeof(LldpLocalEntry) == 1304, "the driver's record");
static_assert(sizeof(LldpRemoteEntry) == 1312, "the driver's record");
static_assert(sizeof(LldpVlanNameTlv) == 40, "the driver's record");
static_assert(sizeof(LldpOverload) == 12, "the driver's record");
static_assert(sizeof(LldpStatistics) == 28, "the driver's record");
static_assert(sizeof(LldpPortEntry) == 16, "the driver's record");

// clang-format off
int lldp_enable_set(uint32_t enable)                               { return request_set(2433, enable); }
int lldp_port_set(uint32_t port, uint32_t mode)                    { return request_port_set(2434, port, mode); }
int lldp_holdtime_set(uint32_t multiple)                           { return request_set(2435, multiple); }
int lldp_tx_interval_set(uint32_t seconds)                         { return request_set(2436, seconds); }
int lldp_reinit_delay_set(uint32_t seconds)                        { return request_set(2437, seconds); }
int lldp_statistics_clear()                                        { return request_clear(2438); }
int lldp_disableAction_set(uint32_t action)                        { return request_set(2439, action); }
int lldp_portTlvSel_set(uint32_t port, uint32_t tlvs)              { return request_port_set(2440, port, tlvs); }
int lldp_portTlvPvidEnable_set(uint32_t port, uint32_t enable)     { return request_port_set(2441, port, enable); }
int lldp_portTlvVlanmask_set(uint32_t port, const VlanMask* vlans) { return request_port_entry_set(2442, port, vlans); }
int lldp_tx_delay_set(uint32_t seconds)                            { return request_set(2443, seconds); }
int lldp_portRemoteEntry_clear(uint32_t port)                      { return request_port_clear(2444, port); }

int lldp_enable_get(uint32_t* enable)                                 { return request_get(2497, enable); }
int lldp_port_get(uint32_t port, uint32_t* mode)                      { return request_port_get(2498, port, mode); }
int lldp_portLocalEntryInfo_get(uint32_t port, LldpLocalEntry* entry) { return request_port_entry_get(2499, port, entry); }
int lldp_portRemoteEntryInfo_get(uint32_t port, uint32_t index, LldpRemoteEntry* entry) { return request_index_port_entry_get(2500, index, port, entry); }
int lldp_portRemoteVlanNameTlv_get(uint32_t port, uint32_t index, LldpVlanNameTlv* tlv) { return request_index_port_entry_get(2501, index, port, tlv); }
int lldp_portTlvOverload_get(uint32_t port, LldpOverload* overload)   { return request_port_entry_get(2502, port, overload); }
int lldp_statistic_get(uint32_t port, LldpStatistics* statistics)     { return request_port_entry_get(2503, port, statistics); }
int lldp_portEntry_get(uint32_t port, LldpPortEntry* entry)           { return request_port_entry_get(2504, port, entry); }
int lldp_portTlvPvidEnable_get(uint32_t port, uint32_t* enable)       { return request_port_get(2505, port, enable); }
int lldp_portTlvVlanmask_get(uint32_t port, VlanMask* vlans)          { return request_port_entry_get(2506, port, vlans); }
int lldp_tx_delay_get(uint32_t* seconds)                              { return request_get(2507, seconds); }
int lldp_remoteTableChangeTime_get(uint32_t* hundredths)              { return request_get(2510, hundredths); }
// clang-format on
