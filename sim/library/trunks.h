// Link aggregation groups. They are the chip's; the LACP mode, active or passive, is kept here.
#pragma once

#include <array>

#include "platform/trunk.h"
#include "sim/chip/chip.h"
#include "sim/instruments/fields.h"

namespace sim {

struct Trunks {
    explicit Trunks(Chip& chip) : chip_(chip) {}

    std::array<PortBitmap, TRUNK_GROUPS> active{}; // members of LACP groups only

    void config(Fields& f);

  private:
    Chip& chip_;
};

} // namespace sim
