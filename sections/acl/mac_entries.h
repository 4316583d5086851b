// Entries of MAC access lists, in the report and in settings.
//
// Settings of an entry (method 1 creates, 2 modifies, 0 deletes the entry with that "sequence"):
//   "action"                           0 deny, 1 permit; needed to create
//   "vlan_id"                          1 to 4094, -1 any
//   "ethertype"                        hexadecimal text, 0600 to FFFF with or without 0x; "" any
//   "destination_mac", "source_mac"    MAC text, "" any
//   "destination_mask", "source_mask"  MAC text; "" or, beside a new address, none: all of it
//   "priority"                         0 to 7, -1 any
// A key that is absent means any in a new entry, and in a modified one what was there. A mask
// without an address that it could belong to is not looked at.
#pragma once

#include "json/json_document.h"

extern "C" {

// Adds "mac_ace", the entries of every MAC list. Entries that cannot be read are recorded and left
// out. Returns 0 or the recorded code of a failed count.
int ace_mac_get(cJSON* acl);

// Applies an array of entries, the lists taken off their ports meanwhile. An entry that is not
// valid is recorded as 19 and skipped. Returns 0, or the recorded code of the call that ended it,
// with the lists still off their ports.
int ace_mac_set(const cJSON* entries);
}
