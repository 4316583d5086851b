// Platform library: the Link Layer Discovery Protocol - its timers, and the neighbours that it has
// found.
//
// Every call returns 0 or a platform code; a failing one changes nothing and leaves its output
// unchanged.
#pragma once

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// Whether LLDP runs: 0 or 1.
int sal_lldp_enable_get(uint32_t* enable);
int sal_lldp_enable_set(uint32_t enable);

// Seconds between two advertisements: 5 to 32767. Refused where the transmit delay would exceed a
// quarter of it or the time to live (interval times multiplier) 65535 seconds.
int sal_lldp_tx_interval_get(uint32_t* seconds);
int sal_lldp_tx_interval_set(uint32_t seconds);

// The multiplier that makes the time to live of the interval: 2 to 10, within the same limit.
int sal_lldp_holdtime_get(uint8_t* multiplier);
int sal_lldp_holdtime_set(uint8_t multiplier);

// Seconds that a port waits before it starts again: 1 to 10.
int sal_lldp_reinit_delay_get(uint8_t* seconds);
int sal_lldp_reinit_delay_set(uint8_t seconds);

// Least seconds between two advertisements because of changes: 1 to 8192, and no more than a
// quarter of the interval.
int sal_lldp_tx_delay_get(uint16_t* seconds);
int sal_lldp_tx_delay_set(uint16_t seconds);

// What becomes of other switches' advertisements while LLDP is off: 0 dropped, 1 sent on in their
// VLAN, 2 sent on to every port.
int sal_lldp_disableAction_set(uint32_t action);

// A neighbour. Texts are NUL-terminated, but for one that fills its place to the end; they are as
// the neighbour sent them, so any byte may be in them.
typedef struct LldpNeighbour {
    uint32_t index;
    uint32_t local_port; // zero-based logical port behind which it is
    uint8_t chassis_id_kind;
    uint8_t port_id_kind;
    char chassis_id_subtype[38];
    char chassis_id[260]; // empty: no neighbour in this place
    char port_id_subtype[32];
    char port_id[515];
    char system_name[1183];
    uint16_t max_frame_size; // bytes
    uint8_t auto_negotiation_kind;
    uint8_t auto_negotiation_supported;
    uint8_t auto_negotiation_enabled;
    uint8_t reserved[3];
    char advertised_capabilities[514];
    char operational_mau_type[800];
    uint16_t ttl; // seconds
    uint16_t reserved_at_end;
} LldpNeighbour;

static_assert(offsetof(LldpNeighbour, local_port) == 4, "platform record");
static_assert(offsetof(LldpNeighbour, chassis_id_subtype) == 10, "platform record");
static_assert(offsetof(LldpNeighbour, chassis_id) == 48, "platform record");
static_assert(offsetof(LldpNeighbour, port_id_subtype) == 308, "platform record");
static_assert(offsetof(LldpNeighbour, port_id) == 340, "platform record");
static_assert(offsetof(LldpNeighbour, system_name) == 855, "platform record");
static_assert(offsetof(LldpNeighbour, max_frame_size) == 2038, "platform record");
static_assert(offsetof(LldpNeighbour, auto_negotiation_supported) == 2041, "platform record");
static_assert(offsetof(LldpNeighbour, auto_negotiation_enabled) == 2042, "platform record");
static_assert(offsetof(LldpNeighbour, advertised_capabilities) == 2046, "platform record");
static_assert(offsetof(LldpNeighbour, operational_mau_type) == 2560, "platform record");
static_assert(offsetof(LldpNeighbour, ttl) == 3360, "platform record");
static_assert(sizeof(LldpNeighbour) == 3364, "platform record");

enum { LLDP_PORT_NEIGHBOURS = 6 };

// Neighbour `index` (0 to LLDP_PORT_NEIGHBOURS - 1) of a physical port, a zero-based logical port
// below the aggregation groups. The record of a free place is left as it is.
int sal_lldp_portRemoteEntryInfo_get(int port, int index, LldpNeighbour* neighbour);

#ifdef __cplusplus
}
#endif
