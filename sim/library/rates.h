// Bandwidth limits of ports.
#pragma once

#include <cstdint>
#include <vector>

#include "sim/instruments/fields.h"

namespace sim {

struct RateLimit {
    bool enable = false;
    std::uint32_t kbps = 1000000;

    void fields(Fields& f);
};

struct PortRates {
    RateLimit ingress;
    RateLimit egress;

    void fields(Fields& f);
};

struct Rates {
    explicit Rates(int logical_ports) : ports(static_cast<std::size_t>(logical_ports)) {}

    std::vector<PortRates> ports;

    void config(Fields& f) { f.slots("ports", ports); }
};

} // namespace sim
