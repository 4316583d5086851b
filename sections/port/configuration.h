// The "ports" section of a settings document.
#pragma once

#include "json/json_document.h"

extern "C" {

// Applies the "ports" of a "system" object, an element at a time and its keys in a fixed order; a
// key that is missing leaves its setting alone. Returns 0, ERROR_NO_SECTION without "ports", or the
// recorded code at which it stopped, with everything applied until then left standing.
int vxc_port_set(const cJSON* system);
}
