// "dark_mode": the mode that the LEDs had is kept while they are dark.
#include "sections/dark_mode.h"

#include "base/debug.h"
#include "base/errors.h"
#include "platform/led.h"
#include "sections/section.h"

uint32_t saved_led_mode = LED_MODE_DARK;

int vxc_dark_mode_get(cJSON* system) {
    if (!system)
        return ERROR_NO_SECTION;
    uint32_t mode;
    if (int code = sal_swctrl_poe_led_mode_get(&mode))
        return code;
    addJsonObjectBoolItem(system, "dark_mode", mode != LED_MODE_LAN);
    return 0;
}

namespace {

// The first of several orders finds the mode to go back to.
void go_dark(uint32_t mode) {
    debug_print("VX_cloud : dark_mode TRUE\n");
    if (mode != LED_MODE_DARK)
        saved_led_mode = mode;
    sal_swctrl_poe_led_mode_set(LED_MODE_DARK);
}

void light_up(uint32_t mode) {
    if (mode != LED_MODE_DARK)
        return;
    if (saved_led_mode == LED_MODE_LAN)
        debug_print("VX_cloud : recover to LAN mode\n");
    if (saved_led_mode == LED_MODE_POE)
        debug_print("VX_cloud : recover to POE mode\n");
    sal_swctrl_poe_led_mode_set(saved_led_mode);
}

} // namespace

int vxc_dark_mode_set(const cJSON* system) {
    if (!system)
        return ERROR_NO_SECTION;
    bool dark = false;
    if (!read_bool(system, "dark_mode", &dark))
        return 0;
    uint32_t mode = LED_MODE_LAN; // what a switch whose mode cannot be read is taken to show
    sal_swctrl_poe_led_mode_get(&mode);
    dark ? go_dark(mode) : light_up(mode);
    return 0;
}
