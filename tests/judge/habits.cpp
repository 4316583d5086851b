// The simulated platform library with one bad habit, which the environment names: calls go through
// here on their way to the simulated switch (-Wl,--wrap, for every call that is named below).
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>
#include <vector>

#include "driver/request.h"
#include "platform/access.h"
#include "platform/acl.h"
#include "platform/diag.h"
#include "platform/firmware.h"
#include "platform/igmp.h"
#include "platform/l2.h"
#include "platform/led.h"
#include "platform/lldp.h"
#include "platform/mib.h"
#include "platform/mirror.h"
#include "platform/poe.h"
#include "platform/port.h"
#include "platform/qos.h"
#include "platform/rate.h"
#include "platform/snmp.h"
#include "platform/stp.h"
#include "platform/system.h"
#include "platform/trunk.h"
#include "platform/util.h"
#include "platform/vlan.h"
#include "platform/voice_vlan.h"
#include "platform/vxcloud.h"

namespace {

bool has(const char* habit) {
    static const char* const own = std::getenv("PLATFORM_HABIT");
    return own && std::strcmp(own, habit) == 0;
}

// True every second time.
bool now_and_then() {
    static std::atomic<unsigned> count{0};
    return count++ % 2;
}

bool in_signal_handler() {
    sigset_t blocked;
    pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
    return sigismember(&blocked, SIGUSR1) && gettid() == getpid();
}

int ports() { return sys_logic_port_num_ret(); }
bool is_port(int port) { return port >= 0 && port < ports(); }
bool in(const PortBitmap& set, int port) { return set.words[port / 32] >> (port % 32) & 1; }
int size(const PortBitmap& set) {
    int count = 0;
    for (std::uint32_t word : set.words)
        count += __builtin_popcount(word);
    return count;
}

} // namespace

// The call of that name; real(...) is the simulated library's.
#define CALL(result, name, ...)                                                                    \
    extern "C" result __real_##name(__VA_ARGS__);                                                  \
    extern "C" result __wrap_##name(__VA_ARGS__)

// --- The switch as a whole.

CALL(int, sys_logic_port_num_ret, void) {
    return has("eight ports") ? 8 : __real_sys_logic_port_num_ret();
}

CALL(const char*, fds_sys_version_ret, void) {
    return has("no version") ? nullptr : __real_fds_sys_version_ret();
}

CALL(int, sal_sys_systemName_get, char* name) {
    if (has("a static buffer")) {
        static char shared[256];
        __real_sal_sys_systemName_get(shared);
        if (gettid() != getpid())
            shared[0] = '?';
        usleep(300);
        std::strcpy(name, shared);
        return 0;
    }
    int code = __real_sal_sys_systemName_get(name);
    if (has("a text without an end"))
        std::memset(name, 'x', 256);
    if (has("one byte too many"))
        name[256] = '\0';
    return code;
}

CALL(int, sal_sys_systemName_set, const char* name) {
    int code = __real_sal_sys_systemName_set(name);
    if (has("a name that saves itself"))
        cmd_conf_startupConfig_save();
    return code;
}

CALL(int, sal_sys_systemUptime_get, std::uint32_t* hundredths) {
    static std::uint32_t left = 1000000;
    int code = __real_sal_sys_systemUptime_get(hundredths);
    if (has("time that runs backwards"))
        *hundredths = --left;
    return code;
}

CALL(int, sal_sys_ip_get, std::uint32_t* address, std::uint32_t* mask) {
    int code = __real_sal_sys_ip_get(address, mask);
    if (has("a mask with gaps"))
        *mask = 0xFF00FF00;
    return code;
}

CALL(int, cmd_conf_startupConfig_save, void) {
    std::uint32_t mode = LED_MODE_LAN;
    sal_swctrl_poe_led_mode_get(&mode);
    if (has("a save that loses"))
        sal_swctrl_poe_led_mode_set(LED_MODE_LAN);
    int code = __real_cmd_conf_startupConfig_save();
    if (has("a save that loses"))
        sal_swctrl_poe_led_mode_set(mode);
    return code;
}

