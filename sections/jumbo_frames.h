// "jumbo_frames": the largest frame that the switch forwards.
#pragma once

#include "json/json_document.h"

extern "C" {

// Both take the "system" object and return 0 or the code that they recorded. Sizes are in bytes,
// 1522 to 9216.
int vxc_jumbo_frmGet(cJSON* system);
int vxc_jumbo_frmSet(const cJSON* system);
}
