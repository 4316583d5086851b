// QoS, spanning tree, snooping and LLDP.
#include <string.h>

#include "board.h"
#include "platform/igmp.h"
#include "platform/lldp.h"
#include "platform/qos.h"
#include "platform/stp.h"
#include "platform/system.h"

// --- QoS, whose setters want it on.

static uint32_t qos_on = 1, strict_queues = 8, trust_type = 1;
static uint32_t cos_queues[QOS_COS_VALUES] = {0, 1, 2, 3, 4, 5, 6, 7};
static uint32_t dscp_queues[QOS_DSCP_VALUES];

static int is_qos_on(void) {
    uint32_t on = 0;
    get_word(&qos_on, &on);
    return on == 1;
}

int sal_qos_mode_get(uint32_t* mode) { return get_word(&qos_on, mode); }
int sal_qos_mode_set(int mode) { return set_word(&qos_on, mode, 0, 1); }
int sal_qos_strictPriQueueNum_get(uint32_t* count) { return get_word(&strict_queues, count); }
int sal_qos_strictPriQueueNum_set(int count) {
    return is_qos_on() ? set_word(&strict_queues, count, 0, QOS_QUEUES) : BUSY;
}
int sal_qos_trustType_get(uint32_t* type) { return get_word(&trust_type, type); }
int sal_qos_trustType_set(int type) {
    return is_qos_on() ? set_word(&trust_type, type, 1, 3) : BUSY;
}

static int queue_set(uint32_t* queues, int count, int mark, int queue) {
    if (!is_qos_on() || !is_within(mark, 0, count - 1))
        return BAD_VALUE;
    return set_word(&queues[mark], queue, 0, QOS_QUEUES - 1);
}

int sal_qos_cosQueue_get(int cos, uint32_t* queue) {
    return is_within(cos, 0, QOS_COS_VALUES - 1) ? get_word(&cos_queues[cos], queue) : BAD_VALUE;
}
int sal_qos_cosQueue_set(int cos, int queue) {
    return queue_set(cos_queues, QOS_COS_VALUES, cos, queue);
}
int sal_qos_dscpQueue_get(int dscp, uint32_t* queue) {
    return is_within(dscp, 0, QOS_DSCP_VALUES - 1) ? get_word(&dscp_queues[dscp], queue)
                                                   : BAD_VALUE;
}
int sal_qos_dscpQueue_set(int dscp, int queue) {
    return queue_set(dscp_queues, QOS_DSCP_VALUES, dscp, queue);
}
int sal_qos_portCos_get(int port, uint32_t* cos) {
    return get_of_port(port, offsetof(struct Port, cos), cos);
}
int sal_qos_portCos_set(int port, int cos) {
    return is_qos_on() ? set_of_port(port, offsetof(struct Port, cos), cos, 0, 7) : BUSY;
}
int sal_qos_portTrustState_get(int port, uint32_t* trust) {
    return get_of_port(port, offsetof(struct Port, trusted), trust);
}
int sal_qos_portTrustState_set(int port, int trust) {
    return is_qos_on() ? set_of_port(port, offsetof(struct Port, trusted), trust, 0, 1) : BUSY;
}

// --- Spanning tree: nobody else is there, so this bridge is the root.

static uint32_t stp_on, stp_version = STP_FORCE_RSTP, stp_priority = 32768;

int sal_stp_info_get(StpInfo* info) {
    memset(info, 0, sizeof *info);
    lock_board();
    info->enable = stp_on;
    info->force_version = (uint8_t)stp_version;
    return unlock_board(OK);
}

int sal_stp_mstInfo_get(int instance, StpInstance* info) {
    if (instance != STP_COMMON_INSTANCE)
        return NOT_FOUND;
    memset(info, 0, sizeof *info);
    sal_sys_macAddr_get(info->root_mac);
    info->hello_time = 2;
    info->maximum_age = 20;
    info->forward_delay = 15;
    lock_board();
    info->priority = info->root_priority = (uint16_t)stp_priority;
    return unlock_board(OK);
}

int sal_stp_enable_set(int enable) { return set_word(&stp_on, enable, 0, 1); }
int sal_stp_forceVersion_set(int version) {
    return version == 1 ? BAD_VALUE
                        : set_word(&stp_version, version, STP_FORCE_STP, STP_FORCE_MSTP);
}
int sal_stp_priority_set(int priority) {
    return priority % STP_PRIORITY_STEP
               ? BAD_VALUE
               : set_word(&stp_priority, priority, 0, STP_HIGHEST_PRIORITY);
}

