// Platform library: the types that several families share.
#pragma once

#include <stdint.h>

enum {
    SYS_ERR_OK = 0,
    MAC_ADDRESS_SIZE = 6,
    PORT_BITMAP_WORDS = 3, // room for 96 logical ports
    VLAN_MASK_WORDS = 128, // room for VLAN ids 0 to 4095
};

// A set of logical ports: port p (zero-based) is bit p % 32 of words[p / 32].
typedef struct PortBitmap {
    uint32_t words[PORT_BITMAP_WORDS];
} PortBitmap;

// A set of VLANs: VLAN v is bit v % 32 of words[v / 32].
typedef struct VlanMask {
    uint32_t words[VLAN_MASK_WORDS];
} VlanMask;
