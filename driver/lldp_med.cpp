// Link layer discovery for media endpoints.
#include "driver/lldp_med.h"

#include "driver/shapes.h"

static_assert(sizeof(LldpMedPolicy) == 24, "the driver's record");
static_assert(sizeof(LldpMedLocation) == 208, "the driver's record");
static_assert(sizeof(LldpMedInventory) == 232, "the driver's record");
static_assert(sizeof(LldpMedEntry) == 472, "the driver's record");

// clang-format off
int lldp_medFastRepeatCount_set(uint32_t messages)                           { return request_set(2561, messages); }
int lldp_medNetworkPolicy_set(const LldpMedPolicy* policy)                   { return request_entry_set(2562, policy); }
int lldp_medNetworkPolicyAuto_set(uint32_t enable)                           { return request_set(2563, enable); }
int lldp_portMedTlvSel_set(uint32_t port, uint32_t tlvs)                     { return request_port_set(2564, port, tlvs); }
int lldp_portMedEnable_set(uint32_t port, uint32_t enable)                   { return request_port_set(2565, port, enable); }
int lldp_portMedNetworkPolicyBind_set(uint32_t port, uint32_t policies)      { return request_port_set(2566, port, policies); }
int lldp_portMedLocation_set(uint32_t port, const LldpMedLocation* location) { return request_port_entry_set(2567, port, location); }
int lldp_medInventory_set(const LldpMedInventory* inventory)                 { return request_entry_set(2568, inventory); }

int lldp_portMedLocalEntryInfo_get(uint32_t port, LldpMedEntry* entry)   { return request_port_entry_get(2625, port, entry); }
int lldp_portMedRemoteEntryInfo_get(uint32_t port, uint32_t index, LldpMedEntry* entry) { return request_index_port_entry_get(2626, index, port, entry); }
int lldp_medNetworkPolicyAuto_get(uint32_t* enable)                      { return request_get(2627, enable); }
int lldp_portMedTlvSel_get(uint32_t port, uint32_t* tlvs)                { return request_port_get(2628, port, tlvs); }
int lldp_portMedEnable_get(uint32_t port, uint32_t* enable)              { return request_port_get(2629, port, enable); }
int lldp_portMedNetworkPolicyBind_get(uint32_t port, uint32_t* policies) { return request_port_get(2630, port, policies); }
int lldp_portMedLocation_get(uint32_t port, LldpMedLocation* location)   { return request_port_entry_get(2631, port, location); }
int lldp_medInventory_get(LldpMedInventory* inventory)                   { return request_entry_get(2632, inventory); }
// clang-format on
