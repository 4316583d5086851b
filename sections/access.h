// "device_access": the switch's web, Telnet and SSH services.
#pragma once

#include "json/json_document.h"

extern "C" {

// Adds "device_access" to the "system" object, whole or not at all. Returns 0 or the code that it
// recorded.
int vxc_access_get(cJSON* system);

// Applies "gui", "telnet" and "ssh" in this order and stops at the first failure. Switching Telnet
// or SSH off also ends their open connections. Returns 0 or the code that it recorded;
// ERROR_NO_SECTION for a null `system` is not recorded.
int vxc_access_set(const cJSON* system);
}
