// Text conversions.
#define _POSIX_C_SOURCE 200809L

#include <arpa/inet.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "board.h"
#include "platform/util.h"
#include "platform/vlan.h"

static int is_printable(char c) { return c >= ' ' && c <= '~'; }
static int is_digit(char c) { return c >= '0' && c <= '9'; }

// --- Addresses.

int sys_util_mac2Str(const uint8_t* mac, char* text) {
    snprintf(
        text, 18, "%02X:%02X:%02X:%02X:%02X:%02X", mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]);
    return OK;
}

int sys_util_ip2Str(uint32_t address, char* text) {
    snprintf(
        text, 16, "%u.%u.%u.%u", address >> 24, address >> 16 & 255, address >> 8 & 255,
        address & 255);
    return OK;
}

static int hex_value(char c) {
    const char* digits = "0123456789abcdef";
    const char* at = strchr(digits, c >= 'A' && c <= 'F' ? c - 'A' + 'a' : c);
    return c && at ? (int)(at - digits) : -1;
}

static int read_mac(const char* text, const char* separators, uint8_t* mac) {
    uint8_t read[MAC_ADDRESS_SIZE];
    if (strlen(text) != 17 || !strchr(separators, text[2]))
        return BAD_TEXT;
    for (int i = 0; i < MAC_ADDRESS_SIZE; ++i) {
        int high = hex_value(text[3 * i]);
        int low = hex_value(text[3 * i + 1]);
        if (high < 0 || low < 0 || (i < 5 && text[3 * i + 2] != text[2]))
            return BAD_TEXT;
        read[i] = (uint8_t)(high << 4 | low);
    }
    memcpy(mac, read, sizeof read);
    return OK;
}

int sys_util_str2Mac(const char* text, uint8_t* mac) { return read_mac(text, ":-", mac); }
int sn_sys_util_str2Mac(const char* text, uint8_t* mac) { return read_mac(text, ":", mac); }

int sys_util_str2Ip(const char* text, uint32_t* address) {
    struct in_addr network;
    if (inet_pton(AF_INET, text, &network) != 1)
        return BAD_TEXT;
    *address = ntohl(network.s_addr);
    return OK;
}

int sal_util_ipv4StrValidate_ret(const char* text, int with_zero) {
    uint32_t address = 0;
    return sys_util_str2Ip(text, &address) == OK && (address || with_zero);
}

// --- Names and numbers.

int sys_util_namestrcpy(char* copy, const char* text, uint32_t longest) {
    for (const char* c = text; *c; ++c)
        if (!is_printable(*c))
            return BAD_TEXT;
    size_t length = strnlen(text, longest);
    memcpy(copy, text, length);
    copy[length] = '\0';
    return OK;
}

int sys_util_str2ul_ret(const char* text, uint32_t* number) {
    if (!*text || strspn(text, "0123456789") != strlen(text) || strlen(text) > 10)
        return BAD_TEXT;
    unsigned long long read = strtoull(text, NULL, 10);
    if (read > UINT32_MAX)
        return BAD_TEXT;
    *number = (uint32_t)read;
    return OK;
}

int sys_util_getnext(const char* text, char delimiter, char* token, int* consumed) {
    const char* end = strchr(text, delimiter);
    if (!end || end == text)
        return BAD_TEXT;
    memcpy(token, text, (size_t)(end - text));
    token[end - text] = '\0';
    *consumed = (int)(end - text) + 1;
    return OK;
}

int sal_util_isInValidStr_ret(const char* text) {
    for (const char* c = text; *c; ++c)
        if (!is_printable(*c) || strchr(" \"'\\?;", *c))
            return 1;
    return !*text;
}

// --- Sets: "1,3-5". Bit b is the number b + base.

static void write_set(const uint32_t* words, int count, int base, char* text) {
    *text = '\0';
    for (int bit = 0; bit < count; ++bit) {
        if (!has_bit(words, bit))
            continue;
        int last = bit;
        while (last + 1 < count && has_bit(words, last + 1))
            ++last;
        text += sprintf(text, "%d", bit + base);
        if (last > bit)
            text += sprintf(text, "-%d", last + base);
        bit = last;
        for (int more = bit + 1; more < count; ++more)
            if (has_bit(words, more)) {
                text += sprintf(text, ",");
                break;
            }
    }
}

// A number of at most four digits at *text, which moves on; -1 for none.
static int read_number(const char** text) {
    if (!is_digit(**text))
        return -1;
    int number = 0;
    for (int digits = 0; is_digit(**text); ++*text)
        number = ++digits > 4 ? 99999 : number * 10 + (**text - '0');
    return number;
}

static int read_set(const char* text, uint32_t* words, int count, int base) {
    while (*text) {
        int first = read_number(&text);
        int last = first;
        if (*text == '-') {
            ++text;
            last = read_number(&text);
        }
        if (first < base || last < first || last - base >= count || (*text && *text != ',') ||
            (*text == ',' && !text[1]))
            return BAD_TEXT;
        for (int number = first; number <= last; ++number)
            set_bit(words, number - base, 1);
        text += *text == ',';
    }
    return OK;
}

int sal_util_bitmap2numstr(const PortBitmap* ports, char* text) {
    write_set(ports->words, PORT_BITMAP_WORDS * 32, 1, text);
    return OK;
}

int sal_util_numstr2bitmap(const char* text, PortBitmap* ports) {
    PortBitmap read = *ports;
    int code = read_set(text, read.words, PORT_BITMAP_WORDS * 32, 1);
    if (code == OK)
        *ports = read;
    return code;
}

int sys_util_vlanmask2Str(const VlanMask* vlans, char* text) {
    write_set(vlans->words, VLAN_COUNT, 0, text);
    return OK;
}

int sys_util_str2Vlanmask(const char* text, VlanMask* vlans) {
    VlanMask read = {{0}};
    int code = read_set(text, read.words, VLAN_COUNT, 0);
    if (code == OK)
        *vlans = read;
    return code;
}

int sys_util_bitmaskIsClear_ret(const uint32_t* words, int first, int end) {
    for (int bit = first; bit < end; ++bit)
        if (has_bit(words, bit))
            return 0;
    return 1;
}

int sys_util_bitmaskIsEqual_ret(const uint32_t* a, const uint32_t* b, int count) {
    for (int bit = 0; bit < count; ++bit)
        if (has_bit(a, bit) != has_bit(b, bit))
            return 0;
    return 1;
}
