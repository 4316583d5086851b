// Denial-of-service guards.
// Commands from 896 on.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// A guard by its type, the driver's attack number: 0 off, 1 on.
int rsd_dos_typeEnable_set(uint32_t type, uint32_t enable);

// Limits of the guards: longest ping and shortest IPv6 fragment in bytes, netmask length in bits
// for the broadcast-ping guard, shortest TCP header in bytes.
int rsd_dos_maxPingLen_set(uint32_t bytes);
int rsd_dos_minIPv6FragLen_set(uint32_t bytes);
int rsd_dos_smurfNetmaskLen_set(uint32_t bits);
int rsd_dos_minTCPHdrLen_set(uint32_t bytes);

// Guards on a port: 0 off, 1 on; and the longest ping that the port takes, in bytes.
int rsd_dos_portEnable_set(uint32_t port, uint32_t enable);
int rsd_dos_portLength_set(uint32_t port, uint32_t bytes);

#ifdef __cplusplus
}
#endif
