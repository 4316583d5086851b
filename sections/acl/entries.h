// What the entries of MAC and IPv4 access lists have in common: how they are listed, created,
// modified and deleted, and how their members are read and reported.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include "base/errors.h"
#include "json/json_document.h"
#include "platform/acl.h"

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

int ace_list_get(const AceKind& kind, cJSON* acl);
int ace_list_set(const AceKind& kind, const cJSON* entries);

// The number under `key`, if it is there: -1 makes the member match anything, a number outside
// low..high is recorded. Returns 0 or the recorded code.
template <class Member>
int ace_number_read(
    const cJSON* item, const char* key, int low, int high, Member* member, uint8_t* valid) {
    int found;
    int number = getJsonIntValueForKey(item, key, &found);
    if (!found)
        return 0;
    if (number != -1 && (number < low || number > high))
        return record_error(ERROR_BAD_VALUE);
    *valid = number != -1;
    *member = static_cast<Member>(*valid ? number : 0);
    return 0;
}

struct AddressKeys {
    const char* address;
    const char* mask;
};

// The text under `key`: as `parse` reads it, or ones throughout when it is "".
template <class Unit>
int ace_mask_read(const char* text, int (*parse)(const char*, Unit*), Unit* mask, size_t size) {
    if (text[0])
        return parse(text, mask);
    memset(mask, 0xFF, size);
    return 0;
}

// An address with its mask, `size` bytes each, if they are there: "" makes the address match
// anything. Returns 0 or the recorded code of `parse`.
template <class Unit>
int ace_address_read(
    const cJSON* item, const AddressKeys& keys, int (*parse)(const char*, Unit*), Unit* address,
    Unit* mask, size_t size, uint8_t* valid) {
    const char* text = getJsonStringValueForKey(item, keys.address);
    const char* mask_text = getJsonStringValueForKey(item, keys.mask);
    bool any = text ? !text[0] : !*valid;
    if (any) {
        memset(address, 0, size);
        memset(mask, 0, size);
        *valid = 0;
        return 0;
    }
    if (int code = text ? parse(text, address) : 0)
        return record_error(code);
    if (!mask_text && !*valid)
        mask_text = "";
    *valid = 1;
    if (int code = mask_text ? ace_mask_read(mask_text, parse, mask, size) : 0)
        return record_error(code);
    return 0;
}

// Adds an address and its mask as `print` writes them, or "" for one that matches anything. Returns
// 0 or the code of `print`.
template <class Unit>
int ace_address_report(
    cJSON* item, const AddressKeys& keys, int (*print)(const Unit*, char*), const Unit* address,
    const Unit* mask, uint8_t valid) {
    char address_text[sizeof "255.255.255.255 or a MAC"] = "";
    char mask_text[sizeof address_text] = "";
    if (int code = valid ? print(address, address_text) : 0)
        return code;
    if (int code = valid ? print(mask, mask_text) : 0)
        return code;
    addJsonObjectStringItem(item, keys.address, address_text);
    addJsonObjectStringItem(item, keys.mask, mask_text);
    return 0;
}
