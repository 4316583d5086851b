// How the logical ports of a switch are laid out: copper ports, two fibre ports, eight aggregation
// groups; the first ports have PoE. How many there are is asked of the platform each time. `port`
// and `group` are zero-based and may be any number.
#pragma once

#include "platform/types.h"

bool is_port(int port); // one that the switch has
PortBitmap all_ports(); // as many of them as a set has room for

int first_fibre_port();
int first_group_port(); // also the number of ports that are no groups

bool is_group(int port);
bool has_poe(int port);

// The port that stands for a group. Wraps around beyond the ends of an int.
int group_port(int group);
