// What lies beyond the switch's own address: its neighbours, as its ARP table knows them, and the
// hosts that the simulated ping and traceroute can reach.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sim/instruments/fields.h"

namespace sim {

struct Neighbour {
    std::uint32_t address = 0;
    std::uint8_t mac[6]{};
    bool answered = true; // to ARP; one that did not has no hardware address yet
    std::string device = "eth0";

    void fields(Fields& f);
};

// A host that answers, so many routers away; a neighbour is 1 hop away.
struct Host {
    std::string name;
    std::uint32_t address = 0;
    int hops = 1;
    int milliseconds = 1; // there and back

    void fields(Fields& f);
};

struct Network {
    Network();

    std::vector<Neighbour> arp;
    std::vector<Host> hosts;

    std::optional<std::string> arp_text; // of a kernel that shows its table in another way

    void hardware(Fields& f);

    // "/proc/net/arp" as Linux shows it.
    std::string arp_table() const;
};

std::string show_ipv4(std::uint32_t address);

// Who a name or address means; nothing where a name is not known. Whoever does not answer has 0
// hops.
struct Switch;
std::optional<Host> find_host(const Switch& s, const std::string& host);

} // namespace sim
