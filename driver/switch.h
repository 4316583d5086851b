// The switch chip as a whole: frame sizes.
// Commands from 4096 on.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// Largest frame that is forwarded, in bytes.
int rsd_switch_maxFrameSize_set(uint32_t bytes);
int rsd_switch_maxFrameSize_get(uint32_t* bytes);

// The same for one logical port, below the switch's own limit.
int rsd_switch_portMaxFrameSize_set(uint32_t port, uint32_t bytes);
int rsd_switch_portMaxFrameSize_get(uint32_t port, uint32_t* bytes);

#ifdef __cplusplus
}
#endif
