// Platform library: ports.
#include "sim/ports.h"

#include "platform/port.h"
#include "platform/system.h"
#include "sim/call.h"

namespace sim {

namespace {

// What runs when a speed is forced: the configured encoding's value in that of the running link.
constexpr std::uint32_t running_speed[] = {0, 1, 2, 3, 5, 4};
constexpr std::uint32_t speed_count = 6;
constexpr std::uint32_t speed_10g = 4;

bool is_flag(int value) { return value == 0 || value == 1; }

bool has_link(const Port& port) { return port.plugged && port.enable; }

// Calls on one port: refuses what is no port.
template <class Body, class... Arguments>
int port_call(const char* name, int port, Body body, const Arguments&... arguments) {
    return call(
        name,
        [&](Switch& s) -> int {
            if (!s.has_port(port))
                return code_no_port;
            return body(s.ports.port[static_cast<std::size_t>(port)]);
        },
        port, arguments...);
}

int get(const char* name, int port, std::uint32_t* value, bool Port::*member) {
    return port_call(name, port, [&](const Port& p) {
        *value = p.*member;
        return code_ok;
    });
}

int set(const char* name, int port, int value, bool Port::*member) {
    return port_call(
        name, port,
        [&](Port& p) {
            if (!is_flag(value))
                return code_bad_value;
            p.*member = value != 0;
            return code_ok;
        },
        value);
}

bool can_run(const Port& port, bool automatic, int speed) {
    if (speed < 0 || speed >= static_cast<int>(speed_count))
        return false;
    return automatic || speed != static_cast<int>(speed_10g) || port.ten_gigabit;
}

} // namespace

// Two fibre ports before the eight groups, all of them good for 10 gigabit; links on the first two
// copper ports, the fifth and the first fibre port.
Ports::Ports(int logical_ports) : port(static_cast<std::size_t>(logical_ports)) {
    if (port.size() <= 10) // a size that the scenario is about to be refused for
        return;
    std::size_t first_fibre = port.size() - 10;
    for (std::size_t p = first_fibre; p < port.size(); ++p) {
        port[p].fibre = p < first_fibre + 2;
        port[p].ten_gigabit = true;
        port[p].partner_speed = port[p].fibre ? 5 : 2;
    }
    for (std::size_t p : {std::size_t{0}, std::size_t{1}, std::size_t{4}})
        port[p].plugged = p < first_fibre;
    port[first_fibre].plugged = true;
}

void Port::config(Fields& f) {
    f.boolean("enable", enable);
    f.boolean("isolation", isolated);
    f.boolean("flow_control", flow_control);
    f.boolean("security", security);
    f.boolean("speed_automatic", speed_automatic);
    f.integer("speed", speed, 0, speed_count - 1);
    f.boolean("duplex_automatic", duplex_automatic);
    f.integer("duplex", duplex, 0, 1);
    f.integer("media_10g", media_10g, PORT_10G_MEDIA_10G, PORT_10G_MEDIA_1000M);
    f.boolean("force_link", force_link);
}

void Port::hardware(Fields& f) {
    f.boolean("fibre", fibre);
    f.boolean("ten_gigabit", ten_gigabit);
    f.boolean("plugged", plugged);
    f.integer("partner_speed", partner_speed, 0, speed_count - 1);
    f.integer("partner_duplex", partner_duplex, 0, 1);
    f.boolean("partner_flow_control", partner_flow_control);
}

void Ports::config(Fields& f) {
    f.list(
        "ports", [&](int) { return port.size(); },
        [&](Fields& element, std::size_t i) {
            if (i < port.size())
                port[i].config(element);
        });
}

void Ports::hardware(Fields& f) {
    f.list(
        "ports",
        [&](int elements) {
            if (elements > count())
                f.refuse("ports has more elements than the switch has logical ports");
            return port.size();
        },
        [&](Fields& element, std::size_t i) {
            if (i < port.size())
                port[i].hardware(element);
        });
}

} // namespace sim

using namespace sim;

int sal_port_enable_get(int port, uint32_t* enable) {
    return get("sal_port_enable_get", port, enable, &Port::enable);
}

int sal_port_enable_set(int port, int enable) {
    return set("sal_port_enable_set", port, enable, &Port::enable);
}

int sal_port_linkStatus_get(int port, uint32_t* status) {
    return port_call("sal_port_linkStatus_get", port, [&](const Port& p) {
        *status = has_link(p);
        return code_ok;
    });
}

int sys_port_linkStatus_ret(int port) {
    return value(
        "sys_port_linkStatus_ret",
        [&](Switch& s) {
            return s.has_port(port) && has_link(s.ports.port[static_cast<std::size_t>(port)]) ? 1
                                                                                              : 0;
        },
        port);
}

