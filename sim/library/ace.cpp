// Entries of access lists in three forms: for the driver, the saved configuration and the trace.
// trace's.
#include "sim/library/ace.h"

#include <cstdio>
#include <cstring>
#include <initializer_list>

#include "driver/acl.h"
#include "sim/instruments/trace.h"

namespace sim {

namespace {

// Command numbers of the driver, for a configuration that is loaded before the board runs.
constexpr std::uint32_t l4_range_get = 327;
constexpr std::uint32_t l4_range_set = 328;

constexpr std::uint32_t last_sequence = INT32_MAX;

// ---- What an entry may be ----

bool sound(const AceMac& mac) {
    return (!mac.vlan_valid || (mac.vlan >= 1 && mac.vlan <= 4094)) &&
           (!mac.ethertype_valid || mac.ethertype >= 0x0600) &&
           (!mac.priority_valid || mac.priority <= 7);
}

bool sound(const AceL4Port& port) {
    AclPortRange range;
    return !(port.port_valid && port.range_valid) &&
           (!port.range_valid || rsd_acl_l4port_range_get(&range, port.range) == 0);
}

bool sound(const AceIpv4& ipv4) {
    return ipv4.action_valid && (!ipv4.type_of_service_valid || ipv4.type_of_service <= 63) &&
           sound(ipv4.source_port) && sound(ipv4.destination_port);
}

// ---- Entries as the driver has them ----

struct ValidBit {
    std::uint8_t valid;
    std::uint32_t bit;
};

std::uint32_t bits(std::initializer_list<ValidBit> flags) {
    std::uint32_t all = 0;
    for (const ValidBit& flag : flags)
        all |= flag.valid ? flag.bit : 0;
    return all;
}

void to_driver(AclEntry& out, const AceMac& mac) {
    std::memcpy(out.destination_mac, mac.destination_mac, MAC_ADDRESS_SIZE);
    std::memcpy(out.destination_mac_mask, mac.destination_mask, MAC_ADDRESS_SIZE);
    std::memcpy(out.source_mac, mac.source_mac, MAC_ADDRESS_SIZE);
    std::memcpy(out.source_mac_mask, mac.source_mask, MAC_ADDRESS_SIZE);
    out.vlan = mac.vlan;
    out.ethertype = mac.ethertype;
    out.priority = mac.priority;
    out.priority_mask = mac.priority_mask;
    out.valid = bits(
        {{mac.destination_mac_valid, ACL_VALID_DESTINATION_MAC},
         {mac.source_mac_valid, ACL_VALID_SOURCE_MAC},
         {mac.vlan_valid, ACL_VALID_VLAN},
         {mac.ethertype_valid, ACL_VALID_ETHERTYPE},
         {mac.priority_valid, ACL_VALID_PRIORITY}});
}

void to_driver(AclEntry& out, const AceIpv4& ipv4) {
    out.protocol = ipv4.protocol;
    out.type_of_service = ipv4.type_of_service;
    out.destination_ip = ipv4.destination_ip;
    out.destination_ip_mask = ipv4.destination_mask;
    out.source_ip = ipv4.source_ip;
    out.source_ip_mask = ipv4.source_mask;
    out.destination_port = ipv4.destination_port.port;
    out.source_port = ipv4.source_port.port;
    out.destination_range = ipv4.destination_port.range;
    out.source_range = ipv4.source_port.range;
    out.icmp_type = ipv4.icmp_type;
    out.icmp_code = ipv4.icmp_code;
    out.tcp_flags = ipv4.tcp_flags;
    out.tcp_flags_mask = ipv4.tcp_flags_mask;
    out.valid = bits(
        {{ipv4.protocol_valid, ACL_VALID_PROTOCOL},
         {ipv4.type_of_service_valid, ACL_VALID_TYPE_OF_SERVICE},
         {ipv4.destination_ip_valid, ACL_VALID_DESTINATION_IP},
         {ipv4.source_ip_valid, ACL_VALID_SOURCE_IP},
         {ipv4.destination_port.port_valid, ACL_VALID_DESTINATION_PORT},
         {ipv4.source_port.port_valid, ACL_VALID_SOURCE_PORT},
         {ipv4.destination_port.range_valid, ACL_VALID_DESTINATION_RANGE},
         {ipv4.source_port.range_valid, ACL_VALID_SOURCE_RANGE},
         {ipv4.icmp_type_valid, ACL_VALID_ICMP_TYPE},
         {ipv4.icmp_code_valid, ACL_VALID_ICMP_CODE},
         {ipv4.tcp_flags_valid, ACL_VALID_TCP_FLAGS}});
}

// ---- The saved form ----

void flag(Fields& f, const char* key, std::uint8_t& valid) {
    bool on = valid != 0;
    f.boolean(key, on);
    valid = on;
}

void mac_fields(Fields& f, AceMac& mac) {
    flag(f, "destination_mac_valid", mac.destination_mac_valid);
    f.mac("destination_mac", mac.destination_mac);
    f.mac("destination_mask", mac.destination_mask);
    flag(f, "source_mac_valid", mac.source_mac_valid);
    f.mac("source_mac", mac.source_mac);
    f.mac("source_mask", mac.source_mask);
    flag(f, "vlan_valid", mac.vlan_valid);
    f.integer("vlan", mac.vlan, 0, 4094);
    flag(f, "ethertype_valid", mac.ethertype_valid);
    f.integer("ethertype", mac.ethertype, 0, 0xFFFF);
    flag(f, "priority_valid", mac.priority_valid);
    f.integer("priority", mac.priority, 0, 7);
    f.integer("priority_mask", mac.priority_mask, 0, 7);
}

// A range is saved by its ports: where the chip keeps it is of no meaning after a restart.
void port_fields(Fields& f, AceL4Port& port, Chip& chip) {
    AclRecord record{};
    record.range_index = port.range;
    if (port.range_valid)
        chip.request(l4_range_get, &record);
    flag(f, "single", port.port_valid);
    f.integer("port", port.port, 0, 65535);
    flag(f, "range", port.range_valid);
    f.integer("kind", record.range.kind, 0, 2);
    f.integer("first", record.range.first, 0, 65535);
    f.integer("last", record.range.last, 0, 65535);
    if (!f.reading() || !port.range_valid)
        return;
    if (chip.request(l4_range_set, &record))
        f.refuse("there is no room for this range of ports");
    port.range = record.range_index;
}

void ipv4_fields(Fields& f, AceIpv4& ipv4, Chip& chip) {
    flag(f, "protocol_valid", ipv4.protocol_valid);
    f.integer("protocol", ipv4.protocol, 0, 255);
    flag(f, "type_of_service_valid", ipv4.type_of_service_valid);
    f.integer("type_of_service", ipv4.type_of_service, 0, 63);
    flag(f, "destination_ip_valid", ipv4.destination_ip_valid);
    f.ipv4("destination_ip", ipv4.destination_ip);
    f.ipv4("destination_mask", ipv4.destination_mask);
    flag(f, "source_ip_valid", ipv4.source_ip_valid);
    f.ipv4("source_ip", ipv4.source_ip);
    f.ipv4("source_mask", ipv4.source_mask);
    flag(f, "icmp_type_valid", ipv4.icmp_type_valid);
    f.integer("icmp_type", ipv4.icmp_type, 0, 255);
    flag(f, "icmp_code_valid", ipv4.icmp_code_valid);
    f.integer("icmp_code", ipv4.icmp_code, 0, 255);
    f.object("source_port", [&](Fields& inner) { port_fields(inner, ipv4.source_port, chip); });
    f.object("destination_port", [&](Fields& inner) {
        port_fields(inner, ipv4.destination_port, chip);
    });
    flag(f, "tcp_flags_valid", ipv4.tcp_flags_valid);
    f.integer("tcp_flags", ipv4.tcp_flags, 0, 63);
    f.integer("tcp_flags_mask", ipv4.tcp_flags_mask, 0, 63);
    ipv4.action_valid = 1;
}

// ---- The trace ----

std::string masked(const char* name, const std::string& value, const std::string& mask) {
    return std::string(" ") + name + " " + value + "/" + mask;
}

std::string hexadecimal(std::uint32_t number, int digits) {
    char text[12];
    std::snprintf(text, sizeof text, "%0*X", digits, number);
    return text;
}

std::string number(const char* name, unsigned value) {
    return std::string(" ") + name + " " + std::to_string(value);
}

std::string show_mac_match(const AceMac& mac) {
    std::string text;
    if (mac.destination_mac_valid)
        text += masked("to", show_mac(mac.destination_mac), show_mac(mac.destination_mask));
    if (mac.source_mac_valid)
        text += masked("from", show_mac(mac.source_mac), show_mac(mac.source_mask));
    if (mac.vlan_valid)
        text += number("vlan", mac.vlan);
    if (mac.ethertype_valid)
        text += " ethertype " + hexadecimal(mac.ethertype, 4);
    if (mac.priority_valid)
        text += number("priority", mac.priority) + "/" + std::to_string(mac.priority_mask);
    return text;
}

std::string show_port(const std::string& name, const AceL4Port& port) {
    if (port.range_valid)
        return number((name + " range").c_str(), port.range);
    return port.port_valid ? number((name + " port").c_str(), port.port) : "";
}

std::string show_ipv4_match(const AceIpv4& ipv4) {
    std::string text;
    if (ipv4.protocol_valid)
        text += number("protocol", ipv4.protocol);
    if (ipv4.type_of_service_valid)
        text += number("tos", ipv4.type_of_service);
    if (ipv4.destination_ip_valid)
        text += masked(
            "to", hexadecimal(ipv4.destination_ip, 8), hexadecimal(ipv4.destination_mask, 8));
    if (ipv4.source_ip_valid)
        text += masked("from", hexadecimal(ipv4.source_ip, 8), hexadecimal(ipv4.source_mask, 8));
    if (ipv4.icmp_type_valid)
        text += number("icmp type", ipv4.icmp_type);
    if (ipv4.icmp_code_valid)
        text += number("icmp code", ipv4.icmp_code);
    text += show_port("from", ipv4.source_port) + show_port("to", ipv4.destination_port);
    if (ipv4.tcp_flags_valid)
        text += number("flags", ipv4.tcp_flags) + "/" + std::to_string(ipv4.tcp_flags_mask);
    return text;
}

} // namespace

bool sound(const Ace& ace, std::uint32_t type) {
    return ace.type == type && ace.sequence >= 1 && ace.sequence <= last_sequence &&
           ace.action <= 1 && (type == ACL_MAC ? sound(ace.match.mac) : sound(ace.match.ipv4));
}

AclEntry driver_entry(const Ace& ace) {
    AclEntry out{};
    if (ace.type == ACL_MAC)
        to_driver(out, ace.match.mac);
    else
        to_driver(out, ace.match.ipv4);
    out.sequence = ace.sequence;
    out.action = ace.action;
    return out;
}

void ace_fields(Fields& f, Ace& ace, Chip& chip) {
    f.integer("sequence", ace.sequence, 1, last_sequence);
    f.integer("action", ace.action, 0, 1);
    if (ace.type == ACL_MAC)
        mac_fields(f, ace.match.mac);
    else
        ipv4_fields(f, ace.match.ipv4, chip);
}

std::string show_ace(const Ace& ace) {
    std::string text = "{" + std::to_string(ace.sequence) + " " +
                       (ace.action == 0   ? "deny"
                        : ace.action == 1 ? "permit"
                                          : "action " + std::to_string(ace.action));
    if (ace.type == ACL_MAC)
        text += show_mac_match(ace.match.mac);
    if (ace.type == ACL_IPV4)
        text += show_ipv4_match(ace.match.ipv4);
    return text + "}";
}

} // namespace sim