CALL(int, sal_swctrl_poe_led_mode_get, std::uint32_t* mode) {
    int code = __real_sal_swctrl_poe_led_mode_get(mode);
    if (has("an answer that alternates"))
        *mode = now_and_then() ? LED_MODE_LAN : LED_MODE_POE;
    return code;
}

// --- Ports.

CALL(int, sal_port_enable_get, int port, std::uint32_t* enable) {
    if (has("an output touched on failure") && !is_port(port))
        *enable = 0;
    return __real_sal_port_enable_get(port, enable);
}

CALL(int, sal_port_protected_get, int port, std::uint32_t* enable) {
    return has("a good port refused") && port == 5 ? 30
                                                   : __real_sal_port_protected_get(port, enable);
}

CALL(int, sal_port_protected_set, int port, int enable) {
    return has("a setter that forgets") ? 0 : __real_sal_port_protected_set(port, enable);
}

CALL(int, sal_port_flowCtrl_get, int port, std::uint32_t* configured, std::uint32_t* running) {
    int code = __real_sal_port_flowCtrl_get(port, configured, running);
    if (has("a flag of 2") && code == 0)
        *running = 2;
    return code;
}

CALL(int, sal_port_flowCtrl_set, int port, int enable) {
    return __real_sal_port_flowCtrl_set(port, has("any flag taken") ? enable != 0 : enable);
}

CALL(int, sys_port_lPortMedia_ret, int port) {
    return has("fibre groups") && port == ports() - 1 ? int{PORT_MEDIA_FIBRE}
                                                      : __real_sys_port_lPortMedia_ret(port);
}

CALL(int, sys_port_linkStatus_ret, int port) {
    return has("a link for all") ? 1 : __real_sys_port_linkStatus_ret(port);
}

CALL(int, sys_port_lPort2uStr, int port, int style, char* text) {
    int code = __real_sys_port_lPort2uStr(port, style, text);
    if (has("one name for all ports") && code == 0)
        std::strcpy(text, "port");
    return code;
}

CALL(int, sal_rate_igrBandwidthCtrlEnable_get, int port, std::uint32_t* enable) {
    int code = __real_sal_rate_igrBandwidthCtrlEnable_get(port, enable);
    if (has("any port taken") && code != 0)
        return *enable = 0;
    return code;
}

CALL(int, sal_rate_igrBandwidthCtrlRate_set, int port, int kbps) {
    return __real_sal_rate_igrBandwidthCtrlRate_set(
        port, has("a rate that is bent") ? std::clamp(kbps, 16, 1000000) : kbps);
}

CALL(int, sal_rate_egrBandwidthCtrlRate_set, int port, int kbps) {
    return __real_sal_rate_egrBandwidthCtrlRate_set(
        port, has("a rate that is rounded") && kbps > 64 && kbps < 1000000 ? kbps / 64 * 64 : kbps);
}

// --- Counters.

CALL(int, sal_mib_etherStatsOctets_get, int port, std::uint64_t* count) {
    std::uint64_t whole = 0;
    int code = __real_sal_mib_etherStatsOctets_get(port, &whole);
    if (has("a clear that clears nothing"))
        whole += 1000;
    if (code == 0)
        std::memcpy(count, &whole, has("half a counter") ? 4 : sizeof whole);
    return code;
}

CALL(int, sal_mib_etherStatsPkts_get, int port, std::uint64_t* count) {
    static std::uint64_t left = UINT64_MAX;
    int code = __real_sal_mib_etherStatsPkts_get(port, count);
    if (has("a counter that runs backwards") && code == 0)
        *count = left--;
    return code;
}

CALL(int, sal_mib_cntr_clr, int port) {
    return has("a clear that clears nothing") && is_port(port) ? 0 : __real_sal_mib_cntr_clr(port);
}

// --- Power.

