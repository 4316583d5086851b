// Putting a new firmware image into a partition, and choosing the partition to start from.
#pragma once

#include <stdint.h>

enum { STATUS_FLAGS = 4 };

extern "C" {

// Status words for the cloud, told and cleared by the next report. Word 0 is what became of an
// upgrade: 101 no image where one should be, 102 a damaged one.
extern uint32_t flags[STATUS_FLAGS];

// Downloads an image and writes it to `partition`, 0 or 1; one that cannot be read back is fetched
// afresh, three times in all. Returns 0 or the platform's code.
int vxc_upgrade(const char* url, int partition);

// Has the switch start from `partition`, 0 or 1, next time, unless the second image is missing.
// A refusal is in the error list.
void vxc_act_partiton_set(int partition);
}
