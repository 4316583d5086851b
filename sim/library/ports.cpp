// Platform library: ports.
#include "sim/library/ports.h"

#include "driver/port.h"
#include "platform/port.h"
#include "platform/system.h"
#include "sim/library/call.h"
#include "sim/library/mib.h"

namespace sim {

namespace {

// What runs when a speed is forced: the configured encoding's value in that of the running link.
constexpr std::uint32_t forced_speed[] = {0, 1, 2, 3, 5, 4};
constexpr std::uint32_t speed_count = 6;
constexpr std::uint32_t speed_10g = 4;

bool is_flag(int value) { return value == 0 || value == 1; }

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
Ports::Ports(Chip& chip) : port(static_cast<std::size_t>(chip.ports())), chip_(chip) {
    if (port.size() <= 10) // a size that the scenario is about to be refused for
        return;
    std::size_t first_fibre = port.size() - 10;
    for (std::size_t p = first_fibre; p < port.size(); ++p) {
        port[p].fibre = p < first_fibre + 2;
        port[p].ten_gigabit = true;
        port[p].partner_speed = port[p].fibre ? 5 : 2;
    }
    chip.change([&](ChipState& state) {
        for (std::size_t p = 0; p < first_fibre; ++p)
            state.ports[p].cable.fill({chip_pair_open, 0});
        for (std::size_t p : {std::size_t{0}, std::size_t{1}, std::size_t{4}, first_fibre}) {
            state.ports[p].plugged = p <= first_fibre;
            state.ports[p].traffic = {120, 80, 512};
            auto metres = static_cast<std::uint8_t>(12 + 3 * p);
            state.ports[p].cable = {{{0, metres}, {0, metres}, {0, metres}, {0, metres}}};
        }
    });
    for (std::size_t p = 0; p < port.size(); ++p)
        program(p);
}

void Ports::program(std::size_t p) {
    chip_.change([&](ChipState& state) {
        state.ports[p].copper = !port[p].fibre;
        state.ports[p].enabled = port[p].enable;
    });
    program_mode(p);
}

void Ports::program_mode(std::size_t p) {
    chip_.change([&](ChipState& state) {
        state.ports[p].speed = port[p].running_speed();
        state.ports[p].duplex = port[p].running_duplex();
    });
}

std::uint32_t Port::running_speed() const {
    return speed_automatic ? partner_speed : forced_speed[speed];
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
    f.integer("partner_speed", partner_speed, 0, speed_count - 1);
    f.integer("partner_duplex", partner_duplex, 0, 1);
    f.boolean("partner_flow_control", partner_flow_control);
}

void Ports::config(Fields& f) {
    f.list(
        "ports", [&](int) { return port.size(); },
        [&](Fields& element, std::size_t i) {
            if (i >= port.size())
                return;
            port[i].config(element);
            if (element.reading())
                program(i);
        });
}

// A port that a scenario plugs in has traffic; how much, the scenario may say.
void Ports::hardware(Fields& f) {
    f.list(
        "ports",
        [&](int elements) {
            if (elements > count())
                f.refuse("ports has more elements than the switch has logical ports");
            return port.size();
        },
        [&](Fields& element, std::size_t i) {
            if (i >= port.size())
                return;
            port[i].hardware(element);
            chip_.change([&](ChipState& state) {
                ChipPort& real = state.ports[i];
                auto rx = static_cast<std::uint32_t>(real.traffic.rx_packets);
                auto tx = static_cast<std::uint32_t>(real.traffic.tx_packets);
                element.boolean("plugged", real.plugged);
                element.integer("rx_packets_per_second", rx, 0, 1000000);
                element.integer("tx_packets_per_second", tx, 0, 1000000);
                element.integer("packet_bytes", real.traffic.packet_bytes, 64, 12288);
                element.list(
                    "cable", [&](int) { return real.cable.size(); },
                    [&](Fields& pair, std::size_t p) {
                        if (p >= real.cable.size())
                            return;
                        pair.integer("state", real.cable[p].state, 0, 255);
                        pair.integer("length_m", real.cable[p].length_m, 0, 255);
                    });
                real.traffic.rx_packets = rx;
                real.traffic.tx_packets = tx;
            });
            program(i);
        });
}

} // namespace sim

using namespace sim;

int sal_port_enable_get(int port, uint32_t* enable) {
    return get("sal_port_enable_get", port, enable, &Port::enable);
}

int sal_port_enable_set(int port, int enable) {
    return call(
        "sal_port_enable_set",
        [&](Switch& s) -> int {
            if (!s.has_port(port))
                return code_no_port;
            count_traffic(s);
            if (int code =
                    rsd_port_enable_set(static_cast<uint32_t>(port), static_cast<uint32_t>(enable)))
                return code;
            s.ports.port[static_cast<std::size_t>(port)].enable = enable != 0;
            return code_ok;
        },
        port, enable);
}

int sal_port_linkStatus_get(int port, uint32_t* status) {
    return call(
        "sal_port_linkStatus_get",
        [&](Switch&) { return rsd_port_linkStatus_get(static_cast<uint32_t>(port), status); },
        port);
}

int sys_port_linkStatus_ret(int port) {
    return value(
        "sys_port_linkStatus_ret",
        [&](Switch&) {
            uint32_t up = 0;
            rsd_port_linkStatus_get(static_cast<uint32_t>(port), &up);
            return static_cast<int>(up);
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
    return call(
        "sal_port_speed_set",
        [&](Switch& s) -> int {
            if (!s.has_port(port))
                return code_no_port;
            Port& p = s.ports.port[static_cast<std::size_t>(port)];
            if (!is_flag(automatic) || !can_run(p, automatic != 0, speed))
                return code_bad_value;
            p.speed_automatic = automatic != 0;
            p.speed = static_cast<uint32_t>(speed);
            s.ports.program_mode(static_cast<std::size_t>(port));
            return code_ok;
        },
        port, automatic, speed);
}

int sal_port_duplex_set(int port, int automatic, int duplex) {
    return call(
        "sal_port_duplex_set",
        [&](Switch& s) -> int {
            if (!s.has_port(port))
                return code_no_port;
            if (!is_flag(automatic) || !is_flag(duplex))
                return code_bad_value;
            Port& p = s.ports.port[static_cast<std::size_t>(port)];
            p.duplex_automatic = automatic != 0;
            p.duplex = static_cast<uint32_t>(duplex);
            s.ports.program_mode(static_cast<std::size_t>(port));
            return code_ok;
        },
        port, automatic, duplex);
}

int sal_port_speedDuplex_get(int port, PortLinkMode* mode) {
    return call(
        "sal_port_speedDuplex_get",
        [&](Switch&) {
            return rsd_port_speedDuplex_get(
                static_cast<uint32_t>(port), &mode->speed, &mode->duplex);
        },
        port);
}

int sal_port_flowCtrl_get(int port, uint32_t* configured, uint32_t* running) {
    return port_call("sal_port_flowCtrl_get", port, [&](const Port& p) {
        *configured = p.flow_control;
        *running = p.flow_control && p.partner_flow_control && sys_port_linkStatus_ret(port);
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
