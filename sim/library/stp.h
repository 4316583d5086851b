// Spanning tree: this bridge, and the root that it hears of.
#pragma once

#include <cstdint>

#include "sim/instruments/fields.h"

namespace sim {

// The best bridge that other switches tell of, as a scenario has it.
struct StpRoot {
    bool heard = false;
    std::uint16_t priority = 0; // with the instance number in its low 12 bits
    std::uint8_t mac[6] = {};
    std::uint32_t path_cost = 0;
    std::uint16_t port = 0; // from 1

    void fields(Fields& f);
};

struct Stp {
    bool enable = false;
    int force_version = 2;
    int priority = 32768;
    int hello_time = 2; // seconds, as are the others
    int maximum_age = 20;
    int forward_delay = 15;
    StpRoot root;

    void hardware(Fields& f);
    void config(Fields& f);
};

} // namespace sim
