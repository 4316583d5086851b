// Copper cable diagnosis.
// Commands from 384 on.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// The result of a cable test. Pairs A to D. 12 bytes.
typedef struct CableResult {
    uint32_t port;         // logical port, zero-based
    uint8_t pair_state[4]; // the driver's codes; 0 is a pair without fault
    uint8_t length_m[4];   // metres to the fault, or to the other end
} CableResult;

// The driver's record of the read, 16 bytes.
typedef struct CableRecord {
    CableResult result; // asked for by its port
    uint32_t reserved;
} CableRecord;

// Starts a test on a logical port. The link of the port is interrupted for as long as it takes.
int rsd_cablediag_copper_set(uint32_t port);

// The result of the port's last test. On failure `result` is unchanged.
int rsd_cablediag_copper_get(uint32_t port, CableResult* result);

// The same, as diagnostics asks for it: the record first. It makes the same request, 449.
int cablediag_getret(CableResult* result, uint32_t port);

#ifdef __cplusplus
}
#endif
