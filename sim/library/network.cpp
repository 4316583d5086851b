// The ARP table, and the hosts beyond the switch.
#include "sim/library/network.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cstdio>

#include "sim/library/board.h"

namespace sim {

namespace {

constexpr std::size_t most_neighbours = 1024;
constexpr std::size_t most_hosts = 1024;

std::string show_arp_line(const Neighbour& neighbour) {
    const std::uint8_t* mac = neighbour.mac;
    char line[160];
    std::snprintf(
        line, sizeof line, "%-16s 0x%-10x0x%-10x%02x:%02x:%02x:%02x:%02x:%02x     *        %s\n",
        show_ipv4(neighbour.address).c_str(), 1u, neighbour.answered ? 2u : 0u, mac[0], mac[1],
        mac[2], mac[3], mac[4], mac[5], neighbour.device.c_str());
    return line;
}

bool is_neighbour(const Switch& s, std::uint32_t address) {
    return address == s.system.gateway || std::ranges::any_of(s.network.arp, [&](const auto& n) {
               return n.answered && n.address == address;
           });
}

} // namespace

// The gateway is behind the fifth port of a switch as it comes.
Network::Network()
    : arp{{0xC0A80101, {0x02, 0xAA, 0, 0, 0, 0x03}},
          {0xC0A80114, {0x02, 0xAA, 0, 0, 0, 0x01}},
          {0xC0A80163, {}, false}},
      hosts{
          {"printer.lobby", 0xC0A80114, 1, 1},
          {"www.example.com", 0xC0000250, 5, 12},
          {"files.example.org", 0xC6336407, 9, 48}} {}

void Neighbour::fields(Fields& f) {
    f.ipv4("address", address);
    f.mac("mac", mac);
    f.boolean("answered", answered);
    f.text("device", device, 15);
}

void Host::fields(Fields& f) {
    f.text("name", name, 255);
    f.ipv4("address", address);
    f.integer("hops", hops, 1, 255);
    f.integer("milliseconds", milliseconds, 1, 4999);
}

void Network::hardware(Fields& f) {
    f.list("arp", arp, most_neighbours);
    f.list("hosts", hosts, most_hosts);
}

std::string Network::arp_table() const {
    if (arp_text)
        return *arp_text;
    std::string table =
        "IP address       HW type     Flags       HW address            Mask     Device\n";
    for (const Neighbour& neighbour : arp)
        table += show_arp_line(neighbour);
    return table;
}

std::string show_ipv4(std::uint32_t address) {
    in_addr network{htonl(address)};
    char text[INET_ADDRSTRLEN];
    return inet_ntop(AF_INET, &network, text, sizeof text);
}

std::optional<Host> find_host(const Switch& s, const std::string& host) {
    in_addr network;
    bool is_address = inet_pton(AF_INET, host.c_str(), &network) == 1;
    std::uint32_t address = is_address ? ntohl(network.s_addr) : 0;
    for (const Host& known : s.network.hosts)
        if (is_address ? known.address == address : known.name == host)
            return known;
    if (!is_address)
        return std::nullopt;
    bool near = address == s.system.address || is_neighbour(s, address);
    return Host{host, address, near ? 1 : 0, 1};
}

} // namespace sim
