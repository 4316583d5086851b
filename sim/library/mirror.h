// Mirror groups: what the library keeps of them. What copies frames is the chip's.
#pragma once

#include <array>
#include <cstdint>

#include "platform/mirror.h"
#include "sim/chip/chip.h"
#include "sim/instruments/fields.h"

namespace sim {

struct MirrorSession {
    bool on = false;
    int target = 0; // logical port
    std::uint32_t ingress = 0;
    PortBitmap rx{}, tx{};

    void fields(Fields& f, int last_port);
};

struct Mirrors {
    explicit Mirrors(Chip& chip) : chip_(chip) {}

    std::array<MirrorSession, MIRROR_GROUPS> groups;

    bool is_target(int port) const;
    void config(Fields& f);

  private:
    Chip& chip_;
};

} // namespace sim
