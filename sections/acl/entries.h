// What the entries of MAC and IPv4 access lists have in common: how they are listed, created,
// modified and deleted, and how their members are read and reported.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include "base/errors.h"
#include "platform/acl.h"
#include "sections/section.h"

// In what the two kinds of entry differ.
struct AceKind {
    uint32_t type;   // ACL_MAC or ACL_IPV4
    const char* key; // of their array in the report
    // Whether this result of the platform's check for room refuses a new entry.
    bool (*is_refusal)(int check);
    // Takes over the members that `item` names. Returns 0 or a recorded code.
    int (*read)(const cJSON* item, Ace* ace);
    // Adds what the entry matches to `item`. Returns 0 or a code, not recorded.
    int (*report)(cJSON* item, const Ace& ace);
};

// What ace_mac_get and ace_mac_set, or ace_ipv4_get and ace_ipv4_set, do.
int report_aces(const AceKind& kind, cJSON* acl);
int apply_aces(const AceKind& kind, const cJSON* entries);

// The number under `key`, if it is there: -1 makes the member match anything, a number outside
// low..high is recorded. Returns 0 or the recorded code.
template <class Member>
int read_ace_number(
    const cJSON* item, const char* key, int low, int high, Member* member, uint8_t* valid) {
    int number = 0;
    if (!read_int(item, key, &number))
        return 0;
    if (number != -1 && (number < low || number > high))
        return record_error(ERROR_BAD_VALUE);
    *valid = number != -1;
    *member = static_cast<Member>(*valid ? number : 0);
    return 0;
}

// --- Addresses, which have a mask.

struct AddressKeys {
    const char* address;
    const char* mask;
};

// Where an entry keeps an address and its mask, `size` bytes each, and how their texts are read.
template <class Unit> struct AceAddress {
    Unit* address;
    Unit* mask;
    uint8_t* valid; // 0: it matches anything
    size_t size;
    int (*parse)(const char* text, Unit* address);
};

template <class Unit> void match_any(const AceAddress<Unit>& field) {
    memset(field.address, 0, field.size);
    memset(field.mask, 0, field.size);
    *field.valid = 0;
}

// A mask that is empty compares the whole address, and so does a missing one beside an address
// where there was none; any other missing one is left as it is.
template <class Unit>
int read_ace_mask(const char* text, bool was_valid, const AceAddress<Unit>& field) {
    if (!text && was_valid)
        return 0;
    if (text && text[0])
        return field.parse(text, field.mask);
    memset(field.mask, 0xFF, field.size);
    return 0;
}

// An empty address matches anything. A missing one is left as it is, though it may get another
// mask; a mask without an address is not looked at. Returns 0 or the recorded code of `parse`.
template <class Unit>
int read_ace_address(const cJSON* item, const AddressKeys& keys, const AceAddress<Unit>& field) {
    const char* address = getJsonStringValueForKey(item, keys.address);
    const char* mask = getJsonStringValueForKey(item, keys.mask);
    bool was_valid = *field.valid;
    if (address ? !address[0] : !was_valid) {
        match_any(field);
        return 0;
    }
    if (int code = address ? field.parse(address, field.address) : 0)
        return record_error(code);
    if (int code = read_ace_mask(mask, was_valid, field))
        return record_error(code);
    *field.valid = 1;
    return 0;
}

enum { ADDRESS_TEXT_SIZE = 18 }; // of a MAC address, the longer of the two

// Adds an address and its mask as `print` writes them, or "" for one that matches anything. Returns
// 0 or the code of `print`.
template <class Unit>
int report_ace_address(
    cJSON* item, const AddressKeys& keys, int (*print)(const Unit*, char*), const Unit* address,
    const Unit* mask, uint8_t valid) {
    char address_text[ADDRESS_TEXT_SIZE] = "";
    char mask_text[ADDRESS_TEXT_SIZE] = "";
    if (int code = valid ? print(address, address_text) : 0)
        return code;
    if (int code = valid ? print(mask, mask_text) : 0)
        return code;
    addJsonObjectStringItem(item, keys.address, address_text);
    addJsonObjectStringItem(item, keys.mask, mask_text);
    return 0;
}
