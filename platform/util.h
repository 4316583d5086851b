// Platform library: text conversions.
//
// Every call returns 0 or a platform code, unless it says otherwise; a failing one leaves its
// outputs unchanged.
#pragma once

#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

// A 6-byte MAC address as text, as the switch shows it; the buffer holds at least 18 bytes.
int sys_util_mac2Str(const uint8_t* mac, char* text);

// An IPv4 address as dotted text; the buffer holds at least 16 bytes.
int sys_util_ip2Str(uint32_t address, char* text);

// The reverse of the two: a MAC address written with ":" or "-" between its bytes, in upper or
// lower case; a dotted IPv4 address. Any other text is an error.
int sys_util_str2Mac(const char* text, uint8_t* mac);
int sys_util_str2Ip(const char* text, uint32_t* address);

// A MAC address as the system's ARP table shows it: six bytes in hexadecimal, ":" between them.
int sn_sys_util_str2Mac(const char* text, uint8_t* mac);

// 1 when `text` is a dotted IPv4 address. 0.0.0.0 is one only if `with_zero` is 1. Cannot fail.
int sal_util_ipv4StrValidate_ret(const char* text, int with_zero);

// Copies a name or description, cut to `longest` characters, and terminates it; `copy` holds
// longest + 1 bytes. A text with anything but printable ASCII is an error.
int sys_util_namestrcpy(char* copy, const char* text, uint32_t longest);

// A decimal text, and nothing else, as an unsigned number.
int sys_util_str2ul_ret(const char* text, uint32_t* number);

// The part of `text` before the first `delimiter`, copied into `token`, which holds as many bytes
// as `text` with its terminator. `*consumed` is that part's length with the delimiter. A text
// without the delimiter, or that begins with it, is an error.
int sys_util_getnext(const char* text, char delimiter, char* token, int* consumed);

// A set of ports as text and back: numbers from 1, joined by ",", a run of two or more as first "-"
// last, such as "1,3-5,8"; no port is the empty text. _numstr2bitmap adds the ports to those of the
// set. A text that is no such list, or names a port above 96, is an error.
enum { PORT_NUMBERS_SIZE = 192 }; // room for the longest list, with its terminator
int sal_util_bitmap2numstr(const PortBitmap* ports, char* text);
int sal_util_numstr2bitmap(const char* text, PortBitmap* ports);

// 1 when the bits `first` up to, but not with, `end` are all clear; bit b is bit b % 32 of word
// b / 32. Cannot fail.
int sys_util_bitmaskIsClear_ret(const uint32_t* words, int first, int end);

// 1 when the first `count` bits of both are the same. Cannot fail.
int sys_util_bitmaskIsEqual_ret(const uint32_t* a, const uint32_t* b, int count);

// 1 for a text that names nothing: empty, or with a character other than the printable ones of
// ASCII, or with a blank, a quote, a backslash, "?" or ";". Cannot fail.
int sal_util_isInValidStr_ret(const char* text);

#ifdef __cplusplus
}
#endif
