// "snmp": the switch's SNMP agent, its communities and the targets of its notifications.
#pragma once

#include "json/json_document.h"

// What the "action" of a community or target asks for.
enum SnmpAction { SNMP_ADD = 1, SNMP_DELETE = 2 };

extern "C" {

// Adds "snmp" to the "system" object. Returns 0 or the code of the call that failed: nothing is
// added when the service's state or a community cannot be read (the latter is not recorded), the
// targets up to the one at fault when a target cannot.
int vxc_snmp_get(cJSON* system);

// Applies "enable", "communities" and "trap" in this order. Returns 0 or the code at which it
// stopped, which is in the error list but for a community's name that is too long. Items that are
// bad in themselves are recorded and passed over. Nothing is rolled back.
int vxc_snmp_set(const cJSON* system);
}
