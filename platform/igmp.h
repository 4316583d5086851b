// Platform library: IGMP snooping, of the switch as a whole and by VLAN.
//
// Calls return 0 or a platform code; a failing one changes neither the switch nor its output.
#pragma once

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum { MCAST_FAMILY_IPV4 = 0 };

// How groups are looked up: by group and VLAN, the only way in which IGMPv3 can run, or by MAC
// address.
enum { IGMP_LOOKUP_BY_GROUP = 0, IGMP_LOOKUP_BY_MAC = 1 };

// Snooping as it runs. The library fills no more than these 64 bytes.
typedef struct IgmpInfo {
    uint8_t reserved_0[12];
    uint32_t version; // the operating version: 2 or 3
    uint8_t reserved_16[48];
} IgmpInfo;

static_assert(offsetof(IgmpInfo, version) == 12, "platform record");
static_assert(sizeof(IgmpInfo) == 64, "room for the library's record");

// Snooping on one VLAN, 96 bytes.
typedef struct McastVlan {
    uint32_t vid;        // in
    uint32_t family;     // in; MCAST_FAMILY_IPV4
    uint32_t enable;     // snooping: 0 or 1
    uint32_t fast_leave; // a port leaves a group at once: 0 or 1
    uint8_t reserved_16[80];
} McastVlan;

static_assert(offsetof(McastVlan, vid) == 0, "platform record");
static_assert(offsetof(McastVlan, family) == 4, "platform record");
static_assert(offsetof(McastVlan, enable) == 8, "platform record");
static_assert(offsetof(McastVlan, fast_leave) == 12, "platform record");
static_assert(sizeof(McastVlan) == 96, "platform record");

// Snooping on the switch: 0 off, 1 on.
int sal_igmp_enable_get(uint32_t* enable);
int sal_igmp_enable_set(int enable);

int sal_igmp_info_get(IgmpInfo* info);

// IGMP_LOOKUP_...
int sal_igmp_lookupMode_get(uint32_t* mode);

// 2 or 3. IGMPv3 is refused while groups are looked up by MAC address.
int sal_igmp_operVersion_set(int version);

// The settings of VLAN record->vid, which must exist: _get fills in the rest of the record, _set
// stores it.
int sal_mcast_vlan_get(McastVlan* record);
int sal_mcast_vlan_set(const McastVlan* record);

#ifdef __cplusplus
}
#endif