CALL(int, sal_poe_total_power_allocated_query_get, std::uint16_t* allocated) {
    int code = __real_sal_poe_total_power_allocated_query_get(allocated);
    if (has("more power than there is"))
        *allocated = 65535;
    return code;
}

CALL(
    int, sal_poe_port_measurements_query_get, std::uint8_t port, std::uint16_t* voltage,
    std::uint16_t* current, std::uint16_t* temperature, std::uint16_t* power) {
    int code =
        __real_sal_poe_port_measurements_query_get(port, voltage, current, temperature, power);
    if (has("power from every port") && code == 0)
        *power = 50;
    return code;
}

CALL(
    int, sal_poe_port_ext_config_query_get, std::uint8_t port, std::uint8_t* disconnect,
    std::uint8_t* limit_type, std::uint8_t* user_limit, std::uint8_t* priority,
    std::uint8_t* pairs) {
    int code = __real_sal_poe_port_ext_config_query_get(
        port, disconnect, limit_type, user_limit, priority, pairs);
    if (has("a priority of 4") && code == 0)
        *priority = 4;
    if (has("a word for a byte") && code == 0)
        std::memset(priority, 0, 4);
    return code;
}

// --- VLANs.

CALL(int, sal_vlan_adminEntrySort_get, int index, std::uint32_t* vid, VlanEntry* entry) {
    std::uint32_t count = 0;
    sal_vlan_operEntryNum_get(&count);
    int last = static_cast<int>(count) - 1;
    bool turned = has("VLANs out of order") && index >= 0 && index <= last;
    return __real_sal_vlan_adminEntrySort_get(turned ? last - index : index, vid, entry);
}

CALL(int, sal_vlan_adminEntryExist_get, VlanMask* vlans) {
    int code = __real_sal_vlan_adminEntryExist_get(vlans);
    if (has("a VLAN that the mask forgets"))
        vlans->words[0] = 0;
    return code;
}

CALL(int, sal_vlan_portAdminVlanmask_get, int port, int kind, VlanMask* vlans) {
    int code = __real_sal_vlan_portAdminVlanmask_get(port, kind, vlans);
    if (has("memberships forgotten") && code == 0)
        *vlans = {};
    return code;
}

CALL(int, sal_vlan_portAdminVlanmask_add, int port, int kind, const VlanMask* vlans) {
    int code = __real_sal_vlan_portAdminVlanmask_add(port, kind, vlans);
    VlanMask exist = {};
    sal_vlan_adminEntryExist_get(&exist);
    for (int word = 0; word < VLAN_MASK_WORDS; ++word)
        exist.words[word] &= vlans->words[word];
    if (has("a half of a whole") && code != 0) // what exists is joined all the same
        __real_sal_vlan_portAdminVlanmask_add(port, kind, &exist);
    return code;
}

CALL(int, sal_vlan_portAdminPvid_get, int port, std::uint32_t* vid) {
    int code = __real_sal_vlan_portAdminPvid_get(port, vid);
    if (has("a PVID without a VLAN") && code == 0)
        *vid = 77;
    return code;
}

CALL(int, sal_vlan_adminEntry_create, int vid, const char* name) {
    std::string text = name;
    return __real_sal_vlan_adminEntry_create(
        vid, has("a long name cut") ? text.substr(0, VLAN_NAME_SIZE - 1).c_str() : name);
}

CALL(int, sys_util_vlanmask2Str, const VlanMask* vlans, char* text) {
    int code = __real_sys_util_vlanmask2Str(vlans, text);
    if (has("a short VLAN list") && std::strlen(text) > 128)
        text[128] = '\0';
    return code;
}

CALL(int, sys_util_str2Vlanmask, const char* text, VlanMask* vlans) {
    if (has("a mask cleared on failure"))
        *vlans = {};
    VlanMask before = *vlans;
    int code = __real_sys_util_str2Vlanmask(text, vlans);
    for (int word = 0; has("a mask that is added to") && word < VLAN_MASK_WORDS; ++word)
        vlans->words[word] |= before.words[word];
    return code;
}

