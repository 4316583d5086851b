// The "poe" and "ports" sections of the report.
#pragma once

#include "json/json_document.h"

extern "C" {

// Adds both to the report's "system" object. Returns 0, or the code of the first platform call that
// failed, which is in the error list then; what was reported until then stays.
int vxc_port_get(cJSON* system);
}
