// Platform library: settings of the switch chip as a whole.
#include "sim/library/switch_settings.h"

#include "driver/switch.h"
#include "platform/switch.h"
#include "sim/library/call.h"

namespace sim {

namespace {

constexpr std::uint32_t smallest_frame = 64;
constexpr std::uint32_t largest_frame = 12288; // of the chip

} // namespace

void switch_settings_config(Fields& f, Chip& chip) {
    std::uint32_t bytes = chip.state().max_frame_bytes;
    f.integer("max_frame_size", bytes, smallest_frame, largest_frame);
    chip.change([&](ChipState& state) { state.max_frame_bytes = bytes; });
}

} // namespace sim

using namespace sim;

int sal_switch_maxFrameSize_set(uint32_t bytes) {
    return call(
        "sal_switch_maxFrameSize_set", [&](Switch&) { return rsd_switch_maxFrameSize_set(bytes); },
        bytes);
}

int sal_switch_maxFrameSize_get(uint32_t* bytes) {
    return call("sal_switch_maxFrameSize_get", [&](Switch&) -> int {
        return bytes ? rsd_switch_maxFrameSize_get(bytes) : int{code_null};
    });
}
