// Entries of IPv4 access lists; see ace_ipv4.h.
#include "sections/acl/ipv4_entries.h"

#include "driver/acl.h"
#include "platform/util.h"
#include "sections/acl/entries.h"

namespace {

enum { PROTOCOL_ICMP = 1, PROTOCOL_TCP = 6 };
enum { RANGE_TCP = 1, RANGE_OTHER = 2 }; // kinds of port ranges in the driver
enum { FLAG_ANY = 0, FLAG_SET = 1, FLAG_CLEAR = 2 };
enum { LAST_TYPE_OF_SERVICE = 63, LAST_BYTE = 255, LAST_PORT = 65535 };

struct ByteField {
    const char* key;
    int last; // values are 0 to last
    uint8_t AceIpv4::*value;
    uint8_t AceIpv4::*valid;
};

struct IpField {
    AddressKeys keys;
    uint32_t AceIpv4::*address;
    uint32_t AceIpv4::*mask;
    uint8_t AceIpv4::*valid;
};

struct PortField {
    const char* first;
    const char* second;
    AceL4Port AceIpv4::*port;
};

struct FlagField {
    const char* key;
    uint8_t bit;
};

const ByteField type_of_service = {
    "type_of_service", LAST_TYPE_OF_SERVICE, &AceIpv4::type_of_service,
    &AceIpv4::type_of_service_valid};
const ByteField icmp_type = {
    "icmp_type", LAST_BYTE, &AceIpv4::icmp_type, &AceIpv4::icmp_type_valid};
const ByteField icmp_code = {
    "icmp_code", LAST_BYTE, &AceIpv4::icmp_code, &AceIpv4::icmp_code_valid};

const IpField ip_fields[] = {
    {{"destination_ip", "destination_mask"},
     &AceIpv4::destination_ip,
     &AceIpv4::destination_mask,
     &AceIpv4::destination_ip_valid},
    {{"source_ip", "source_mask"},
     &AceIpv4::source_ip,
     &AceIpv4::source_mask,
     &AceIpv4::source_ip_valid},
};

const PortField port_fields[] = {
    {"source_port_first", "source_port_second", &AceIpv4::source_port},
    {"destination_port_first", "destination_port_second", &AceIpv4::destination_port},
};

const FlagField flag_fields[] = {
    {"tcp_flag_urg", 32}, {"tcp_flag_ack", 16}, {"tcp_flag_psh", 8},
    {"tcp_flag_rst", 4},  {"tcp_flag_syn", 2},  {"tcp_flag_fin", 1},
};

bool is_protocol(const AceIpv4& ipv4, uint8_t protocol) {
    return ipv4.protocol_valid && ipv4.protocol == protocol;
}

uint32_t range_kind(const AceIpv4& ipv4) {
    return is_protocol(ipv4, PROTOCOL_TCP) ? RANGE_TCP : RANGE_OTHER;
}

// --- Settings.

void protocol_read(const cJSON* item, AceIpv4* ipv4) {
    int found;
    int number = getJsonIntValueForKey(item, "protocol", &found);
    if (!found)
        return;
    ipv4->protocol_valid = number != -1;
    ipv4->protocol = static_cast<uint8_t>(ipv4->protocol_valid ? number : 0);
}

int byte_read(const cJSON* item, const ByteField& field, AceIpv4* ipv4) {
    return ace_number_read(
        item, field.key, 0, field.last, &(ipv4->*field.value), &(ipv4->*field.valid));
}

int range_write(uint32_t kind, uint32_t first, uint32_t last, AceL4Port* port) {
    AclPortRange range = {kind, first, last, 0};
    *port = {};
    if (int code = rsd_acl_l4port_range_set(&range, &port->range))
        return record_error(code);
    port->range_valid = 1;
    return 0;
}

int ports_read(const cJSON* item, const PortField& field, int first, AceIpv4* ipv4) {
    int found;
    AceL4Port* port = &(ipv4->*field.port);
    int second = getJsonIntValueForKey(item, field.second, &found);
    if (first < 0 || first > LAST_PORT)
        return record_error(ERROR_BAD_VALUE);
    if (!found || second == -1) {
        *port = {};
        port->port = static_cast<uint16_t>(first);
        port->port_valid = 1;
        return 0;
    }
    if (second < first || second > LAST_PORT)
        return record_error(ERROR_BAD_VALUE);
    return range_write(
        range_kind(*ipv4), static_cast<uint32_t>(first), static_cast<uint32_t>(second), port);
}

int range_convert(uint32_t kind, AceL4Port* port) {
    uint32_t old_kind, first, last;
    if (int code = sal_acl_l4port_range_get(port->range, &old_kind, &first, &last))
        return record_error(code);
    return range_write(kind, first, last, port);
}

int port_read(const cJSON* item, const PortField& field, uint32_t kind_before, AceIpv4* ipv4) {
    int found;
    AceL4Port* port = &(ipv4->*field.port);
    int first = getJsonIntValueForKey(item, field.first, &found);
    if (found && first != -1)
        return ports_read(item, field, first, ipv4);
    if (found)
        *port = {};
    if (port->range_valid && range_kind(*ipv4) != kind_before)
        return range_convert(range_kind(*ipv4), port);
    return 0;
}

void flags_read(const cJSON* item, AceIpv4* ipv4) {
    for (const FlagField& field : flag_fields) {
        int found;
        int wanted = getJsonIntValueForKey(item, field.key, &found);
        if (!found)
            continue;
        uint8_t others = static_cast<uint8_t>(~field.bit);
        ipv4->tcp_flags_mask &= others;
        ipv4->tcp_flags &= others;
        if (wanted == FLAG_SET || wanted == FLAG_CLEAR)
            ipv4->tcp_flags_mask |= field.bit;
        if (wanted == FLAG_SET)
            ipv4->tcp_flags |= field.bit;
    }
    ipv4->tcp_flags_valid = ipv4->tcp_flags_mask != 0;
}

int addresses_read(const cJSON* item, AceIpv4* ipv4) {
    for (const IpField& field : ip_fields) {
        if (int code = ace_address_read(
                item, field.keys, sys_util_str2Ip, &(ipv4->*field.address), &(ipv4->*field.mask),
                sizeof(uint32_t), &(ipv4->*field.valid)))
            return code;
    }
    return 0;
}

int ipv4_read(const cJSON* item, Ace* ace) {
    AceIpv4* ipv4 = &ace->match.ipv4;
    uint32_t kind_before = range_kind(*ipv4);
    if (getJsonObjectForKey(item, "action"))
        ipv4->action_valid = 1;
    protocol_read(item, ipv4);
    if (int code = byte_read(item, type_of_service, ipv4))
        return code;
    if (int code = addresses_read(item, ipv4))
        return code;
    if (int code = is_protocol(*ipv4, PROTOCOL_ICMP) ? byte_read(item, icmp_type, ipv4) : 0)
        return code;
    if (int code = byte_read(item, icmp_code, ipv4))
        return code;
    for (const PortField& field : port_fields) {
        if (int code = port_read(item, field, kind_before, ipv4))
            return code;
    }
    if (is_protocol(*ipv4, PROTOCOL_TCP))
        flags_read(item, ipv4);
    return 0;
}

// --- Report.

int ip_print(const uint32_t* address, char* text) { return sys_util_ip2Str(*address, text); }

void byte_report(cJSON* item, const ByteField& field, const AceIpv4& ipv4) {
    addJsonObjectIntItem(item, field.key, ipv4.*field.valid ? ipv4.*field.value : -1);
}

int port_report(cJSON* item, const PortField& field, const AceL4Port& port) {
    uint32_t kind, first = 0, last = 0;
    if (port.range_valid) {
        if (int code = sal_acl_l4port_range_get(port.range, &kind, &first, &last))
            return code;
    }
    int single = port.port_valid ? port.port : -1;
    addJsonObjectIntItem(item, field.first, port.range_valid ? static_cast<int>(first) : single);
    addJsonObjectIntItem(item, field.second, port.range_valid ? static_cast<int>(last) : -1);
    return 0;
}

void flag_report(cJSON* item, const FlagField& field, const AceIpv4& ipv4) {
    int value = FLAG_ANY;
    if (ipv4.tcp_flags_valid && ipv4.tcp_flags_mask & field.bit)
        value = ipv4.tcp_flags & field.bit ? FLAG_SET : FLAG_CLEAR;
    addJsonObjectIntItem(item, field.key, value);
}

int ipv4_report(cJSON* item, const Ace& ace) {
    const AceIpv4& ipv4 = ace.match.ipv4;
    addJsonObjectIntItem(item, "protocol", ipv4.protocol_valid ? ipv4.protocol : -1);
    for (const IpField& field : ip_fields) {
        if (int code = ace_address_report(
                item, field.keys, ip_print, &(ipv4.*field.address), &(ipv4.*field.mask),
                ipv4.*field.valid))
            return code;
    }
    byte_report(item, type_of_service, ipv4);
    byte_report(item, icmp_type, ipv4);
    byte_report(item, icmp_code, ipv4);
    for (const PortField& field : port_fields) {
        if (int code = port_report(item, field, ipv4.*field.port))
            return code;
    }
    for (const FlagField& field : flag_fields)
        flag_report(item, field, ipv4);
    return 0;
}

// Only a full table refuses a new IPv4 entry; what else the check may report does not.
const AceKind ipv4_kind = {
    ACL_IPV4, "ipv4_ace", [](int check) { return check == ERROR_REFUSED; }, ipv4_read, ipv4_report,
};

} // namespace

int ace_ipv4_get(cJSON* acl) { return ace_list_get(ipv4_kind, acl); }

int ace_ipv4_set(const cJSON* entries) { return ace_list_set(ipv4_kind, entries); }
