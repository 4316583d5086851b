// Denial-of-service guards.
#include "driver/dos.h"

#include "driver/request.h"

// clang-format off
int rsd_dos_typeEnable_set(uint32_t type, uint32_t enable) { return chip_request(897, type, enable); }
int rsd_dos_maxPingLen_set(uint32_t bytes)                 { return chip_request(898, bytes); }
int rsd_dos_minIPv6FragLen_set(uint32_t bytes)             { return chip_request(899, bytes); }
int rsd_dos_smurfNetmaskLen_set(uint32_t bits)             { return chip_request(900, bits); }
int rsd_dos_minTCPHdrLen_set(uint32_t bytes)               { return chip_request(901, bytes); }
int rsd_dos_portEnable_set(uint32_t port, uint32_t enable) { return chip_port_request(902, port, enable); }
int rsd_dos_portLength_set(uint32_t port, uint32_t bytes)  { return chip_port_request(903, port, bytes); }
// clang-format on
