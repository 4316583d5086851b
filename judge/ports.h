// Sets of ports and VLANs, as the contract has them.
#pragma once

#include "platform/types.h"

namespace judge {

inline bool has(const PortBitmap& ports, int p) { return ports.words[p / 32] >> (p % 32) & 1; }
inline bool has(const VlanMask& vlans, int vid) { return vlans.words[vid / 32] >> (vid % 32) & 1; }
inline void add(PortBitmap& ports, int p) { ports.words[p / 32] |= 1u << (p % 32); }
inline void add(VlanMask& vlans, int vid) { vlans.words[vid / 32] |= 1u << (vid % 32); }

inline int size(const PortBitmap& ports) {
    int count = 0;
    for (int p = 0; p < PORT_BITMAP_WORDS * 32; ++p)
        count += has(ports, p);
    return count;
}

// Whether all ports of the set are below `end`.
inline bool all_below(const PortBitmap& ports, int end) {
    for (int p = end; p < PORT_BITMAP_WORDS * 32; ++p)
        if (has(ports, p))
            return false;
    return true;
}

inline bool is_part(const PortBitmap& part, const PortBitmap& of) {
    for (int word = 0; word < PORT_BITMAP_WORDS; ++word)
        if (part.words[word] & ~of.words[word])
            return false;
    return true;
}

inline PortBitmap ports_of(int p) {
    PortBitmap one = {};
    add(one, p);
    return one;
}

} // namespace judge
