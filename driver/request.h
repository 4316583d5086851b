// The request frame: one operation of the switch driver, one ioctl on its device node.
#pragma once

#include <stdint.h>

extern "C" {
// Carries `record` to the driver under `command` (group base plus index) and back. The device is
// opened for this request alone. Returns the driver's result, 0 for success, or 501 when the device
// cannot be opened; the driver's other codes are passed on unchanged.
int glue_util_ioctl(uint32_t command, void* record);
}
