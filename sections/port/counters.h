// The "statistics" of a port.
#pragma once

#include "json/json_document.h"

// Reads all counters of `port` and adds them as "statistics". Returns 0, or the code of the first
// counter that could not be read; nothing is added then.
int add_port_statistics(cJSON* port_object, int port);
