// "management_vlan": the VLAN in which the switch itself can be reached.
#pragma once

#include "json/json_document.h"

extern "C" {

// Adds "management_vlan". Returns 0, the platform's code without adding anything, or
// ERROR_NO_SECTION for a null `system`.
int vxc_management_vlan_get(cJSON* system);
}
