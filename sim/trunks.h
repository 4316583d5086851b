// Link aggregation groups.
#pragma once

#include <array>
#include <cstdint>

#include "platform/types.h"
#include "sim/fields.h"

namespace sim {

struct TrunkGroup {
    bool lacp = false;
    PortBitmap members{};

    bool empty() const { return !(members.words[0] | members.words[1] | members.words[2]); }
    void fields(Fields& f);
};

struct Trunks {
    std::array<TrunkGroup, 8> groups;

    void config(Fields& f) { f.slots("groups", groups); }
};

} // namespace sim
