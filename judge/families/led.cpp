// Port LEDs.
#include "platform/led.h"

#include "judge/family.h"

namespace judge {

namespace {

const Parameter mode = one_of("mode", {LED_MODE_LAN, LED_MODE_POE, LED_MODE_DARK});

Operations reads() { return {{NAMED(sal_swctrl_poe_led_mode_get), {gives(mode)}}}; }

Settings settings() {
    return {{NAMED(sal_swctrl_poe_led_mode_set), {}, {mode}, outputs(sal_swctrl_poe_led_mode_get)}};
}

} // namespace

const Family led_family = {"led", reads, nullptr, settings, nullptr};

} // namespace judge
