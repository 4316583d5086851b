// VLANs, the voice VLAN, and MAC addresses.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "board.h"
#include "platform/l2.h"
#include "platform/vlan.h"
#include "platform/voice_vlan.h"

enum { MANAGEMENT_VLAN = VLAN_FIRST };

static int is_vid(int vid) { return is_within(vid, VLAN_FIRST, VLAN_LAST); }
static int exists(int vid) { return is_vid(vid) && board_vlans[vid].exists; }

// --- Membership.

int sal_vlan_portAdminPvid_get(int port, uint32_t* vid) {
    return get_of_port(port, offsetof(struct Port, pvid), vid);
}

int sal_vlan_portAdminPvid_set(int port, int vid) {
    if (!is_port(port))
        return BAD_VALUE;
    lock_board();
    int known = exists(vid);
    if (known)
        board_ports[port].pvid = (uint32_t)vid;
    return unlock_board(known ? OK : NOT_FOUND);
}

int sal_vlan_portAdminVlanmask_get(int port, int kind, VlanMask* vlans) {
    if (!is_port(port) || (kind != VLAN_TAGGED && kind != VLAN_UNTAGGED))
        return BAD_VALUE;
    memset(vlans, 0, sizeof *vlans);
    lock_board();
    for (int vid = VLAN_FIRST; vid <= VLAN_LAST; ++vid) {
        const struct Vlan* vlan = &board_vlans[vid];
        if (has_bit(kind == VLAN_TAGGED ? vlan->tagged.words : vlan->untagged.words, port))
            set_bit(vlans->words, vid, 1);
    }
    return unlock_board(OK);
}

static int all_exist(const VlanMask* vlans) {
    for (int vid = 0; vid < VLAN_COUNT; ++vid)
        if (has_bit(vlans->words, vid) && !exists(vid))
            return 0;
    return 1;
}

int sal_vlan_portAdminVlanmask_add(int port, int kind, const VlanMask* vlans) {
    if (!is_port(port) || (kind != VLAN_NOT_MEMBER && kind != VLAN_TAGGED && kind != VLAN_UNTAGGED))
        return BAD_VALUE;
    lock_board();
    if (!all_exist(vlans))
        return unlock_board(NOT_FOUND);
    for (int vid = VLAN_FIRST; vid <= VLAN_LAST; ++vid)
        if (has_bit(vlans->words, vid)) {
            set_bit(board_vlans[vid].tagged.words, port, kind == VLAN_TAGGED);
            set_bit(board_vlans[vid].untagged.words, port, kind == VLAN_UNTAGGED);
        }
    return unlock_board(OK);
}

// --- The table.

int sal_vlan_adminEntryExist_ret(int vid) {
    lock_board();
    return unlock_board(exists(vid) ? 1 : 0);
}

int sal_vlan_adminEntryExist_get(VlanMask* vlans) {
    memset(vlans, 0, sizeof *vlans);
    lock_board();
    for (int vid = VLAN_FIRST; vid <= VLAN_LAST; ++vid)
        set_bit(vlans->words, vid, exists(vid) ? 1 : 0);
    return unlock_board(OK);
}

static void fill_entry(VlanEntry* entry, const struct Vlan* vlan) {
    memset(entry, 0, sizeof *entry);
    for (int word = 0; word < PORT_BITMAP_WORDS; ++word) {
        entry->members.words[word] = vlan->tagged.words[word] | vlan->untagged.words[word];
        entry->untagged.words[word] = vlan->untagged.words[word];
    }
    strcpy(entry->name, vlan->name);
}

int sal_vlan_adminEntry_get(int vid, VlanEntry* entry) {
    lock_board();
    if (!exists(vid))
        return unlock_board(NOT_FOUND);
    fill_entry(entry, &board_vlans[vid]);
    return unlock_board(OK);
}

int sal_vlan_operEntryNum_get(uint32_t* count) {
    lock_board();
    *count = 0;
    for (int vid = VLAN_FIRST; vid <= VLAN_LAST; ++vid)
        *count += board_vlans[vid].exists;
    return unlock_board(OK);
}

int sal_vlan_adminEntrySort_get(int index, uint32_t* vid, VlanEntry* entry) {
    lock_board();
    for (int at = VLAN_FIRST; index >= 0 && at <= VLAN_LAST; ++at)
        if (board_vlans[at].exists && index-- == 0) {
            *vid = (uint32_t)at;
            fill_entry(entry, &board_vlans[at]);
            return unlock_board(OK);
        }
    return unlock_board(NOT_FOUND);
}

int sal_vlan_adminEntry_create(int vid, const char* name) {
    if (!is_vid(vid) || strlen(name) >= VLAN_NAME_SIZE)
        return BAD_VALUE;
    lock_board();
    if (exists(vid))
        return unlock_board(EXISTS);
    board_vlans[vid] = (struct Vlan){.exists = 1};
    strcpy(board_vlans[vid].name, name);
    return unlock_board(OK);
}

int sal_vlan_adminEntry_destroy(int vid) {
    if (vid == MANAGEMENT_VLAN)
        return BUSY;
    lock_board();
    if (!exists(vid))
        return unlock_board(NOT_FOUND);
    board_vlans[vid] = (struct Vlan){0};
    for (int port = 0; port < LOGICAL_PORTS; ++port)
        if (board_ports[port].pvid == (uint32_t)vid)
            board_ports[port].pvid = MANAGEMENT_VLAN;
    return unlock_board(OK);
}

