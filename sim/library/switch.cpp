// The simulated switch as scenario and configuration.
#include "sim/library/switch.h"

#include "sim/library/switch_settings.h"

namespace sim {

namespace {

constexpr std::int64_t most_ahead_s = std::int64_t{50} * 366 * 24 * 3600; // fifty years

} // namespace

void Switch::hardware(Fields& f) {
    int port_count = logical_ports();
    f.integer("logical_ports", port_count, fewest_ports, most_ports);
    f.boolean("driver_loaded", driver_loaded);
    f.integer("clock_ahead_seconds", clock_ahead_s, -most_ahead_s, most_ahead_s);
    f.object("system", [&](Fields& inner) { system.hardware(inner); });
    f.object("firmware", [&](Fields& inner) { firmware.hardware(inner); });
    ports.hardware(f);
    f.object("poe", [&](Fields& inner) { poe.hardware(inner); });
    f.object("vlans", [&](Fields& inner) { vlans.hardware(inner); });
    f.object("mac_table", [&](Fields& inner) { macs.hardware(inner); });
    f.object("lldp", [&](Fields& inner) { lldp.hardware(inner); });
    f.object("acl", [&](Fields& inner) { acl.hardware(inner); });
    f.object("diag", [&](Fields& inner) { diag.hardware(inner); });
    f.object("network", [&](Fields& inner) { network.hardware(inner); });
    f.object("stp", [&](Fields& inner) { stp.hardware(inner); });
    f.object("igmp", [&](Fields& inner) { igmp.hardware(inner); });
    f.object("access", [&](Fields& inner) { access.hardware(inner); });
}

void Switch::config(Fields& f) {
    f.object("system", [&](Fields& inner) { system.config(inner); });
    ports.config(f);
    f.object("poe", [&](Fields& inner) { poe.config(inner); });
    f.object("vlans", [&](Fields& inner) { vlans.config(inner); });
    f.object("mac_table", [&](Fields& inner) { macs.config(inner); });
    f.object("rates", [&](Fields& inner) { rates.config(inner); });
    f.object("qos", [&](Fields& inner) { qos.config(inner); });
    f.object("trunks", [&](Fields& inner) { trunks.config(inner); });
    f.object("lldp", [&](Fields& inner) { lldp.config(inner); });
    f.object("mirrors", [&](Fields& inner) { mirrors.config(inner); });
    f.object("voice_vlan", voice_vlan);
    f.object("leds", leds);
    f.object("switch", [&](Fields& inner) { switch_settings_config(inner, chip); });
    f.object("acl", [&](Fields& inner) { acl.config(inner, chip); });
    f.object("snmp", [&](Fields& inner) { snmp.config(inner); });
    f.object("stp", [&](Fields& inner) { stp.config(inner); });
    f.object("igmp", [&](Fields& inner) { igmp.config(inner); });
    f.object("access", [&](Fields& inner) { access.config(inner); });
}

void Switch::running(Fields& f, Clock& clock) {
    auto seconds = static_cast<std::int64_t>(clock.running());
    std::int64_t ahead = clock.ahead();
    f.integer("seconds", seconds, 0, INT64_MAX);
    f.integer("clock_ahead_seconds", ahead, INT64_MIN, INT64_MAX);
    f.text("firmware_version", system.firmware_version, 32);
    if (!f.reading())
        return;
    clock.restart(static_cast<double>(seconds));
    clock.set_ahead(ahead);
}

} // namespace sim
