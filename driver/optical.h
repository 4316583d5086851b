// Fibre modules: what they measure.
// Commands from 3328 on.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// Measurements of a module. 24 bytes.
typedef struct OpticalData {
    int32_t temperature_millicelsius;
    uint32_t voltage_microvolt;
    uint32_t bias_microampere;
    uint32_t tx_power_tenth_microwatt;
    uint32_t rx_power_tenth_microwatt;
    uint32_t alarms; // one bit each, the module's own
} OpticalData;

// Measurements of the module in a logical port.
int rsd_optical_data_get(uint32_t port, OpticalData* data);

#ifdef __cplusplus
}
#endif
