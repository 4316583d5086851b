// "cloud": the agent's own settings - account, hosts, check-in interval, transfer limits.
#pragma once

#include "json/json_document.h"

extern "C" {

// Both take the "system" object. What the setter could not store is in the error list, and nothing
// behind it in its order is applied then.
void vxc_cloud_get(cJSON* system);
void vxc_cloud_set(const cJSON* system);
}
