// Power over Ethernet; see port_poe.h.
#include "sections/port/power.h"

#include "json/json_document.h"
#include "platform/poe.h"

namespace {

enum { USER_LIMIT_UNIT = 5 }; // the platform counts fifths of what the cloud counts

struct PortPower {
    uint8_t enable;
    uint8_t priority;
    uint8_t limit_type; // from 1; the cloud counts from 0
    uint8_t user_limit;
    uint8_t status;
    uint16_t draw; // tenths of a watt
};

} // namespace

int read_poe_budget(uint16_t* budget) {
    uint16_t allocated = 0;
    uint8_t mode = 0;
    if (int code = sal_poe_total_power_allocated_query_get(&allocated))
        return code;
    return sal_poe_system_power_management_query_get(&mode, budget);
}

namespace {

int read_settings(uint8_t port, PortPower* power) {
    uint8_t disconnect = 0, pairs = 0, mode = 0, detection = 0, classification = 0;
    if (int code = sal_poe_port_ext_config_query_get(
            port, &disconnect, &power->limit_type, &power->user_limit, &power->priority, &pairs))
        return code;
    return sal_poe_port_config_query_get(port, &power->enable, &mode, &detection, &classification);
}

int read_state(uint8_t port, PortPower* power) {
    uint8_t error = 0, power_class = 0;
    uint16_t voltage = 0, current = 0, temperature = 0;
    if (int code = sal_poe_port_status_query_get(port, &power->status, &error, &power_class))
        return code;
    return sal_poe_port_measurements_query_get(
        port, &voltage, &current, &temperature, &power->draw);
}

void show(cJSON* poe, const PortPower& power) {
    addJsonObjectBoolItem(poe, "enable", power.enable);
    addJsonObjectIntItem(poe, "priority", power.priority);
    addJsonObjectIntItem(poe, "power_limit_type", power.limit_type - 1);
    addJsonObjectIntItem(poe, "power_limit_user", power.user_limit / USER_LIMIT_UNIT);
    addJsonObjectDoubleItem(poe, "power_draw", power.draw / 10.0);
    addJsonObjectIntItem(poe, "status", power.status);
}

} // namespace

int add_port_poe(cJSON* port_object, int port, uint16_t* draw) {
    if (port >= POE_PORTS)
        return 0;
    PortPower power = {};
    if (int code = read_settings(static_cast<uint8_t>(port), &power))
        return code;
    if (int code = read_state(static_cast<uint8_t>(port), &power))
        return code;
    show(attachJsonObject(port_object, "poe"), power);
    *draw = power.draw;
    return 0;
}
