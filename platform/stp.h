// Platform library: spanning tree, of which the agent knows the bridge and the common instance.
//
// Calls return 0 or a platform code; a failing one changes neither the switch nor its output.
#pragma once

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { STP_COMMON_INSTANCE = 0 };

// Which protocol the bridge speaks.
enum { STP_FORCE_STP = 0, STP_FORCE_RSTP = 2, STP_FORCE_MSTP = 3 };

enum { STP_HIGHEST_PRIORITY = 61440, STP_PRIORITY_STEP = 4096 };

// The bridge, 76 bytes.
typedef struct StpInfo {
    uint32_t enable; // 0 or 1
    uint8_t reserved_4[4];
    uint8_t force_version; // STP_FORCE_...
    uint8_t reserved_9[67];
} StpInfo;

static_assert(offsetof(StpInfo, enable) == 0, "platform record");
static_assert(offsetof(StpInfo, force_version) == 8, "platform record");
static_assert(sizeof(StpInfo) == 76, "platform record");

// An instance. Times are in seconds. The library fills no more than these 128 bytes.
typedef struct StpInstance {
    uint8_t reserved_0[4];
    uint16_t priority; // this bridge's, without the instance number
    uint8_t reserved_6[6];
    uint16_t root_priority; // with the instance number in its low 12 bits
    uint8_t root_mac[MAC_ADDRESS_SIZE];
    uint32_t root_path_cost;
    uint8_t reserved_24[22];
    uint16_t root_port; // 0 when this bridge is the root
    uint8_t reserved_48[8];
    uint16_t hello_time;    // 1 to 10
    uint16_t maximum_age;   // 6 to 40
    uint16_t forward_delay; // 4 to 30
    uint8_t reserved_62[66];
} StpInstance;

static_assert(offsetof(StpInstance, priority) == 4, "platform record");
static_assert(offsetof(StpInstance, root_priority) == 12, "platform record");
static_assert(offsetof(StpInstance, root_mac) == 14, "platform record");
static_assert(offsetof(StpInstance, root_path_cost) == 20, "platform record");
static_assert(offsetof(StpInstance, root_port) == 46, "platform record");
static_assert(offsetof(StpInstance, hello_time) == 56, "platform record");
static_assert(offsetof(StpInstance, maximum_age) == 58, "platform record");
static_assert(offsetof(StpInstance, forward_delay) == 60, "platform record");
static_assert(sizeof(StpInstance) == 128, "room for the library's record");

int sal_stp_info_get(StpInfo* info);
int sal_stp_mstInfo_get(int instance, StpInstance* info);

// Spanning tree on the switch: 0 off, 1 on.
int sal_stp_enable_set(int enable);

// STP_FORCE_...
int sal_stp_forceVersion_set(int version);

// This bridge's priority in the common instance: a multiple of STP_PRIORITY_STEP up to
// STP_HIGHEST_PRIORITY.
int sal_stp_priority_set(int priority);

#ifdef __cplusplus
}
#endif
