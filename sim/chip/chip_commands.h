// The driver commands that the simulated chip only stores: the size of their records, and which
// read gives back what which write took.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace sim {

struct StoredCommand {
    std::uint32_t number;
    std::size_t size;      // of the record, in bytes
    std::size_t key_begin; // the bytes of the record that are a read's arguments
    std::size_t key_end;
    bool lookup;              // a read that fails when nothing was stored
    std::uint32_t written_by; // the write whose record a read gives back; 0 when there is none
};

// A clear, which makes the chip forget what it would answer to a read.
struct StoredClear {
    std::uint32_t number;
    std::uint32_t read;
    std::size_t key_begin; // the bytes of both records that must be the same
    std::size_t key_end;
};

std::span<const StoredClear> stored_clears();

const StoredCommand* stored_command(std::uint32_t number); // nullptr when there is none
std::span<const StoredCommand> stored_commands();          // in the order of their numbers

} // namespace sim
