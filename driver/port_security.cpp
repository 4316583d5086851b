// Port security: how many addresses, and which, a port lets in.
#include "driver/port_security.h"

#include "driver/shapes.h"

static_assert(sizeof(PortSecurity) == 16, "the driver's record");
static_assert(sizeof(PortSecurityGlobal) == 12, "the driver's record");

// clang-format off
int rsd_port_securityEnable_set(uint32_t port, uint32_t enable)        { return request_chip_port(3586, port, enable); }
int rsd_port_security_set(uint32_t port, const PortSecurity* security) { return request_chip_port_entry_set(3587, security, port); }
int rsd_port_securityEntryNum_set(uint32_t port, uint32_t entries)     { return request_chip_port(3588, port, entries); }
int rsd_port_securityAction_set(uint32_t port, uint32_t action)        { return request_chip_port(3589, port, action); }

int rsd_portSecurity_global_get(PortSecurityGlobal* security)           { return request_chip_entry_get(3649, security); }
int rsd_port_securityEnable_get(uint32_t port, uint32_t* enable)        { return request_chip_port(3650, port, enable); }
int rsd_port_security_get(uint32_t port, PortSecurity* security)        { return request_chip_port_entry_get(3651, security, port); }
int rsd_port_securityEntryNum_get(uint32_t port, uint32_t* entries)     { return request_chip_port(3652, port, entries); }
int rsd_port_securityAction_get(uint32_t port, uint32_t* action)        { return request_chip_port(3653, port, action); }
int rsd_port_security_learningCnt_get(uint32_t port, uint32_t* entries) { return request_chip_port(3654, port, entries); }
// clang-format on
