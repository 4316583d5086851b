// "firmware": the switch's two images, which one it starts from, and the cloud's orders to change
// them. The cloud counts partitions from 1, the platform from 0.
#pragma once

#include "json/json_document.h"

extern "C" {

// Adds "firmware" to the "system" object and clears the status words that it tells. Returns 0, or
// the platform's code when the selection cannot be read: then nothing is added.
int vxc_firmware_get(cJSON* system);

// Carries out the "firmware" orders of a "system" object, which takes as long as a download and
// the writing of an image. Orders that come while others are carried out are dropped. Always
// returns 0.
int vxc_firmware_set(const cJSON* system);
}
