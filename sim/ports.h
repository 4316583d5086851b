// Ports: what is configured on them, what they are made of, and what is plugged in.
#pragma once

#include <cstdint>
#include <vector>

#include "sim/fields.h"

namespace sim {

class Board;

struct Port {
    // Configuration.
    bool enable = true;
    bool isolated = false;
    bool flow_control = false;
    bool security = false;
    bool speed_automatic = true;
    std::uint32_t speed = 2; // as platform/port.h says
    bool duplex_automatic = true;
    std::uint32_t duplex = 0;
    std::uint32_t media_10g = 1;
    bool force_link = false;

    // Hardware.
    bool fibre = false;
    bool ten_gigabit = false;
    bool plugged = false;            // a link partner is there
    std::uint32_t partner_speed = 2; // what the partner negotiates, in the running link's codes
    std::uint32_t partner_duplex = 1;
    bool partner_flow_control = true;
    int module_resets = 0;

    void config(Fields& f);
    void hardware(Fields& f);
};

struct Ports {
    explicit Ports(int logical_ports);

    int count() const { return static_cast<int>(port.size()); }
    bool is_trunk(int p) const { return p >= count() - 8; }

    std::vector<Port> port;

    void config(Fields& f);
    void hardware(Fields& f);
};

} // namespace sim
