// A host as it stands among a switch's cloud settings: a name or an address, with a port if need
// be.
#pragma once

#include <optional>
#include <string>

namespace judge::cloud {

struct Host {
    std::string text; // as it was given, for the Host header
    std::string name; // a name or an address, without brackets
    int port = 0;     // 0: that of the service

    int port_or(int usual) const { return port ? port : usual; }
};

constexpr int https_port = 443;
constexpr int http_port = 80;

// nullopt: neither HOST nor HOST:PORT; an IPv6 address stands in brackets.
std::optional<Host> parse_host(const std::string& text);

} // namespace judge::cloud
