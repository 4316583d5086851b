// Which MAC addresses the switch has learned behind which port, as one reading of its address table
// tells. Memory goes with the addresses that are listed, not with ports times table.
#pragma once

#include <stdint.h>

#include "base/port_set.h"
#include "json/json_document.h"

struct LearnedMac;

struct MacLists {
    LearnedMac* macs; // in the order of the table
    uint32_t count;
    uint32_t room;
    const char** texts;                // the ports' lists, one behind the other
    uint32_t first[PORT_SET_SIZE + 1]; // where each port's list begins in `texts`
};

// Reads the table into `lists`, which starts out zeroed. The switch's own address, static ones and
// those that were not learned are left out. Returns 0 or the code of the first platform call that
// failed. Whatever the result, release_mac_lists frees what was taken. Where memory is short,
// addresses are missing.
int collect_mac_lists(MacLists* lists);
void release_mac_lists(MacLists* lists);

// The addresses behind `port` as a new array of texts.
cJSON* create_mac_list(const MacLists* lists, int port);
