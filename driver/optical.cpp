// Fibre modules: what they measure.
#include "driver/optical.h"

#include "driver/shapes.h"

static_assert(sizeof(OpticalData) == 24, "the driver's record");

// clang-format off
int rsd_optical_data_get(uint32_t port, OpticalData* data) { return request_chip_port_entry_get(3393, data, port); }
// clang-format on
