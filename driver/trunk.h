// Link aggregation in the chip. Groups (trunks) are numbered from 0.
// Commands from 4352 on.
#pragma once

#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

// Members of a static group, and its end.
int rsd_trunk_staticGroup_set(uint32_t group, const PortBitmap* members);
int rsd_trunk_staticGroup_del(uint32_t group);

// Members of a group that the control protocol leads, and its end.
int rsd_trunk_lacpGroup_set(uint32_t group, const PortBitmap* members);
int rsd_trunk_lacpGroup_del(uint32_t group);

// What picks the member that carries a packet: 0 MAC addresses, 1 MAC and IP addresses.
int rsd_trunk_hashAlgo_set(uint32_t algorithm);

// Kind of a group: 0 none, 1 static, 2 by the control protocol.
int rsd_trunk_mode_get(uint32_t group, uint32_t* mode);

// Members of a group that carry packets now.
int rsd_trunk_activeMember_get(uint32_t group, PortBitmap* members);

// Part of a logical port in aggregation: 0 none; the driver's codes for member and group ports.
int rsd_trunk_portRole_get(uint32_t port, uint32_t* role);

// Group that a logical port is a member of.
int rsd_trunk_memberPortTrunkId_get(uint32_t port, uint32_t* group);

#ifdef __cplusplus
}
#endif
