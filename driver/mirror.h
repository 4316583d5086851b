// Port mirroring.
// Commands from 3072 on.
#pragma once

#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

// A mirror group. 32 bytes.
typedef struct MirrorGroup {
    uint32_t target;  // logical port that receives the copies
    uint32_t ingress; // the target port also takes ordinary traffic: 0 no, 1 yes
    PortBitmap rx;    // ports whose received packets are copied
    PortBitmap tx;    // ports whose sent packets are copied
} MirrorGroup;

// A mirror group, from 0: what it copies, and its end.
int rsd_mirror_group_set(uint32_t group, const MirrorGroup* entry);
int rsd_mirror_group_del(uint32_t group);

// Copies of sent packets: 0 as they were received, 1 as they are sent.
int rsd_mirror_egrMode_set(uint32_t mode);
int rsd_mirror_egrMode_get(uint32_t* mode);

#ifdef __cplusplus
}
#endif
