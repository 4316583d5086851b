// Platform library: text conversions.
//
// Every call returns 0 or a platform code; a failing one leaves its outputs unchanged.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// A 6-byte MAC address as text, as the switch shows it; the buffer holds at least 18 bytes.
int sys_util_mac2Str(const uint8_t* mac, char* text);

// An IPv4 address as dotted text; the buffer holds at least 16 bytes.
int sys_util_ip2Str(uint32_t address, char* text);

// A decimal text, and nothing else, as an unsigned number.
int sys_util_str2ul_ret(const char* text, uint32_t* number);

// The part of `text` before the first `delimiter`, copied into `token`, which holds as many bytes
// as `text` with its terminator. `*consumed` is that part's length with the delimiter. A text
// without the delimiter, or that begins with it, is an error.
int sys_util_getnext(const char* text, char delimiter, char* token, int* consumed);

#ifdef __cplusplus
}
#endif
