// Quality of service.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "sim/instruments/fields.h"

namespace sim {

struct PortQos {
    std::uint32_t cos = 0;
    bool trust = true;

    void fields(Fields& f);
};

struct QueueChoice {
    int queue = 0;

    void fields(Fields& f);
};

struct Qos {
    explicit Qos(int logical_ports);

    bool on = false;
    int strict_queues = 8;
    int trust_type = 1;
    std::array<QueueChoice, 8> cos_queues;   // by class of service; at first queue n for class n
    std::array<QueueChoice, 64> dscp_queues; // by DSCP; at first eight to a queue
    std::vector<PortQos> ports;

    void config(Fields& f);
};

} // namespace sim
