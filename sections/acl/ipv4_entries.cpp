// What an entry of an IPv4 list matches, member by member.
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

void read_protocol(const cJSON* item, AceIpv4* ipv4) {
    int number = 0;
    if (!read_int(item, "protocol", &number))
        return;
    ipv4->protocol_valid = number != -1;
    ipv4->protocol = static_cast<uint8_t>(ipv4->protocol_valid ? number : 0);
}

int read_byte(const cJSON* item, const ByteField& field, AceIpv4* ipv4) {
    return read_ace_number(
        item, field.key, 0, field.last, &(ipv4->*field.value), &(ipv4->*field.valid));
}

int write_range(uint32_t kind, uint32_t first, uint32_t last, AceL4Port* port) {
    AclPortRange range = {kind, first, last, 0};
    *port = {};
    if (int code = rsd_acl_l4port_range_set(&range, &port->range))
        return record_error(code);
    port->range_valid = 1;
    return 0;
}

int read_ports(const cJSON* item, const PortField& field, int first, AceIpv4* ipv4) {
    AceL4Port* port = &(ipv4->*field.port);
    int second = -1;
    read_int(item, field.second, &second);
    if (first < 0 || first > LAST_PORT)
        return record_error(ERROR_BAD_VALUE);
    if (second == -1) {
        *port = {};
        port->port = static_cast<uint16_t>(first);
        port->port_valid = 1;
        return 0;
    }
    if (second < first || second > LAST_PORT)
        return record_error(ERROR_BAD_VALUE);
    return write_range(
        range_kind(*ipv4), static_cast<uint32_t>(first), static_cast<uint32_t>(second), port);
}

int convert_range(uint32_t kind, AceL4Port* port) {
    uint32_t old_kind, first, last;
    if (int code = sal_acl_l4port_range_get(port->range, &old_kind, &first, &last))
        return record_error(code);
    return write_range(kind, first, last, port);
}

int read_port(const cJSON* item, const PortField& field, uint32_t kind_before, AceIpv4* ipv4) {
    AceL4Port* port = &(ipv4->*field.port);
    int first = -1;
    bool found = read_int(item, field.first, &first);
    if (first != -1)
        return read_ports(item, field, first, ipv4);
    if (found)
        *port = {};
    if (port->range_valid && range_kind(*ipv4) != kind_before)
        return convert_range(range_kind(*ipv4), port);
    return 0;
}

void read_flags(const cJSON* item, AceIpv4* ipv4) {
    for (const FlagField& field : flag_fields) {
        int wanted = FLAG_ANY;
        if (!read_int(item, field.key, &wanted))
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

int read_addresses(const cJSON* item, AceIpv4* ipv4) {
    for (const IpField& field : ip_fields) {
        AceAddress<uint32_t> address = {
            &(ipv4->*field.address), &(ipv4->*field.mask), &(ipv4->*field.valid), sizeof(uint32_t),
            sys_util_str2Ip};
        if (int code = read_ace_address(item, field.keys, address))
            return code;
    }
    return 0;
}

int read_ipv4(const cJSON* item, Ace* ace) {
    AceIpv4* ipv4 = &ace->match.ipv4;
    uint32_t kind_before = range_kind(*ipv4);
    if (getJsonObjectForKey(item, "action"))
        ipv4->action_valid = 1;
    read_protocol(item, ipv4);
    if (int code = read_byte(item, type_of_service, ipv4))
        return code;
    if (int code = read_addresses(item, ipv4))
        return code;
    if (int code = is_protocol(*ipv4, PROTOCOL_ICMP) ? read_byte(item, icmp_type, ipv4) : 0)
        return code;
    if (int code = read_byte(item, icmp_code, ipv4))
        return code;
    for (const PortField& field : port_fields) {
        if (int code = read_port(item, field, kind_before, ipv4))
            return code;
    }
    if (is_protocol(*ipv4, PROTOCOL_TCP))
        read_flags(item, ipv4);
    return 0;
}

// --- Report.

int print_ip(const uint32_t* address, char* text) { return sys_util_ip2Str(*address, text); }

void report_byte(cJSON* item, const ByteField& field, const AceIpv4& ipv4) {
    addJsonObjectIntItem(item, field.key, ipv4.*field.valid ? ipv4.*field.value : -1);
}

int report_port(cJSON* item, const PortField& field, const AceL4Port& port) {
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

void report_flag(cJSON* item, const FlagField& field, const AceIpv4& ipv4) {
    int value = FLAG_ANY;
    if (ipv4.tcp_flags_valid && ipv4.tcp_flags_mask & field.bit)
        value = ipv4.tcp_flags & field.bit ? FLAG_SET : FLAG_CLEAR;
    addJsonObjectIntItem(item, field.key, value);
}

int report_ipv4(cJSON* item, const Ace& ace) {
    const AceIpv4& ipv4 = ace.match.ipv4;
    addJsonObjectIntItem(item, "protocol", ipv4.protocol_valid ? ipv4.protocol : -1);
    for (const IpField& field : ip_fields) {
        if (int code = report_ace_address(
                item, field.keys, print_ip, &(ipv4.*field.address), &(ipv4.*field.mask),
                ipv4.*field.valid))
            return code;
    }
    report_byte(item, type_of_service, ipv4);
    report_byte(item, icmp_type, ipv4);
    report_byte(item, icmp_code, ipv4);
    for (const PortField& field : port_fields) {
        if (int code = report_port(item, field, ipv4.*field.port))
            return code;
    }
    for (const FlagField& field : flag_fields)
        report_flag(item, field, ipv4);
    return 0;
}

// Only a full table refuses a new IPv4 entry; what else the check may report does not.
const AceKind ipv4_kind = {
    ACL_IPV4, "ipv4_ace", [](int check) { return check == ERROR_REFUSED; }, read_ipv4, report_ipv4,
};

} // namespace

int ace_ipv4_get(cJSON* acl) { return report_aces(ipv4_kind, acl); }

int ace_ipv4_set(const cJSON* entries) { return apply_aces(ipv4_kind, entries); }
