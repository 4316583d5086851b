// IP source guard: bindings of address, port and VLAN.
// Commands from 1920 on.
#pragma once

#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { ISG_TEXT_SIZE = 128 };

// A binding. 32 bytes.
typedef struct IsgBinding {
    uint32_t port;
    uint32_t vlan;
    uint32_t address; // IPv4, most significant byte first in the number
    uint32_t mask;
    uint32_t kind;    // 0 configured, 1 learned from DHCP
    uint32_t lease_s; // what is left of a learned one
    uint8_t mac[MAC_ADDRESS_SIZE];
    uint8_t reserved[2];
} IsgBinding;

// Where learned bindings are kept over a restart. 260 bytes.
typedef struct IsgDatabase {
    uint32_t kind; // 0 nowhere, 1 flash, 2 TFTP server
    char server[ISG_TEXT_SIZE];
    char file[ISG_TEXT_SIZE];
} IsgDatabase;

// Guard on a port: 0 off, 1 IP address, 2 IP and MAC address.
int isg_port_enable_set(uint32_t port, uint32_t mode);

// Bindings: adds or replaces one, removes one, removes one that DHCP left; by place from 0.
int isg_bindingEntry_set(const IsgBinding* binding);
int isg_bindingEntry_del(const IsgBinding* binding);
int isg_bindingEntryDhcp_del(const IsgBinding* binding);
int isg_bindingEntryByIndex_get(uint32_t index, IsgBinding* binding);

// Bindings that a port may have (0 is no limit) and has; room for all ports together.
int isg_port_maxEntryNum_set(uint32_t port, uint32_t entries);
int isg_port_currentEntryNum_get(uint32_t port, uint32_t* entries);
int isg_bindingMaxEntryNum_get(uint32_t* entries);

// Store of the learned bindings, and how long a change waits to be written, in seconds.
int isg_db_set(const IsgDatabase* database);
int isg_db_timer_set(uint32_t seconds);
int isg_db_timer_get(uint32_t* seconds);

#ifdef __cplusplus
}
#endif
