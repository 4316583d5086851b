// What a port is set to and what it draws are asked for in four queries, of which most is not
// shown.
#include "sections/port/power.h"

#include "base/ports.h"
#include "json/json_document.h"
#include "platform/poe.h"

namespace {

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

void report_power(cJSON* poe, const PortPower& power) {
    addJsonObjectBoolItem(poe, "enable", power.enable);
    addJsonObjectIntItem(poe, "priority", power.priority);
    addJsonObjectIntItem(poe, "power_limit_type", power.limit_type - 1);
    addJsonObjectIntItem(poe, "power_limit_user", power.user_limit / USER_LIMIT_UNIT);
    addJsonObjectDoubleItem(poe, "power_draw", power.draw / 10.0);
    addJsonObjectIntItem(poe, "status", power.status);
}

} // namespace

int add_port_poe(cJSON* port_object, int port, uint16_t* draw) {
    if (!has_poe(port))
        return 0;
    PortPower power = {};
    if (int code = read_settings(static_cast<uint8_t>(port), &power))
        return code;
    if (int code = read_state(static_cast<uint8_t>(port), &power))
        return code;
    report_power(attachJsonObject(port_object, "poe"), power);
    *draw = power.draw;
    return 0;
}

bool reset_power(int port) {
    if (!has_poe(port))
        return false;
    // A negative number must not wrap around to a port that exists.
    uint8_t index = port < 0 ? UINT8_MAX : static_cast<uint8_t>(port);
    uint8_t enable = 0, mode = 0, detection = 0, classification = 0;
    sal_poe_port_config_query_get(index, &enable, &mode, &detection, &classification);
    if (enable)
        sal_poe_port_reset_set(index, 1);
    return enable;
}
