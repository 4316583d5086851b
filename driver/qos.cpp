// Quality of service: trust, queues, remarking.
#include "driver/qos.h"

#include "driver/shapes.h"

// clang-format off
int rsd_qos_mode_set(uint32_t mode)                                             { return request_chip(3713, mode); }
int rsd_qos_trustType_set(uint32_t type)                                        { return request_chip(3714, type); }
int rsd_qos_portTrustType_set(uint32_t port, uint32_t type)                     { return request_chip_port(3715, port, type); }
int rsd_qos_portQueueWeight_set(uint32_t port, uint32_t queue, uint32_t weight) { return request_chip_port(3716, port, queue, weight); }
int rsd_qos_portCos_set(uint32_t port, uint32_t cos)                            { return request_chip_port(3717, port, cos); }
int rsd_qos_cosQueue_set(uint32_t cos, uint32_t queue)                          { return request_chip(3718, cos, queue); }
int rsd_qos_dscpQueue_set(uint32_t dscp, uint32_t queue)                        { return request_chip(3719, dscp, queue); }
int rsd_qos_ippQueue_set(uint32_t precedence, uint32_t queue)                   { return request_chip(3720, precedence, queue); }
int rsd_qos_queueCos_set(uint32_t queue, uint32_t cos)                          { return request_chip(3721, queue, cos); }
int rsd_qos_queueDscp_set(uint32_t queue, uint32_t dscp)                        { return request_chip(3722, queue, dscp); }
int rsd_qos_queueIpp_set(uint32_t queue, uint32_t precedence)                   { return request_chip(3723, queue, precedence); }
int rsd_qos_portRemarkCos_set(uint32_t port, uint32_t enable)                   { return request_chip_port(3724, port, enable); }
int rsd_qos_portRemarkDscp_set(uint32_t port, uint32_t enable)                  { return request_chip_port(3725, port, enable); }
int rsd_qos_portRemarkIpp_set(uint32_t port, uint32_t enable)                   { return request_chip_port(3726, port, enable); }

int rsd_qos_ipRemarkAbility_check(uint32_t* able) { return request_chip(3777, able); }
// clang-format on
