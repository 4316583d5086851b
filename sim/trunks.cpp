// Platform library: link aggregation, whose groups are the chip's.
#include "sim/trunks.h"

#include "driver/trunk.h"
#include "platform/trunk.h"
#include "sim/call.h"

namespace sim {

namespace {

void fields(Fields& f, ChipTrunk& group) {
    bool lacp = group.mode == ChipTrunkMode::lacp;
    f.boolean("lacp", lacp);
    f.bits("members", group.members.data(), group.members.size());
    bool empty = group.members == ChipPortSet{};
    group.mode = empty ? ChipTrunkMode::none : lacp ? ChipTrunkMode::lacp : ChipTrunkMode::fixed;
}

} // namespace

void trunk_config(Fields& f, Chip& chip) {
    chip.change([&](ChipState& state) {
        f.list(
            "groups", [&](int) { return state.trunks.size(); },
            [&](Fields& element, std::size_t i) {
                if (i < state.trunks.size())
                    fields(element, state.trunks[i]);
            });
    });
}

} // namespace sim

using namespace sim;

int sys_trunk_portRole_ret(int port) {
    return value(
        "sys_trunk_portRole_ret",
        [&](Switch&) {
            uint32_t role = TRUNK_ROLE_NONE;
            rsd_trunk_portRole_get(static_cast<uint32_t>(port), &role);
            return static_cast<int>(role);
        },
        port);
}
