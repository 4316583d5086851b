// The switch as a whole, its services, SNMP, firmware and the cloud's settings.
#define _POSIX_C_SOURCE 200809L

#include <stdio.h>
#include <string.h>
#include <time.h>

#include "board.h"
#include "platform/access.h"
#include "platform/diag.h"
#include "platform/firmware.h"
#include "platform/log.h"
#include "platform/snmp.h"
#include "platform/system.h"
#include "platform/vxcloud.h"

// --- The switch as a whole.

enum { LONGEST_NAME = 63 };

static char system_name[LONGEST_NAME + 1] = "twelve-ports";

int sal_sys_macAddr_get(uint8_t* mac) {
    memcpy(mac, (const uint8_t[]){0x02, 0x00, 0x00, 0x12, 0x00, 0x01}, MAC_ADDRESS_SIZE);
    return OK;
}

int sal_sys_systemName_get(char* name) { return get_text(system_name, name); }
int sal_sys_systemName_set(const char* name) {
    return set_text(system_name, name, sizeof system_name);
}
const char* fds_sys_version_ret(void) { return "1.0.0"; }

int sal_sys_systemUptime_get(uint32_t* hundredths) {
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    *hundredths = (uint32_t)now.tv_sec * 100 + (uint32_t)(now.tv_nsec / 10000000);
    return OK;
}

int sal_sys_ip_get(uint32_t* address, uint32_t* mask) {
    *address = 0xC000020C; // 192.0.2.12
    *mask = 0xFFFFFF00;
    return OK;
}

int sal_sys_gateway_get(uint32_t* address) {
    *address = 0xC0000201;
    return OK;
}

// There is nothing to save to, and nobody to start it again.
int cmd_conf_startupConfig_save(void) { return OK; }
int sal_sys_reboot(void) { return OK; }
int sal_vxcloud_kill(void) { return OK; }

int sys_log(int facility, int level, const char* text) {
    fprintf(stderr, "<%d.%d> %s\n", facility, level, text);
    return OK;
}

// --- Services.

static uint32_t http = 1, https = 1, telnet, ssh;
int sal_sys_httpEnable_get(uint32_t* enable) { return get_word(&http, enable); }
int sal_sys_httpEnable_set(int enable) { return set_word(&http, enable, 0, 1); }
int sal_sys_httpsEnable_set(int enable) { return set_word(&https, enable, 0, 1); }
int sal_sys_telnetdEnable_get(uint32_t* enable) { return get_word(&telnet, enable); }
int sal_sys_telnetdEnable_set(int enable) { return set_word(&telnet, enable, 0, 1); }
int sal_ssh_sshdEnable_get(uint32_t* enable) { return get_word(&ssh, enable); }
int sal_ssh_sshdEnable_set(int enable) { return set_word(&ssh, enable, 0, 1); }
int sal_sys_inetdConfig_set(void) { return OK; }
int sal_inetd_restart(void) { return OK; }
int sal_util_process_kill(const char* name) { return *name ? OK : BAD_VALUE; }

// --- Diagnosis.

int sal_cablediag_copper_set(int port) {
    return is_within(port, 0, COPPER_PORTS - 1) ? OK : BAD_VALUE;
}

static uint32_t traceroute_runs;
int sal_sys_tracerouteLock_check(void) {
    uint32_t runs = 0;
    get_word(&traceroute_runs, &runs);
    return runs ? BUSY : OK;
}
int sal_sys_tracerouteLock_take(void) {
    lock_board();
    int code = traceroute_runs ? BUSY : OK;
    traceroute_runs = 1;
    return unlock_board(code);
}
int sal_sys_tracerouteLock_give(void) { return set_word(&traceroute_runs, 0, 0, 0); }

// --- Firmware: one image, which cannot be changed.

int sal_fwImage_download(const char* path, const char* url) {
    (void)path, (void)url;
    return FW_NO_IMAGE;
}

int sal_sys_fwImage_write(const char* path, int partition) {
    (void)path, (void)partition;
    return FW_NO_IMAGE;
}

