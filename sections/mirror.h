// The "port_mirror" section: what ports' traffic is copied to where.
#pragma once

#include "json/json_document.h"

extern "C" {

// Adds "port_mirror" with every mirror group to the "system" object. Returns 0, or the code of the
// first platform call that failed, which is also recorded: the groups before it stay.
int vxc_mirror_get(cJSON* system);

// Applies the "port_mirror" array of the "system" object. A group that is switched off is deleted
// and then written again, as are all others. A group that cannot be written is recorded and logged,
// and the next one is taken. Returns 0.
int vxc_mirror_set(const cJSON* system);
}
