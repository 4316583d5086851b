// Platform library: power over Ethernet.
#include "sim/library/poe.h"

#include <algorithm>
#include <numeric>

#include "platform/poe.h"
#include "sim/library/call.h"

namespace sim {

namespace {

// What each class of device may draw at most, in tenths of a watt.
constexpr std::uint16_t class_limits[] = {154, 40, 70, 154, 300};
constexpr std::uint8_t unlimited = 2; // mode
constexpr std::uint8_t highest_priority = 3;
constexpr std::uint8_t highest_limit = 150;

template <class Body, class... Arguments>
int poe_call(const char* name, int port, Body body, const Arguments&... arguments) {
    return call(
        name,
        [&](Switch& s) -> int {
            if (port >= POE_PORTS)
                return code_no_port;
            return body(s.poe.ports[static_cast<std::size_t>(port)], s.poe);
        },
        port, arguments...);
}

// Sets one member, refusing what lies outside its range.
template <class Member>
int poe_set(
    const char* name, std::uint8_t port, int value, Member PoePort::*member, int low, int high) {
    return poe_call(
        name, port,
        [&](PoePort& p, Poe&) {
            if (value < low || value > high)
                return code_bad_value;
            p.*member = static_cast<Member>(value);
            return code_ok;
        },
        value);
}

} // namespace

// An access point and a camera.
Poe::Poe() {
    ports[0].demand = 123;
    ports[0].power_class = 3;
    ports[1].demand = 38;
    ports[1].power_class = 1;
}

std::uint16_t PoePort::limit() const {
    if (limit_type == POE_LIMIT_BY_USER)
        return static_cast<std::uint16_t>(user_limit * 2);
    return class_limits[power_class];
}

std::array<bool, 24> Poe::delivering() const {
    std::array<std::size_t, 24> order;
    std::iota(order.begin(), order.end(), std::size_t{0});
    if (mode == 1)
        std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
            return ports[a].priority > ports[b].priority;
        });
    std::array<bool, 24> served{};
    std::uint32_t used = 0;
    for (std::size_t i : order) {
        const PoePort& port = ports[i];
        bool fits =
            mode == unlimited || (port.demand <= port.limit() && used + port.demand <= budget);
        served[i] = port.enable && port.demand > 0 && fits;
        if (served[i])
            used += port.demand;
    }
    return served;
}

std::uint16_t Poe::draw(std::size_t port) const {
    return delivering()[port] ? ports[port].demand : std::uint16_t{0};
}

void PoePort::config(Fields& f) {
    f.boolean("enable", enable);
    f.integer("priority", priority, 0, highest_priority);
    f.integer("limit_type", limit_type, POE_LIMIT_BY_CLASS, POE_LIMIT_BY_USER);
    f.integer("user_limit", user_limit, 0, highest_limit);
    f.boolean("classification", classification);
}

void PoePort::hardware(Fields& f) {
    f.integer("demand", demand, 0, 600);
    f.integer("class", power_class, 0, 4);
}

void Poe::config(Fields& f) {
    f.integer("mode", mode, 0, unlimited);
    f.list(
        "ports", [&](int) { return ports.size(); },
        [&](Fields& element, std::size_t i) {
            if (i < ports.size())
                ports[i].config(element);
        });
}

void Poe::hardware(Fields& f) {
    f.integer("budget", budget, 0, UINT16_MAX);
    f.list(
        "ports", [&](int) { return ports.size(); },
        [&](Fields& element, std::size_t i) {
            if (i < ports.size())
                ports[i].hardware(element);
            else
                element.refuse("there are 24 ports with PoE");
        });
}

} // namespace sim

using namespace sim;

int sal_poe_total_power_allocated_query_get(uint16_t* allocated) {
    return call("sal_poe_total_power_allocated_query_get", [&](Switch& s) {
        std::uint32_t sum = 0;
        for (std::size_t i = 0; i < s.poe.ports.size(); ++i)
            sum += s.poe.draw(i);
        *allocated = static_cast<uint16_t>(sum);
        return code_ok;
    });
}

