// The chip: each command goes to the part that carries it out; the others are kept, and a read
// gives back what the write beside it took.
#include "sim/chip/chip.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "sim/chip/chip_commands.h"
#include "sim/chip/handlers.h"
#include "sim/instruments/codes.h"

namespace sim {
namespace {

using Handle = int (*)(ChipState&, void*);

constexpr std::size_t command_numbers = 38 * 128; // groups of 128

// Null for a command that is only stored.
Handle handler_of(std::uint32_t command) {
    static const auto by_number = [] {
        std::array<Handle, command_numbers> all{};
        for (auto part :
             {port_handlers, counter_handlers, l4_range_handlers, access_list_handlers,
              mirror_handlers, trunk_handlers, address_handlers, multicast_handlers, vlan_handlers,
              registration_handlers, management_list_handlers, binding_handlers})
            for (const ChipHandler& handler : part())
                all[handler.number] = handler.handle;
        return all;
    }();
    return command < by_number.size() ? by_number[command] : nullptr;
}

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
    const Handle handle = handler_of(command);
    return handle ? handle(state_, record) : stored_request(command, record);
}

// A write goes to every read that gives it back, under that read's arguments.
int Chip::stored_request(std::uint32_t command, void* record) {
    const StoredCommand* stored = stored_command(command);
    if (!stored)
        return code_failed;
    requested_[command] = bytes_of(record, 0, stored->size);
    for (const StoredClear& clear : stored_clears())
        if (clear.number == command)
            forget_answers(clear, record);
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

// Answers to that read whose arguments agree with the request's.
void Chip::forget_answers(const StoredClear& clear, const void* record) {
    const Bytes wanted = bytes_of(record, clear.key_begin, clear.key_end);
    std::erase_if(answers_, [&](const auto& answer) {
        const auto& [read, arguments] = answer.first;
        return read == clear.read &&
               std::equal(wanted.begin(), wanted.end(), arguments.data() + clear.key_begin);
    });
}

void Chip::advance(double seconds) {
    std::lock_guard guard(mutex_);
    state_.running_s += seconds;
    for (ChipPort& port : state_.ports)
        if (port.link())
            grow_counters(port, seconds);
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