int sal_sys_fwImage_backup(int partition, const char* path) {
    (void)partition, (void)path;
    return FW_NO_IMAGE;
}

int sal_sys_fwImageSaveMem_gen(const char* path) {
    remove(path);
    return OK;
}

int sal_sys_fwImageLock_give(void) { return OK; }

int sal_sys_dualImageCurrSel_get(int* partition) {
    *partition = 0;
    return OK;
}

int sal_sys_dualImage_sel(int partition) { return partition == 0 ? OK : FW_NO_IMAGE; }

int sal_sys_fwImageHdrInfo_get(
    int partition, uint32_t* length, uint32_t* built, uint8_t* digest, char* raw_version) {
    if (partition != 0)
        return FW_NO_IMAGE;
    *length = 4096;
    *built = 1700000000;
    memset(digest, 0, FW_DIGEST_SIZE);
    memset(raw_version, 0, FW_RAW_VERSION_SIZE);
    memcpy(raw_version, "1.0.0", 5);
    return OK;
}

int sal_filter_ver_get(const char* raw_version, char* version) {
    memcpy(version, raw_version, FW_RAW_VERSION_SIZE);
    version[FW_RAW_VERSION_SIZE] = '\0';
    return OK;
}

int sal_sys_restore_defaults(int what) { return what == 0 ? OK : BAD_VALUE; }

// --- The cloud's settings.

static char checkin_host[256], fallback_host[256], keeper_host[128], key[128], secret[128];
static uint32_t interval = 300, seqno;

int sal_vxcloud_checkin_host_set(const char* host) {
    return set_text(checkin_host, host, sizeof checkin_host);
}
int sal_vxcloud_checkin_host_get(char* host) { return get_text(checkin_host, host); }
int sal_vxcloud_fallback_host_set(const char* host) {
    return set_text(fallback_host, host, sizeof fallback_host);
}
int sal_vxcloud_fallback_host_get(char* host) { return get_text(fallback_host, host); }
int sal_vxcloud_connkeeper_host_set(const char* host) {
    return set_text(keeper_host, host, sizeof keeper_host);
}
int sal_vxcloud_connkeeper_host_get(char* host) { return get_text(keeper_host, host); }
int sal_vxcloud_key_set(const char* text) { return set_text(key, text, sizeof key); }
int sal_vxcloud_key_get(char* text) { return get_text(key, text); }
int sal_vxcloud_secret_set(const char* text) { return set_text(secret, text, sizeof secret); }
int sal_vxcloud_secret_get(char* text) { return get_text(secret, text); }
int sal_vxcloud_checkin_interval_set(int32_t seconds) {
    return set_word(&interval, seconds, 60, 3600);
}
int sal_vxcloud_checkin_interval_get(int32_t* seconds) {
    return get_word(&interval, (uint32_t*)seconds);
}
int sal_vxcloud_seqno_set(int32_t number) {
    return set_word(&seqno, (uint32_t)number, 0, UINT32_MAX);
}
int sal_vxcloud_seqno_get(int32_t* number) { return get_word(&seqno, (uint32_t*)number); }

int sal_vxcloud_debug_flag_get(uint32_t* flag) {
    *flag = 0;
    return OK;
}

// --- SNMP.

enum { GROUPS = 16, ACCESSES = 16 };

static uint32_t snmp_on;
static SnmpCommunity communities[SNMP_COMMUNITIES];
static SnmpTarget targets[SNMP_TARGETS];
static struct {
    char community[SNMP_NAME_SIZE], name[SNMP_NAME_SIZE];
    int model;
} groups[GROUPS];
static SnmpAccess accesses[ACCESSES];

int sal_snmp_enable_get(uint32_t* enable) { return get_word(&snmp_on, enable); }
int sal_snmp_enable_set(int enable) { return set_word(&snmp_on, enable, 0, 1); }
int cmd_snmp_demo_restart(void) { return OK; }
int sal_snmp_stop(void) { return OK; }
int sal_snmp_restart(void) { return OK; }

