// The MAC address table and the static addresses.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/types.h"
#include "sim/instruments/fields.h"

namespace sim {

struct MacAddress {
    std::uint8_t mac[6]{};
    int vlan = 1;
    PortBitmap ports{};
    bool learned = true; // false: the switch put it into the table itself
    bool freed = false;  // a place of the static table that was taken back: the others keep theirs

    void fields(Fields& f);
};

struct MacTable {
    std::vector<MacAddress> learned;  // hardware: who talks
    std::vector<MacAddress> fixed;    // configuration: static addresses; stand in the table as well
    std::vector<MacAddress> snapshot; // as of the last request for one

    MacTable();

    void config(Fields& f);
    void hardware(Fields& f);
};

} // namespace sim
