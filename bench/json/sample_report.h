// The content of a check-in report of about 70 KB, for any library that builds documents. A library
// is a class with the types Document and Node, and static functions by the names used here.
#pragma once

#include <cstdint>

namespace bench {

constexpr const char* counter_names[] = {
    "rx_octets",    "rx_packets",   "rx_unicast",    "rx_multicast", "rx_broadcast", "rx_errors",
    "rx_discards",  "rx_fragments", "rx_jabbers",    "rx_undersize", "rx_oversize",  "rx_crc_align",
    "tx_octets",    "tx_packets",   "tx_unicast",    "tx_multicast", "tx_broadcast", "tx_errors",
    "tx_discards",  "tx_deferred",  "tx_collisions", "pkts_64",      "pkts_65_127",  "pkts_128_255",
    "pkts_256_511", "pkts_512_1023"};

template <class Json>
void add_counters(typename Json::Document& document, typename Json::Node port, int number) {
    typename Json::Node statistics = Json::object(document, port, "statistics");
    std::uint32_t value = 2654435761u * static_cast<std::uint32_t>(number + 1);
    for (const char* name : counter_names) {
        Json::counter(document, statistics, name, value >> (value % 23));
        value = value * 1664525 + 1013904223;
    }
}

template <class Json>
void add_port(typename Json::Document& document, typename Json::Node ports, int number) {
    typename Json::Node port = Json::element(document, ports);
    const char id[] = {
        static_cast<char>('0' + number / 10), static_cast<char>('0' + number % 10), 0};
    Json::text(document, port, "id", id);
    Json::text(document, port, "description", "Access point, second floor \"east\" wing");
    Json::boolean(document, port, "enable", number % 5 != 0);
    Json::boolean(document, port, "link_status", number % 3 != 0);
    Json::number(document, port, "speed", 1000);
    Json::text(document, port, "duplex", "full");
    Json::number(document, port, "pvid", 1 + number);
    Json::text(document, port, "tagged_vlans", "10-20,30,40,100-110");
    typename Json::Node poe = Json::object(document, port, "poe");
    Json::boolean(document, poe, "enable", true);
    Json::fraction(document, poe, "power", 3.5 + number);
    Json::fraction(document, poe, "limit", 15.4);
    add_counters<Json>(document, port, number);
}

template <class Json> void fill(typename Json::Document& document, typename Json::Node root) {
    typename Json::Node system = Json::object(document, root, "system");
    Json::text(document, system, "device_name", "Switch-1");
    Json::text(document, system, "model", "Q18r5");
    Json::text(document, system, "mac", "0A:1B:2C:3D:4E:5F");
    Json::number(document, system, "uptime_seconds", 123456);
    typename Json::Node ports = Json::array(document, system, "ports");
    for (int port = 0; port < 64; ++port)
        add_port<Json>(document, ports, port);
}

} // namespace bench
