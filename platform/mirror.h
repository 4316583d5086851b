// Platform library: port mirroring. A mirror group copies what its source ports receive (rx) and
// send (tx) to its target port.
//
// `group` is 0 to MIRROR_GROUPS - 1, a port is a zero-based logical port below the aggregation
// groups. Every call returns 0 or a platform code; a failing one changes nothing and leaves its
// outputs unchanged.
#pragma once

#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { MIRROR_GROUPS = 4 };

// The port to which a group copies, and whether the group is on: 0 or 1. The target of a group
// that is off is 0.
int sal_mirror_group_targetPort_get(int group, int* target, uint32_t* state);

// Gives a group its target and switches it on (`state` 1) or off (0). Refused for the target of
// another group and for a member of an aggregation group. A port that becomes the target is no
// source of the group any longer.
int sal_mirror_group_targetPort_set(int group, int target, int state);

// Whether the group is on: 0 or 1.
int sal_mirror_group_state_get(int group, uint32_t* state);

// Whether the target port takes ordinary traffic beside the copies: 0 or 1. _set is refused while
// the group is off.
int sal_mirror_group_igrState_get(int group, uint32_t* ingress);
int sal_mirror_group_igrState_set(int group, int ingress);

// The source ports, also of a group that is off. _set is refused when one of them is the target or
// no port below the aggregation groups.
int sal_mirror_group_sourcePort_get(int group, PortBitmap* rx, PortBitmap* tx);
int sal_mirror_group_sourcePort_set(int group, PortBitmap rx, PortBitmap tx);

// Takes a group out of the chip: it is off, without target and ordinary traffic at it. Its source
// ports are kept until others are set.
int sal_mirror_group_del(int group);

#ifdef __cplusplus
}
#endif
