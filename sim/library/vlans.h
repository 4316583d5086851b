// The VLAN table and the ports' membership.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/types.h"
#include "sim/instruments/fields.h"

namespace sim {

struct Vlan {
    std::string name;
    PortBitmap tagged{};
    PortBitmap untagged{};
};

struct Vlans {
    explicit Vlans(int logical_ports);

    bool has(int vid) const { return table.count(vid) != 0; }

    static constexpr int default_vid = 1;

    std::map<int, Vlan> table;
    std::vector<int> pvid; // by logical port
    int management = default_vid;
    int capacity = 4094;

    void config(Fields& f);
    void hardware(Fields& f);
};

bool has_bit(const PortBitmap& ports, int port);
void set_bit(PortBitmap& ports, int port, bool on);

} // namespace sim
