// How the layer marks its two exact number types on a cJSON node. cJSON itself looks at the low
// byte of a node's type only, so both are plain numbers to it.
#pragma once

#include <cjson/cJSON.h>
#include <stdint.h>

enum {
    NODE_KIND = 0xFF,      // the part of the type that cJSON reads
    NODE_UINT32 = 1 << 10, // the value is in the bits of valueint
    NODE_UINT64 = 1 << 11, // the value is in the bits of valuedouble
};

uint32_t node_uint32(const cJSON* node);
uint64_t node_uint64(const cJSON* node);