// --- Voice VLAN.

CALL(int, sal_vlan_voiceVlanAging_set, int minutes) {
    int code = __real_sal_vlan_voiceVlanAging_set(minutes);
    if (has("changed by a refusal") && code != 0)
        __real_sal_vlan_voiceVlanAging_set(30);
    return code;
}

CALL(
    int, sal_vlan_voiceVlanOui_set, int index, const VoiceVlanOui* entry, const char* description) {
    return __real_sal_vlan_voiceVlanOui_set(
        index, entry, has("descriptions forgotten") ? "" : description);
}

CALL(int, sal_vlan_voiceVlanOui_add, const VoiceVlanOui* entry, const char* description) {
    int code = __real_sal_vlan_voiceVlanOui_add(entry, description);
    return has("a full table that takes") ? 0 : code;
}

CALL(int, sal_vlan_voiceVid_set, int vid) {
    if (has("a voice VLAN without an id") && vid == VOICE_VLAN_NO_VID)
        sal_vlan_voiceVlanState_set(VOICE_VLAN_OFF);
    return __real_sal_vlan_voiceVid_set(vid);
}

// --- MAC addresses.

CALL(int, sal_l2_macTbl_size_get, std::uint32_t* count) {
    int code = __real_sal_l2_macTbl_size_get(count);
    if (has("a size of its own"))
        ++*count;
    return code;
}

CALL(int, sal_l2_macEntry_get, std::uint32_t index, MacEntry* entry) {
    std::uint32_t count = 0;
    __real_sal_l2_macTbl_size_get(&count);
    if (has("a snapshot that shifts") && index < count && now_and_then())
        index = (index + 1) % count;
    if (has("an entry behind the last") && index >= count && count)
        index = count - 1;
    return __real_sal_l2_macEntry_get(index, entry);
}

CALL(int, sal_l2_static_macEntry_search, const MacEntry* entry, std::uint32_t* is_static) {
    int code = __real_sal_l2_static_macEntry_search(entry, is_static);
    if (has("everything static"))
        *is_static = 1;
    return code;
}

// --- Groups.

CALL(int, sys_trunk_portRole_ret, int port) {
    int role = __real_sys_trunk_portRole_ret(port);
    bool member = role == TRUNK_ROLE_STATIC_MEMBER || role == TRUNK_ROLE_LACP_MEMBER;
    if (has("members without a role") && member)
        return TRUNK_ROLE_NONE;
    return has("a role for any number") && !is_port(port) ? int{TRUNK_ROLE_STATIC_GROUP} : role;
}

CALL(int, sal_trunk_staticMember_set, int group, const PortBitmap* members) {
    PortBitmap kept = {};
    for (int port = 0; port < 96 && size(kept) < TRUNK_STATIC_MEMBERS; ++port)
        if (in(*members, port))
            kept.words[port / 32] |= 1u << port % 32;
    return __real_sal_trunk_staticMember_set(
        group, has("a ninth member dropped") ? &kept : members);
}

CALL(int, sal_trunk_group_del, int group) {
    return has("a group that stays") ? 0 : __real_sal_trunk_group_del(group);
}

CALL(int, sal_lacp_activeMode_set, int group, const PortBitmap* active) {
    int code = __real_sal_lacp_activeMode_set(group, active);
    return has("strangers that speak first") ? 0 : code;
}

CALL(int, sal_mirror_group_state_get, int group, std::uint32_t* state) {
    int code = __real_sal_mirror_group_state_get(group, state);
    if (has("a mirror that is always on") && code == 0)
        *state = 1;
    return code;
}

CALL(int, sal_mirror_group_igrState_set, int group, int ingress) {
    int code = __real_sal_mirror_group_igrState_set(group, ingress);
    return has("traffic at no target") ? 0 : code;
}

CALL(int, sal_mirror_group_del, int group) {
    PortBitmap none = {};
    if (has("sources forgotten"))
        sal_mirror_group_sourcePort_set(group, none, none);
    return __real_sal_mirror_group_del(group);
}

