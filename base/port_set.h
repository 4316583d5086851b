// Sets of ports and of VLANs as the platform has them: bit b is bit b % 32 of word b / 32.
#pragma once

#include <stdint.h>

#include "platform/types.h"

enum { WORD_BITS = 32, PORT_SET_SIZE = WORD_BITS * PORT_BITMAP_WORDS };

inline bool has_bit(const uint32_t* words, uint32_t bit) {
    return words[bit / WORD_BITS] >> (bit % WORD_BITS) & 1;
}

inline void set_bit(uint32_t* words, uint32_t bit) {
    words[bit / WORD_BITS] |= uint32_t{1} << (bit % WORD_BITS);
}

// A port for which a set has no room is in no set.
inline bool has_room(int port) { return port >= 0 && port < PORT_SET_SIZE; }

inline bool has_port(const PortBitmap& ports, int port) {
    return has_room(port) && has_bit(ports.words, port);
}

inline void add_port(PortBitmap* ports, int port) {
    if (has_room(port))
        set_bit(ports->words, port);
}

inline PortBitmap only_port(int port) {
    PortBitmap ports = {};
    add_port(&ports, port);
    return ports;
}

inline bool is_empty(const PortBitmap& ports) {
    return (ports.words[0] | ports.words[1] | ports.words[2]) == 0;
}

// The ports that are in both sets.
inline PortBitmap intersection(const PortBitmap& a, const PortBitmap& b) {
    PortBitmap both;
    for (int word = 0; word < PORT_BITMAP_WORDS; ++word)
        both.words[word] = a.words[word] & b.words[word];
    return both;
}

// The ports that are in one of the sets, but not in the other.
inline PortBitmap symmetric_difference(const PortBitmap& a, const PortBitmap& b) {
    PortBitmap either;
    for (int word = 0; word < PORT_BITMAP_WORDS; ++word)
        either.words[word] = a.words[word] ^ b.words[word];
    return either;
}

// Calls `step` with each port of the set, in order. Stops at the first code other than 0 and
// returns it.
template <class Step> int for_each_port(const PortBitmap& ports, Step step) {
    for (int word = 0; word < PORT_BITMAP_WORDS; ++word) {
        for (uint32_t bits = ports.words[word]; bits; bits &= bits - 1) {
            if (int code = step(word * WORD_BITS + __builtin_ctz(bits)))
                return code;
        }
    }
    return 0;
}