int sal_port_speed_get(int port, PortSpeed* speed) {
    return port_call("sal_port_speed_get", port, [&](const Port& p) {
        *speed = {p.speed_automatic, p.speed};
        return code_ok;
    });
}

int sal_port_duplex_get(int port, PortDuplex* duplex) {
    return port_call("sal_port_duplex_get", port, [&](const Port& p) {
        *duplex = {p.duplex_automatic, p.duplex};
        return code_ok;
    });
}

int sal_port_speed_set(int port, int automatic, int speed) {
    return port_call(
        "sal_port_speed_set", port,
        [&](Port& p) {
            if (!is_flag(automatic) || !can_run(p, automatic != 0, speed))
                return code_bad_value;
            p.speed_automatic = automatic != 0;
            p.speed = static_cast<std::uint32_t>(speed);
            return code_ok;
        },
        automatic, speed);
}

int sal_port_duplex_set(int port, int automatic, int duplex) {
    return port_call(
        "sal_port_duplex_set", port,
        [&](Port& p) {
            if (!is_flag(automatic) || !is_flag(duplex))
                return code_bad_value;
            p.duplex_automatic = automatic != 0;
            p.duplex = static_cast<std::uint32_t>(duplex);
            return code_ok;
        },
        automatic, duplex);
}

int sal_port_speedDuplex_get(int port, PortLinkMode* mode) {
    return port_call("sal_port_speedDuplex_get", port, [&](const Port& p) {
        mode->speed = p.speed_automatic ? p.partner_speed : running_speed[p.speed];
        mode->duplex = p.duplex_automatic ? p.partner_duplex : 1 - p.duplex;
        return code_ok;
    });
}

int sal_port_flowCtrl_get(int port, uint32_t* configured, uint32_t* running) {
    return port_call("sal_port_flowCtrl_get", port, [&](const Port& p) {
        *configured = p.flow_control;
        *running = p.flow_control && p.partner_flow_control && has_link(p);
        return code_ok;
    });
}

int sal_port_flowCtrl_set(int port, int enable) {
    return set("sal_port_flowCtrl_set", port, enable, &Port::flow_control);
}

int sal_port_protected_get(int port, uint32_t* enable) {
    return get("sal_port_protected_get", port, enable, &Port::isolated);
}

int sal_port_protected_set(int port, int enable) {
    return set("sal_port_protected_set", port, enable, &Port::isolated);
}

int sal_port_securityEnable_get(int port, uint32_t* enable) {
    return get("sal_port_securityEnable_get", port, enable, &Port::security);
}

int sys_port_lPortMedia_ret(int port) {
    return value(
        "sys_port_lPortMedia_ret",
        [&](Switch& s) {
            bool fibre = s.has_port(port) && s.ports.port[static_cast<std::size_t>(port)].fibre;
            return fibre ? static_cast<int>(PORT_MEDIA_FIBRE) : static_cast<int>(PORT_MEDIA_COPPER);
        },
        port);
}

int sys_port_isLPort10G_ret(int port) {
    return value(
        "sys_port_isLPort10G_ret",
        [&](Switch& s) {
            return s.has_port(port) && s.ports.port[static_cast<std::size_t>(port)].ten_gigabit ? 1
                                                                                                : 0;
        },
        port);
}

int sal_10g_port_init(int port) {
    return port_call("sal_10g_port_init", port, [](Port& p) {
        if (!p.ten_gigabit)
            return code_bad_value;
        ++p.module_resets;
        p.media_10g = PORT_10G_MEDIA_10G;
        return code_ok;
    });
}

int sal_port_10g_media_set(int port, int media) {
    return port_call(
        "sal_port_10g_media_set", port,
        [&](Port& p) {
            if (!p.ten_gigabit || media < PORT_10G_MEDIA_10G || media > PORT_10G_MEDIA_1000M)
                return code_bad_value;
            p.media_10g = static_cast<std::uint32_t>(media);
            return code_ok;
        },
        media);
}

int sal_port_port_fiberNwayForceLinkEnable_set(int port, int enable) {
    return port_call(
        "sal_port_port_fiberNwayForceLinkEnable_set", port,
        [&](Port& p) {
            if (!p.fibre || !is_flag(enable))
                return code_bad_value;
            p.force_link = enable != 0;
            return code_ok;
        },
        enable);
}

int sys_port_lPort2uStr(int port, int style, char* text) {
    return call(
        "sys_port_lPort2uStr",
        [&](Switch& s) -> int {
            if (!s.has_port(port))
                return code_no_port;
            int ports = s.logical_ports();
            std::string prefix = port >= ports - 8 ? "LAG" : port >= ports - 10 ? "F" : "GE";
            int number = port >= ports - 8    ? port - ports + 9
                         : port >= ports - 10 ? port - ports + 11
                                              : port + 1;
            copy_text(text, 32, prefix + std::to_string(number));
            return code_ok;
        },
        port, style);
}
