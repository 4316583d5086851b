// The "link_aggregation" section: groups of ports that act as one.
#pragma once

#include "json/json_document.h"

extern "C" {

// Adds "link_aggregation" with every group to the "system" object. Returns 0, or the code of the
// first platform call that failed, which is also recorded: the groups before it stay.
int vxc_trunk_get(cJSON* system);

// Applies the "link_aggregation" array of the "system" object. Ports that join or leave a group are
// down meanwhile. No group changes while one of those ports has port security on. A group that the
// platform refuses to form is put back to what it was, and is no error. Returns 0 or the recorded
// code at which it stopped; ports that it had taken down then stay down.
int vxc_trunk_set(const cJSON* system);
}
