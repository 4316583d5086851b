// Voice VLAN: telephones recognised by their address prefix.
#include "driver/voice_vlan.h"

#include "driver/shapes.h"

static_assert(sizeof(VoiceVlanPrefix) == 48, "the driver's record");

// clang-format off
int voice_vlan_state_set(uint32_t state)                       { return request_set(4609, state); }
int voice_vlan_port_enable_set(uint32_t port, uint32_t enable) { return request_port_set(4610, port, enable); }
int voice_vlan_port_mode_set(uint32_t port, uint32_t mode)     { return request_port_set(4611, port, mode); }
int voice_vlan_cos_mode_set(uint32_t mode)                     { return request_set(4612, mode); }
int voice_vlan_1pRemark_enable_set(uint32_t enable)            { return request_set(4613, enable); }
int voice_vlan_qos_set(uint32_t cos)                           { return request_set(4614, cos); }
int voice_vlan_aging_set(uint32_t minutes)                     { return request_set(4615, minutes); }
int voice_vlan_oui_set(const VoiceVlanPrefix* oui)             { return request_entry_set(4617, oui); }

int voice_vlan_state_get(uint32_t* state)                       { return request_get(4673, state); }
int voice_vlan_port_enable_get(uint32_t port, uint32_t* enable) { return request_port_get(4674, port, enable); }
int voice_vlan_port_mode_get(uint32_t port, uint32_t* mode)     { return request_port_get(4675, port, mode); }
int voice_vlan_cos_mode_get(uint32_t* mode)                     { return request_get(4676, mode); }
int voice_vlan_qos_get(uint32_t* cos)                           { return request_get(4678, cos); }
// clang-format on
