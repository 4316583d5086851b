// Quality of service: trust, queues, remarking.
#include "driver/qos.h"

#include "driver/request.h"

// clang-format off
int rsd_qos_mode_set(uint32_t mode)                                             { return chip_request(3713, mode); }
int rsd_qos_trustType_set(uint32_t type)                                        { return chip_request(3714, type); }
int rsd_qos_portTrustType_set(uint32_t port, uint32_t type)                     { return chip_port_request(3715, port, type); }
int rsd_qos_portQueueWeight_set(uint32_t port, uint32_t queue, uint32_t weight) { return chip_port_request(3716, port, queue, weight); }
int rsd_qos_portCos_set(uint32_t port, uint32_t cos)                            { return chip_port_request(3717, port, cos); }
int rsd_qos_cosQueue_set(uint32_t cos, uint32_t queue)                          { return chip_request(3718, cos, queue); }
int rsd_qos_dscpQueue_set(uint32_t dscp, uint32_t queue)                        { return chip_request(3719, dscp, queue); }
int rsd_qos_ippQueue_set(uint32_t precedence, uint32_t queue)                   { return chip_request(3720, precedence, queue); }
int rsd_qos_queueCos_set(uint32_t queue, uint32_t cos)                          { return chip_request(3721, queue, cos); }
int rsd_qos_queueDscp_set(uint32_t queue, uint32_t dscp)                        { return chip_request(3722, queue, dscp); }
int rsd_qos_queueIpp_set(uint32_t queue, uint32_t precedence)                   { return chip_request(3723, queue, precedence); }
int rsd_qos_portRemarkCos_set(uint32_t port, uint32_t enable)                   { return chip_port_request(3724, port, enable); }
int rsd_qos_portRemarkDscp_set(uint32_t port, uint32_t enable)                  { return chip_port_request(3725, port, enable); }
int rsd_qos_portRemarkIpp_set(uint32_t port, uint32_t enable)                   { return chip_port_request(3726, port, enable); }

int rsd_qos_ipRemarkAbility_check(uint32_t* able) { return chip_request(3777, able); }
// clang-format on
