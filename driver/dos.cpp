// Denial-of-service guards.
#include "driver/dos.h"

#include "driver/shapes.h"

// clang-format off
int rsd_dos_typeEnable_set(uint32_t type, uint32_t enable) { return request_chip(897, type, enable); }
int rsd_dos_maxPingLen_set(uint32_t bytes)                 { return request_chip(898, bytes); }
int rsd_dos_minIPv6FragLen_set(uint32_t bytes)             { return request_chip(899, bytes); }
int rsd_dos_smurfNetmaskLen_set(uint32_t bits)             { return request_chip(900, bits); }
int rsd_dos_minTCPHdrLen_set(uint32_t bytes)               { return request_chip(901, bytes); }
int rsd_dos_portEnable_set(uint32_t port, uint32_t enable) { return request_chip_port(902, port, enable); }
int rsd_dos_portLength_set(uint32_t port, uint32_t bytes)  { return request_chip_port(903, port, bytes); }
// clang-format on
