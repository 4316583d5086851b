// Power over Ethernet: the switch's budget and the ports' part of it.
#pragma once

#include <stdint.h>

#include "json/json_document.h"

enum {
    USER_LIMIT_UNIT = 5
}; // the platform counts a user's limit in fifths of a watt, the cloud in watts

// The switch's budget in tenths of a watt. Returns 0 or the platform's code.
int read_poe_budget(uint16_t* budget);

// Adds "poe" to the object of a port that has PoE; any other port is passed over. `*draw` becomes
// what the port draws, in tenths of a watt. Returns 0 or the code of the first query that failed;
// nothing is added then.
int add_port_poe(cJSON* port_object, int port, uint16_t* draw);

// Takes the power of a port away and brings it back if its PoE is on, and tells whether it is. A
// port without PoE is passed over; nobody watches the results.
bool reset_power(int port);
