// The switch chip as a whole: frame sizes.
#include "driver/switch.h"

#include "driver/shapes.h"

// clang-format off
int rsd_switch_maxFrameSize_set(uint32_t bytes)                    { return request_chip(4097, bytes); }
int rsd_switch_portMaxFrameSize_set(uint32_t port, uint32_t bytes) { return request_chip_port(4098, port, bytes); }

int rsd_switch_maxFrameSize_get(uint32_t* bytes)                    { return request_chip(4161, bytes); }
int rsd_switch_portMaxFrameSize_get(uint32_t port, uint32_t* bytes) { return request_chip_port(4162, port, bytes); }
// clang-format on
