// What ping, traceroute and cat print, and how long they take over it.
#include "sim/edges/network_tools.h"

#include <algorithm>
#include <charconv>
#include <cstdarg>
#include <cstdio>
#include <fstream>
#include <map>
#include <mutex>
#include <optional>

#include "sim/library/board.h"

namespace sim {

namespace {

constexpr int wrong_usage = 2;
constexpr unsigned seconds_to_wait = 3; // for an answer to a traceroute's probe

__attribute__((format(printf, 1, 2))) std::string text(const char* format, ...) {
    char line[512];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    return line;
}

// A command line whose options are one letter each; those in `with_number` have a number.
struct Arguments {
    std::map<char, unsigned> options;
    std::vector<std::string> operands;
};

std::optional<unsigned> read_number(const std::string& word) {
    unsigned number = 0;
    const char* end = word.data() + word.size();
    auto [at, error] = std::from_chars(word.data(), end, number);
    return error == std::errc{} && at == end ? std::optional(number) : std::nullopt;
}

std::optional<Arguments> parse(
    const std::vector<std::string>& words, const std::string& plain,
    const std::string& with_number) {
    Arguments arguments;
    for (std::size_t i = 1; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (word.empty() || word[0] != '-') {
            arguments.operands.push_back(word);
        } else if (word.size() == 2 && plain.find(word[1]) != std::string::npos) {
            arguments.options[word[1]] = 1;
        } else if (word.size() == 2 && with_number.find(word[1]) != std::string::npos) {
            auto number = ++i < words.size() ? read_number(words[i]) : std::nullopt;
            if (!number)
                return std::nullopt;
            arguments.options[word[1]] = *number;
        } else {
            return std::nullopt;
        }
    }
    return arguments;
}

std::optional<Host> look_up(const std::string& host) {
    std::lock_guard guard(board().lock);
    return find_host(board().device, host);
}

std::uint32_t gateway() {
    std::lock_guard guard(board().lock);
    return board().device.system.gateway;
}

// A round trip in milliseconds that is not the same twice in a row.
double round_trip(double milliseconds, unsigned probe) {
    return milliseconds * 0.8 + (probe * 37 % 11) * 0.02;
}

// --- Ping.

void answer(std::ostream& out, const Host& host, unsigned number, unsigned bytes) {
    out << text(
        "%u bytes from %s: seq=%u ttl=%d time=%.3f ms\n", bytes + 8,
        show_ipv4(host.address).c_str(), number, 65 - host.hops,
        round_trip(host.milliseconds, number));
}

void statistics(std::ostream& out, const Host& host, unsigned count) {
    bool answers = host.hops > 0;
    out << "\n--- " << host.name << " ping statistics ---\n"
        << text(
               "%u packets transmitted, %u packets received, %d%% packet loss\n", count,
               answers ? count : 0, answers ? 0 : 100);
    if (!answers)
        return;
    double least = 1e9, most = 0, sum = 0;
    for (unsigned number = 0; number < count; ++number) {
        double time = round_trip(host.milliseconds, number);
        least = std::min(least, time);
        most = std::max(most, time);
        sum += time;
    }
    out << text("round-trip min/avg/max = %.3f/%.3f/%.3f ms\n", least, sum / count, most);
}

// --- Traceroute.

// The routers on the way; the first is the gateway unless the host is a neighbour.
std::uint32_t router(const Host& host, unsigned hop) {
    if (static_cast<int>(hop) == host.hops)
        return host.address;
    return hop == 1 ? gateway() : 0x0A000001 + (hop << 8);
}

void answered_hop(std::ostream& out, const Host& host, unsigned hop) {
    std::string address = show_ipv4(router(host, hop));
    std::string name = static_cast<int>(hop) == host.hops ? host.name : address;
    out << text("%2u  %s (%s)", hop, name.c_str(), address.c_str());
    double milliseconds = static_cast<double>(host.milliseconds) * hop / host.hops;
    for (unsigned probe = 0; probe < 3; ++probe)
        out << text("  %.3f ms", round_trip(milliseconds, hop + probe));
    out << "\n";
}

void unanswered_hop(std::ostream& out, unsigned hop) {
    out << text("%2u  * * *\n", hop);
    board().clock.sleep(3 * seconds_to_wait);
}

// What -v adds: a packet that came in meanwhile and is no answer to a probe, word by word.
void stray_packet(std::ostream& out, const Host& host) {
    out << text(
        "28 bytes from %s to %s: icmp type 8 (Echo) code 0\n", show_ipv4(gateway()).c_str(),
        show_ipv4(host.address).c_str());
    constexpr unsigned words[] = {0x0000A1F7, 0x00010000, 0x0001C03E};
    for (unsigned i = 0; i < std::size(words); ++i)
        out << text("%2u: x%08x\n", 4 * (i + 1), words[i]);
}

} // namespace

int ping(const std::vector<std::string>& words, std::ostream& out) {
    auto arguments = parse(words, "", "csi");
    if (!arguments || arguments->operands.size() != 1 || arguments->options['c'] == 0)
        return wrong_usage;
    unsigned count = arguments->options['c'];
    unsigned bytes = arguments->options['s'];
    auto host = look_up(arguments->operands[0]);
    if (!host)
        return 1;
    out << text(
        "PING %s (%s): %u data bytes\n", host->name.c_str(), show_ipv4(host->address).c_str(),
        bytes);
    for (unsigned number = 0; number < count; ++number) {
        if (host->hops > 0)
            answer(out, *host, number, bytes);
        out.flush();
        if (number + 1 < count || host->hops == 0)
            board().clock.sleep(arguments->options['i']);
    }
    statistics(out, *host, count);
    return host->hops > 0 ? 0 : 1;
}

int traceroute(const std::vector<std::string>& words, std::ostream& out) {
    auto arguments = parse(words, "v", "m");
    if (!arguments || arguments->operands.size() != 1 || arguments->options['m'] == 0)
        return wrong_usage;
    unsigned most = arguments->options['m'];
    auto host = look_up(arguments->operands[0]);
    if (!host)
        return 1;
    out << text(
        "traceroute to %s (%s), %u hops max, 38 byte packets\n", host->name.c_str(),
        show_ipv4(host->address).c_str(), most);
    for (unsigned hop = 1; hop <= most; ++hop) {
        if (host->hops == 0 && hop > 1)
            unanswered_hop(out, hop);
        else
            answered_hop(out, host->hops ? *host : Host{"", 0, 255, 1}, hop);
        if (hop == 1 && host->hops != 1 && arguments->options['v'])
            stray_packet(out, *host);
        if (static_cast<int>(hop) == host->hops)
            break;
    }
    return 0;
}

int show_file(const std::vector<std::string>& words, std::ostream& out) {
    if (words.size() != 2)
        return 1;
    if (words[1] == "/proc/net/arp") {
        std::lock_guard guard(board().lock);
        out << board().device.network.arp_table();
        return 0;
    }
    std::ifstream file(board().path(words[1]), std::ios::binary);
    if (file.is_open())
        out << file.rdbuf();
    return file.is_open() ? 0 : 1;
}

} // namespace sim
