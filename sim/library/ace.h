// Entries of access lists: what they may hold, and their forms in the driver, in a saved
// configuration and in the trace.
#pragma once

#include <cstdint>
#include <string>

#include "platform/acl.h"
#include "sim/chip/chip.h"
#include "sim/instruments/fields.h"

struct AclEntry; // the driver's

namespace sim {

// Whether a list of that type takes the entry; the ranges that it refers to must be at the driver.
bool sound(const Ace& ace, std::uint32_t type);

AclEntry driver_entry(const Ace& ace);

// What is saved of an entry whose type is known. Ranges are saved by their ports and, when they are
// read, set at the chip.
void ace_fields(Fields& f, Ace& ace, Chip& chip);

std::string show_ace(const Ace& ace);

} // namespace sim
