// Platform library: link aggregation. A group (trunk) bundles ports into one logical port, either
// statically or led by the control protocol, LACP. Group g is the logical port that is g behind the
// first of the last TRUNK_GROUPS ones.
//
// `group` is 0 to TRUNK_GROUPS - 1; members are logical ports below those of the groups. Calls
// return 0 or a platform code; a failing one changes nothing and leaves its output unchanged.
#pragma once

#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { TRUNK_GROUPS = 8, TRUNK_STATIC_MEMBERS = 8, TRUNK_LACP_MEMBERS = 16 };

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

// The members of a group of either kind.
int sal_trunk_member_get(int group, PortBitmap* members);

// Make a group of a kind from these members, or take the last ones away. Refused for a group that
// is of the other kind, for more members than TRUNK_STATIC_MEMBERS or TRUNK_LACP_MEMBERS, and for a
// port that is in another group, has port security on or is the target of a mirror group.
int sal_trunk_staticMember_set(int group, const PortBitmap* members);
int sal_lacp_member_set(int group, const PortBitmap* members);

// The members of an LACP group that speak first; the others only answer. Refused for ports that are
// no members.
int sal_lacp_activeMode_set(int group, const PortBitmap* active);

// Ends a group of either kind; one without members stays as it is.
int sal_trunk_group_del(int group);

#ifdef __cplusplus
}
#endif
