// "dark_mode": the front panel's LEDs off, and back on as they were.
#pragma once

#include <stdint.h>

#include "json/json_document.h"

extern "C" {

// The LED mode to go back to when dark mode ends. It is not kept over a restart of the agent: a
// switch that is dark by then stays dark, for all that is remembered is LED_MODE_DARK.
extern uint32_t saved_led_mode;

// Adds "dark_mode": whether the LED mode is any other than LED_MODE_LAN, so the PoE mode counts as
// dark too. Returns 0, the platform's code without adding anything, or ERROR_NO_SECTION for a null
// `system`.
int vxc_dark_mode_get(cJSON* system);

// Applies "dark_mode". Returns 0, or ERROR_NO_SECTION for a null `system`.
int vxc_dark_mode_set(const cJSON* system);
}
