// Diagnosis: who may run traceroute. What a cable test finds lies in the chip.
#pragma once

#include "sim/instruments/fields.h"

namespace sim {

struct Diag {
    bool traceroute_elsewhere = false; // hardware: another user of the switch runs it
    bool traceroute_locked = false;    // the agent does

    void hardware(Fields& f) { f.boolean("traceroute_elsewhere", traceroute_elsewhere); }
};

} // namespace sim
