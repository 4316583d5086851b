// The access list section: "acl" in the report and in settings. Lists of two types, MAC (1) and
// IPv4 (2).
//
// A report fed back as settings leaves the switch as it is: lists and entries without a "method"
// are skipped, and an entry with method 2 (modify) and every reported key is written as it stands.
#pragma once

#include <stdint.h>

#include "json/json_document.h"

extern "C" {

// Adds "acl" to the report. Parts that fail are logged. Returns 0, or what the system log returned
// when it was told that the IPv4 entries could not be reported.
int vxc_acl_get(cJSON* parent);

// Applies an "acl" object. Always returns 0: what failed is in the error list.
int vxc_acl_set(const cJSON* acl);

// Add the names of the lists of one type. Return 0 or the recorded code of a failed count.
int acl_mac_get(cJSON* acl);
int acl_ipv4_get(cJSON* acl);

// Creates (method 1) or deletes (method 0) a list; another method does nothing. Deleting takes the
// lists of that type off all ports first. Returns 0, a recorded code, or -1, not recorded, for a
// list that is there already.
int acl_set(int method, uint32_t type, const char* name);

// -1 when there is a list of that type and name, 0 when there is none, or a recorded code.
int _acl_name_check(uint32_t type, const char* name);
}
