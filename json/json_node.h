// What the layer keeps on a cJSON node besides: its two exact number types, which are plain numbers
// to cJSON, and the length of its name. cJSON itself looks at the low bits of a node's type only.
#pragma once

#include <cjson/cJSON.h>
#include <stdint.h>
#include <string.h>

enum {
    NODE_KIND = 0xFF,      // the part of the type that cJSON reads
    NODE_UINT32 = 1 << 10, // the value is in the bits of valueint
    NODE_UINT64 = 1 << 11, // the value is in the bits of valuedouble
    NODE_LENGTH = 12,      // from this bit on: the length of the name that the layer put behind it
    LONGEST_NODE_NAME = (1 << 18) - 1,
};

inline uint32_t node_uint32(const cJSON* node) {
    uint32_t value;
    memcpy(&value, &node->valueint, sizeof value);
    return value;
}

inline uint64_t node_uint64(const cJSON* node) {
    uint64_t value;
    memcpy(&value, &node->valuedouble, sizeof value);
    return value;
}

// Where the layer puts a node's own texts: in one block with it.
inline const char* node_texts(const cJSON* node) { return reinterpret_cast<const char*>(node + 1); }

// 0 where it is not known: the name is empty, very long, or cJSON's own.
inline size_t node_name_length(const cJSON* node) {
    return node->string == node_texts(node) ? static_cast<size_t>(node->type) >> NODE_LENGTH : 0;
}
