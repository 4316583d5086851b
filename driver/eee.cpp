// Energy-efficient Ethernet.
#include "driver/eee.h"

#include "driver/request.h"

// clang-format off
int rsd_eee_portEnable_set(uint32_t port, uint32_t enable) { return chip_port_request(1153, port, enable); }
int rsd_eee_enablePortmask_set(const PortBitmap* ports)    { return chip_entry_set(1154, ports); }

int rsd_eee_portEnable_get(uint32_t port, uint32_t* enable) { return chip_port_request(1217, port, enable); }
int rsd_eee_portState_get(uint32_t port, uint32_t* active)  { return chip_port_request(1218, port, active); }
int rsd_eee_enablePortmask_get(PortBitmap* ports)           { return chip_entry_get(1219, ports); }
// clang-format on
