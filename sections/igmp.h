// "igmp": IGMP snooping, of the switch and by VLAN.
#pragma once

#include "json/json_document.h"

extern "C" {

// Adds "igmp" to the "system" object. Returns 0 or the code that it recorded: nothing is added when
// the switch's own settings cannot be read, the VLANs up to the one at fault when a VLAN's cannot.
int vxc_igmp_get(cJSON* system);

// Applies "enable", "version" and "vlan" in this order. Returns 0 or the code that it recorded and
// at which it stopped. A VLAN whose settings cannot be applied is logged and in the error list, but
// neither stops it nor shows in its result.
int vxc_igmp_set(const cJSON* system);
}
