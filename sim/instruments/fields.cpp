// Addresses and sets as texts, in scenarios and saved configurations.
#include "sim/instruments/fields.h"

#include <arpa/inet.h>

#include <cstdio>
#include <cstring>
#include <span>
#include <sstream>

#include "sim/instruments/number_list.h"
#include "sim/instruments/trace.h"

namespace sim {

void Fields::mac(const char* key, std::uint8_t (&address)[6]) {
    std::string written = show_mac(address);
    text(key, written, 17);
    unsigned byte[6];
    char more;
    if (written.size() != 17 || std::sscanf(
                                    written.c_str(), "%2x:%2x:%2x:%2x:%2x:%2x%c", &byte[0],
                                    &byte[1], &byte[2], &byte[3], &byte[4], &byte[5], &more) != 6)
        return refuse(std::string(key) + " is not a MAC address: \"" + written + "\"");
    for (int i = 0; i < 6; ++i)
        address[i] = static_cast<std::uint8_t>(byte[i]);
}

void Fields::ipv4(const char* key, std::uint32_t& address) {
    in_addr parsed{htonl(address)};
    char shown[INET_ADDRSTRLEN];
    std::string written = inet_ntop(AF_INET, &parsed, shown, sizeof shown);
    text(key, written, 15);
    if (inet_pton(AF_INET, written.c_str(), &parsed) != 1)
        return refuse(std::string(key) + " is not an IPv4 address: \"" + written + "\"");
    address = ntohl(parsed.s_addr);
}

void Fields::bits(const char* key, std::uint32_t* words, std::size_t count) {
    std::span<std::uint32_t> set(words, count);
    std::string written = write_numbers(set, 0);
    text(key, written, 20000);
    if (!reading())
        return;
    std::vector<std::uint32_t> fresh(count);
    std::istringstream items(written);
    for (std::string item; std::getline(items, item, ',');)
        if (!read_numbers(item, 0, fresh))
            return refuse(
                std::string(key) + " holds \"" + item + "\", which is no number or range");
    std::copy(fresh.begin(), fresh.end(), set.begin());
}

} // namespace sim
