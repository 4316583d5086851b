// The front panel's LEDs.
#pragma once

#include <cstdint>

#include "sim/instruments/fields.h"

namespace sim {

struct Leds {
    std::uint32_t mode = 0;

    void fields(Fields& f);
};

} // namespace sim
