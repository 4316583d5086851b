// Platform library: the Link Layer Discovery Protocol.
#include "sim/library/lldp.h"

#include <algorithm>
#include <cstring>

#include "platform/lldp.h"
#include "platform/trunk.h"
#include "sim/library/call.h"

namespace sim {

namespace {

constexpr std::size_t most_neighbours = 96 * LLDP_PORT_NEIGHBOURS;
constexpr std::uint32_t longest_time_to_live = 65535;

template <std::size_t size> void put(char (&place)[size], const std::string& text) {
    std::memcpy(place, text.data(), std::min(size, text.size()));
}

void fill(LldpNeighbour& record, const LldpPeer& peer, int index) {
    record = {};
    record.index = static_cast<std::uint32_t>(index);
    record.local_port =
        static_cast<std::uint32_t>(peer.reported_port >= 0 ? peer.reported_port : peer.port);
    put(record.chassis_id_subtype, peer.chassis_id_subtype);
    put(record.chassis_id, peer.chassis_id);
    put(record.port_id_subtype, peer.port_id_subtype);
    put(record.port_id, peer.port_id);
    put(record.system_name, peer.system_name);
    record.max_frame_size = peer.max_frame_size;
    record.auto_negotiation_supported = peer.auto_negotiation_supported;
    record.auto_negotiation_enabled = peer.auto_negotiation_enabled;
    put(record.advertised_capabilities, peer.advertised_capabilities);
    put(record.operational_mau_type, peer.operational_mau_type);
    record.ttl = peer.ttl;
}

// The timers with one of them changed must go together.
bool go_together(const Lldp& lldp) {
    return lldp.transmit_delay <= lldp.interval / 4 &&
           lldp.interval * lldp.multiplier <= longest_time_to_live;
}

template <class Value>
int timer_set(
    const char* name, Value Lldp::*timer, Value value, std::uint32_t low, std::uint32_t high) {
    return call(
        name,
        [&](Switch& s) -> int {
            Lldp wanted = s.lldp;
            wanted.*timer = value;
            if (value < low || value > high || !go_together(wanted))
                return code_bad_value;
            s.lldp.*timer = value;
            return code_ok;
        },
        static_cast<std::uint32_t>(value));
}

template <class Stored, class Value>
int timer_get(const char* name, Stored Lldp::*timer, Value* value) {
    return call(name, [&](Switch& s) {
        *value = s.lldp.*timer;
        return code_ok;
    });
}

} // namespace

void LldpPeer::fields(Fields& f) {
    using R = LldpNeighbour;
    f.integer("port", port, 0, 95);
    f.integer("reported_port", reported_port, -1, INT32_MAX);
    f.text("chassis_id_subtype", chassis_id_subtype, sizeof R::chassis_id_subtype);
    f.text("chassis_id", chassis_id, sizeof R::chassis_id);
    f.text("port_id_subtype", port_id_subtype, sizeof R::port_id_subtype);
    f.text("port_id", port_id, sizeof R::port_id);
    f.text("system_name", system_name, sizeof R::system_name);
    f.integer("max_frame_size", max_frame_size, 0, 65535);
    f.boolean("auto_negotiation_supported", auto_negotiation_supported);
    f.boolean("auto_negotiation_enabled", auto_negotiation_enabled);
    f.text("advertised_capabilities", advertised_capabilities, sizeof R::advertised_capabilities);
    f.text("operational_mau_type", operational_mau_type, sizeof R::operational_mau_type);
    f.integer("ttl", ttl, 0, 65535);
}

void Lldp::config(Fields& f) {
    f.boolean("enable", enable);
    f.integer("interval", interval, 5, 32767);
    f.integer("multiplier", multiplier, 2, 10);
    f.integer("reinit_delay", reinit_delay, 1, 10);
    f.integer("transmit_delay", transmit_delay, 1, 8192);
    f.integer("disable_action", disable_action, 0, 2);
    if (f.reading() && !go_together(*this))
        f.refuse("the timers of LLDP do not go together");
}

void Lldp::hardware(Fields& f) { f.list("neighbours", neighbours, most_neighbours); }

} // namespace sim

using namespace sim;

int sal_lldp_enable_get(uint32_t* enable) {
    return timer_get("sal_lldp_enable_get", &Lldp::enable, enable);
}

int sal_lldp_enable_set(uint32_t enable) {
    return call(
        "sal_lldp_enable_set",
        [&](Switch& s) {
            if (enable > 1)
                return code_bad_value;
            s.lldp.enable = enable != 0;
            return code_ok;
        },
        enable);
}

int sal_lldp_tx_interval_get(uint32_t* seconds) {
    return timer_get("sal_lldp_tx_interval_get", &Lldp::interval, seconds);
}

int sal_lldp_tx_interval_set(uint32_t seconds) {
    return timer_set("sal_lldp_tx_interval_set", &Lldp::interval, seconds, 5, 32767);
}

int sal_lldp_holdtime_get(uint8_t* multiplier) {
    return timer_get("sal_lldp_holdtime_get", &Lldp::multiplier, multiplier);
}

int sal_lldp_holdtime_set(uint8_t multiplier) {
    return timer_set("sal_lldp_holdtime_set", &Lldp::multiplier, multiplier, 2, 10);
}

int sal_lldp_reinit_delay_get(uint8_t* seconds) {
    return timer_get("sal_lldp_reinit_delay_get", &Lldp::reinit_delay, seconds);
}

int sal_lldp_reinit_delay_set(uint8_t seconds) {
    return timer_set("sal_lldp_reinit_delay_set", &Lldp::reinit_delay, seconds, 1, 10);
}

int sal_lldp_tx_delay_get(uint16_t* seconds) {
    return timer_get("sal_lldp_tx_delay_get", &Lldp::transmit_delay, seconds);
}

int sal_lldp_tx_delay_set(uint16_t seconds) {
    return timer_set("sal_lldp_tx_delay_set", &Lldp::transmit_delay, seconds, 1, 8192);
}

int sal_lldp_disableAction_set(uint32_t action) {
    return timer_set("sal_lldp_disableAction_set", &Lldp::disable_action, action, 0, 2);
}

int sal_lldp_portRemoteEntryInfo_get(int port, int index, LldpNeighbour* neighbour) {
    return call(
        "sal_lldp_portRemoteEntryInfo_get",
        [&](Switch& s) -> int {
            if (port < 0 || port >= s.logical_ports() - TRUNK_GROUPS)
                return code_no_port;
            if (index < 0 || index >= LLDP_PORT_NEIGHBOURS)
                return code_bad_value;
            int place = 0;
            for (const LldpPeer& peer : s.lldp.neighbours)
                if (peer.port == port && place++ == index)
                    fill(*neighbour, peer, index);
            return code_ok;
        },
        port, index);
}