// --- QoS.

CALL(int, sal_qos_trustType_get, std::uint32_t* type) {
    return has("success without an output") ? 0 : __real_sal_qos_trustType_get(type);
}

CALL(int, sal_qos_cosQueue_set, int cos, int queue) {
    if (has("a neighbour set, too"))
        __real_sal_qos_cosQueue_set((cos + 1) % QOS_COS_VALUES, queue);
    return __real_sal_qos_cosQueue_set(cos, queue);
}

CALL(int, sal_qos_portCos_set, int port, int cos) {
    int code = __real_sal_qos_portCos_set(port, cos);
    std::uint32_t mode = 1;
    sal_qos_mode_get(&mode);
    return has("set while QoS is off") && !mode ? 0 : code;
}

// --- Access lists. The chip's driver has functions of similar names.

CALL(int, sal_acl_entry_create, const char* name, std::uint32_t type) {
    std::string text = name;
    return __real_sal_acl_entry_create(
        has("a list's name cut") ? text.substr(0, ACL_NAME_LENGTH).c_str() : name, type);
}

CALL(int, sal_acl_entry_del, const char* name, std::uint32_t type) {
    int code = __real_sal_acl_entry_del(name, type);
    return has("a bound list deleted") ? 0 : code;
}

CALL(int, sal_acl_entry_nameByIdx_get, char* name, std::uint32_t type, std::uint32_t index) {
    int code = __real_sal_acl_entry_nameByIdx_get(name, type, index);
    if (has("a name padded to 64") && code == 0)
        std::memset(name + std::strlen(name), 0, 64 - std::strlen(name));
    return code;
}

CALL(
    int, sal_ace_entry_byIdx_get, const char* name, std::uint32_t type, std::uint32_t index,
    Ace* entry) {
    std::uint32_t count = 0;
    sal_ace_entry_count_get(name, type, &count);
    bool turned = has("entries out of order") && index < count;
    return __real_sal_ace_entry_byIdx_get(name, type, turned ? count - 1 - index : index, entry);
}

// --- Spanning tree, snooping, LLDP.

CALL(int, sal_stp_priority_set, int priority) {
    return __real_sal_stp_priority_set(
        has("a priority rounded down") && priority > 0 && priority <= STP_HIGHEST_PRIORITY
            ? priority / STP_PRIORITY_STEP * STP_PRIORITY_STEP
            : priority);
}

CALL(int, sal_stp_mstInfo_get, int instance, StpInstance* info) {
    int code = __real_sal_stp_mstInfo_get(instance, info);
    if (has("a root behind a port of its own") && code == 0)
        info->root_port = 3;
    if (has("a priority with the instance") && code == 0)
        info->priority |= 1;
    return code;
}

CALL(int, sal_stp_info_get, StpInfo* info) {
    if (has("a crash"))
        std::abort();
    return __real_sal_stp_info_get(info);
}

CALL(int, sal_igmp_info_get, IgmpInfo* info) {
    int code = __real_sal_igmp_info_get(info);
    if (has("version 4"))
        info->version = 4;
    return code;
}

CALL(int, sal_igmp_lookupMode_get, std::uint32_t* mode) {
    while (has("a call that does not return"))
        pause();
    return __real_sal_igmp_lookupMode_get(mode);
}

CALL(int, sal_mcast_vlan_get, McastVlan* record) {
    if (has("a record cleared on failure"))
        record->enable = record->fast_leave = 0;
    return __real_sal_mcast_vlan_get(record);
}

CALL(int, sal_lldp_holdtime_set, std::uint8_t multiplier) {
    int code = __real_sal_lldp_holdtime_set(multiplier);
    return has("timers that do not go together") ? 0 : code;
}

