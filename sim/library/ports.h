// Ports: what is configured on them and what they are made of. Link, administrative state and what
// a link runs at are the chip's.
#pragma once

#include <cstdint>
#include <vector>

#include "sim/chip/chip.h"
#include "sim/instruments/fields.h"

namespace sim {

struct Port {
    // Configuration.
    bool enable = true; // the chip may be told otherwise for a while
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
    std::uint32_t partner_speed = 2;  // what is negotiated with the partner, in the running link's
    std::uint32_t partner_duplex = 1; // codes
    bool partner_flow_control = true;
    int module_resets = 0;

    std::uint32_t running_speed() const;
    std::uint32_t running_duplex() const { return duplex_automatic ? partner_duplex : 1 - duplex; }

    void config(Fields& f);
    void hardware(Fields& f);
};

struct Ports {
    explicit Ports(Chip& chip);

    int count() const { return static_cast<int>(port.size()); }

    std::vector<Port> port;

    void config(Fields& f);
    void hardware(Fields& f);

    // Puts a port, or what its link runs at, into the state that is configured.
    void program(std::size_t p);
    void program_mode(std::size_t p);

  private:
    Chip& chip_;
};

} // namespace sim
