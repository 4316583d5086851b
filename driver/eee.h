// Energy-efficient Ethernet.
// Commands from 1152 on.
#pragma once

#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

// Energy saving on a port: 0 off, 1 on; and on a set of ports at once, all others off.
int rsd_eee_portEnable_set(uint32_t port, uint32_t enable);
int rsd_eee_portEnable_get(uint32_t port, uint32_t* enable);
int rsd_eee_enablePortmask_set(const PortBitmap* ports);
int rsd_eee_enablePortmask_get(PortBitmap* ports);

// 1 while the link partners of a port agreed on energy saving.
int rsd_eee_portState_get(uint32_t port, uint32_t* active);

#ifdef __cplusplus
}
#endif
