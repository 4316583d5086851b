// Hosts taken apart.
#include "judge/cloud/host.h"

#include <charconv>

namespace judge::cloud {

namespace {

bool parse_port(const std::string& text, int& port) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    return error == std::errc() && end == text.data() + text.size() && port > 0 && port < 65536;
}

} // namespace

std::optional<Host> parse_host(const std::string& text) {
    Host host{text, text};
    const std::size_t bracket = text.rfind(']');
    const std::size_t colon = text.rfind(':');
    if (colon != std::string::npos && (bracket == std::string::npos || colon > bracket)) {
        if (!parse_port(text.substr(colon + 1), host.port))
            return std::nullopt;
        host.name = text.substr(0, colon);
    }
    if (host.name.starts_with('[') && host.name.ends_with(']'))
        host.name = host.name.substr(1, host.name.size() - 2);
    if (host.name.empty() || host.name.find_first_of("/ \t\r\n") != std::string::npos)
        return std::nullopt;
    return host;
}

} // namespace judge::cloud
