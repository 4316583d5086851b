// Link aggregation control protocol.
// Commands from 2176 on.
#pragma once

#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

// What the protocol knows: of an aggregation group its spare members, of a port its machine.
// 44 bytes.
typedef struct LacpState {
    PortBitmap spare_members;
    uint32_t selected;    // 0 unselected, 1 standby, 2 selected
    uint32_t actor_state; // bits of the protocol's state octet
    uint32_t partner_state;
    uint32_t partner_key;
    uint32_t partner_port;
    uint32_t partner_priority;
    uint8_t partner_mac[MAC_ADDRESS_SIZE];
    uint8_t reserved[2];
} LacpState;

// Messages of a port. 20 bytes.
typedef struct LacpCounters {
    uint32_t received;
    uint32_t sent;
    uint32_t marker_received;
    uint32_t marker_sent;
    uint32_t errors;
} LacpCounters;

// The protocol as a whole: 0 off, 1 on.
int lacp_enable_set(uint32_t enable);
int lacp_enable_get(uint32_t* enable);

// Priority of the switch, 1 to 65535; the smaller number wins.
int lacp_system_priority_set(uint32_t priority);
int lacp_system_priority_get(uint32_t* priority);

// Candidates of an aggregation group (from 0); the end of the group.
int lacp_group_set(uint32_t group, const PortBitmap* members);
int lacp_group_del(uint32_t group);

// A port as candidate: 0 passive, 1 active; its priority, 1 to 65535; time-out, 0 long, 1 short.
int lacp_portActivity_set(uint32_t port, uint32_t active);
int lacp_portPriority_set(uint32_t port, uint32_t priority);
int lacp_portTimeout_set(uint32_t port, uint32_t timeout);

// Counters of a port.
int lacp_portCounter_reset(uint32_t port);
int lacp_portCounter_get(uint32_t port, LacpCounters* counters);

// Spare members of a group, and the machine of a port. Both make request 2243: the driver fills
// what it can tell from the group in one case and from the port in the other.
int lacp_backupMember_get(uint32_t group, LacpState* state);
int lacp_port_state_get(uint32_t port, LacpState* state);

#ifdef __cplusplus
}
#endif
