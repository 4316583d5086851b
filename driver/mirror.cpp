// Port mirroring.
#include "driver/mirror.h"

#include "driver/shapes.h"

static_assert(sizeof(MirrorGroup) == 32, "the driver's record");

// clang-format off
int rsd_mirror_group_set(uint32_t group, const MirrorGroup* entry) { return request_chip_entry_set(3077, entry, group); }
int rsd_mirror_group_del(uint32_t group)                           { return request_chip(3078, group); }
int rsd_mirror_egrMode_set(uint32_t mode)                          { return request_chip(3079, mode); }

int rsd_mirror_egrMode_get(uint32_t* mode) { return request_chip(3140, mode); }
// clang-format on
