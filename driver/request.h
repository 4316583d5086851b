// The request frame: one operation of the switch driver is one ioctl on its device node. Here are
// the frame, its codes and the four words with which a record begins.
//
// The protocol families (names without rsd_) use the words by meaning: index, port, VLAN or item,
// value. The chip families (rsd_) use the first words for their arguments, in the order of the
// arguments, results included. What does not fit a word (entries, counters, masks, texts) stands
// behind the four words; the access lists, the counters and the cable test have records of their
// own, defined with their group.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// The codes that this layer adds to the driver's own.
enum {
    REQUEST_BAD_VALUE = 19,
    REQUEST_BAD_PORT = 30,
    REQUEST_NULL_POINTER = 498,
    REQUEST_NO_DEVICE = 501,
};

// Words by meaning.
typedef struct RequestWords {
    uint32_t index; // unit, table index or first argument
    uint32_t port;
    uint32_t vlan; // or another second index: a traffic type, a TLV, a queue
    uint32_t value;
} RequestWords;

// Words in the order of the arguments.
typedef struct ChipWords {
    uint32_t word[4];
} ChipWords;

// Carries `record` to the driver under `command` (group base plus index) and back. The device is
// opened for this request alone. Returns the driver's result, 0 for success, or 501 when the device
// cannot be opened; the driver's other codes are passed on unchanged.
int glue_util_ioctl(uint32_t command, void* record);

#ifdef __cplusplus
}
#endif
