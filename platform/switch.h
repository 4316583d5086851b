// Platform library: settings of the switch chip as a whole.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// The largest frame that the switch forwards, in bytes. Every size from 1522 to 9216 is taken; what
// lies beside them is the switch's own affair. Both return 0 or a platform code; on failure nothing
// is changed.
int sal_switch_maxFrameSize_set(uint32_t bytes);
int sal_switch_maxFrameSize_get(uint32_t* bytes);

#ifdef __cplusplus
}
#endif
