// The chip's multicast entries, walked from first to last.
// Commands from 1792 on.
//
// _getNext takes the entry last handed out and replaces it by the one after it.
#pragma once

#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

// Forwarding by multicast MAC address. 28 bytes.
typedef struct L2McastEntry {
    uint32_t place; // in the chip's table
    uint32_t vlan;
    uint8_t mac[MAC_ADDRESS_SIZE];
    uint8_t reserved[2];
    PortBitmap ports;
} L2McastEntry;

// Forwarding by IPv4 group; addresses have their most significant byte first in the number.
// 28 bytes.
typedef struct IpMcastEntry {
    uint32_t place; // in the chip's table
    uint32_t vlan;
    uint32_t group;
    uint32_t source; // 0: any
    PortBitmap ports;
} IpMcastEntry;

// Entries by MAC address.
int rsd_l2McastEntry_getFirst(L2McastEntry* entry);
int rsd_l2McastEntry_getNext(L2McastEntry* entry);

// Entries by IPv4 group.
int rsd_ipMcastEntry_getFirst(IpMcastEntry* entry);
int rsd_ipMcastEntry_getNext(IpMcastEntry* entry);

#ifdef __cplusplus
}
#endif
