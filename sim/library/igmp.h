// IGMP snooping.
#pragma once

#include <map>

#include "sim/instruments/fields.h"

namespace sim {

struct IgmpVlan {
    bool enable = false;
    bool fast_leave = false;
};

struct Igmp {
    bool enable = false;
    int version = 2;
    int lookup_mode = 0;
    std::map<int, IgmpVlan> vlans; // by id; a VLAN that is not here has the defaults

    void hardware(Fields& f);
    void config(Fields& f);
};

} // namespace sim
