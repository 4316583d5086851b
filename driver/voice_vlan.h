// Voice VLAN: telephones recognised by their address prefix.
// Commands from 4608 on.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum { VOICE_VLAN_TEXT_SIZE = 33 };

// An address prefix of a maker of telephones. 48 bytes.
typedef struct VoiceVlanPrefix {
    uint32_t index;  // place in the table, from 0
    uint32_t enable; // 0 removes the prefix
    uint8_t oui[3];
    uint8_t reserved[1];
    char description[VOICE_VLAN_TEXT_SIZE]; // NUL-terminated
    uint8_t reserved1[3];
} VoiceVlanPrefix;

// State of the voice VLAN: 0 off, 1 on, 2 by discovery.
int voice_vlan_state_set(uint32_t state);
int voice_vlan_state_get(uint32_t* state);

// A port: 0 off, 1 on; it joins by hand (0) or by itself (1).
int voice_vlan_port_enable_set(uint32_t port, uint32_t enable);
int voice_vlan_port_enable_get(uint32_t port, uint32_t* enable);
int voice_vlan_port_mode_set(uint32_t port, uint32_t mode);
int voice_vlan_port_mode_get(uint32_t port, uint32_t* mode);

// Whose packets get the voice class: 0 those of telephones, 1 all.
int voice_vlan_cos_mode_set(uint32_t mode);
int voice_vlan_cos_mode_get(uint32_t* mode);

// The voice class, 0 to 7, and whether it is written into packets: 0 no, 1 yes.
int voice_vlan_qos_set(uint32_t cos);
int voice_vlan_qos_get(uint32_t* cos);
int voice_vlan_1pRemark_enable_set(uint32_t enable);

// Time until a silent telephone's port leaves, in minutes.
int voice_vlan_aging_set(uint32_t minutes);

// A prefix, at the index that it carries.
int voice_vlan_oui_set(const VoiceVlanPrefix* oui);

#ifdef __cplusplus
}
#endif
