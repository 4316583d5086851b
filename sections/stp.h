// "stp": the bridge's spanning-tree settings and its view of the root.
#pragma once

#include "json/json_document.h"

extern "C" {

// Adds "stp" to the "system" object, whole or not at all. Returns 0 or the code that it recorded.
int vxc_stp_get(cJSON* system);

// Applies "enable", "force_version" and "priority" in this order and stops at the first failure.
// Returns 0 or the code that it recorded; ERROR_BAD_PRIORITY for a priority that no bridge can
// have. A force version that the cloud may not ask for is passed over.
int vxc_stp_set(const cJSON* system);
}
