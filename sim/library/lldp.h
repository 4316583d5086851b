// LLDP: timers, and the neighbours that are plugged in.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sim/instruments/fields.h"

namespace sim {

// Texts are limited to what the platform's record holds; what they hold is the neighbour's choice.
struct LldpPeer {
    int port = 0;           // logical port behind which it is
    int reported_port = -1; // what its record says instead; -1: nothing else
    std::string chassis_id_subtype = "Mac Address";
    std::string chassis_id;
    std::string port_id_subtype = "Interface Name";
    std::string port_id;
    std::string system_name;
    std::uint16_t max_frame_size = 1522;
    bool auto_negotiation_supported = true;
    bool auto_negotiation_enabled = true;
    std::string advertised_capabilities = "1000BASE-T full duplex";
    std::string operational_mau_type = "1000BASE-T full duplex";
    std::uint16_t ttl = 120;

    void fields(Fields& f);
};

struct Lldp {
    bool enable = true;
    std::uint32_t interval = 30;
    std::uint8_t multiplier = 4;
    std::uint8_t reinit_delay = 2;
    std::uint16_t transmit_delay = 2;
    std::uint32_t disable_action = 0;

    std::vector<LldpPeer> neighbours; // hardware

    void config(Fields& f);
    void hardware(Fields& f);
};

} // namespace sim