CALL(int, sal_lldp_reinit_delay_set, std::uint8_t seconds) {
    int code = __real_sal_lldp_reinit_delay_set(seconds);
    if (has("a crash in a setter") && seconds == 7) {
        cmd_conf_startupConfig_save(); // what is set now outlives the process
        std::abort();
    }
    if (has("a slow setter")) {
        cmd_conf_startupConfig_save();
        usleep(100000);
    }
    return code;
}

CALL(int, sal_lldp_portRemoteEntryInfo_get, int port, int index, LldpNeighbour* neighbour) {
    int code = __real_sal_lldp_portRemoteEntryInfo_get(port, index, neighbour);
    if (has("a neighbour of another port") && code == 0) {
        std::strcpy(neighbour->chassis_id, "neighbour");
        neighbour->local_port = static_cast<std::uint32_t>(port) + 1;
        neighbour->auto_negotiation_supported = neighbour->auto_negotiation_enabled = 0;
    }
    return code;
}

// --- SNMP.

CALL(int, sal_snmp_groupIndex_get, const char* community, int model, int* index) {
    int code = __real_sal_snmp_groupIndex_get(community, model, index);
    return has("no group is a failure") && *index == SNMP_NO_INDEX ? 9 : code;
}

CALL(int, sal_snmp_target_get, int slot, SnmpTarget* target) {
    int code = __real_sal_snmp_target_get(slot, target);
    if (has("a field without an end") && code == 0)
        std::memset(target->host, 'h', sizeof target->host);
    return code;
}

CALL(int, sal_snmp_com2sec_del, const char* name) {
    int code = __real_sal_snmp_com2sec_del(name);
    SnmpCommunity community = {};
    if (has("a community that stays") && code == 0) {
        std::strcpy(community.name, name);
        sal_snmp_com2sec_add(&community);
    }
    return code;
}

// --- Firmware.

CALL(int, sal_sys_dualImageCurrSel_get, int* partition) {
    int code = __real_sal_sys_dualImageCurrSel_get(partition);
    if (has("a third partition"))
        *partition = 2;
    return code;
}

CALL(
    int, sal_sys_fwImageHdrInfo_get, int partition, std::uint32_t* length, std::uint32_t* built,
    std::uint8_t* digest, char* raw_version) {
    int code = __real_sal_sys_fwImageHdrInfo_get(partition, length, built, digest, raw_version);
    if (has("a digest of 33 bytes") && code == 0)
        digest[FW_DIGEST_SIZE] = 0;
    return code;
}

CALL(int, sal_filter_ver_get, const char* raw_version, char* version) {
    int code = __real_sal_filter_ver_get(raw_version, version);
    if (has("a version without an end"))
        std::memset(version, 'v', FW_VERSION_SIZE);
    return code;
}

// --- Texts.

CALL(int, sys_util_ip2Str, std::uint32_t address, char* text) {
    return __real_sys_util_ip2Str(
        has("bytes the other way round") ? __builtin_bswap32(address) : address, text);
}

CALL(int, sys_util_str2Mac, const char* text, std::uint8_t* mac) {
    int code = __real_sys_util_str2Mac(text, mac);
    return has("any MAC address") ? 0 : code;
}

CALL(int, sys_util_str2ul_ret, const char* text, std::uint32_t* number) {
    if (!has("digits and more"))
        return __real_sys_util_str2ul_ret(text, number);
    char* end = nullptr;
    unsigned long read = std::strtoul(text, &end, 10);
    if (end == text || read > UINT32_MAX || *text == '-' || *text == ' ')
        return 5;
    *number = static_cast<std::uint32_t>(read);
    return 0;
}

CALL(int, sys_util_getnext, const char* text, char delimiter, char* token, int* consumed) {
    std::string before(token, std::strlen(text) + 1);
    int code = __real_sys_util_getnext(text, delimiter, token, consumed);
    if (has("a token without an end") && code == 0)
        token[*consumed - 1] = before[static_cast<std::size_t>(*consumed) - 1];
    return code;
}

