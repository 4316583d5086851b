// The "lldp" section of settings documents.
#pragma once

#include "json/json_document.h"

extern "C" {

// Applies "settings" of an "lldp" object; what it does not name is written again as it is. Returns
// 0; ERROR_REFUSED, with nothing changed, for values that do not go together; or the code of the
// first platform call that failed, when the timers may be left at their lowest values. A code is
// also recorded.
int vxc_lldp_set(const cJSON* lldp);
}
