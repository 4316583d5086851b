// "lldp": its five timers are read in one order for a report and in another for an apply, as the
// platform has always seen them.
#include "sections/lldp.h"

#include <string.h>

#include "base/errors.h"
#include "base/ports.h"
#include "platform/lldp.h"
#include "platform/port.h"
#include "platform/system.h"
#include "platform/types.h"
#include "platform/util.h"
#include "sections/section.h"

namespace {

enum {
    REPORTED_NEIGHBOURS = 5,     // of one port
    LOCAL_PORTS = 73,            // neighbours behind higher ports are not reported
    CLEAN_TEXT_SIZE = 257,       // bytes
    PORT_ID_LOCALLY_ASSIGNED = 7 // what the switch's own port ids are
};

// --- Timers.

struct LldpTimers {
    uint32_t enable;
    uint32_t interval; // seconds
    uint8_t multiplier;
    uint8_t reinit_delay;    // seconds
    uint16_t transmit_delay; // seconds
};

using TimerRead = int (*)(LldpTimers* now);

int read_enable(LldpTimers* now) { return sal_lldp_enable_get(&now->enable); }
int read_interval(LldpTimers* now) { return sal_lldp_tx_interval_get(&now->interval); }
int read_multiplier(LldpTimers* now) { return sal_lldp_holdtime_get(&now->multiplier); }
int read_reinit_delay(LldpTimers* now) { return sal_lldp_reinit_delay_get(&now->reinit_delay); }
int read_transmit_delay(LldpTimers* now) { return sal_lldp_tx_delay_get(&now->transmit_delay); }

enum { TIMERS = 5 };

const TimerRead report_order[TIMERS] = {
    read_enable, read_interval, read_multiplier, read_reinit_delay, read_transmit_delay};

// Here the multiplier comes before the interval, as it does when they are written.
const TimerRead apply_order[TIMERS] = {
    read_enable, read_multiplier, read_interval, read_reinit_delay, read_transmit_delay};

int read_timers(const TimerRead (&order)[TIMERS], LldpTimers* now) {
    for (TimerRead read : order) {
        if (int code = read(now))
            return code;
    }
    return 0;
}

} // namespace

int vxc_lldp_get_setting(cJSON* lldp) {
    LldpTimers now = {};
    if (int code = read_timers(report_order, &now))
        return record_error(code);
    cJSON* settings = attachJsonObject(lldp, "settings");
    addJsonObjectBoolItem(settings, "enable", now.enable > 0);
    addJsonObjectIntItem(settings, "transmission_interval", static_cast<int32_t>(now.interval));
    addJsonObjectIntItem(settings, "holdtime_multiplier", now.multiplier);
    addJsonObjectIntItem(settings, "reinitialization_delay", now.reinit_delay);
    addJsonObjectIntItem(settings, "transmit_delay", now.transmit_delay);
    return 0;
}

// --- Settings.

namespace {

enum {
    LOWEST_INTERVAL = 5,
    LOWEST_MULTIPLIER = 2,
    LOWEST_TRANSMIT_DELAY = 1,
    LONGEST_TIME_TO_LIVE = 65535, // seconds
};

// A number wider than the value that it is for loses its upper bits.
template <class Value> void take(const cJSON* settings, const char* key, Value* value) {
    int number = 0;
    if (read_int(settings, key, &number))
        *value = static_cast<Value>(number);
}

void take_timers(const cJSON* settings, LldpTimers* wanted) {
    bool enable = false;
    if (read_bool(settings, "enable", &enable))
        wanted->enable = enable;
    take(settings, "transmission_interval", &wanted->interval);
    take(settings, "holdtime_multiplier", &wanted->multiplier);
    take(settings, "reinitialization_delay", &wanted->reinit_delay);
    take(settings, "transmit_delay", &wanted->transmit_delay);
}

bool within(uint32_t value, uint32_t low, uint32_t high) { return value >= low && value <= high; }

bool go_together(const LldpTimers& timers) {
    return within(timers.interval, LOWEST_INTERVAL, 32767) &&
           timers.multiplier * timers.interval <= LONGEST_TIME_TO_LIVE &&
           timers.transmit_delay <= timers.interval >> 2 &&
           within(timers.multiplier, LOWEST_MULTIPLIER, 10) && within(timers.reinit_delay, 1, 10) &&
           within(timers.transmit_delay, LOWEST_TRANSMIT_DELAY, 8192);
}

// From the lowest values no step meets the platform's own checks of one timer against another.
int lower_timers() {
    if (int code = sal_lldp_tx_delay_set(LOWEST_TRANSMIT_DELAY))
        return code;
    if (int code = sal_lldp_tx_interval_set(LOWEST_INTERVAL))
        return code;
    return sal_lldp_holdtime_set(LOWEST_MULTIPLIER);
}

int write_timers(const LldpTimers& wanted) {
    if (int code = lower_timers())
        return code;
    if (int code = sal_lldp_enable_set(wanted.enable))
        return code;
    if (int code = sal_lldp_disableAction_set(0))
        return code;
    if (int code = sal_lldp_holdtime_set(wanted.multiplier))
        return code;
    if (int code = sal_lldp_tx_interval_set(wanted.interval))
        return code;
    if (int code = sal_lldp_reinit_delay_set(wanted.reinit_delay))
        return code;
    return sal_lldp_tx_delay_set(wanted.transmit_delay);
}

} // namespace

