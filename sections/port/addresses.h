// Which MAC addresses the switch has learned behind which port, as one reading of its address table
// tells. Memory goes with the addresses that are listed, not with ports times table.
#pragma once

#include "base/port_set.h"
#include "json/json_document.h"

struct MacLists {
    cJSON* of_port[PORT_SET_SIZE]; // arrays of texts, null for a port without addresses
};

// Reads the table into `lists`, which starts out zeroed. The switch's own address, static ones and
// those that were not learned are left out. Returns 0 or the code of the first platform call that
// failed. Whatever the result, release_mac_lists frees what was not taken. Where memory is short,
// addresses are missing.
int collect_mac_lists(MacLists* lists);
void release_mac_lists(MacLists* lists);

// The addresses behind `port`, in the order of the table, as an array of texts that is the caller's
// from now on. Null where memory is short.
cJSON* take_mac_list(MacLists* lists, int port);
