// Walks over the ports of a set, for link aggregation.
#pragma once

#include "platform/system.h"
#include "platform/types.h"

enum { WORD_BITS = 32, BITMAP_PORTS = WORD_BITS * PORT_BITMAP_WORDS };

inline bool has_port(const PortBitmap& ports, int port) {
    return ports.words[port / WORD_BITS] >> (port % WORD_BITS) & 1;
}

inline bool is_none(const PortBitmap& ports) {
    return (ports.words[0] | ports.words[1] | ports.words[2]) == 0;
}

// A number for which the set has no room is left out.
inline void add_port(PortBitmap* ports, int port) {
    if (port >= 0 && port < BITMAP_PORTS)
        ports->words[port / WORD_BITS] |= uint32_t{1} << (port % WORD_BITS);
}

// Calls `step` with each of the ports that the switch has. Stops at the first code other than 0 and
// returns it.
template <class Step> int for_each_port(const PortBitmap& ports, Step step) {
    int count = sys_logic_port_num_ret();
    for (int port = 0; port < count && port < BITMAP_PORTS; ++port) {
        if (!has_port(ports, port))
            continue;
        if (int code = step(port))
            return code;
    }
    return 0;
}
