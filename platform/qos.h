// Platform library: quality of service.
//
// `port` is a zero-based logical port. Calls return 0 or a platform code; a failing one changes
// neither the switch nor its output.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// QoS on the switch: 0 off, 1 on.
int sal_qos_mode_get(uint32_t* mode);
int sal_qos_mode_set(int mode);

// The class of service (0 to 7) of frames that bring none. Set only while QoS is on; refused
// otherwise.
int sal_qos_portCos_get(int port, uint32_t* cos);
int sal_qos_portCos_set(int port, int cos);

// Whether a port trusts the marks of incoming frames: 0 or 1. Set only while QoS is on; refused
// otherwise.
int sal_qos_portTrustState_get(int port, uint32_t* trust);
int sal_qos_portTrustState_set(int port, int trust);

#ifdef __cplusplus
}
#endif
