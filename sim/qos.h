// Quality of service.
#pragma once

#include <cstdint>
#include <vector>

#include "sim/fields.h"

namespace sim {

struct PortQos {
    std::uint32_t cos = 0;
    bool trust = true;

    void fields(Fields& f);
};

struct Qos {
    explicit Qos(int logical_ports) : ports(static_cast<std::size_t>(logical_ports)) {}

    bool on = false;
    std::vector<PortQos> ports;

    void config(Fields& f);
};

} // namespace sim
