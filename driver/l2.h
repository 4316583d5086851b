// Layer-2 table: MAC addresses.
// Commands from 2048 on.
#pragma once

#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

// A MAC address in the table. 36 bytes.
typedef struct L2MacEntry {
    uint32_t place; // in the chip's table
    uint32_t vlan;
    uint8_t mac[MAC_ADDRESS_SIZE];
    uint8_t reserved[2];
    uint32_t kind; // 0 learned, 1 static, 2 secure
    uint32_t age_s;
    PortBitmap ports;
} L2MacEntry;

enum { L2_BATCH_SIZE = 32 };

// Several entries at once. 1156 bytes.
typedef struct L2MacBatch {
    uint32_t count; // entries filled
    L2MacEntry entries[L2_BATCH_SIZE];
} L2MacBatch;

// Forgets the addresses, but for those of port security: all, and those of a port (the number is
// the driver's to judge).
int rsd_l2_macEntry_clear(void);
int rsd_l2_macEntry_clear_byPort(uint32_t port);

// Adds and removes a static address.
int rsd_l2_macEntry_add(const L2MacEntry* entry);
int rsd_l2_macEntry_del(const L2MacEntry* entry);

// Adds and removes an address that port security vouches for.
int rsd_l2_secure_macEntry_add(const L2MacEntry* entry);
int rsd_l2_secure_macEntry_del(const L2MacEntry* entry);

// Ports to which packets with an unknown address go; kind 0 unicast, 1 multicast.
int rsd_l2_lookupMissFloodPortMask_set(uint32_t kind, const PortBitmap* ports);

// Time until an unused address is forgotten, in seconds; 0 is never.
int rsd_l2_aging_set(uint32_t seconds);
int rsd_l2_aging_get(uint32_t* seconds);

// Takes a snapshot of the table for the reads below, and tells the number of its entries.
int rsd_l2_macTbl_generate(uint32_t* entries);

// Number of entries in the table now.
int rsd_l2_macTbl_size_get(uint32_t* entries);

// The entry whose VLAN and address `entry` holds.
int rsd_l2_macEntry_search(L2MacEntry* entry);
int rsd_l2_secure_macEntry_search(L2MacEntry* entry);

// Entries by their place in the snapshot, from 0: one, and as many as a batch holds.
int rsd_l2_macEntry_get(uint32_t index, L2MacEntry* entry);
int rsd_l2_secure_macEntry_get(uint32_t index, L2MacEntry* entry);
int rsd_l2_macEntry_batch_get(uint32_t first, L2MacBatch* batch);

// Room of the table: in all, and for static entries; ports that have learning turned off.
int rsd_l2_maxEntryNum_get(uint32_t* entries);
int rsd_l2_userMaxEntryNum_get(uint32_t* entries);
int rsd_l2_disableLearningNum_get(uint32_t* ports);

#ifdef __cplusplus
}
#endif
