// "reboot": an order of the cloud, which stands among the settings.
#pragma once

#include "json/json_document.h"

extern "C" {

// Adds "reboot", which is always false: a switch that reports is not rebooting. Returns 0, or
// ERROR_NO_SECTION for a null `system`.
int vxc_reboot_get(cJSON* system);

// Reboots the switch when "reboot" is true. Returns 0, or ERROR_NO_SECTION for a null `system`.
int vxc_reboot_set(const cJSON* system);
}
