// Entries of IPv4 access lists, in the report and in settings.
//
// Settings of an entry (method 1 creates, 2 modifies, 0 deletes the entry with that "sequence"):
//   "action"                           0 deny, 1 permit; needed to create
//   "protocol"                         a number (8 bits of it count), -1 any
//   "type_of_service"                  0 to 63, -1 any
//   "destination_ip", "source_ip"      dotted text, "" any
//   "destination_mask", "source_mask"  dotted text; "" or, beside a new address, none:
//                                      255.255.255.255
//   "icmp_type"                        0 to 255, -1 any; only while the protocol is 1
//   "icmp_code"                        0 to 255, -1 any
//   "source_port_first", "..._second", "destination_port_first", "..._second"
//                                      0 to 65535, -1 any; with a second one, a range of ports
//   "tcp_flag_urg", "_ack", "_psh", "_rst", "_syn", "_fin"
//                                      1 set, 2 clear, any other value either; only while the
//                                      protocol is 6
// A key that is absent means any in a new entry, and in a modified one what was there. Where the
// conditions on the protocol are concerned, the protocol is that of the modified entry. The two
// ports of a pair are one value: it is replaced when the first is present, and a second without a
// first is not looked at. A range that stays while the protocol changes from or to TCP is written
// again as one of the other kind.
//
// The report writes -1 and "" for any, -1 as second port of a single port, and 0 for a TCP flag
// that is not looked at: fed back with method 2, each of its values is what stands there.
//
// The agent writes ranges of ports to the driver and never releases one: an equal range has the
// same index, and the driver gives the place of a range that no entry refers to any more to another
// when it needs it.
#pragma once

#include "json/json_document.h"

extern "C" {

// Adds "ipv4_ace", the entries of every IPv4 list; otherwise as ace_mac_get.
int ace_ipv4_get(cJSON* acl);

// As ace_mac_set.
int ace_ipv4_set(const cJSON* entries);
}
