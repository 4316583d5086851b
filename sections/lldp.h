// "lldp": timers, what the switch tells its neighbours, and who they are. Only the timers can be
// set.
#pragma once

#include "json/json_document.h"

extern "C" {

// Adds "lldp" to the report. Returns 0: a part that fails is in the error list.
int vxc_lldp_get(cJSON* report);

// The three parts of it. Each returns 0, or the code of the first platform call that failed, which
// is also recorded. The first two then add nothing; the neighbours keep those that were reported.
int vxc_lldp_get_setting(cJSON* lldp);
int vxc_lldp_get_local_device_info(cJSON* lldp);
int vxc_lldp_get_remote_device_info(cJSON* lldp);

// Applies "settings" of an "lldp" object; what it does not name is written again as it is. Returns
// 0; ERROR_REFUSED, with nothing changed, for values that do not go together; or the code of the
// first platform call that failed, when the timers may be left at their lowest values. A code is
// also recorded.
int vxc_lldp_set(const cJSON* lldp);

// Copies a neighbour's text with a space in the place of every byte that is not printable ASCII,
// without a terminator: `out` holds 257 zero bytes. The copied length is that of the text modulo
// 256. Returns 0.
int sn_json_validstr_conv(const char* in, char* out);
}
