// Fibre modules: their pins. `port` is a logical port with a module slot.
// Commands from 1280 on.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// Optical transmitter: 0 off, 1 on.
int rsd_fiber_oeStatus_get(uint32_t port, uint32_t* status);

// Loss of signal: 0 light, 1 none.
int rsd_fiber_losStatus_get(uint32_t port, uint32_t* status);

// Module: 0 absent, 1 present.
int rsd_fiber_detectStatus_get(uint32_t port, uint32_t* status);

#ifdef __cplusplus
}
#endif