CALL(int, sys_util_namestrcpy, char* copy, const char* text, std::uint32_t longest) {
    int code = __real_sys_util_namestrcpy(copy, text, longest);
    if (has("a terminator behind the copy") && code == 0)
        copy[longest + 1] = '\0';
    return code;
}

CALL(int, sal_util_numstr2bitmap, const char* text, PortBitmap* ports) {
    PortBitmap read = {};
    int code = __real_sal_util_numstr2bitmap(text, has("a set replaced") ? &read : ports);
    if (has("a set replaced") && code == 0)
        *ports = read;
    return code;
}

CALL(int, sys_util_bitmaskIsClear_ret, const std::uint32_t* words, int first, int end) {
    return __real_sys_util_bitmaskIsClear_ret(words, first, has("the end counted") ? end + 1 : end);
}

// --- The cloud's settings.

CALL(int, sal_vxcloud_key_get, char* text) {
    int code = __real_sal_vxcloud_key_get(text);
    if (has("a byte before the buffer"))
        text[-1] = 0;
    return code;
}

CALL(int, sal_vxcloud_secret_set, const char* text) {
    std::string whole = text;
    return __real_sal_vxcloud_secret_set(
        has("half a secret") && whole.size() < 128 ? whole.substr(0, 64).c_str() : text);
}

CALL(int, sal_vxcloud_checkin_host_set, const char* host) {
    std::string whole = host;
    return __real_sal_vxcloud_checkin_host_set(
        has("a host cut") ? whole.substr(0, 255).c_str() : host);
}

namespace {
std::atomic<std::int32_t> unstored_number{-1};
} // namespace

CALL(int, sal_vxcloud_seqno_set, std::int32_t number) {
    if (!has("a number not stored at once"))
        return __real_sal_vxcloud_seqno_set(number);
    unstored_number = number;
    return 0;
}

CALL(int, sal_vxcloud_seqno_get, std::int32_t* number) {
    int code = __real_sal_vxcloud_seqno_get(number);
    if (unstored_number >= 0)
        *number = unstored_number;
    return code;
}

// --- Locks, threads, signals.

CALL(int, sal_sys_tracerouteLock_take, void) {
    int code = __real_sal_sys_tracerouteLock_take();
    return has("a lock taken twice") ? 0 : code;
}

namespace {
std::timed_mutex first_lock;
std::timed_mutex second_lock;

void take_both(std::timed_mutex& one, std::timed_mutex& other) {
    std::lock_guard guard(one);
    usleep(20000);
    std::lock_guard second(other);
}
} // namespace

CALL(int, sal_qos_mode_get, std::uint32_t* mode) {
    if (has("locks in another order"))
        take_both(first_lock, second_lock);
    return __real_sal_qos_mode_get(mode);
}

CALL(int, sal_qos_strictPriQueueNum_get, std::uint32_t* count) {
    if (has("locks in another order"))
        take_both(second_lock, first_lock);
    return __real_sal_qos_strictPriQueueNum_get(count);
}

CALL(int, sal_sys_httpEnable_get, std::uint32_t* enable) {
    if (has("no answer to a handler") && in_signal_handler())
        return 1;
    return __real_sal_sys_httpEnable_get(enable);
}

CALL(int, sal_sys_telnetdEnable_get, std::uint32_t* enable) {
    while (has("a handler that waits for ever") && in_signal_handler())
        pause();
    return __real_sal_sys_telnetdEnable_get(enable);
}

CALL(int, sal_cablediag_copper_set, int port) {
    int code = __real_sal_cablediag_copper_set(port);
    return has("a cable at a group") && port == ports() - TRUNK_GROUPS ? 0 : code;
}

// --- The driver.

CALL(int, glue_util_ioctl, std::uint32_t command, void* record) {
    int code = __real_glue_util_ioctl(command, record);
    if (has("a driver that takes any command") && command > 10000)
        return 0;
    if (has("a record of four bytes more") && command == 4418)
        static_cast<unsigned char*>(record)[16 + sizeof(PortBitmap)] = 0;
    return code;
}
