// Platform library: LEDs.
#include "sim/library/leds.h"

#include "platform/led.h"
#include "sim/library/call.h"

namespace sim {

namespace {

bool is_mode(std::uint32_t mode) {
    return mode == LED_MODE_LAN || mode == LED_MODE_POE || mode == LED_MODE_DARK;
}

} // namespace

void Leds::fields(Fields& f) {
    f.integer("mode", mode, LED_MODE_LAN, LED_MODE_DARK);
    if (!is_mode(mode))
        f.refuse("mode is no LED mode: " + std::to_string(mode));
}

} // namespace sim

using namespace sim;

int sal_swctrl_poe_led_mode_get(uint32_t* mode) {
    return call("sal_swctrl_poe_led_mode_get", [&](Switch& s) {
        *mode = s.leds.mode;
        return code_ok;
    });
}

int sal_swctrl_poe_led_mode_set(uint32_t mode) {
    return call(
        "sal_swctrl_poe_led_mode_set",
        [&](Switch& s) -> int {
            if (!is_mode(mode))
                return code_bad_value;
            s.leds.mode = mode;
            return code_ok;
        },
        mode);
}
