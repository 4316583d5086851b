// "summary_info": who the switch is and how it is doing.
#pragma once

#include <stdint.h>

#include "json/json_document.h"

extern "C" {

// Writes how many ports have link, aggregation groups not counted. Returns 0.
int vxc_active_port_count(int32_t* count);

// Adds "summary_info" to the "system" object, whole or not at all. Returns 0 or the code that it
// recorded.
int vxc_summary_get(cJSON* system);

// Applies "device_name". Returns 0 or the code that it recorded; ERROR_NO_SECTION for a null
// `system` is not recorded.
int vxc_summary_set(const cJSON* system);
}
