// Power over Ethernet: one budget, and what the devices on the ports ask of it.
#pragma once

#include <array>
#include <cstdint>

#include "sim/instruments/fields.h"

namespace sim {

struct PoePort {
    bool enable = true;
    std::uint8_t priority = 0;
    std::uint8_t limit_type = 1;
    std::uint8_t user_limit = 150; // fifths of a watt
    bool classification = true;

    std::uint16_t demand =
        0; // what the device on the port draws, in tenths of a watt; 0: no device
    std::uint8_t power_class = 0;
    int resets = 0;

    // What the port may hand out, in tenths of a watt.
    std::uint16_t limit() const;

    void config(Fields& f);
    void hardware(Fields& f);
};

struct Poe {
    std::uint16_t budget = 3700; // tenths of a watt
    std::uint8_t mode = 1;       // 0: ports in order, 1: by priority, 2: without limits
    std::array<PoePort, 24> ports;

    Poe();

    // Which ports get what they ask for, with the budget shared out.
    std::array<bool, 24> delivering() const;
    std::uint16_t draw(std::size_t port) const;

    void config(Fields& f);
    void hardware(Fields& f);
};

} // namespace sim