static int is_model(int model) { return model == SNMP_MODEL_V1 || model == SNMP_MODEL_V2C; }
static int fits(const char* text) { return *text && strlen(text) < SNMP_NAME_SIZE; }

// The slot of a community; that of the empty name is free. -1 for none.
static int community_slot(const char* name) {
    for (int slot = 0; slot < SNMP_COMMUNITIES; ++slot)
        if (strcmp(communities[slot].name, name) == 0)
            return slot;
    return -1;
}

int sal_snmp_com2sec_get(int slot, SnmpCommunity* community) {
    if (!is_within(slot, 0, SNMP_COMMUNITIES - 1))
        return BAD_VALUE;
    lock_board();
    *community = communities[slot];
    return unlock_board(OK);
}

int sal_snmp_com2sec_add(const SnmpCommunity* community) {
    if (!fits(community->name) || strlen(community->name) > SNMP_COMMUNITY_LENGTH ||
        community->right > SNMP_READ_WRITE)
        return BAD_VALUE;
    lock_board();
    int slot = community_slot("");
    if (community_slot(community->name) >= 0 || slot < 0)
        return unlock_board(slot < 0 ? FULL : EXISTS);
    communities[slot] = *community;
    communities[slot].internal = 0;
    return unlock_board(OK);
}

int sal_snmp_com2sec_del(const char* name) {
    lock_board();
    int slot = *name ? community_slot(name) : -1;
    if (slot >= 0)
        communities[slot] = (SnmpCommunity){0};
    return unlock_board(slot >= 0 ? OK : NOT_FOUND);
}

static int group_index(const char* community, int model) {
    for (int index = 0; index < GROUPS; ++index)
        if (strcmp(groups[index].community, community) == 0 &&
            (!*community || groups[index].model == model))
            return index;
    return SNMP_NO_INDEX;
}

static int access_index(const char* group, int model) {
    for (int index = 0; index < ACCESSES; ++index)
        if (strcmp(accesses[index].group, group) == 0 &&
            (!*group || accesses[index].model == (uint32_t)model))
            return index;
    return SNMP_NO_INDEX;
}

int sal_snmp_groupIndex_get(const char* community, int model, int* index) {
    if (!is_model(model) || !*community)
        return BAD_VALUE;
    lock_board();
    *index = group_index(community, model);
    return unlock_board(OK);
}

int sal_snmp_accessIndex_get(const char* group, int model, int* index) {
    if (!is_model(model) || !*group)
        return BAD_VALUE;
    lock_board();
    *index = access_index(group, model);
    return unlock_board(OK);
}

int sal_snmp_group_get(int index, SnmpGroup* group) {
    if (!is_within(index, 0, GROUPS - 1))
        return BAD_VALUE;
    memset(group, 0, sizeof *group);
    lock_board();
    strcpy(group->community, groups[index].community);
    strcpy(group->name, groups[index].name);
    group->model = (uint32_t)groups[index].model;
    int access = *group->name ? access_index(group->name, groups[index].model) : SNMP_NO_INDEX;
    if (access != SNMP_NO_INDEX) {
        strcpy(group->read_view, accesses[access].read_view);
        strcpy(group->write_view, accesses[access].write_view);
    }
    return unlock_board(OK);
}

int sal_snmp_group_add(const char* community, int model, const char* group) {
    if (!is_model(model) || !fits(community) || !fits(group))
        return BAD_VALUE;
    lock_board();
    int index = group_index("", 0);
    if (group_index(community, model) != SNMP_NO_INDEX || index == SNMP_NO_INDEX)
        return unlock_board(index == SNMP_NO_INDEX ? FULL : EXISTS);
    strcpy(groups[index].community, community);
    strcpy(groups[index].name, group);
    groups[index].model = model;
    return unlock_board(OK);
}

int sal_snmp_group_del(const char* community, int model) {
    lock_board();
    int index = *community ? group_index(community, model) : SNMP_NO_INDEX;
    if (index != SNMP_NO_INDEX)
        memset(&groups[index], 0, sizeof groups[index]);
    return unlock_board(index != SNMP_NO_INDEX ? OK : NOT_FOUND);
}

