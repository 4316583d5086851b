// The keys of a port stand in a table, in the order in which they are applied.
#include "sections/port/configuration.h"

#include <stdint.h>
#include <stdio.h>

#include "base/debug.h"
#include "base/errors.h"
#include "base/port_id.h"
#include "base/port_set.h"
#include "base/ports.h"
#include "base/state.h"
#include "json/json_document.h"
#include "platform/acl.h"
#include "platform/poe.h"
#include "platform/port.h"
#include "platform/qos.h"
#include "platform/rate.h"
#include "platform/system.h"
#include "platform/trunk.h"
#include "platform/vlan.h"
#include "platform/voice_vlan.h"
#include "sections/acl/bindings.h"
#include "sections/port/bounce.h"
#include "sections/port/power.h"
#include "sections/port/speed.h"
#include "sections/port/vlan_upkeep.h"
#include "sections/section.h"

namespace {

enum { HIGHEST_USER_LIMIT = 30 }; // watts

// What is known before the first port.
struct PortConfig {
    bool qos_was_off;
    PortBitmap voice_members; // of the voice VLAN; empty while it is off
};

using Setter = int (*)(int port, int value);

int apply_port_bool(const cJSON* object, const char* key, int port, Setter set) {
    return apply_bool(object, key, [=](bool value) { return set(port, value); });
}

int apply_port_int(const cJSON* object, const char* key, int port, Setter set) {
    return apply_int(object, key, [=](int value) { return set(port, value); });
}

// --- "enable" and "reset".

// What was just set counts, whether or not the port has come to it.
int read_enable(const cJSON* settings, int port, bool* enable) {
    if (read_bool(settings, "enable", enable))
        return 0;
    uint32_t state = 0;
    int code = sal_port_enable_get(port, &state);
    *enable = state == 1;
    return code;
}

int apply_reset(const cJSON* settings, int port) {
    bool reset = false;
    bool enable = false;
    if (!read_bool(settings, "reset", &reset) || !reset)
        return 0;
    if (int code = read_enable(settings, port, &enable))
        return code;
    if (enable)
        bounce_port(port);
    bool power_reset = reset_power(port);
    if (enable || power_reset)
        mark_port_reset(port);
    return 0;
}

int apply_state(PortConfig*, const cJSON* settings, int port) {
    if (int code = apply_port_bool(settings, "enable", port, sal_port_enable_set))
        return code;
    return apply_reset(settings, port);
}

int apply_isolation(PortConfig*, const cJSON* settings, int port) {
    return apply_port_bool(settings, "isolation", port, sal_port_protected_set);
}

int apply_pvid(PortConfig*, const cJSON* settings, int port) {
    return apply_port_int(settings, "pvid", port, sal_vlan_portAdminPvid_set);
}

// --- "poe". The library takes the port, and what is counted here, as 8-bit numbers.

int set_poe_priority(int port, int value) {
    return sal_poe_port_priority_config_set(static_cast<uint8_t>(port), value);
}

int set_poe_enable(int port, int value) {
    return sal_poe_port_pse_enable_set(static_cast<uint8_t>(port), value);
}

// The cloud counts from 0, the library from 1. A limit of the user's own leaves the class out.
int set_limit_type(int port, int value) {
    uint8_t type = static_cast<uint8_t>(value + 1u);
    if (int code = sal_poe_power_th_type_config_set(static_cast<uint8_t>(port), type))
        return code;
    return sal_poe_port_classification_type_config_set(
        static_cast<uint8_t>(port), type != POE_LIMIT_BY_USER);
}

// A limit beyond the range would come out as a small one: the whole document is refused.
int apply_user_limit(const PortConfig* config, const cJSON* poe, int port) {
    int watts = 0;
    if (!read_int(poe, "power_limit_user", &watts))
        return 0;
    uint8_t limit = static_cast<uint8_t>(watts);
    if (limit > HIGHEST_USER_LIMIT) {
        if (config->qos_was_off)
            sal_qos_mode_set(0);
        return ERROR_REFUSED;
    }
    return sal_poe_port_maxpower_config_set(
        static_cast<uint8_t>(port), static_cast<uint8_t>(limit * USER_LIMIT_UNIT));
}

int apply_poe(PortConfig* config, const cJSON* settings, int port) {
    const cJSON* poe = getJsonObjectForKey(settings, "poe");
    if (!poe || !has_poe(port))
        return 0;
    if (int code = apply_port_int(poe, "priority", port, set_poe_priority))
        return code;
    if (int code = apply_port_int(poe, "power_limit_type", port, set_limit_type))
        return code;
    if (int code = apply_user_limit(config, poe, port))
        return code;
    return apply_port_bool(poe, "enable", port, set_poe_enable);
}

// --- "tagged_vlans" and "untagged_vlans".

// A list that cannot be applied does not keep the port from its other settings.
void apply_vlan_list(const cJSON* settings, const char* key, int port, int kind) {
    if (const char* text = getJsonStringValueForKey(settings, key))
        Auto_edit_vlan(port, kind, text);
}

int apply_vlans(PortConfig*, const cJSON* settings, int port) {
    apply_vlan_list(settings, "tagged_vlans", port, VLAN_TAGGED);
    apply_vlan_list(settings, "untagged_vlans", port, VLAN_UNTAGGED);
    return 0;
}

// --- "rate_limit".

// Of one direction of traffic.
struct RateSetting {
    const char* rate_key;
    const char* enable_key;
    int (*is_on)(int port, uint32_t* on);
    Setter set_rate;
    Setter set_enable;
};

const RateSetting rate_settings[] = {
    {"tx_limit_kbps", "enable_tx", sal_rate_egrBandwidthCtrlEnable_get,
     sal_rate_egrBandwidthCtrlRate_set, sal_rate_egrBandwidthCtrlEnable_set},
    {"rx_limit_kbps", "enable_rx", sal_rate_igrBandwidthCtrlEnable_get,
     sal_rate_igrBandwidthCtrlRate_set, sal_rate_igrBandwidthCtrlEnable_set},
};

// A limit that is off and is given no rate is opened, so that it does not bite when it is switched
// on.
int apply_rate(const RateSetting& limit, const cJSON* settings, int port) {
    int kbps = 0;
    if (read_int(settings, limit.rate_key, &kbps))
        return kbps ? limit.set_rate(port, kbps) : 0;
    uint32_t on = 0;
    if (int code = limit.is_on(port, &on))
        return code;
    return on ? 0 : limit.set_rate(port, RATE_UNLIMITED);
}

bool may_limit(int port) {
    return !is_group(port) && sys_trunk_portRole_ret(port) == TRUNK_ROLE_NONE;
}

// Rates before enables: a limit that is switched on has its new rate from the first frame.
int apply_rate_limit(PortConfig*, const cJSON* settings, int port) {
    const cJSON* object = getJsonObjectForKey(settings, "rate_limit");
    if (!object || !may_limit(port))
        return 0;
    for (const RateSetting& limit : rate_settings) {
        if (int code = apply_rate(limit, object, port))
            return code;
    }
    for (const RateSetting& limit : rate_settings) {
        if (int code = apply_port_bool(object, limit.enable_key, port, limit.set_enable))
            return code;
    }
    return 0;
}

// --- The rest.

int set_speed_mode(int port, int code) {
    if (static_cast<uint32_t>(code) > SPEED_10G_FULL)
        return ERROR_BAD_VALUE;
    return apply_speed_code(port, code);
}

int apply_speed_mode(PortConfig*, const cJSON* settings, int port) {
    return apply_port_int(settings, "link_speed_mode", port, set_speed_mode);
}

int apply_flow_control(PortConfig*, const cJSON* settings, int port) {
    return apply_port_bool(settings, "flow_control", port, sal_port_flowCtrl_set);
}

int apply_qos(PortConfig*, const cJSON* settings, int port) {
    const cJSON* qos = getJsonObjectForKey(settings, "qos");
    if (int code = apply_port_int(qos, "cos_value", port, sal_qos_portCos_set))
        return code;
    return apply_port_bool(qos, "trust", port, sal_qos_portTrustState_set);
}

// A port that is in the voice VLAN by itself keeps its settings there.
int apply_voice_vlan(PortConfig* config, const cJSON* settings, int port) {
    const cJSON* voice = getJsonObjectForKey(settings, "voice_vlan");
    if (has_port(config->voice_members, port))
        return 0;
    if (int code = apply_port_bool(voice, "enable", port, sal_vlan_portVoiceVlanEnable_set))
        return code;
    return apply_port_int(voice, "cos_mode", port, sal_vlan_portVoiceVlancosMode_set);
}

int apply_acl(PortConfig*, const cJSON* settings, int port) {
    const cJSON* acl = getJsonObjectForKey(settings, "acl");
    if (!acl)
        return 0;
    const char* mac = getJsonStringValueForKey(acl, "mac");
    const char* ipv4 = getJsonStringValueForKey(acl, "ipv4");
    printf("\n\nid %d", port);
    printf("bindMacAcldata %s", mac ? mac : "(null)");
    printf("bindIpv4Acldata %s", ipv4 ? ipv4 : "(null)");
    vxc_acl_port_bind(port, mac, ACL_IPV4, ipv4);
    return 0;
}

// --- One port.

using KeyApplier = int (*)(PortConfig* config, const cJSON* settings, int port);

const KeyApplier appliers[] = {
    apply_state, apply_isolation,  apply_pvid,       apply_poe,
    apply_vlans, apply_rate_limit, apply_speed_mode, apply_flow_control,
    apply_qos,   apply_voice_vlan, apply_acl,
};

bool find_port(const cJSON* settings, int* port) {
    const char* id = getJsonStringValueForKey(settings, "id");
    if (!id)
        return false;
    if (parse_port_id(id, port) && is_port(*port))
        return true;
    int ports = sys_logic_port_num_ret();
    debug_print("\nid => %d \n", ports);
    return false;
}

// An element that names no port is recorded and passed over.
int apply_port(PortConfig* config, const cJSON* settings) {
    int port = 0;
    if (!find_port(settings, &port)) {
        record_error(ERROR_BAD_VALUE);
        return 0;
    }
    for (KeyApplier apply : appliers) {
        if (int code = apply(config, settings, port))
            return code;
    }
    return 0;
}

// --- All ports.

// The ports' class and trust settings are taken only while QoS is on.
int switch_qos_on(PortConfig* config) {
    uint32_t mode = 0;
    if (int code = sal_qos_mode_get(&mode))
        return code;
    config->qos_was_off = mode == 0;
    return config->qos_was_off ? sal_qos_mode_set(1) : 0;
}

int find_members(int vid, PortBitmap* members) {
    uint32_t count = 0;
    if (int code = sal_vlan_operEntryNum_get(&count))
        return code;
    for (uint32_t index = 0; index < count; ++index) {
        uint32_t entry_vid = 0;
        VlanEntry entry = {};
        if (sal_vlan_adminEntrySort_get(static_cast<int>(index), &entry_vid, &entry))
            continue;
        if (entry_vid == static_cast<uint32_t>(vid)) {
            *members = entry.members;
            break;
        }
    }
    return 0;
}

int find_voice_members(PortBitmap* members) {
    int vid = 0;
    int state = 0;
    if (int code = sal_vlan_voiceVid_get(&vid))
        return code;
    if (int code = sal_vlan_voiceVlanState_get(&state))
        return code;
    return state ? find_members(vid, members) : 0;
}

int apply_ports(const cJSON* settings) {
    PortConfig config = {};
    if (int code = switch_qos_on(&config))
        return code;
    if (int code = find_voice_members(&config.voice_members))
        return code;
    for (; settings; settings = getJsonNext(settings)) {
        if (int code = apply_port(&config, settings))
            return code;
    }
    return config.qos_was_off ? sal_qos_mode_set(0) : 0;
}

} // namespace

int vxc_port_set(const cJSON* system) {
    if (!getJsonObjectForKey(system, "ports"))
        return ERROR_NO_SECTION;
    if (int code = apply_ports(getJsonChild(getJsonArrayForKey(system, "ports"))))
        return record_error(code);
    Clear_no_member_vlan();
    return 0;
}