int vxc_lldp_set(const cJSON* lldp) {
    LldpTimers timers = {};
    if (int code = read_timers(apply_order, &timers))
        return record_error(code);
    const cJSON* settings = getJsonObjectForKey(lldp, "settings");
    if (!settings)
        return 0;
    take_timers(settings, &timers);
    if (!go_together(timers))
        return record_error(ERROR_REFUSED);
    if (int code = write_timers(timers))
        return record_error(code);
    return 0;
}

// --- What the switch tells about itself.

namespace {

// By subtype of a port id, from 1.
const char* const port_id_subtypes[] = {
    "Interface Alias", "Port Component",   "Mac Address", "Network Address",
    "Interface Name",  "Agent Circuit Id", "Local",
};

const char* find_port_id_subtype(int subtype) {
    enum { SUBTYPES = sizeof port_id_subtypes / sizeof *port_id_subtypes };
    return subtype >= 1 && subtype <= SUBTYPES ? port_id_subtypes[subtype - 1] : "";
}

int read_identity(char* system_name, char* mac_text) {
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
    if (int code = read_identity(system_name, mac_text))
        return record_error(code);
    cJSON* local = attachJsonObject(lldp, "local");
    addJsonObjectStringItem(local, "chassis_id_subtype", "MAC Address");
    addJsonObjectStringItem(local, "chassis_id", mac_text);
    addJsonObjectStringItem(local, "system_name", system_name);
    addJsonObjectStringItem(local, "system_description", "VARNEX Q18r5");
    addJsonObjectStringItem(local, "capabilities_supported", "Bridge");
    addJsonObjectStringItem(local, "capabilities_enabled", "Bridge");
    addJsonObjectStringItem(
        local, "port_id_subtype", find_port_id_subtype(PORT_ID_LOCALLY_ASSIGNED));
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
template <size_t size> void copy_text(char (&copy)[size + 1], const char (&text)[size]) {
    memcpy(copy, text, size);
    copy[size] = '\0';
}

template <size_t size> void add_text(cJSON* item, const char* key, const char (&text)[size]) {
    char copy[size + 1];
    copy_text(copy, text);
    addJsonObjectStringItem(item, key, copy);
}

void add_chassis_id(cJSON* item, const LldpNeighbour& neighbour) {
    char chassis_id[sizeof neighbour.chassis_id + 1];
    char clean[CLEAN_TEXT_SIZE] = {};
    copy_text(chassis_id, neighbour.chassis_id);
    sn_json_validstr_conv(chassis_id, clean);
    addJsonObjectStringItem(item, "chassis_id", clean);
}

void report_neighbour(cJSON* remote, const LldpNeighbour& neighbour) {
    cJSON* item = createJsonObject();
    addJsonObjectIntItem(item, "port", one_based(static_cast<int>(neighbour.local_port)));
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

int report_place(cJSON* remote, int port, int index) {
    LldpNeighbour neighbour = {};
    char port_name[32]; // asked for as a check of the port only
    if (int code = sal_lldp_portRemoteEntryInfo_get(port, index, &neighbour))
        return code;
    if (neighbour.local_port >= LOCAL_PORTS || !neighbour.chassis_id[0])
        return 0;
    if (int code = sys_port_lPort2uStr(static_cast<int>(neighbour.local_port), 2, port_name))
        return code;
    report_neighbour(remote, neighbour);
    return 0;
}

} // namespace

int vxc_lldp_get_remote_device_info(cJSON* lldp) {
    cJSON* remote = attachJsonArray(lldp, "remote");
    int ports = first_group_port();
    for (int port = 0; port < ports; ++port) {
        for (int index = 0; index < REPORTED_NEIGHBOURS; ++index) {
            if (int code = report_place(remote, port, index))
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
