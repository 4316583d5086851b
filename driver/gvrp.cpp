// Dynamic VLAN registration (GVRP).
#include "driver/gvrp.h"

#include "driver/shapes.h"

static_assert(sizeof(GvrpVlan) == 32, "the driver's record");
static_assert(sizeof(GvrpInfo) == 28, "the driver's record");
static_assert(sizeof(GvrpStatistics) == 48, "the driver's record");
static_assert(sizeof(GvrpErrorStatistics) == 20, "the driver's record");

// clang-format off
int gvrp_enable_set(uint32_t enable)                                        { return request_set(1537, enable); }
int gvrp_port_enable_set(uint32_t port, uint32_t enable)                    { return request_port_set(1538, port, enable); }
int gvrp_port_regmode_set(uint32_t port, uint32_t mode)                     { return request_port_set(1539, port, mode); }
int gvrp_port_forbidVlan_set(uint32_t port, uint32_t vlan, uint32_t forbid) { return request_port_item_set(1540, port, vlan, forbid); }
int gvrp_add_edit_static_vlan(const GvrpVlan* entry)                        { return request_entry_set(1541, entry); }
int gvrp_del_static_vlan(uint32_t vlan)                                     { return request_vlan_clear(1544, vlan); }
int gvrp_vlan_db_set(uint32_t index, const GvrpVlan* entry)                 { return request_index_entry_set(1545, index, entry); }
int gvrp_timer_set(uint32_t timer, uint32_t hundredths)                     { return request_index_set(1546, timer, hundredths); }
int gvrp_statistics_clear(uint32_t port)                                    { return request_port_clear(1547, port); }
int gvrp_error_statistics_clear(uint32_t port)                              { return request_port_clear(1548, port); }

int gvrp_info_get(GvrpInfo* info)                                         { return request_entry_get(1601, info); }
int gvrp_vlan_db_get(uint32_t index, GvrpVlan* entry)                     { return request_index_entry_get(1602, index, entry); }
int gvrp_port_statistics_get(uint32_t port, GvrpStatistics* statistics)   { return request_port_entry_get(1603, port, statistics); }
int gvrp_port_error_statistics_get(uint32_t port, GvrpErrorStatistics* statistics) { return request_port_entry_get(1604, port, statistics); }
int gvrp_vlanMaskExist_get(VlanMask* vlans)                               { return request_entry_get(1605, vlans); }
int gvrp_gidtt_machine_get(uint32_t port, uint32_t vlan, uint32_t* state) { return request_port_item_get(1606, port, vlan, state); }
int gvrp_vlan_db_size_get(uint32_t* entries)                              { return request_get(1607, entries); }
// clang-format on
