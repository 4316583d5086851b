// From the sections of a document to their handlers and back: the report that is sent, the settings
// that are received.
#pragma once

#include "json/json_document.h"

extern "C" {

// Fills the report. A section that fails is logged and left out or partly filled; the rest goes on.
void vxc_get(cJSON* document);

// Adds "system" to the report and fills it. Returns 0.
int vxc_system_get(cJSON* document);

// Applies a settings document section by section, saves the startup configuration if any section
// was applied, and last of all takes orders to change firmware or to reboot. What went wrong is in
// the error list. Raises setting_from_cloud if the document holds a section. Returns 0.
int vxc_set(const cJSON* document);
}