int sal_vlan_nameStr_get(int vid, const char* prefix, char* name) {
    if (!is_vid(vid))
        return BAD_VALUE;
    snprintf(name, VLAN_NAME_SIZE, "%s%04d", prefix, vid);
    return OK;
}

int sal_vlan_mgmtVid_get(uint32_t* vid) {
    *vid = MANAGEMENT_VLAN;
    return OK;
}

// --- The voice VLAN.

static uint32_t voice_mode, voice_vid = VOICE_VLAN_NO_VID, voice_remark, voice_aging = 1440;
static VoiceVlanQos voice_qos = {5, 46, 5};
static struct {
    VoiceVlanOui entry;
    char description[VOICE_VLAN_DESCRIPTION_SIZE];
} voice_ouis[VOICE_VLAN_OUIS];

int sal_vlan_voiceVlanState_get(int* mode) { return get_word(&voice_mode, (uint32_t*)mode); }
int sal_vlan_voiceVlanState_set(int mode) {
    lock_board();
    int without_id = mode && voice_vid == VOICE_VLAN_NO_VID;
    unlock_board(OK);
    return without_id ? BUSY : set_word(&voice_mode, mode, 0, 2);
}

int sal_vlan_voiceVid_get(int* vid) { return get_word(&voice_vid, (uint32_t*)vid); }
int sal_vlan_voiceVid_set(int vid) {
    lock_board();
    int needed = vid == VOICE_VLAN_NO_VID && voice_mode;
    unlock_board(OK);
    return needed ? BUSY : set_word(&voice_vid, vid, VLAN_FIRST, VOICE_VLAN_NO_VID);
}

int sal_vlan_voiceVlan1pRemarkEnable_get(int* enable) {
    return get_word(&voice_remark, (uint32_t*)enable);
}
int sal_vlan_voiceVlan1pRemarkEnable_set(int enable) {
    return set_word(&voice_remark, enable, 0, 1);
}
int sal_vlan_voiceVlanAging_get(int* minutes) { return get_word(&voice_aging, (uint32_t*)minutes); }
int sal_vlan_voiceVlanAging_set(int minutes) { return set_word(&voice_aging, minutes, 30, 65536); }

int sal_vlan_voiceVlanQos_get(VoiceVlanQos* qos) {
    lock_board();
    *qos = voice_qos;
    return unlock_board(OK);
}

int sal_vlan_voiceVlanQos_set(int queue, int dscp, int remark_cos) {
    if (!is_within(queue, 0, 7) || !is_within(dscp, 0, 63) || !is_within(remark_cos, 0, 7))
        return BAD_VALUE;
    lock_board();
    voice_qos = (VoiceVlanQos){queue, dscp, remark_cos};
    return unlock_board(OK);
}

int sal_vlan_portVoiceVlanEnable_get(int port, int* enable) {
    return get_of_port(port, offsetof(struct Port, voice), (uint32_t*)enable);
}
int sal_vlan_portVoiceVlanEnable_set(int port, int enable) {
    return set_of_port(port, offsetof(struct Port, voice), enable, 0, 1);
}
int sal_vlan_portVoiceVlancosMode_get(int port, int* mode) {
    return get_of_port(port, offsetof(struct Port, voice_cos), (uint32_t*)mode);
}
int sal_vlan_portVoiceVlancosMode_set(int port, int mode) {
    return set_of_port(port, offsetof(struct Port, voice_cos), mode, 0, 1);
}

int sal_vlan_voiceVlanOui_get(int index, VoiceVlanOui* entry, char* description) {
    if (!is_within(index, 0, VOICE_VLAN_OUIS - 1))
        return BAD_VALUE;
    lock_board();
    *entry = voice_ouis[index].entry;
    memcpy(description, voice_ouis[index].description, VOICE_VLAN_DESCRIPTION_SIZE);
    return unlock_board(OK);
}

int sal_vlan_voiceVlanOui_set(int index, const VoiceVlanOui* entry, const char* description) {
    if (!is_within(index, 0, VOICE_VLAN_OUIS - 1) ||
        strlen(description) >= VOICE_VLAN_DESCRIPTION_SIZE)
        return BAD_VALUE;
    lock_board();
    voice_ouis[index].entry = *entry;
    strcpy(voice_ouis[index].description, description);
    return unlock_board(OK);
}

int sal_vlan_voiceVlanOui_add(const VoiceVlanOui* entry, const char* description) {
    int index = 0;
    lock_board();
    while (index < VOICE_VLAN_OUIS && voice_ouis[index].entry.in_use)
        ++index;
    unlock_board(OK);
    return index < VOICE_VLAN_OUIS ? sal_vlan_voiceVlanOui_set(index, entry, description) : FULL;
}

// --- MAC addresses: none were learned, and none are static.

int sal_l2_macTbl_generate(uint32_t* count) { return sal_l2_macTbl_size_get(count); }

int sal_l2_macTbl_size_get(uint32_t* count) {
    *count = 0;
    return OK;
}

int sal_l2_macEntry_get(uint32_t index, MacEntry* entry) {
    (void)index, (void)entry;
    return NOT_FOUND;
}

int sal_l2_static_macEntry_search(const MacEntry* entry, uint32_t* is_static) {
    (void)entry;
    *is_static = 0;
    return OK;
}

int sal_l2_static_macEntry_get(uint32_t index, MacEntry* entry) {
    if (index >= STATIC_MAC_ENTRIES)
        return BAD_VALUE;
    memset(entry, 0, sizeof *entry);
    return OK;
}

int sal_l2_static_macEntry_del(const MacEntry* entry) {
    (void)entry;
    return NOT_FOUND;
}
