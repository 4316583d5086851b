// Power over Ethernet.
#include "platform/poe.h"

#include <algorithm>

#include "judge/family.h"

namespace judge {

namespace {

enum { SHARED_OUT_TO_ALL = 2, HIGHEST_LIMIT = 150, HIGHEST_PRIORITY = 3, HIGHEST_CLASS = 4 };

// The switch has the logical ports that it has; 24 is where PoE ends.
const Parameter poe_port = asked(
    "port", "0 to 23, a logical port",
    [] {
        Numbers ports;
        for (int p = 0; p < std::min<int>(POE_PORTS, port_count()); ++p)
            ports.push_back(p);
        return ports;
    },
    [] {
        return Numbers{POE_PORTS, POE_PORTS + 1, 127, 255};
    });

const Parameter limit_type = within("limit_type", POE_LIMIT_BY_CLASS, POE_LIMIT_BY_USER);

Operations reads() {
    const Parameter measured = varying(gives_any("a measurement"));
    return {
        {NAMED(sal_poe_total_power_allocated_query_get), {varying(gives_any("allocated"))}},
        {NAMED(sal_poe_system_power_management_query_get),
         {gives_number("mode", 0, SHARED_OUT_TO_ALL), gives_any("budget")}},
        {NAMED(sal_poe_port_ext_config_query_get),
         {poe_port, gives_flag("disconnect"), gives(limit_type),
          gives_number("user_limit", 0, HIGHEST_LIMIT),
          gives_number("priority", 0, HIGHEST_PRIORITY), gives_flag("pairs")}},
        {NAMED(sal_poe_port_config_query_get),
         {poe_port, gives_flag("enable"), gives_flag("mode"), gives_any("detection"),
          gives_flag("classification")}},
        {NAMED(sal_poe_port_status_query_get),
         {poe_port, varying(gives_number("status", POE_STATUS_OFF, POE_STATUS_DENIED)),
          varying(gives_any("error")), varying(gives_number("power_class", 0, HIGHEST_CLASS))}},
        {NAMED(sal_poe_port_measurements_query_get),
         {poe_port, measured, measured, measured, measured}},
    };
}

Settings settings() {
    return {
        {NAMED(sal_poe_port_priority_config_set),
         {poe_port},
         {within("priority", 0, HIGHEST_PRIORITY)},
         outputs(sal_poe_port_ext_config_query_get, {3})},
        {NAMED(sal_poe_power_th_type_config_set),
         {poe_port},
         {limit_type},
         outputs(sal_poe_port_ext_config_query_get, {1})},
        {NAMED(sal_poe_port_classification_type_config_set),
         {poe_port},
         {flag("classification")},
         outputs(sal_poe_port_config_query_get, {3})},
        {NAMED(sal_poe_port_maxpower_config_set),
         {poe_port},
         {within("user_limit", 0, HIGHEST_LIMIT)},
         outputs(sal_poe_port_ext_config_query_get, {2})},
        {NAMED(sal_poe_port_pse_enable_set),
         {poe_port},
         {flag("enable")},
         outputs(sal_poe_port_config_query_get, {0})},
    };
}

// Devices come and go, and one that goes takes its power with it: what is read in between is read
// again.
template <class Question> void holds_in_the_end(Question question, const std::string& says) {
    std::string fault;
    for (int attempt = 0; attempt < 3; ++attempt) {
        fault = question();
        if (fault.empty())
            break;
    }
    bench->holds(fault.empty(), reason::disagrees, says, fault);
}

std::string budget_fault() {
    uint16_t allocated = 0;
    uint16_t budget = 0;
    uint8_t mode = 0;
    if (ASK(sal_poe_system_power_management_query_get, &mode, &budget) != 0 ||
        ASK(sal_poe_total_power_allocated_query_get, &allocated) != 0)
        return "";
    if (mode == SHARED_OUT_TO_ALL || allocated <= budget)
        return "";
    return std::to_string(allocated) + " of a budget of " + std::to_string(budget);
}

std::string draw_fault(uint8_t p) {
    uint8_t enable = 0, mode = 0, detection = 0, classification = 0;
    uint8_t status = 0, error = 0, power_class = 0;
    uint16_t voltage = 0, current = 0, temperature = 0, power = 0;
    if (ASK(sal_poe_port_config_query_get, p, &enable, &mode, &detection, &classification) ||
        ASK(sal_poe_port_measurements_query_get, p, &voltage, &current, &temperature, &power) ||
        ASK(sal_poe_port_status_query_get, p, &status, &error, &power_class))
        return "";
    if (!enable && status != POE_STATUS_OFF)
        return "status " + std::to_string(status) + " while PoE is off";
    if (status != POE_STATUS_DENIED && error)
        return "error " + std::to_string(error) + " of a port that is not denied";
    if (status != POE_STATUS_DELIVERING && power)
        return std::to_string(power) + " drawn from a port that delivers none";
    return "";
}

void agreement() {
    holds_in_the_end(budget_fault, "power is handed out within the budget");
    for (Number p : poe_port.good())
        holds_in_the_end(
            [p] { return draw_fault(static_cast<uint8_t>(p)); },
            "status, error and draw of a port go together");
}

} // namespace

const Family poe_family = {"poe", reads, agreement, settings, nullptr};

} // namespace judge
