// The fault plan: which of the calls that can fail are to fail, and how.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

// The edges of the agent at which a fault can be put.
enum class Edge { platform, ioctl, allocation, file, transfer };
constexpr std::size_t edge_count = 5;

// Fails the `nth` (from 1) of the calls that match, or every one from there on when `for_good`.
// A call matches on its edge and, unless `name` is empty, on its name: the platform function, the
// command number in decimal, the path, the URL.
struct Fault {
    Edge edge = Edge::platform;
    std::string name;
    std::uint64_t nth = 1;
    bool for_good = false;
    int code = 1; // the result that the caller gets: platform, driver or libcurl code
    std::uint64_t seen = 0;
    bool power_off = false; // nothing fails: the process is killed where it stands
};

class Faults {
  public:
    void plan(Fault fault);
    void clear();

    // Counts the call; the code with which it is to fail, if it is.
    std::optional<int> hit(Edge edge, std::string_view name);
    std::uint64_t count(Edge edge) const; // calls since clear()
    bool planned() const;                 // whether any fault is
    bool planned(Edge edge) const;

    // Hears of every call that is counted, before it is answered; empty where nobody listens.
    std::function<void(Edge edge, std::string_view name)> heard;

  private:
    mutable std::mutex mutex_;
    std::vector<Fault> faults_;
    std::array<std::uint64_t, edge_count> counts_{};
};

// "EDGE[:NAME][#N[+]][=CODE]", for example platform:sal_port_speed_set#2+=7 or file:/dev/ski. With
// "off" for a code the switch loses its power there.
// Throws std::invalid_argument with the reason.
Fault parse_fault(std::string_view text);

} // namespace sim
