// Platform library: what the front panel's port LEDs show.
//
// Calls return 0 or a platform code; a failing one changes neither the switch nor its outputs.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum {
    LED_MODE_LAN = 0,  // link and traffic
    LED_MODE_POE = 1,  // power
    LED_MODE_DARK = 7, // nothing, all LEDs are off
};

// The LED mode. Any number but the three above is refused.
int sal_swctrl_poe_led_mode_get(uint32_t* mode);
int sal_swctrl_poe_led_mode_set(uint32_t mode);

#ifdef __cplusplus
}
#endif
