// What an entry of a MAC list matches, member by member.
#include "sections/acl/mac_entries.h"

#include <charconv>
#include <stdio.h>

#include "platform/util.h"
#include "sections/acl/entries.h"

namespace {

enum {
    LAST_VLAN = 4094,
    FIRST_ETHERTYPE = 0x0600, // smaller numbers are lengths
    LAST_ETHERTYPE = 0xFFFF,
    LAST_PRIORITY = 7, // also the mask that compares the whole priority
};

struct MacField {
    AddressKeys keys;
    uint8_t (AceMac::*address)[MAC_ADDRESS_SIZE];
    uint8_t (AceMac::*mask)[MAC_ADDRESS_SIZE];
    uint8_t AceMac::*valid;
};

const MacField mac_fields[] = {
    {{"destination_mac", "destination_mask"},
     &AceMac::destination_mac,
     &AceMac::destination_mask,
     &AceMac::destination_mac_valid},
    {{"source_mac", "source_mask"},
     &AceMac::source_mac,
     &AceMac::source_mask,
     &AceMac::source_mac_valid},
};

bool parse_ethertype(const char* text, uint32_t* number) {
    if (text[0] == '0' && (text[1] == 'x' || text[1] == 'X'))
        text += 2;
    const char* end = text + strlen(text);
    auto parsed = std::from_chars(text, end, *number, 16);
    return parsed.ec == std::errc{} && parsed.ptr == end && *number >= FIRST_ETHERTYPE &&
           *number <= LAST_ETHERTYPE;
}

int read_ethertype(const cJSON* item, AceMac* mac) {
    uint32_t number = 0;
    const char* text = getJsonStringValueForKey(item, "ethertype");
    if (!text)
        return 0;
    if (text[0] && !parse_ethertype(text, &number))
        return record_error(ERROR_BAD_VALUE);
    mac->ethertype = static_cast<uint16_t>(number);
    mac->ethertype_valid = text[0] != '\0';
    return 0;
}

int read_mac(const cJSON* item, Ace* ace) {
    AceMac* mac = &ace->match.mac;
    if (int code = read_ace_number(item, "vlan_id", 1, LAST_VLAN, &mac->vlan, &mac->vlan_valid))
        return code;
    if (int code = read_ethertype(item, mac))
        return code;
    for (const MacField& field : mac_fields) {
        AceAddress<uint8_t> address = {
            mac->*field.address, mac->*field.mask, &(mac->*field.valid), MAC_ADDRESS_SIZE,
            sys_util_str2Mac};
        if (int code = read_ace_address(item, field.keys, address))
            return code;
    }
    if (int code = read_ace_number(
            item, "priority", 0, LAST_PRIORITY, &mac->priority, &mac->priority_valid))
        return code;
    mac->priority_mask = mac->priority_valid ? LAST_PRIORITY : 0;
    return 0;
}

int report_mac(cJSON* item, const Ace& ace) {
    const AceMac& mac = ace.match.mac;
    char ethertype[sizeof "FFFF"] = "";
    for (const MacField& field : mac_fields) {
        if (int code = report_ace_address(
                item, field.keys, sys_util_mac2Str, mac.*field.address, mac.*field.mask,
                mac.*field.valid))
            return code;
    }
    if (mac.ethertype_valid)
        snprintf(ethertype, sizeof ethertype, "%04X", mac.ethertype);
    addJsonObjectIntItem(item, "vlan_id", mac.vlan_valid ? mac.vlan : -1);
    addJsonObjectIntItem(item, "priority", mac.priority_valid ? mac.priority : -1);
    addJsonObjectStringItem(item, "ethertype", ethertype);
    return 0;
}

// Any result but 0 refuses a new MAC entry.
const AceKind mac_kind = {
    ACL_MAC, "mac_ace", [](int check) { return check != 0; }, read_mac, report_mac,
};

} // namespace

int ace_mac_get(cJSON* acl) { return report_aces(mac_kind, acl); }

int ace_mac_set(const cJSON* entries) { return apply_aces(mac_kind, entries); }
