// VLANs: the configured (admin) and the actual (oper) ones, and the ports in them.
// Commands from 4480 on.
//
// A VLAN id is 1 to 4094. A port's membership has a kind: 0 excluded, 1 forbidden, 2 untagged, 3
// tagged.
#pragma once

#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { CHIP_VLAN_NAME_SIZE = 33 };

// A VLAN. 68 bytes.
typedef struct ChipVlan {
    uint32_t vid;
    uint32_t kind; // 0 default, 1 static, 2 dynamic
    PortBitmap members;
    PortBitmap untagged;
    char name[CHIP_VLAN_NAME_SIZE]; // NUL-terminated
    uint8_t reserved[3];
} ChipVlan;

// The default VLAN.
int rsd_vlan_defaultVid_set(uint32_t vid);
int rsd_vlan_defaultVid_get(uint32_t* vid);

// Configured VLANs: a new one, its end, its contents, 1 when there is one; room for them.
int rsd_vlan_adminEntry_create(uint32_t vid);
int rsd_vlan_adminEntry_destroy(uint32_t vid);
int rsd_vlan_adminEntry_set(uint32_t vid, const ChipVlan* entry);
int rsd_vlan_adminEntry_get(uint32_t vid, ChipVlan* entry);
int rsd_vlan_adminEntryExist_get(uint32_t vid, uint32_t* exists);
int rsd_vlan_adminVlanMaxEntryNum_get(uint32_t* entries);

// Name, NUL-terminated; what exceeds CHIP_VLAN_NAME_SIZE with its terminator is cut.
int rsd_vlan_name_set(uint32_t vid, const char* name);

// Actual VLANs: their number, 1 when there is one, its contents; by place from 0 in order of id.
int rsd_vlan_operEntryNum_get(uint32_t* entries);
int rsd_vlan_operEntryExist_get(uint32_t vid, uint32_t* exists);
int rsd_vlan_operEntry_get(uint32_t vid, ChipVlan* entry);
int rsd_vlan_operEntrySort_get(uint32_t index, ChipVlan* entry);

// Mode of a port: 0 hybrid, 1 access, 2 trunk, 3 tunnel; its part as uplink: 0 no, 1 yes.
int rsd_vlan_portAdminMode_set(uint32_t port, uint32_t mode);
int rsd_vlan_portAdminRoleUplinkEnable_set(uint32_t port, uint32_t enable);

// Frames that a port takes: 0 all, 1 tagged, 2 untagged; those of VLANs that it is not in are
// dropped: 0 no, 1 yes.
int rsd_vlan_portAdminAcceptFrameType_set(uint32_t port, uint32_t type);
int rsd_vlan_portAdminAcceptFrameType_get(uint32_t port, uint32_t* type);
int rsd_vlan_portAdminIgrFilterEnable_set(uint32_t port, uint32_t enable);
int rsd_vlan_portAdminIgrFilterEnable_get(uint32_t port, uint32_t* enable);

// VLAN of a port's untagged frames, as configured and as it is.
int rsd_vlan_portAdminPvid_set(uint32_t port, uint32_t vid);
int rsd_vlan_portAdminPvid_get(uint32_t port, uint32_t* vid);
int rsd_vlan_portOperPvid_get(uint32_t port, uint32_t* vid);

// VLANs of a port by kind of membership: some added, some removed, all read.
int rsd_vlan_portAdminVlanmask_add(uint32_t port, uint32_t kind, const VlanMask* vlans);
int rsd_vlan_portAdminVlanmask_del(uint32_t port, uint32_t kind, const VlanMask* vlans);
int rsd_vlan_portAdminVlanmask_get(uint32_t port, uint32_t kind, VlanMask* vlans);

// A port in a VLAN, as configured and as it is: 1 for a member, and the kind of membership.
int rsd_vlan_portAdminVlanMember_get(uint32_t port, uint32_t vid, uint32_t* member);
int rsd_vlan_portAdminVlanMembership_get(uint32_t port, uint32_t vid, uint32_t* kind);
int rsd_vlan_portOperVlanMember_get(uint32_t port, uint32_t vid, uint32_t* member);
int rsd_vlan_portOperVlanMembership_get(uint32_t port, uint32_t vid, uint32_t* kind);

// VLANs that a trunk port carries.
int rsd_vlan_portTrunkAllowedVlan_set(uint32_t port, const VlanMask* vlans);

// Tag protocol id of tunnels, 0x0000 to 0xFFFF: of the switch and of a port.
int rsd_vlan_dot1qTunnelTpid_set(uint32_t tpid);
int rsd_vlan_dot1qTunnelTpid_get(uint32_t* tpid);
int rsd_vlan_portDot1qTunnelTpid_set(uint32_t port, uint32_t tpid);
int rsd_vlan_portDot1qTunnelTpid_get(uint32_t port, uint32_t* tpid);

// VLANs with a part of their own: management, guests, voice; 0 is none.
int rsd_vlan_mgmtVid_set(uint32_t vid);
int rsd_vlan_guestVid_set(uint32_t vid);
int rsd_vlan_guestVid_get(uint32_t* vid);
int rsd_vlan_voiceVid_set(uint32_t vid);

// 1 while a port is in the voice VLAN.
int rsd_vlan_portVoiceVlanActive_get(uint32_t port, uint32_t* active);

// VLANs deleted since start, and uptime when a VLAN came, in hundredths of a second.
int rsd_vlan_mibDot1qVlanNumDeletes_get(uint32_t* vlans);
int rsd_vlan_mibDot1qVlanCreationTime_get(uint32_t vid, uint32_t* hundredths);

#ifdef __cplusplus
}
#endif
