// Platform library: the voice VLAN, which takes the traffic of telephones, known by the vendor part
// (OUI) of their MAC address, into one VLAN with a priority of its own.
//
// Every call returns 0 or a platform code; a failing one changes nothing and leaves its outputs
// unchanged.
#pragma once

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum {
    VOICE_VLAN_OFF = 0,
    VOICE_VLAN_NO_VID = 4095, // the VLAN id while the voice VLAN is off
    VOICE_VLAN_OUIS = 16,
    VOICE_VLAN_DESCRIPTION_SIZE = 33, // bytes, with the terminator
    OUI_SIZE = 3,
};

// Off, or one of the switch's two modes: 1 automatic, by OUI; 2 by the port's own settings.
int sal_vlan_voiceVlanState_set(int mode);
int sal_vlan_voiceVlanState_get(int* mode);

// The voice VLAN's id: 1 to 4094, or VOICE_VLAN_NO_VID. It must be set before the voice VLAN is
// switched on, and can be taken away only once it is off.
int sal_vlan_voiceVid_set(int vid);
int sal_vlan_voiceVid_get(int* vid);

// Whether frames leave with remark_cos as their 802.1p priority: 0 or 1.
int sal_vlan_voiceVlan1pRemarkEnable_set(int enable);
int sal_vlan_voiceVlan1pRemarkEnable_get(int* enable);

// How voice traffic is queued and marked.
typedef struct VoiceVlanQos {
    int32_t queue;      // 0 to 7
    int32_t dscp;       // 0 to 63
    int32_t remark_cos; // 802.1p, 0 to 7
} VoiceVlanQos;

static_assert(offsetof(VoiceVlanQos, remark_cos) == 8, "the third member");

int sal_vlan_voiceVlanQos_set(int queue, int dscp, int remark_cos);
int sal_vlan_voiceVlanQos_get(VoiceVlanQos* qos);

// Minutes after which a port whose telephone is silent leaves the voice VLAN: 30 to 65536.
int sal_vlan_voiceVlanAging_set(int minutes);
int sal_vlan_voiceVlanAging_get(int* minutes);

// Voice VLAN of one zero-based logical port: whether it takes part (0 or 1), and which of its
// frames get the voice priority (0 those of telephones, 1 all).
int sal_vlan_portVoiceVlanEnable_set(int port, int enable);
int sal_vlan_portVoiceVlanEnable_get(int port, int* enable);
int sal_vlan_portVoiceVlancosMode_set(int port, int mode);
int sal_vlan_portVoiceVlancosMode_get(int port, int* mode);

// A vendor of telephones. Set bits of the mask are compared.
typedef struct VoiceVlanOui {
    uint8_t oui[OUI_SIZE];
    uint8_t mask[OUI_SIZE];
    uint8_t reserved[2];
    uint32_t in_use; // 0 marks a free place of the table
} VoiceVlanOui;

static_assert(offsetof(VoiceVlanOui, mask) == 3, "OUI, mask, flag");
static_assert(offsetof(VoiceVlanOui, in_use) == 8, "OUI, mask, flag");
static_assert(sizeof(VoiceVlanOui) == 12, "OUI, mask, flag");

// Place `index` of the table of telephone vendors, 0 to VOICE_VLAN_OUIS - 1. `description` is a
// NUL-terminated text of at most 32 characters; _get fills VOICE_VLAN_DESCRIPTION_SIZE bytes.
// _set frees the place when in_use is 0; _add takes the first free one, and fails without one.
int sal_vlan_voiceVlanOui_get(int index, VoiceVlanOui* entry, char* description);
int sal_vlan_voiceVlanOui_set(int index, const VoiceVlanOui* entry, const char* description);
int sal_vlan_voiceVlanOui_add(const VoiceVlanOui* entry, const char* description);

#ifdef __cplusplus
}
#endif
