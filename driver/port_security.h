// Port security: how many addresses, and which, a port lets in.
// Commands from 3584 on.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// Security of a port. 16 bytes.
typedef struct PortSecurity {
    uint32_t enable;
    uint32_t max_entries;
    uint32_t action; // 0 forward, 1 drop, 2 shut the port
    uint32_t sticky; // learned addresses become configured ones
} PortSecurity;

// Security of the switch. 12 bytes.
typedef struct PortSecurityGlobal {
    uint32_t enable;
    uint32_t max_entries;
    uint32_t entries;
} PortSecurityGlobal;

// Security of the switch.
int rsd_portSecurity_global_get(PortSecurityGlobal* security);

// Security of a port: 0 off, 1 on; and with everything that belongs to it.
int rsd_port_securityEnable_set(uint32_t port, uint32_t enable);
int rsd_port_securityEnable_get(uint32_t port, uint32_t* enable);
int rsd_port_security_set(uint32_t port, const PortSecurity* security);
int rsd_port_security_get(uint32_t port, PortSecurity* security);

// Addresses that a port lets in, and how many it has learned.
int rsd_port_securityEntryNum_set(uint32_t port, uint32_t entries);
int rsd_port_securityEntryNum_get(uint32_t port, uint32_t* entries);
int rsd_port_security_learningCnt_get(uint32_t port, uint32_t* entries);

// What becomes of a packet from one too many: 0 forwarded, 1 dropped, 2 shuts the port.
int rsd_port_securityAction_set(uint32_t port, uint32_t action);
int rsd_port_securityAction_get(uint32_t port, uint32_t* action);

#ifdef __cplusplus
}
#endif
