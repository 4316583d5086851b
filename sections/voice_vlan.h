// The voice VLAN section: "vlan" / "voice" in the report and in settings.
#pragma once

#include "json/json_document.h"

extern "C" {

// Adds "vlan" to the report. Returns 0 or the code of the first call that failed, which is also
// recorded: nothing is added when one of the settings cannot be read, the vendors up to that place
// when a place of their table cannot.
int vxc_voice_vlan_get(cJSON* report);

// Applies a "vlan" object. A mode other than 1 and 2 is off; switching off also takes every port
// out of the voice VLAN. Returns 0 or the code of the call at which it stopped; whatever happens to
// the vendor table is in the error list only.
int vxc_voice_vlan_set(const cJSON* vlan);

// One edit of the table of telephone vendors. An edit that lacks a value that it needs, or would
// bring an OUI into the table twice, does nothing and returns 0; otherwise 0 or the recorded code
// of the first call that failed.
int oui_add(const cJSON* edit);
int oui_update(const cJSON* edit);
int oui_delete(const cJSON* edit);
}