int sal_poe_system_power_management_query_get(uint8_t* mode, uint16_t* budget) {
    return call("sal_poe_system_power_management_query_get", [&](Switch& s) {
        *mode = s.poe.mode;
        *budget = s.poe.budget;
        return code_ok;
    });
}

int sal_poe_port_ext_config_query_get(
    uint8_t port, uint8_t* disconnect, uint8_t* limit_type, uint8_t* user_limit, uint8_t* priority,
    uint8_t* pairs) {
    return poe_call("sal_poe_port_ext_config_query_get", port, [&](const PoePort& p, const Poe&) {
        *disconnect = 0;
        *limit_type = p.limit_type;
        *user_limit = p.user_limit;
        *priority = p.priority;
        *pairs = 0;
        return code_ok;
    });
}

int sal_poe_port_config_query_get(
    uint8_t port, uint8_t* enable, uint8_t* mode, uint8_t* detection, uint8_t* classification) {
    return poe_call("sal_poe_port_config_query_get", port, [&](const PoePort& p, const Poe&) {
        *enable = p.enable;
        *mode = 0;
        *detection = 0;
        *classification = p.classification;
        return code_ok;
    });
}

int sal_poe_port_status_query_get(
    uint8_t port, uint8_t* status, uint8_t* error, uint8_t* power_class) {
    return poe_call("sal_poe_port_status_query_get", port, [&](const PoePort& p, const Poe& poe) {
        bool served = poe.delivering()[port];
        *status = !p.enable      ? POE_STATUS_OFF
                  : served       ? POE_STATUS_DELIVERING
                  : p.demand > 0 ? POE_STATUS_DENIED
                                 : POE_STATUS_SEARCHING;
        *error = *status == POE_STATUS_DENIED ? uint8_t{code_no_power} : uint8_t{0};
        *power_class = p.power_class;
        return code_ok;
    });
}

int sal_poe_port_measurements_query_get(
    uint8_t port, uint16_t* voltage, uint16_t* current, uint16_t* temperature, uint16_t* power) {
    return poe_call(
        "sal_poe_port_measurements_query_get", port, [&](const PoePort&, const Poe& poe) {
            constexpr int supply = 540; // tenths of a volt
            *power = poe.draw(port);
            *voltage = *power ? supply : 0;
            *current = static_cast<uint16_t>(*power * 1000 / supply);
            *temperature = 45;
            return code_ok;
        });
}

int sal_poe_port_priority_config_set(uint8_t port, int priority) {
    return poe_set(
        "sal_poe_port_priority_config_set", port, priority, &PoePort::priority, 0,
        highest_priority);
}

int sal_poe_power_th_type_config_set(uint8_t port, uint8_t limit_type) {
    return poe_set(
        "sal_poe_power_th_type_config_set", port, limit_type, &PoePort::limit_type,
        POE_LIMIT_BY_CLASS, POE_LIMIT_BY_USER);
}

int sal_poe_port_classification_type_config_set(uint8_t port, uint8_t classification) {
    return poe_set(
        "sal_poe_port_classification_type_config_set", port, classification,
        &PoePort::classification, 0, 1);
}

int sal_poe_port_maxpower_config_set(uint8_t port, uint8_t user_limit) {
    return poe_set(
        "sal_poe_port_maxpower_config_set", port, user_limit, &PoePort::user_limit, 0,
        highest_limit);
}

int sal_poe_port_pse_enable_set(uint8_t port, int enable) {
    return poe_set("sal_poe_port_pse_enable_set", port, enable, &PoePort::enable, 0, 1);
}

int sal_poe_port_reset_set(uint8_t port, uint8_t reset) {
    return poe_call(
        "sal_poe_port_reset_set", port,
        [&](PoePort& p, Poe&) {
            if (reset != 1)
                return code_bad_value;
            ++p.resets;
            return code_ok;
        },
        reset);
}
