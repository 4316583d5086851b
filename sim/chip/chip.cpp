// The chip; see chip.h.
#include "sim/chip/chip.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "driver/acl.h"
#include "driver/cablediag.h"
#include "driver/mib.h"
#include "driver/mirror.h"
#include "driver/request.h"
#include "sim/chip/chip_commands.h"
#include "sim/instruments/codes.h"

namespace sim {
namespace {

// Command numbers of the driver.
enum Command : std::uint32_t {
    acl_list_del = 258,
    acl_entry_create = 261,
    acl_entry_modify = 262,
    acl_entry_del = 263,
    l4_range_del = 264,
    l4_range_get = 327,
    l4_range_set = 328,
    cable_test = 385,
    cable_result = 449,
    counters_clear = 2945,
    counters_clear_all = 2946,
    first_counter = 3009,
    rx_octets = 3048, // ifInOctets
    rx_unicast = 3049,
    rx_not_unicast = 3050,
    rx_broadcast = 3051,
    rx_multicast = 3052,
    tx_multicast = 3054,
    tx_broadcast = 3055,
    tx_unicast = 3026,
    tx_not_unicast = 3027,
    tx_octets = 3028,
    queued_unicast = 3035,
    queued_multicast = 3036,
    queued_broadcast = 3037,
    all_octets = 3010, // remote monitoring
    all_packets = 3011,
    all_broadcast = 3012,
    all_multicast = 3013,
    first_packet_size = 3020, // 64 octets, then 65 to 127 and so on
    address_room_discards = 3034,
    cpu_packets = 3063,
    debug_counter = 3064, // also the last counter
    mirror_set = 3077,
    mirror_del = 3078,
    port_enable_set = 3457,
    port_enable_get = 3521,
    port_link_get = 3522,
    port_links_get = 3523,
    port_speed_get = 3528,
    max_frame_set = 4097,
    port_max_frame_set = 4098,
    max_frame_get = 4161,
    port_max_frame_get = 4162,
    trunk_static_set = 4353,
    trunk_static_del = 4354,
    trunk_lacp_set = 4355,
    trunk_lacp_del = 4356,
    trunk_mode_get = 4417,
    trunk_active_get = 4418,
    trunk_role_get = 4419,
    trunk_of_port_get = 4421,
};

// Part of a port in aggregation.
enum Role : std::uint32_t {
    role_none = 0,
    role_lacp_member = 1,
    role_static_member = 2,
    role_lacp_group = 4,
    role_static_group = 5,
};

struct PortsRecord {
    ChipWords words;
    ChipPortSet ports;
};

struct MirrorRecord {
    ChipWords words;
    MirrorGroup group;
};

bool holds(const ChipPortSet& set, std::size_t port) {
    return port / 32 < set.size() && (set[port / 32] >> (port % 32) & 1) != 0;
}

// Returns null for a number beyond the ports.
ChipPort* port_at(ChipState& chip, std::uint32_t port) {
    return port < chip.ports.size() ? &chip.ports[port] : nullptr;
}

// ---- Ports ----

int set_port_enable(ChipState& chip, ChipWords& words) {
    ChipPort* port = port_at(chip, words.word[0]);
    if (!port)
        return code_no_port;
    if (words.word[1] > 1)
        return code_bad_value;
    port->enabled = words.word[1] == 1;
    return code_ok;
}

int get_port_enable(ChipState& chip, ChipWords& words) {
    ChipPort* port = port_at(chip, words.word[0]);
    if (!port)
        return code_no_port;
    words.word[1] = port->enabled;
    return code_ok;
}

int get_port_link(ChipState& chip, ChipWords& words) {
    ChipPort* port = port_at(chip, words.word[0]);
    if (!port)
        return code_no_port;
    words.word[1] = port->link();
    return code_ok;
}

int get_port_links(ChipState& chip, PortsRecord& record) {
    record.ports = {};
    for (std::size_t port = 0; port < chip.ports.size() && port < 96; ++port)
        record.ports[port / 32] |= std::uint32_t{chip.ports[port].link()} << (port % 32);
    return code_ok;
}

int get_port_speed(ChipState& chip, ChipWords& words) {
    ChipPort* port = port_at(chip, words.word[0]);
    if (!port)
        return code_no_port;
    words.word[1] = port->speed;
    words.word[2] = port->duplex;
    return code_ok;
}

// ---- Frame sizes ----

bool is_frame_size(std::uint32_t bytes) { return bytes >= 64 && bytes <= 12288; }

int set_max_frame(ChipState& chip, ChipWords& words) {
    if (!is_frame_size(words.word[0]))
        return code_bad_value;
    chip.max_frame_bytes = words.word[0];
    return code_ok;
}

int get_max_frame(ChipState& chip, ChipWords& words) {
    words.word[0] = chip.max_frame_bytes;
    return code_ok;
}

int set_port_max_frame(ChipState& chip, ChipWords& words) {
    ChipPort* port = port_at(chip, words.word[0]);
    if (!port)
        return code_no_port;
    if (!is_frame_size(words.word[1]))
        return code_bad_value;
    port->max_frame_bytes = words.word[1];
    return code_ok;
}

int get_port_max_frame(ChipState& chip, ChipWords& words) {
    ChipPort* port = port_at(chip, words.word[0]);
    if (!port)
        return code_no_port;
    words.word[1] = port->max_frame_bytes ? port->max_frame_bytes : chip.max_frame_bytes;
    return code_ok;
}

// ---- Counters ----

bool is_switch_counter(std::uint32_t command) {
    return command == address_room_discards || command == cpu_packets;
}

int get_counter(ChipState& chip, std::uint32_t command, MibRecord& record) {
    ChipPort* port = port_at(chip, record.port);
    if (!port && !is_switch_counter(command))
        return code_no_port;
    auto& counters = is_switch_counter(command) ? chip.counters : port->counters;
    auto counter = counters.find(command);
    record.count = counter == counters.end() ? 0 : counter->second;
    return code_ok;
}

int clear_counters(ChipState& chip, ChipWords& words) {
    ChipPort* port = port_at(chip, words.word[0]);
    if (!port)
        return code_no_port;
    port->counters.clear();
    return code_ok;
}

int clear_all_counters(ChipState& chip, ChipWords&) {
    chip.counters.clear();
    for (ChipPort& port : chip.ports)
        port.counters.clear();
    return code_ok;
}

// The counter of a packet's size: at most 64 octets, 127, 255, 511, 1023, and above.
std::uint32_t size_counter(std::uint32_t bytes) {
    constexpr std::array<std::uint32_t, 5> limits = {64, 127, 255, 511, 1023};
    auto limit = std::lower_bound(limits.begin(), limits.end(), bytes);
    return first_packet_size + static_cast<std::uint32_t>(limit - limits.begin());
}

// Whole packets of `rate` a second in `seconds`; `rest` carries what is not whole.
std::uint64_t whole_packets(double rate, double seconds, double& rest) {
    rest += rate * seconds;
    double whole = std::floor(rest);
    rest -= whole;
    return static_cast<std::uint64_t>(whole);
}

void grow(ChipPort& port, double seconds) {
    const std::uint32_t bytes = port.traffic.packet_bytes;
    const std::uint64_t in = whole_packets(port.traffic.rx_packets, seconds, port.rx_rest);
    const std::uint64_t out = whole_packets(port.traffic.tx_packets, seconds, port.tx_rest);
    const std::uint64_t in_multicast = in * 6 / 100, in_broadcast = in * 4 / 100;
    const std::uint64_t out_multicast = out * 6 / 100, out_broadcast = out * 4 / 100;
    const std::uint64_t in_unicast = in - in_multicast - in_broadcast;
    const std::uint64_t out_unicast = out - out_multicast - out_broadcast;
    const std::pair<std::uint32_t, std::uint64_t> growth[] = {
        {rx_octets, in * bytes},
        {rx_unicast, in_unicast},
        {rx_not_unicast, in_multicast + in_broadcast},
        {rx_multicast, in_multicast},
        {rx_broadcast, in_broadcast},
        {tx_octets, out * bytes},
        {tx_unicast, out_unicast},
        {tx_not_unicast, out_multicast + out_broadcast},
        {tx_multicast, out_multicast},
        {tx_broadcast, out_broadcast},
        {queued_unicast, out_unicast},
        {queued_multicast, out_multicast},
        {queued_broadcast, out_broadcast},
        {all_octets, in * bytes},
        {all_packets, in},
        {all_broadcast, in_broadcast},
        {all_multicast, in_multicast},
        {size_counter(bytes), in + out},
    };
    for (auto [counter, packets] : growth)
        port.counters[counter] += packets;
}

// ---- Layer-4 port ranges ----

using L4Ranges = std::array<ChipL4Range, chip_l4_ranges>;

// Entries with the same range share it: the same range, a free place, or the place of a range that
// is not used: not of the one set last, for which an entry may be on its way.
L4Ranges::iterator place_for(ChipState& chip, const AclPortRange& wanted) {
    L4Ranges& ranges = chip.l4_ranges;
    auto same = std::ranges::find_if(ranges, [&](const ChipL4Range& r) {
        return r.kind == wanted.kind && r.first == wanted.first && r.last == wanted.last;
    });
    if (same != ranges.end())
        return same;
    auto free = std::ranges::find(ranges, 0u, &ChipL4Range::kind);
    if (free != ranges.end())
        return free;
    auto last = ranges.begin() + static_cast<std::ptrdiff_t>(chip.last_l4_range);
    for (auto range = ranges.begin(); range != ranges.end(); ++range)
        if (range->users == 0 && range != last)
            return range;
    return ranges.end();
}

int set_l4_range(ChipState& chip, AclRecord& record) {
    const AclPortRange& wanted = record.range;
    bool known_kind = wanted.kind == 1 || wanted.kind == 2;
    if (!known_kind || wanted.first > wanted.last || wanted.last > 65535)
        return code_bad_value;
    auto place = place_for(chip, wanted);
    if (place == chip.l4_ranges.end())
        return code_table_full;
    *place = {wanted.kind, wanted.first, wanted.last, place->users};
    chip.last_l4_range = static_cast<std::size_t>(place - chip.l4_ranges.begin());
    record.range_index = static_cast<std::uint8_t>(chip.last_l4_range);
    return code_ok;
}

ChipL4Range* l4_range_at(ChipState& chip, std::size_t index) {
    bool used = index < chip.l4_ranges.size() && chip.l4_ranges[index].kind != 0;
    return used ? &chip.l4_ranges[index] : nullptr;
}

int get_l4_range(ChipState& chip, AclRecord& record) {
    ChipL4Range* range = l4_range_at(chip, record.range_index);
    if (!range)
        return code_not_found;
    record.range = {range->kind, range->first, range->last, range->users};
    return code_ok;
}

int del_l4_range(ChipState& chip, AclRecord& record) {
    ChipL4Range* range = l4_range_at(chip, record.range_index);
    if (!range)
        return code_not_found;
    if (range->users > 0)
        return code_busy;
    *range = {};
    return code_ok;
}

// ---- Entries of access lists: which ranges they refer to ----

void forget_entry(ChipState& chip, const ChipAclEntry& key) {
    auto entry = chip.acl_ranges.find(key);
    if (entry == chip.acl_ranges.end())
        return;
    for (std::size_t index : entry->second)
        --chip.l4_ranges[index].users;
    chip.acl_ranges.erase(entry);
}

void forget_list(ChipState& chip, const std::string& list) {
    for (auto entry = chip.acl_ranges.begin(); entry != chip.acl_ranges.end();) {
        ChipAclEntry key = (entry++)->first;
        if (key.first == list)
            forget_entry(chip, key);
    }
}

void note_entry(ChipState& chip, const ChipAclEntry& key, const AclEntry& entry) {
    forget_entry(chip, key);
    std::vector<std::size_t> used;
    if (entry.valid & ACL_VALID_SOURCE_RANGE)
        used.push_back(entry.source_range);
    if (entry.valid & ACL_VALID_DESTINATION_RANGE)
        used.push_back(entry.destination_range);
    std::erase_if(used, [&](std::size_t index) { return !l4_range_at(chip, index); });
    for (std::size_t index : used)
        ++chip.l4_ranges[index].users;
    if (!used.empty())
        chip.acl_ranges[key] = used;
}

void follow_acl(ChipState& chip, std::uint32_t command, const void* place) {
    AclRecord record;
    std::memcpy(&record, place, sizeof record);
    std::string list(record.name, strnlen(record.name, sizeof record.name));
    if (command == acl_list_del)
        forget_list(chip, list);
    else if (command == acl_entry_del)
        forget_entry(chip, {list, record.sequence});
    else if (command == acl_entry_create || command == acl_entry_modify)
        note_entry(chip, {list, record.entry.sequence}, record.entry);
}

// ---- Mirrors and trunks ----

int set_mirror(ChipState& chip, MirrorRecord& record) {
    if (record.words.word[0] >= chip.mirrors.size())
        return code_bad_value;
    if (!port_at(chip, record.group.target))
        return code_no_port;
    ChipMirror mirror{record.group.target, record.group.ingress, {}, {}};
    std::ranges::copy(record.group.rx.words, mirror.rx.begin());
    std::ranges::copy(record.group.tx.words, mirror.tx.begin());
    chip.mirrors[record.words.word[0]] = mirror;
    return code_ok;
}

int del_mirror(ChipState& chip, ChipWords& words) {
    if (words.word[0] >= chip.mirrors.size())
        return code_bad_value;
    chip.mirrors[words.word[0]].reset();
    return code_ok;
}

int set_trunk(ChipState& chip, ChipTrunkMode mode, PortsRecord& record) {
    if (record.words.word[0] >= chip.trunks.size())
        return code_bad_value;
    chip.trunks[record.words.word[0]] = {mode, record.ports};
    return code_ok;
}

int set_static_trunk(ChipState& chip, PortsRecord& record) {
    return set_trunk(chip, ChipTrunkMode::fixed, record);
}

int set_lacp_trunk(ChipState& chip, PortsRecord& record) {
    return set_trunk(chip, ChipTrunkMode::lacp, record);
}

int del_trunk(ChipState& chip, ChipWords& words) {
    if (words.word[0] >= chip.trunks.size())
        return code_bad_value;
    chip.trunks[words.word[0]] = {};
    return code_ok;
}

int get_trunk_mode(ChipState& chip, ChipWords& words) {
    if (words.word[0] >= chip.trunks.size())
        return code_bad_value;
    words.word[1] = static_cast<std::uint32_t>(chip.trunks[words.word[0]].mode);
    return code_ok;
}

int get_trunk_active(ChipState& chip, PortsRecord& record) {
    if (record.words.word[0] >= chip.trunks.size())
        return code_bad_value;
    PortsRecord links{};
    get_port_links(chip, links);
    const ChipPortSet& members = chip.trunks[record.words.word[0]].members;
    for (std::size_t word = 0; word < members.size(); ++word)
        record.ports[word] = members[word] & links.ports[word];
    return code_ok;
}

int get_trunk_role(ChipState& chip, ChipWords& words) {
    const std::uint32_t port = words.word[0];
    if (!port_at(chip, port))
        return code_no_port;
    words.word[1] = role_none;
    for (std::size_t group = 0; group < chip.trunks.size(); ++group) {
        const auto& [mode, members] = chip.trunks[group];
        const bool lacp = mode == ChipTrunkMode::lacp;
        if (mode == ChipTrunkMode::none)
            continue;
        if (port + chip.trunks.size() == chip.ports.size() + group)
            words.word[1] = lacp ? role_lacp_group : role_static_group;
        else if (holds(members, port))
            words.word[1] = lacp ? role_lacp_member : role_static_member;
    }
    return code_ok;
}

int get_trunk_of_port(ChipState& chip, ChipWords& words) {
    const std::uint32_t port = words.word[0];
    if (!port_at(chip, port))
        return code_no_port;
    auto group = std::ranges::find_if(
        chip.trunks, [&](const ChipTrunk& trunk) { return holds(trunk.members, port); });
    if (group == chip.trunks.end())
        return code_not_found;
    words.word[1] = static_cast<std::uint32_t>(group - chip.trunks.begin());
    return code_ok;
}

// ---- Cable tests ----

int test_cable(ChipState& chip, ChipWords& words) {
    ChipPort* port = port_at(chip, words.word[0]);
    if (!port)
        return code_no_port;
    if (!port->copper)
        return code_bad_value;
    port->tested = port->cable;
    return code_ok;
}

int get_cable_result(ChipState& chip, CableRecord& record) {
    ChipPort* port = port_at(chip, record.result.port);
    if (!port)
        return code_no_port;
    if (!port->tested)
        return code_not_found;
    for (std::size_t pair = 0; pair < port->tested->size(); ++pair) {
        record.result.pair_state[pair] = (*port->tested)[pair].state;
        record.result.length_m[pair] = (*port->tested)[pair].length_m;
    }
    return code_ok;
}

// ---- The commands that do something ----

using Handler = int (*)(ChipState&, void*);

// Gives a handler its record; a record on a caller's stack need not be aligned for it.
template <auto handler> struct Bound;
template <class Record, int (*handler)(ChipState&, Record&)> struct Bound<handler> {
    static int call(ChipState& chip, void* place) {
        Record record;
        std::memcpy(&record, place, sizeof record);
        const int code = handler(chip, record);
        if (code == code_ok)
            std::memcpy(place, &record, sizeof record);
        return code;
    }
};

const std::map<std::uint32_t, Handler> handlers = {
    {l4_range_del, Bound<del_l4_range>::call},
    {l4_range_get, Bound<get_l4_range>::call},
    {l4_range_set, Bound<set_l4_range>::call},
    {cable_test, Bound<test_cable>::call},
    {cable_result, Bound<get_cable_result>::call},
    {counters_clear, Bound<clear_counters>::call},
    {counters_clear_all, Bound<clear_all_counters>::call},
    {mirror_set, Bound<set_mirror>::call},
    {mirror_del, Bound<del_mirror>::call},
    {port_enable_set, Bound<set_port_enable>::call},
    {port_enable_get, Bound<get_port_enable>::call},
    {port_link_get, Bound<get_port_link>::call},
    {port_links_get, Bound<get_port_links>::call},
    {port_speed_get, Bound<get_port_speed>::call},
    {max_frame_set, Bound<set_max_frame>::call},
    {port_max_frame_set, Bound<set_port_max_frame>::call},
    {max_frame_get, Bound<get_max_frame>::call},
    {port_max_frame_get, Bound<get_port_max_frame>::call},
    {trunk_static_set, Bound<set_static_trunk>::call},
    {trunk_static_del, Bound<del_trunk>::call},
    {trunk_lacp_set, Bound<set_lacp_trunk>::call},
    {trunk_lacp_del, Bound<del_trunk>::call},
    {trunk_mode_get, Bound<get_trunk_mode>::call},
    {trunk_active_get, Bound<get_trunk_active>::call},
    {trunk_role_get, Bound<get_trunk_role>::call},
    {trunk_of_port_get, Bound<get_trunk_of_port>::call},
};

std::vector<std::byte> bytes_of(const void* record, std::size_t begin, std::size_t end) {
    auto bytes = static_cast<const std::byte*>(record);
    return {bytes + begin, bytes + end};
}

} // namespace

Chip::Chip(int logical_ports) : ports_(logical_ports) {
    constexpr int fibre_ports = 2;
    state_.ports.resize(static_cast<std::size_t>(logical_ports));
    for (int port = 0; port < logical_ports; ++port)
        state_.ports[static_cast<std::size_t>(port)].copper =
            port < logical_ports - chip_trunk_groups - fibre_ports;
}

int Chip::request(std::uint32_t command, void* record) {
    std::lock_guard guard(mutex_);
    if (auto handler = handlers.find(command); handler != handlers.end())
        return handler->second(state_, record);
    if (command >= acl_list_del && command <= acl_entry_del)
        follow_acl(state_, command, record);
    if (command < first_counter || command >= debug_counter)
        return stored_request(command, record);
    MibRecord counter;
    std::memcpy(&counter, record, sizeof counter);
    const int code = get_counter(state_, command, counter);
    if (code == code_ok)
        std::memcpy(record, &counter, sizeof counter);
    return code;
}

// A write goes to every read that gives it back, under that read's arguments.
int Chip::stored_request(std::uint32_t command, void* record) {
    const StoredCommand* stored = stored_command(command);
    if (!stored)
        return code_failed;
    requested_[command] = bytes_of(record, 0, stored->size);
    for (const StoredCommand& read : stored_commands())
        if (read.written_by == command && read.size == stored->size)
            answers_[{read.number, bytes_of(record, read.key_begin, read.key_end)}] =
                requested_[command];
    auto answer = answers_.find({command, bytes_of(record, stored->key_begin, stored->key_end)});
    if (answer != answers_.end())
        std::memcpy(record, answer->second.data(), stored->size);
    else if (stored->lookup)
        return code_not_found;
    return code_ok;
}

void Chip::advance(double seconds) {
    std::lock_guard guard(mutex_);
    for (ChipPort& port : state_.ports)
        if (port.link())
            grow(port, seconds);
}

std::vector<std::byte> Chip::last_record(std::uint32_t command) const {
    std::lock_guard guard(mutex_);
    auto record = requested_.find(command);
    return record == requested_.end() ? Bytes{} : record->second;
}

void Chip::preset(std::uint32_t command, const void* record) {
    std::lock_guard guard(mutex_);
    if (const StoredCommand* read = stored_command(command))
        answers_[{command, bytes_of(record, read->key_begin, read->key_end)}] =
            bytes_of(record, 0, read->size);
}

} // namespace sim
