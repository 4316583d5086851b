// The simulated switch chip: what answers a request on "/dev/ski". A command either does something
// (handlers.h) or is only stored (chip_commands.h).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "driver/acl.h"
#include "sim/chip/addresses.h"
#include "sim/chip/admission.h"
#include "sim/chip/multicast.h"
#include "sim/chip/vlans.h"

namespace sim {

constexpr int chip_mirror_groups = 4;
constexpr int chip_trunk_groups = 8; // the last logical ports
constexpr int chip_l4_ranges = 16;

// Packets a second that pass a port while it has link; of 100 packets 90 are unicast, 6 multicast
// and 4 broadcast.
struct ChipTraffic {
    double rx_packets = 0;
    double tx_packets = 0;
    std::uint32_t packet_bytes = 512;
};

// What passed in one direction since the start, with the part of a packet that is on its way.
struct ChipFlow {
    double packets = 0;
};

// A pair of a copper cable, as a test finds it: without fault, or with one so many metres away.
constexpr std::uint8_t chip_pair_open = 1;
constexpr std::uint8_t chip_pair_short = 2;
struct ChipPair {
    std::uint8_t state = 0;
    std::uint8_t length_m = 0;
};

struct ChipPort {
    bool copper = true;
    bool enabled = true;
    bool plugged = false; // a live partner at the other end
    bool link() const { return enabled && plugged; }
    std::uint32_t speed = 2;           // of a link: 0 10M, 1 100M, 2 1000M
    std::uint32_t duplex = 1;          // 0 half, 1 full
    std::uint32_t max_frame_bytes = 0; // 0: the switch's own limit
    ChipTraffic traffic;
    ChipFlow rx, tx;
    std::map<std::uint32_t, std::uint64_t> counters; // by the command number of their read
    std::array<ChipPair, 4> cable{};                 // what a test would find now
    std::optional<std::array<ChipPair, 4>> tested;   // what the last test found
    std::array<std::string, 3> acl_names;            // of the access lists bound to it, by kind
};

// A range of layer-4 ports. One that no entry of an access list refers to gives way when a new one
// needs its place.
struct ChipL4Range {
    std::uint32_t kind = 0; // 0: free
    std::uint32_t first = 0, last = 0;
    std::uint32_t users = 0; // references by entries of access lists
};

// An entry of an access list: the name of the list and the entry's sequence number.
using ChipAclEntry = std::pair<std::string, std::uint32_t>;

struct ChipAclList {
    std::string name;
    std::uint32_t kind = 0;
    std::map<std::uint32_t, AclEntry> entries; // by sequence number
};

// A set of logical ports, bit p % 32 of word p / 32.
using ChipPortSet = std::array<std::uint32_t, 3>;

struct ChipMirror {
    std::uint32_t target = 0, ingress = 0;
    ChipPortSet rx{}, tx{};
};

enum class ChipTrunkMode : std::uint32_t { none = 0, fixed = 1, lacp = 2 };

struct ChipTrunk {
    ChipTrunkMode mode = ChipTrunkMode::none;
    ChipPortSet members{};
};

struct ChipState {
    std::vector<ChipPort> ports;
    std::uint32_t max_frame_bytes = 1522;
    std::map<std::uint32_t, std::uint64_t> counters; // switch-wide ones
    std::array<ChipL4Range, chip_l4_ranges> l4_ranges{};
    std::size_t last_l4_range = chip_l4_ranges; // the place that was set last
    std::vector<ChipAclList> acl_lists;         // in the order of their creation
    std::array<std::optional<ChipMirror>, chip_mirror_groups> mirrors{};
    std::array<ChipTrunk, chip_trunk_groups> trunks{};
    std::array<ChipPortSet, chip_trunk_groups> candidates{}; // of groups under the protocol
    ChipAddresses addresses;
    ChipMulticast multicast;
    ChipVlans vlans;
    ChipManagementLists management;
    ChipBindings bindings{chip_bindings};
    std::map<std::uint32_t, std::uint32_t> most_bindings; // by port; 0 is no limit
    double running_s = 0;                                 // since the start

    // The layer-4 ranges that entries refer to.
    std::map<ChipAclEntry, std::vector<std::size_t>> acl_ranges() const;
};

struct StoredClear;

// Every member may be called from any thread.
class Chip {
  public:
    explicit Chip(int logical_ports);

    int ports() const { return ports_; }

    // What the driver's ioctl does with `record`, whose size goes with the command. Returns 0 or
    // the driver's code; a failing request leaves the record as it was.
    int request(std::uint32_t command, void* record);

    // Simulated time passes: the counters of the ports with link grow.
    void advance(double seconds);

    ChipState state() const {
        std::lock_guard guard(mutex_);
        return state_;
    }

    template <class Change> auto change(Change&& change) {
        std::lock_guard guard(mutex_);
        return std::forward<Change>(change)(state_);
    }

    // The record of the last request with `command`, empty when there was none. For the
    // commands that the chip only stores.
    std::vector<std::byte> last_record(std::uint32_t command) const;

    // Makes the chip answer the read `command` with `record` whenever the arguments are those that
    // `record` holds; it has the command's size.
    void preset(std::uint32_t command, const void* record);

  private:
    using Bytes = std::vector<std::byte>;

    int stored_request(std::uint32_t command, void* record);
    void forget_answers(const StoredClear& clear, const void* record);

    const int ports_;
    mutable std::mutex mutex_;
    ChipState state_;
    std::map<std::uint32_t, Bytes> requested_;
    std::map<std::pair<std::uint32_t, Bytes>, Bytes> answers_; // by read and its arguments
};

} // namespace sim
