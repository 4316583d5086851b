// Copper cable diagnosis.
#include "driver/cablediag.h"

#include "driver/request.h"

static_assert(sizeof(CableResult) == 12, "diagnostics keeps it");
static_assert(sizeof(CableRecord) == 16, "the driver's record");

// clang-format off
int rsd_cablediag_copper_set(uint32_t port) { return chip_port_request(385, port); }
// clang-format on

int rsd_cablediag_copper_get(uint32_t port, CableResult* result) {
    if (!result)
        return REQUEST_NULL_POINTER;
    if (!is_logical_port(port))
        return REQUEST_BAD_PORT;
    CableRecord record = {{port, {}, {}}, 0};
    if (int code = glue_util_ioctl(449, &record))
        return code;
    *result = record.result;
    return 0;
}

// clang-format off
int cablediag_getret(CableResult* result, uint32_t port) { return rsd_cablediag_copper_get(port, result); }
// clang-format on
