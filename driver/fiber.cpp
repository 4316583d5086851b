// Fibre modules: their pins. `port` is a logical port with a module slot.
#include "driver/fiber.h"

#include "driver/shapes.h"

// clang-format off
int rsd_fiber_oeStatus_get(uint32_t port, uint32_t* status)     { return request_chip_port(1345, port, status); }
int rsd_fiber_losStatus_get(uint32_t port, uint32_t* status)    { return request_chip_port(1346, port, status); }
int rsd_fiber_detectStatus_get(uint32_t port, uint32_t* status) { return request_chip_port(1347, port, status); }
// clang-format on
