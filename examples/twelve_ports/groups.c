// Aggregation groups and mirror groups.
#include <string.h>

#include "board.h"
#include "platform/mirror.h"

struct Group {
    int is_lacp;
    PortBitmap members;
};

struct Mirror {
    int target;
    uint32_t on, ingress;
    PortBitmap rx, tx;
};

static struct Group groups[TRUNK_GROUPS];
static struct Mirror mirrors[MIRROR_GROUPS];

static const PortBitmap no_ports;

static int is_group(int group) { return is_within(group, 0, TRUNK_GROUPS - 1); }
static int is_empty(const PortBitmap* ports) {
    return memcmp(ports, &no_ports, sizeof no_ports) == 0;
}

static int count_of(const PortBitmap* ports) {
    int count = 0;
    for (int port = 0; port < PORT_BITMAP_WORDS * 32; ++port)
        count += has_bit(ports->words, port);
    return count;
}

static int are_physical(const PortBitmap* ports) {
    for (int port = PHYSICAL_PORTS; port < PORT_BITMAP_WORDS * 32; ++port)
        if (has_bit(ports->words, port))
            return 0;
    return 1;
}

// --- Aggregation.

// The group in which a physical port is; -1 for none.
static int group_of(int port) {
    for (int group = 0; group < TRUNK_GROUPS; ++group)
        if (has_bit(groups[group].members.words, port))
            return group;
    return -1;
}

static int role_of(int port) {
    int group = is_physical(port) ? group_of(port) : port - PHYSICAL_PORTS;
    if (group < 0 || is_empty(&groups[group].members))
        return TRUNK_ROLE_NONE;
    if (is_physical(port))
        return groups[group].is_lacp ? TRUNK_ROLE_LACP_MEMBER : TRUNK_ROLE_STATIC_MEMBER;
    return groups[group].is_lacp ? TRUNK_ROLE_LACP_GROUP : TRUNK_ROLE_STATIC_GROUP;
}

int sys_trunk_portRole_ret(int port) {
    lock_board();
    return unlock_board(is_port(port) ? role_of(port) : TRUNK_ROLE_NONE);
}

int sal_trunk_member_get(int group, PortBitmap* members) {
    if (!is_group(group))
        return BAD_VALUE;
    lock_board();
    *members = groups[group].members;
    return unlock_board(OK);
}

static int is_target(int port) {
    for (int mirror = 0; mirror < MIRROR_GROUPS; ++mirror)
        if (mirrors[mirror].on && mirrors[mirror].target == port)
            return 1;
    return 0;
}

static int are_free(int group, const PortBitmap* members) {
    for (int port = 0; port < PHYSICAL_PORTS; ++port) {
        int present = group_of(port);
        if (has_bit(members->words, port) &&
            (is_target(port) || (present >= 0 && present != group)))
            return 0;
    }
    return 1;
}

static int set_members(int group, const PortBitmap* members, int is_lacp, int most) {
    if (!is_group(group) || !are_physical(members) || count_of(members) > most)
        return BAD_VALUE;
    lock_board();
    int other_kind = !is_empty(&groups[group].members) && groups[group].is_lacp != is_lacp;
    if (other_kind || !are_free(group, members))
        return unlock_board(BUSY);
    groups[group] = (struct Group){is_lacp, *members};
    return unlock_board(OK);
}

int sal_trunk_staticMember_set(int group, const PortBitmap* members) {
    return set_members(group, members, 0, TRUNK_STATIC_MEMBERS);
}
int sal_lacp_member_set(int group, const PortBitmap* members) {
    return set_members(group, members, 1, TRUNK_LACP_MEMBERS);
}

int sal_lacp_activeMode_set(int group, const PortBitmap* active) {
    if (!is_group(group))
        return BAD_VALUE;
    lock_board();
    int are_members = 1;
    for (int word = 0; word < PORT_BITMAP_WORDS; ++word)
        are_members = are_members && !(active->words[word] & ~groups[group].members.words[word]);
    return unlock_board(are_members ? OK : BAD_VALUE);
}

int sal_trunk_group_del(int group) {
    if (!is_group(group))
        return BAD_VALUE;
    lock_board();
    groups[group].members = no_ports;
    return unlock_board(OK);
}

// --- Mirroring.

static int is_mirror(int group) { return is_within(group, 0, MIRROR_GROUPS - 1); }

int sal_mirror_group_targetPort_get(int group, int* target, uint32_t* state) {
    if (!is_mirror(group))
        return BAD_VALUE;
    lock_board();
    *target = mirrors[group].target;
    *state = mirrors[group].on;
    return unlock_board(OK);
}

int sal_mirror_group_targetPort_set(int group, int target, int state) {
    if (!is_mirror(group) || !is_physical(target) || !is_within(state, 0, 1))
        return BAD_VALUE;
    lock_board();
    struct Mirror* mirror = &mirrors[group];
    int present = mirror->on && mirror->target == target;
    if (state && (group_of(target) >= 0 || (is_target(target) && !present)))
        return unlock_board(BUSY);
    mirror->on = (uint32_t)state;
    mirror->target = state ? target : 0;
    set_bit(mirror->rx.words, target, 0);
    set_bit(mirror->tx.words, target, 0);
    return unlock_board(OK);
}

int sal_mirror_group_state_get(int group, uint32_t* state) {
    return is_mirror(group) ? get_word(&mirrors[group].on, state) : BAD_VALUE;
}
int sal_mirror_group_igrState_get(int group, uint32_t* ingress) {
    return is_mirror(group) ? get_word(&mirrors[group].ingress, ingress) : BAD_VALUE;
}

int sal_mirror_group_igrState_set(int group, int ingress) {
    if (!is_mirror(group) || !is_within(ingress, 0, 1))
        return BAD_VALUE;
    lock_board();
    int on = mirrors[group].on != 0;
    if (on)
        mirrors[group].ingress = (uint32_t)ingress;
    return unlock_board(on ? OK : NOT_FOUND);
}

int sal_mirror_group_sourcePort_get(int group, PortBitmap* rx, PortBitmap* tx) {
    if (!is_mirror(group))
        return BAD_VALUE;
    lock_board();
    *rx = mirrors[group].rx;
    *tx = mirrors[group].tx;
    return unlock_board(OK);
}

int sal_mirror_group_sourcePort_set(int group, PortBitmap rx, PortBitmap tx) {
    if (!is_mirror(group) || !are_physical(&rx) || !are_physical(&tx))
        return BAD_VALUE;
    lock_board();
    struct Mirror* mirror = &mirrors[group];
    if (mirror->on && (has_bit(rx.words, mirror->target) || has_bit(tx.words, mirror->target)))
        return unlock_board(BUSY);
    mirror->rx = rx;
    mirror->tx = tx;
    return unlock_board(OK);
}

int sal_mirror_group_del(int group) {
    if (!is_mirror(group))
        return BAD_VALUE;
    lock_board();
    mirrors[group].on = mirrors[group].ingress = 0;
    mirrors[group].target = 0;
    return unlock_board(OK);
}
