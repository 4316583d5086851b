// Platform library: link aggregation.
#pragma once

#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { TRUNK_GROUPS = 8 };

// What part a logical port plays in link aggregation.
enum {
    TRUNK_ROLE_NONE = 0,
    TRUNK_ROLE_LACP_MEMBER = 1,
    TRUNK_ROLE_STATIC_MEMBER = 2,
    TRUNK_ROLE_LACP_GROUP = 4,   // the port that stands for an LACP group
    TRUNK_ROLE_STATIC_GROUP = 5, // the port that stands for a static group
};

// TRUNK_ROLE_... of a zero-based logical port; TRUNK_ROLE_NONE for a group without members and for
// a number that is no port. Cannot fail.
int sys_trunk_portRole_ret(int port);

#ifdef __cplusplus
}
#endif
