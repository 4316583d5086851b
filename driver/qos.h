// Quality of service: trust, queues, remarking.
// Commands from 3712 on.
//
// Queues are numbered from 0, classes of service and IP precedences 0 to 7, DSCPs 0 to 63.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// Service as a whole: 0 off, 1 basic, 2 advanced.
int rsd_qos_mode_set(uint32_t mode);

// What a packet is classed by: 0 class of service, 1 DSCP, 2 IP precedence, 3 both; and whether a
// port does so: 0 no, 1 yes.
int rsd_qos_trustType_set(uint32_t type);
int rsd_qos_portTrustType_set(uint32_t port, uint32_t type);

// Weight of a port's queue; 0 is strict priority.
int rsd_qos_portQueueWeight_set(uint32_t port, uint32_t queue, uint32_t weight);

// Class of packets that arrive without one.
int rsd_qos_portCos_set(uint32_t port, uint32_t cos);

// Queue for a class, a DSCP, a precedence.
int rsd_qos_cosQueue_set(uint32_t cos, uint32_t queue);
int rsd_qos_dscpQueue_set(uint32_t dscp, uint32_t queue);
int rsd_qos_ippQueue_set(uint32_t precedence, uint32_t queue);

// Class, DSCP, precedence that remarking gives to a queue's packets.
int rsd_qos_queueCos_set(uint32_t queue, uint32_t cos);
int rsd_qos_queueDscp_set(uint32_t queue, uint32_t dscp);
int rsd_qos_queueIpp_set(uint32_t queue, uint32_t precedence);

// Remarking of a port's packets: 0 off, 1 on.
int rsd_qos_portRemarkCos_set(uint32_t port, uint32_t enable);
int rsd_qos_portRemarkDscp_set(uint32_t port, uint32_t enable);
int rsd_qos_portRemarkIpp_set(uint32_t port, uint32_t enable);

// 1 when the chip can remark IP headers.
int rsd_qos_ipRemarkAbility_check(uint32_t* able);

#ifdef __cplusplus
}
#endif
