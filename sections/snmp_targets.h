// "trap" of "snmp": where the switch sends its notifications.
#pragma once

#include "json/json_document.h"

// Fills the "trap" array. Returns 0 or the code of the first read that failed, which is recorded.
int report_snmp_targets(cJSON* targets);

// Adds and deletes targets in the order of the items; bad ones are recorded and passed over.
// Returns 0 or the recorded code of the call at which it stopped.
int set_snmp_targets(const cJSON* targets);
