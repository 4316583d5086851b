// Copper cable diagnosis.
#include "driver/cablediag.h"

#include "driver/shapes.h"

static_assert(sizeof(CableResult) == 12, "diagnostics keeps it");
static_assert(sizeof(CableRecord) == 16, "the driver's record");

// clang-format off
int rsd_cablediag_copper_set(uint32_t port) { return request_chip_port(385, port); }
// clang-format on

int rsd_cablediag_copper_get(uint32_t port, CableResult* result) {
    if (int code = refuse(result != nullptr, port))
        return code;
    CableRecord record = {{port, {}, {}}, 0};
    if (int code = carry_record(449, &record))
        return code;
    *result = record.result;
    return 0;
}

// clang-format off
int cablediag_getret(CableResult* result, uint32_t port) { return rsd_cablediag_copper_get(port, result); }
// clang-format on
