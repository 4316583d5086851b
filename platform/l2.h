// Platform library: the MAC address table and the table of static addresses.
//
// Calls return 0 or a platform code; a failing one changes neither the switch nor its outputs.
#pragma once

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

// What an entry's flags word says. In the static table: this place is in use. In the MAC address
// table: the entry is the switch's own doing and was not learned.
enum { MAC_ENTRY_IN_USE = 8, MAC_ENTRY_NOT_LEARNED = 8 };

enum { STATIC_MAC_ENTRIES = 256, MAC_TABLE_ENTRIES = 16384 };

// An address and the ports behind which it is, 32 bytes.
typedef struct MacEntry {
    PortBitmap ports;
    uint8_t mac[MAC_ADDRESS_SIZE];
    uint16_t vlan;
    uint32_t reserved[2];
    uint32_t flags;
} MacEntry;

static_assert(
    sizeof(MacEntry) == 32 && offsetof(MacEntry, ports) == 0 && offsetof(MacEntry, mac) == 12 &&
        offsetof(MacEntry, vlan) == 18 && offsetof(MacEntry, flags) == 28,
    "platform record");

// Takes a snapshot of the MAC address table, which stays as it is, in its order, until the next one
// is taken; both tell its number of entries. An address is in it once for each of its VLANs.
int sal_l2_macTbl_generate(uint32_t* count);
int sal_l2_macTbl_size_get(uint32_t* count);

// Entry `index` of the snapshot, 0 up to its size.
int sal_l2_macEntry_get(uint32_t index, MacEntry* entry);

// Whether the entry's address is a static one in the entry's VLAN (1) or not (0).
int sal_l2_static_macEntry_search(const MacEntry* entry, uint32_t* is_static);

// Place `index` of the static table, 0 to STATIC_MAC_ENTRIES - 1; a place without MAC_ENTRY_IN_USE
// is empty. _del takes the entry with that address and VLAN out.
int sal_l2_static_macEntry_get(uint32_t index, MacEntry* entry);
int sal_l2_static_macEntry_del(const MacEntry* entry);

#ifdef __cplusplus
}
#endif
