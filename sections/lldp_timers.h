// The global settings of LLDP, as the platform holds them.
#pragma once

#include <stdint.h>

struct LldpTimers {
    uint32_t enable;
    uint32_t interval; // seconds
    uint8_t multiplier;
    uint8_t reinit_delay;    // seconds
    uint16_t transmit_delay; // seconds
};