static int is_view(const char* name) { return strcmp(name, "all") == 0; }

int sal_snmp_access_get(int index, SnmpAccess* access) {
    if (!is_within(index, 0, ACCESSES - 1))
        return BAD_VALUE;
    lock_board();
    *access = accesses[index];
    return unlock_board(OK);
}

int sal_snmp_access_add(const SnmpAccess* access) {
    if (!fits(access->group) || !is_model((int)access->model) || !is_view(access->read_view) ||
        (access->write_view[0] && !is_view(access->write_view)))
        return BAD_VALUE;
    lock_board();
    int index = access_index("", 0);
    if (access_index(access->group, (int)access->model) != SNMP_NO_INDEX || index == SNMP_NO_INDEX)
        return unlock_board(index == SNMP_NO_INDEX ? FULL : EXISTS);
    accesses[index] = *access;
    return unlock_board(OK);
}

int sal_snmp_access_del(const char* group, int model) {
    lock_board();
    int index = *group ? access_index(group, model) : SNMP_NO_INDEX;
    if (index != SNMP_NO_INDEX)
        accesses[index] = (SnmpAccess){0};
    return unlock_board(index != SNMP_NO_INDEX ? OK : NOT_FOUND);
}

int sal_snmp_accessView_test(const char* group) { return fits(group) ? OK : BAD_TEXT; }

int sal_snmp_basic_accessAdd_test(const char* group) {
    if (!fits(group))
        return BAD_TEXT;
    int room = 0;
    lock_board();
    for (int index = 0; index < ACCESSES; ++index)
        room += !accesses[index].group[0];
    return unlock_board(room >= 2 ? OK : FULL);
}

int sal_snmp_view_get(int slot, SnmpView* view) {
    if (slot != 0)
        return BAD_VALUE;
    *view = (SnmpView){"all", ".1", 1};
    return OK;
}

static int target_slot(const char* host, int version, int type) {
    for (int slot = 0; slot < SNMP_TARGETS; ++slot)
        if (strcmp(targets[slot].host, host) == 0 &&
            (!*host ||
             (targets[slot].version == (uint32_t)version && targets[slot].type == (uint32_t)type)))
            return slot;
    return -1;
}

int sal_snmp_target_get(int slot, SnmpTarget* target) {
    if (!is_within(slot, 0, SNMP_TARGETS - 1))
        return BAD_VALUE;
    lock_board();
    *target = targets[slot];
    return unlock_board(OK);
}

int sal_snmp_target_add(const SnmpTarget* target) {
    if (!target->host[0] || target->version > SNMP_VERSION_V3 || target->type > SNMP_INFORM_V3 ||
        !is_within(target->udp, 1, 65535))
        return BAD_VALUE;
    lock_board();
    int slot = target_slot("", 0, 0);
    if (target_slot(target->host, (int)target->version, (int)target->type) >= 0 || slot < 0)
        return unlock_board(slot < 0 ? FULL : EXISTS);
    targets[slot] = *target;
    return unlock_board(OK);
}

int sal_snmp_target_del(const char* host, int version, int type) {
    lock_board();
    int slot = *host ? target_slot(host, version, type) : -1;
    if (slot >= 0)
        targets[slot] = (SnmpTarget){0};
    return unlock_board(slot >= 0 ? OK : NOT_FOUND);
}

int sal_rmon_event_get(int slot, RmonEvent* event) {
    if (!is_within(slot, 0, SNMP_RMON_EVENTS - 1))
        return BAD_VALUE;
    memset(event, 0, sizeof *event);
    return OK;
}

int sal_rmon_eventRuntime_get(int slot, RmonEventRuntime* runtime) {
    if (!is_within(slot, 0, SNMP_RMON_EVENTS - 1))
        return BAD_VALUE;
    memset(runtime, 0, sizeof *runtime);
    return OK;
}
