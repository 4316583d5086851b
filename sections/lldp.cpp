// The "lldp" section of the report; see lldp.h.
#include "sections/lldp.h"

#include <string.h>

#include "base/errors.h"
#include "platform/lldp.h"
#include "platform/port.h"
#include "platform/system.h"
#include "platform/trunk.h"
#include "platform/types.h"
#include "platform/util.h"
#include "sections/lldp_timers.h"

namespace {

enum {
    REPORTED_NEIGHBOURS = 5,     // of one port
    LOCAL_PORTS = 73,            // neighbours behind higher ports are not reported
    CLEAN_TEXT_SIZE = 257,       // bytes
    PORT_ID_LOCALLY_ASSIGNED = 7 // what the switch's own port ids are
};

// --- Timers.

int timers_read(LldpTimers* now) {
    if (int code = sal_lldp_enable_get(&now->enable))
        return code;
    if (int code = sal_lldp_tx_interval_get(&now->interval))
        return code;
    if (int code = sal_lldp_holdtime_get(&now->multiplier))
        return code;
    if (int code = sal_lldp_reinit_delay_get(&now->reinit_delay))
        return code;
    return sal_lldp_tx_delay_get(&now->transmit_delay);
}

} // namespace

int vxc_lldp_get_setting(cJSON* lldp) {
    LldpTimers now = {};
    if (int code = timers_read(&now))
        return record_error(code);
    cJSON* settings = attachJsonObject(lldp, "settings");
    addJsonObjectBoolItem(settings, "enable", now.enable > 0);
    addJsonObjectIntItem(settings, "transmission_interval", static_cast<int32_t>(now.interval));
    addJsonObjectIntItem(settings, "holdtime_multiplier", now.multiplier);
    addJsonObjectIntItem(settings, "reinitialization_delay", now.reinit_delay);
    addJsonObjectIntItem(settings, "transmit_delay", now.transmit_delay);
    return 0;
}

// --- What the switch tells about itself.

namespace {

// By subtype of a port id, from 1.
const char* const port_id_subtypes[] = {
    "Interface Alias", "Port Component",   "Mac Address", "Network Address",
    "Interface Name",  "Agent Circuit Id", "Local",
};

const char* port_id_subtype_name(int subtype) {
    enum { SUBTYPES = sizeof port_id_subtypes / sizeof *port_id_subtypes };
    return subtype >= 1 && subtype <= SUBTYPES ? port_id_subtypes[subtype - 1] : "";
}

int identity_read(char* system_name, char* mac_text) {
    uint8_t mac[MAC_ADDRESS_SIZE] = {};
    if (int code = sal_sys_systemName_get(system_name))
        return code;
    if (int code = sal_sys_macAddr_get(mac))
        return code;
    return sys_util_mac2Str(mac, mac_text);
}

} // namespace

int vxc_lldp_get_local_device_info(cJSON* lldp) {
    char system_name[256] = "", mac_text[32] = "";
    if (int code = identity_read(system_name, mac_text))
        return record_error(code);
    cJSON* local = attachJsonObject(lldp, "local");
    addJsonObjectStringItem(local, "chassis_id_subtype", "MAC Address");
    addJsonObjectStringItem(local, "chassis_id", mac_text);
    addJsonObjectStringItem(local, "system_name", system_name);
    addJsonObjectStringItem(local, "system_description", "VARNEX Q18r5");
    addJsonObjectStringItem(local, "capabilities_supported", "Bridge");
    addJsonObjectStringItem(local, "capabilities_enabled", "Bridge");
    addJsonObjectStringItem(
        local, "port_id_subtype", port_id_subtype_name(PORT_ID_LOCALLY_ASSIGNED));
    return 0;
}

// --- Neighbours.

namespace {

// Every byte from 0x80 up counts as unsafe too, so a letter of UTF-8 becomes several spaces.
bool is_safe(char byte) { return byte >= ' ' && byte <= '~'; }

} // namespace

int sn_json_validstr_conv(const char* in, char* out) {
    size_t length = strlen(in) % 256;
    for (size_t i = 0; i < length; ++i)
        out[i] = is_safe(in[i]) ? in[i] : ' ';
    return 0;
}

namespace {

// A text that fills its place has no terminator of its own.
template <size_t size> void text_copy(char (&copy)[size + 1], const char (&text)[size]) {
    memcpy(copy, text, size);
    copy[size] = '\0';
}

template <size_t size> void add_text(cJSON* item, const char* key, const char (&text)[size]) {
    char copy[size + 1];
    text_copy(copy, text);
    addJsonObjectStringItem(item, key, copy);
}

void add_chassis_id(cJSON* item, const LldpNeighbour& neighbour) {
    char chassis_id[sizeof neighbour.chassis_id + 1];
    char clean[CLEAN_TEXT_SIZE] = {};
    text_copy(chassis_id, neighbour.chassis_id);
    sn_json_validstr_conv(chassis_id, clean);
    addJsonObjectStringItem(item, "chassis_id", clean);
}

void neighbour_report(cJSON* remote, const LldpNeighbour& neighbour) {
    cJSON* item = createJsonObject();
    addJsonObjectIntItem(item, "port", static_cast<int32_t>(neighbour.local_port) + 1);
    add_text(item, "chassis_id_subtype", neighbour.chassis_id_subtype);
    add_chassis_id(item, neighbour);
    add_text(item, "port_id_subtype", neighbour.port_id_subtype);
    add_text(item, "remote_id", neighbour.port_id);
    add_text(item, "system_name", neighbour.system_name);
    addJsonObjectIntItem(item, "ttl", neighbour.ttl);
    addJsonObjectBoolItem(item, "auto_negotiation_supported", neighbour.auto_negotiation_supported);
    addJsonObjectBoolItem(item, "auto_negotiation_enabled", neighbour.auto_negotiation_enabled);
    add_text(item, "advertised_capabilities", neighbour.advertised_capabilities);
    add_text(item, "operational_mau_type", neighbour.operational_mau_type);
    addJsonObjectIntItem(item, "max_frame_size", neighbour.max_frame_size);
    addJsonArrayItem(remote, item);
}

int place_report(cJSON* remote, int port, int index) {
    LldpNeighbour neighbour = {};
    char port_name[32]; // asked for as a check of the port only
    if (int code = sal_lldp_portRemoteEntryInfo_get(port, index, &neighbour))
        return code;
    if (neighbour.local_port >= LOCAL_PORTS || !neighbour.chassis_id[0])
        return 0;
    if (int code = sys_port_lPort2uStr(static_cast<int>(neighbour.local_port), 2, port_name))
        return code;
    neighbour_report(remote, neighbour);
    return 0;
}

} // namespace

int vxc_lldp_get_remote_device_info(cJSON* lldp) {
    cJSON* remote = attachJsonArray(lldp, "remote");
    int ports = sys_logic_port_num_ret() - TRUNK_GROUPS;
    for (int port = 0; port < ports; ++port) {
        for (int index = 0; index < REPORTED_NEIGHBOURS; ++index) {
            if (int code = place_report(remote, port, index))
                return record_error(code);
        }
    }
    return 0;
}

int vxc_lldp_get(cJSON* report) {
    cJSON* lldp = attachJsonObject(report, "lldp");
    vxc_lldp_get_setting(lldp);
    vxc_lldp_get_local_device_info(lldp);
    vxc_lldp_get_remote_device_info(lldp);
    return 0;
}
