// Energy-efficient Ethernet.
#include "driver/eee.h"

#include "driver/shapes.h"

// clang-format off
int rsd_eee_portEnable_set(uint32_t port, uint32_t enable) { return request_chip_port(1153, port, enable); }
int rsd_eee_enablePortmask_set(const PortBitmap* ports)    { return request_chip_entry_set(1154, ports); }

int rsd_eee_portEnable_get(uint32_t port, uint32_t* enable) { return request_chip_port(1217, port, enable); }
int rsd_eee_portState_get(uint32_t port, uint32_t* active)  { return request_chip_port(1218, port, active); }
int rsd_eee_enablePortmask_get(PortBitmap* ports)           { return request_chip_entry_get(1219, ports); }
// clang-format on
