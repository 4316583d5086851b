// "uplink_port": the port behind which the default gateway is.
#pragma once

#include "json/json_document.h"

extern "C" {

// Adds "uplink_port", a port number from 1; 0 when the ARP table cannot be read or the MAC address
// table is empty. A gateway that is in neither table gives the port of the MAC address table's last
// entry. Returns 0, or ERROR_NO_SECTION for a null `system`.
int vxc_uplink_port_get(cJSON* system);
}
