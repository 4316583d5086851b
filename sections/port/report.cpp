// A port is reported member by member; the first failing call ends the report.
#include "sections/port/report.h"

#include <string.h>

#include "base/errors.h"
#include "base/port_id.h"
#include "base/ports.h"
#include "base/state.h"
#include "json/json_document.h"
#include "platform/acl.h"
#include "platform/port.h"
#include "platform/qos.h"
#include "platform/rate.h"
#include "platform/system.h"
#include "platform/vlan.h"
#include "platform/voice_vlan.h"
#include "sections/port/addresses.h"
#include "sections/port/counters.h"
#include "sections/port/power.h"
#include "sections/port/speed.h"

namespace {

// What a report knows before its first port, and adds up on the way.
struct PortReport {
    MacLists macs;
    AclPortBinding bindings[ACL_PORTS];
    uint16_t budget;            // PoE, in tenths of a watt
    uint16_t draw;              // of all ports, in tenths of a watt; wraps at 16 bits
    char vlans[VLAN_TEXT_SIZE]; // all zero between two lists
};

bool is_marked_reset(int port) { return port < PORT_RESET_FLAGS && gCattr.port_reset_flags[port]; }

// --- Members up to "flow_control". Each reads what it shows first and shows nothing on a failure.

int add_state(cJSON* object, int port, uint32_t* link) {
    char id[PORT_ID_SIZE];
    uint32_t enable = 0;
    if (int code = sal_port_enable_get(port, &enable))
        return code;
    if (int code = sal_port_linkStatus_get(port, link))
        return code;
    format_port_id(port, id);
    addJsonObjectStringItem(object, "id", id);
    addJsonObjectIntItem(object, "status", static_cast<int32_t>(*link));
    addJsonObjectBoolItem(object, "enable", enable != 0);
    addJsonObjectBoolItem(object, "connkeeper_reset", is_marked_reset(port));
    return 0;
}

int add_pvid(cJSON* object, int port) {
    uint32_t pvid = 0;
    if (int code = sal_vlan_portAdminPvid_get(port, &pvid))
        return code;
    addJsonObjectIntItem(object, "pvid", static_cast<int32_t>(pvid));
    return 0;
}

int add_vlans(PortReport* report, cJSON* object, int port, const char* key, int kind) {
    VlanMask vlans = {};
    char* text = report->vlans;
    if (int code = sal_vlan_portAdminVlanmask_get(port, kind, &vlans))
        return code;
    if (int code = sys_util_vlanmask2Str(&vlans, text))
        return code;
    addJsonObjectStringItem(object, key, text);
    memset(text, 0, strlen(text));
    return 0;
}

struct RateLimit {
    uint32_t on;
    uint32_t kbps; // 0 while the limit is off
};

using RateGetter = int (*)(int port, uint32_t* value);

int read_limit(int port, RateGetter is_on, RateGetter rate, RateLimit* limit) {
    if (int code = is_on(port, &limit->on))
        return code;
    return limit->on == 1 ? rate(port, &limit->kbps) : 0;
}

int add_rate_limit(cJSON* object, int port) {
    if (is_group(port))
        return 0;
    RateLimit rx = {};
    RateLimit tx = {};
    if (int code = read_limit(
            port, sal_rate_igrBandwidthCtrlEnable_get, sal_rate_igrBandwidthCtrlRate_get, &rx))
        return code;
    if (int code = read_limit(
            port, sal_rate_egrBandwidthCtrlEnable_get, sal_rate_egrBandwidthCtrlRate_get, &tx))
        return code;
    cJSON* limit = attachJsonObject(object, "rate_limit");
    addJsonObjectBoolItem(limit, "enable_tx", tx.on != 0);
    addJsonObjectBoolItem(limit, "enable_rx", rx.on != 0);
    addJsonObjectIntItem(limit, "tx_limit_kbps", static_cast<int32_t>(tx.kbps));
    addJsonObjectIntItem(limit, "rx_limit_kbps", static_cast<int32_t>(rx.kbps));
    return 0;
}

int add_speed(cJSON* object, int port, bool has_link) {
    PortSpeed speed = {};
    PortDuplex duplex = {};
    PortLinkMode running = {};
    if (int code = sal_port_speed_get(port, &speed))
        return code;
    if (int code = sal_port_duplex_get(port, &duplex))
        return code;
    int configured = configured_speed_code(&speed, &duplex);
    int negotiated = configured;
    if (has_link) {
        if (int code = sal_port_speedDuplex_get(port, &running))
            return code;
        negotiated = running_speed_code(&running);
    }
    addJsonObjectIntItem(object, "link_speed_mode", configured);
    addJsonObjectIntItem(object, "link_speed_neg", negotiated);
    return 0;
}

int add_flow_control(cJSON* object, int port) {
    uint32_t configured = 0;
    uint32_t running = 0;
    if (int code = sal_port_flowCtrl_get(port, &configured, &running))
        return code;
    addJsonObjectBoolItem(object, "flow_control", configured != 0);
    return 0;
}

int add_leading_members(PortReport* report, cJSON* object, int port) {
    uint32_t link = 0;
    uint16_t draw = 0;
    if (int code = add_state(object, port, &link))
        return code;
    if (int code = add_pvid(object, port))
        return code;
    if (int code = add_vlans(report, object, port, "tagged_vlans", VLAN_TAGGED))
        return code;
    if (int code = add_vlans(report, object, port, "untagged_vlans", VLAN_UNTAGGED))
        return code;
    addJsonObject(object, "connected_device_mac_list", take_mac_list(&report->macs, port));
    if (int code = add_port_poe(object, port, &draw))
        return code;
    report->draw = static_cast<uint16_t>(report->draw + draw);
    if (int code = add_rate_limit(object, port))
        return code;
    if (int code = add_speed(object, port, link == 1))
        return code;
    return add_flow_control(object, port);
}

// --- Members from "isolation" on.

int add_isolation(cJSON* object, int port) {
    uint32_t isolated = 0;
    if (int code = sal_port_protected_get(port, &isolated))
        return code;
    addJsonObjectBoolItem(object, "isolation", isolated != 0);
    return 0;
}

int add_qos(cJSON* object, int port) {
    uint32_t cos = 0;
    uint32_t trust = 0;
    if (int code = sal_qos_portCos_get(port, &cos))
        return code;
    if (int code = sal_qos_portTrustState_get(port, &trust))
        return code;
    cJSON* qos = attachJsonObject(object, "qos");
    addJsonObjectIntItem(qos, "cos_value", static_cast<int32_t>(cos));
    addJsonObjectBoolItem(qos, "trust", trust != 0);
    return 0;
}

void add_acl(const PortReport* report, cJSON* object, int port) {
    cJSON* acl = attachJsonObject(object, "acl");
    if (port >= ACL_PORTS)
        return;
    addJsonObjectStringItem(acl, "mac", report->bindings[port].name[ACL_MAC]);
    addJsonObjectStringItem(acl, "ipv4", report->bindings[port].name[ACL_IPV4]);
}

int add_voice_vlan(cJSON* object, int port) {
    int enable = 0;
    int cos_mode = 0;
    if (int code = sal_vlan_portVoiceVlanEnable_get(port, &enable))
        return code;
    if (int code = sal_vlan_portVoiceVlancosMode_get(port, &cos_mode))
        return code;
    cJSON* voice = attachJsonObject(object, "voice_vlan");
    addJsonObjectBoolItem(voice, "enable", enable);
    addJsonObjectIntItem(voice, "cos_mode", cos_mode);
    return 0;
}

int add_trailing_members(const PortReport* report, cJSON* object, int port) {
    if (int code = add_isolation(object, port))
        return code;
    if (int code = add_port_statistics(object, port))
        return code;
    if (int code = add_qos(object, port))
        return code;
    add_acl(report, object, port);
    return add_voice_vlan(object, port);
}

// --- The whole.

// A port stands in the array from its leading members on: what fails later leaves it there.
int report_port(PortReport* report, cJSON* ports, int port) {
    cJSON* object = createJsonObject();
    if (int code = add_leading_members(report, object, port)) {
        deleteJsonObject(object);
        return code;
    }
    addJsonArrayItem(ports, object);
    return add_trailing_members(report, ports ? object : nullptr, port);
}

int report_ports(PortReport* report, cJSON* ports) {
    if (int code = collect_mac_lists(&report->macs))
        return code;
    if (int code = sal_acl_entry_portBinding_get(report->bindings))
        return code;
    for (int port = 0; port < sys_logic_port_num_ret(); ++port) {
        if (int code = report_port(report, ports, port))
            return code;
    }
    return 0;
}

// The total is in whole watts, cut off; what is available is exact, and negative when the ports
// draw more than the budget.
int report_all(PortReport* report, cJSON* system) {
    cJSON* poe = attachJsonObject(system, "poe");
    if (int code = read_poe_budget(&report->budget))
        return code;
    // NOLINTNEXTLINE(bugprone-integer-division): whole watts
    addJsonObjectDoubleItem(poe, "total_power_watts", report->budget / 10);
    if (int code = report_ports(report, attachJsonArray(system, "ports")))
        return code;
    addJsonObjectDoubleItem(poe, "available_power_watts", (report->budget - report->draw) / 10.0);
    return 0;
}

} // namespace

int vxc_port_get(cJSON* system) {
    PortReport report = {};
    int code = report_all(&report, system);
    release_mac_lists(&report.macs);
    return code ? record_error(code) : 0;
}