// --- Snooping.

static uint32_t igmp_on, igmp_version = 2;

int sal_igmp_enable_get(uint32_t* enable) { return get_word(&igmp_on, enable); }
int sal_igmp_enable_set(int enable) { return set_word(&igmp_on, enable, 0, 1); }
int sal_igmp_operVersion_set(int version) { return set_word(&igmp_version, version, 2, 3); }

int sal_igmp_info_get(IgmpInfo* info) {
    memset(info, 0, sizeof *info);
    return get_word(&igmp_version, &info->version);
}

int sal_igmp_lookupMode_get(uint32_t* mode) {
    *mode = IGMP_LOOKUP_BY_GROUP;
    return OK;
}

static int is_known(const McastVlan* record) {
    return record->family == MCAST_FAMILY_IPV4 && record->vid <= VLAN_LAST &&
           board_vlans[record->vid].exists;
}

int sal_mcast_vlan_get(McastVlan* record) {
    lock_board();
    if (!is_known(record))
        return unlock_board(NOT_FOUND);
    record->enable = board_vlans[record->vid].snooping;
    record->fast_leave = board_vlans[record->vid].fast_leave;
    return unlock_board(OK);
}

int sal_mcast_vlan_set(const McastVlan* record) {
    if (record->enable > 1 || record->fast_leave > 1)
        return BAD_VALUE;
    lock_board();
    if (!is_known(record))
        return unlock_board(NOT_FOUND);
    board_vlans[record->vid].snooping = record->enable;
    board_vlans[record->vid].fast_leave = record->fast_leave;
    return unlock_board(OK);
}

// --- LLDP: timers that go together, and no neighbours.

struct Timers {
    uint32_t interval, multiplier, reinit, delay;
};

static uint32_t lldp_on = 1, lldp_off_action;
static struct Timers timers = {30, 4, 2, 2};

static int set_timers(struct Timers wanted) {
    int go_together =
        wanted.delay <= wanted.interval / 4 && wanted.interval * wanted.multiplier <= 65535;
    if (go_together)
        timers = wanted;
    return go_together ? OK : BAD_VALUE;
}

int sal_lldp_enable_get(uint32_t* enable) { return get_word(&lldp_on, enable); }
int sal_lldp_enable_set(uint32_t enable) { return set_word(&lldp_on, enable, 0, 1); }
int sal_lldp_disableAction_set(uint32_t action) { return set_word(&lldp_off_action, action, 0, 2); }

int sal_lldp_tx_interval_get(uint32_t* seconds) { return get_word(&timers.interval, seconds); }
int sal_lldp_tx_interval_set(uint32_t seconds) {
    if (!is_within(seconds, 5, 32767))
        return BAD_VALUE;
    lock_board();
    struct Timers wanted = timers;
    wanted.interval = seconds;
    return unlock_board(set_timers(wanted));
}

int sal_lldp_holdtime_get(uint8_t* multiplier) {
    lock_board();
    *multiplier = (uint8_t)timers.multiplier;
    return unlock_board(OK);
}
int sal_lldp_holdtime_set(uint8_t multiplier) {
    if (!is_within(multiplier, 2, 10))
        return BAD_VALUE;
    lock_board();
    struct Timers wanted = timers;
    wanted.multiplier = multiplier;
    return unlock_board(set_timers(wanted));
}

int sal_lldp_reinit_delay_get(uint8_t* seconds) {
    lock_board();
    *seconds = (uint8_t)timers.reinit;
    return unlock_board(OK);
}
int sal_lldp_reinit_delay_set(uint8_t seconds) { return set_word(&timers.reinit, seconds, 1, 10); }

int sal_lldp_tx_delay_get(uint16_t* seconds) {
    lock_board();
    *seconds = (uint16_t)timers.delay;
    return unlock_board(OK);
}
int sal_lldp_tx_delay_set(uint16_t seconds) {
    if (!is_within(seconds, 1, 8192))
        return BAD_VALUE;
    lock_board();
    struct Timers wanted = timers;
    wanted.delay = seconds;
    return unlock_board(set_timers(wanted));
}

int sal_lldp_portRemoteEntryInfo_get(int port, int index, LldpNeighbour* neighbour) {
    (void)neighbour;
    return is_physical(port) && is_within(index, 0, LLDP_PORT_NEIGHBOURS - 1) ? OK : BAD_VALUE;
}
