// DHCP snooping and the relay agent option (82).
#include "driver/dhcp_snooping.h"

#include "driver/shapes.h"

static_assert(sizeof(DhcpSnoopingMib) == 20, "the driver's record");
static_assert(sizeof(DhcpCircuitId) == 68, "the driver's record");

// clang-format off
int dhcp_snooping_enable_set(uint32_t enable)                           { return request_set(641, enable); }
int dhcp_snooping_vlan_enable_set(uint32_t vlan, uint32_t enable)       { return request_vlan_set(642, vlan, enable); }
int dhcp_snooping_port_trust_set(uint32_t port, uint32_t trusted)       { return request_port_set(643, port, trusted); }
int dhcp_snooping_portChaddrChk_set(uint32_t port, uint32_t enable)     { return request_port_set(644, port, enable); }
int dhcp_option82_enable_set(uint32_t enable)                           { return request_set(645, enable); }
int dhcp_option82_action_set(uint32_t action)                           { return request_set(646, action); }
int dhcp_option82_format_set(uint32_t format)                           { return request_set(647, format); }
int dhcp_option82_remoteID_set(const char* text)                        { return request_text_set<DHCP_OPTION_TEXT_SIZE>(648, text); }
int dhcp_option82_circuitID_set(uint32_t port, const DhcpCircuitId* id) { return request_port_entry_set(649, port, id); }
int dhcp_snooping_portMib_clear(uint32_t port)                          { return request_port_clear(650, port); }
int dhcp_snooping_rateLimit_set(uint32_t port, uint32_t packets)        { return request_port_set(651, port, packets); }

int dhcp_snooping_enable_get(uint32_t* enable)                       { return request_get(705, enable); }
int dhcp_snooping_vlan_enable_get(uint32_t vlan, uint32_t* enable)   { return request_vlan_get(706, vlan, enable); }
int dhcp_snooping_port_trust_get(uint32_t port, uint32_t* trusted)   { return request_port_get(707, port, trusted); }
int dhcp_snooping_portChaddrChk_get(uint32_t port, uint32_t* enable) { return request_port_get(708, port, enable); }
int dhcp_option82_enable_get(uint32_t* enable)                       { return request_get(709, enable); }
int dhcp_option82_action_get(uint32_t* action)                       { return request_get(710, action); }
int dhcp_option82_format_get(uint32_t* format)                       { return request_get(711, format); }
int dhcp_option82_remoteID_get(char* text)                           { return request_text_get<DHCP_OPTION_TEXT_SIZE>(712, text); }
int dhcp_snooping_portMib_get(uint32_t port, DhcpSnoopingMib* mib)   { return request_port_entry_get(713, port, mib); }
// clang-format on
