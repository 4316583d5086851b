// "communities" of "snmp": each one is a community record, and a group and an access record for
// each of the two security models.
#pragma once

#include "json/json_document.h"

// Fills the "communities" array. Returns 0 or the code of the first read that failed, which is not
// recorded.
int report_snmp_communities(cJSON* communities);

// Adds and deletes communities in the order of the items. Returns 0 or the code at which it
// stopped; every code is recorded but that of a name that is too long.
int set_snmp_communities(const cJSON* communities);
