// The switch as a whole: identity, addresses, name, firmware version.
#pragma once

#include <cstdint>
#include <string>

#include "sim/instruments/fields.h"

namespace sim {

struct System {
    std::uint8_t mac[6] = {0x02, 0x1B, 0x2C, 0x3D, 0x4E, 0x5F};
    std::string firmware_version = "1.0.0"; // scenario: of the first image; then: what runs
    std::string name = "Switch";
    std::uint32_t address = 0xC0A80164; // 192.168.1.100
    std::uint32_t mask = 0xFFFFFF00;
    std::uint32_t gateway = 0xC0A80101; // 192.168.1.1

    void hardware(Fields& f);
    void config(Fields& f);
};

} // namespace sim
