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

// The switch has eight egress queues, 0 to 7. How many of them, from the highest, are served in
// strict priority: 0 to 8. Set only while QoS is on; refused otherwise, as are the other setters
// below.
enum { QOS_QUEUES = 8, QOS_COS_VALUES = 8, QOS_DSCP_VALUES = 64 };

int sal_qos_strictPriQueueNum_get(uint32_t* count);
int sal_qos_strictPriQueueNum_set(int count);

// Which marks of a frame the switch goes by: 1 to 3.
int sal_qos_trustType_get(uint32_t* type);
int sal_qos_trustType_set(int type);

// The queue of frames with a class of service (0 to 7) or a DSCP (0 to 63).
int sal_qos_cosQueue_get(int cos, uint32_t* queue);
int sal_qos_cosQueue_set(int cos, int queue);
int sal_qos_dscpQueue_get(int dscp, uint32_t* queue);
int sal_qos_dscpQueue_set(int dscp, int queue);

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
