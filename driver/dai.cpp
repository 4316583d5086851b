// Dynamic ARP inspection.
#include "driver/dai.h"

#include "driver/shapes.h"

static_assert(sizeof(DaiMib) == 28, "the driver's record");

// clang-format off
int dai_enable_set(uint32_t enable)                         { return request_set(513, enable); }
int dai_vlan_enable_set(uint32_t vlan, uint32_t enable)     { return request_vlan_set(514, vlan, enable); }
int dai_port_trust_set(uint32_t port, uint32_t trusted)     { return request_port_set(515, port, trusted); }
int dai_port_smacChk_set(uint32_t port, uint32_t enable)    { return request_port_set(516, port, enable); }
int dai_port_dmacChk_set(uint32_t port, uint32_t enable)    { return request_port_set(517, port, enable); }
int dai_port_ipChk_set(uint32_t port, uint32_t enable)      { return request_port_set(518, port, enable); }
int dai_port_ipZeroAllow_set(uint32_t port, uint32_t allow) { return request_port_set(519, port, allow); }
int dai_portMib_clear(uint32_t port)                        { return request_port_clear(520, port); }
int dai_vlanMib_clear(uint32_t vlan)                        { return request_vlan_clear(521, vlan); }
int dai_arp_rateLimit_set(uint32_t port, uint32_t packets)  { return request_port_set(522, port, packets); }

int dai_enable_get(uint32_t* enable)                         { return request_get(577, enable); }
int dai_vlan_enable_get(uint32_t vlan, uint32_t* enable)     { return request_vlan_get(578, vlan, enable); }
int dai_port_trust_get(uint32_t port, uint32_t* trusted)     { return request_port_get(579, port, trusted); }
int dai_port_smacChk_get(uint32_t port, uint32_t* enable)    { return request_port_get(580, port, enable); }
int dai_port_dmacChk_get(uint32_t port, uint32_t* enable)    { return request_port_get(581, port, enable); }
int dai_port_ipChk_get(uint32_t port, uint32_t* enable)      { return request_port_get(582, port, enable); }
int dai_port_ipZeroAllow_get(uint32_t port, uint32_t* allow) { return request_port_get(583, port, allow); }
int dai_portMib_get(uint32_t port, DaiMib* mib)              { return request_port_entry_get(584, port, mib); }
int dai_vlanMib_get(uint32_t vlan, DaiMib* mib)              { return request_vlan_entry_get(585, vlan, mib); }
// clang-format on
