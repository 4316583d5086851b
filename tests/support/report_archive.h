// The reports that tests produce, kept in a folder of the build for the test that holds them
// against the schemas. Every call of vxc_get leaves its report there by itself.
#pragma once

#include <cjson/cJSON.h>

// Keeps what one section's getter has added to a report that was empty.
void keep_part(const cJSON* document);
