// Platform library: the VLAN table and the ports' membership in it.
//
// `port` is a zero-based logical port, a VLAN id is 1 to 4094. Calls return 0 or a platform code; a
// failing one changes neither the switch nor its outputs. Calls whose name ends in _ret return the
// value itself and cannot fail.
#pragma once

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

// How a port belongs to a VLAN.
enum { VLAN_NOT_MEMBER = 0, VLAN_TAGGED = 2, VLAN_UNTAGGED = 3 };

enum {
    VLAN_FIRST = 1,
    VLAN_LAST = 4094,
    VLAN_COUNT = 4096, // bits of a VLAN mask
    VLAN_NAME_SIZE = 33,
    VLAN_TEXT_SIZE = 12914, // the longest list as text, pairs with gaps, with its terminator
};

// One VLAN, 72 bytes.
typedef struct VlanEntry {
    PortBitmap members;  // tagged and untagged
    PortBitmap untagged; // part of members
    PortBitmap forbidden;
    char name[VLAN_NAME_SIZE]; // NUL-terminated
    uint8_t reserved[3];
} VlanEntry;

static_assert(sizeof(VlanEntry) == 72 && offsetof(VlanEntry, members) == 0, "platform record");

// The VLAN that untagged frames of a port go to. It must exist.
int sal_vlan_portAdminPvid_get(int port, uint32_t* vid);
int sal_vlan_portAdminPvid_set(int port, int vid);

// The VLANs to which a port belongs in that way (VLAN_TAGGED or VLAN_UNTAGGED).
int sal_vlan_portAdminVlanmask_get(int port, int kind, VlanMask* vlans);

// Makes `port` a member of every VLAN of the mask in that way; with VLAN_NOT_MEMBER it leaves them.
// Refused as a whole when one of the VLANs does not exist.
int sal_vlan_portAdminVlanmask_add(int port, int kind, const VlanMask* vlans);

// 1 when the VLAN exists.
int sal_vlan_adminEntryExist_ret(int vid);

// The VLANs that exist.
int sal_vlan_adminEntryExist_get(VlanMask* vlans);

// One VLAN by its id; refused when it does not exist.
int sal_vlan_adminEntry_get(int vid, VlanEntry* entry);

// The number of VLANs, and the VLAN at `index` (0 up to that number) in the order of their ids.
int sal_vlan_operEntryNum_get(uint32_t* count);
int sal_vlan_adminEntrySort_get(int index, uint32_t* vid, VlanEntry* entry);

// Creates a VLAN without members. Refused when it exists, when the table is full, or when the name
// is longer than VLAN_NAME_SIZE with its terminator.
int sal_vlan_adminEntry_create(int vid, const char* name);

// Refused for the default VLAN and the management VLAN.
int sal_vlan_adminEntry_destroy(int vid);

// The name a VLAN has by default: `prefix` and the id. The buffer holds VLAN_NAME_SIZE bytes.
int sal_vlan_nameStr_get(int vid, const char* prefix, char* name);

// The VLAN in which the switch itself can be reached.
int sal_vlan_mgmtVid_get(uint32_t* vid);

// A VLAN mask as text, ids joined by "," and runs as first "-" last ("1,10-12"), and back; an empty
// text is the empty mask. The buffer holds VLAN_TEXT_SIZE bytes. A text that is not a list of ids
// from 0 to 4095 is refused.
int sys_util_vlanmask2Str(const VlanMask* vlans, char* text);
int sys_util_str2Vlanmask(const char* text, VlanMask* vlans);

#ifdef __cplusplus
}
#endif
