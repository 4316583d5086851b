// A switch of 12 ports whose state lives in memory: ten copper ports, two fibre ports, and eight
// aggregation groups. It is the smallest platform library that the agent can live with, to be read
// beside docs/porting.md; nothing of it is kept when the process ends.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include "platform/igmp.h"
#include "platform/poe.h"
#include "platform/qos.h"
#include "platform/snmp.h"
#include "platform/trunk.h"
#include "platform/types.h"
#include "platform/vlan.h"
#include "platform/voice_vlan.h"

enum {
    COPPER_PORTS = 10,
    PHYSICAL_PORTS = 12, // the last two are fibre
    LOGICAL_PORTS = PHYSICAL_PORTS + TRUNK_GROUPS,
};

// The codes of this library.
enum { OK = 0, BAD_VALUE = 1, NOT_FOUND = 2, EXISTS = 3, FULL = 4, BUSY = 5, BAD_TEXT = 6 };

// What each logical port has.
struct Port {
    uint32_t enable, automatic_speed, speed, automatic_duplex, duplex;
    uint32_t flow_control, isolated, media_10g;
    uint32_t rx_limited, rx_kbps, tx_limited, tx_kbps;
    uint32_t pvid, cos, trusted, voice, voice_cos;
};

// What each port with power has.
struct PoePort {
    uint32_t enable, priority, limit_type, user_limit, classification;
};

struct Vlan {
    uint32_t exists, snooping, fast_leave;
    PortBitmap tagged, untagged;
    char name[VLAN_NAME_SIZE];
};

extern struct Port board_ports[LOGICAL_PORTS];
extern struct PoePort board_poe[POE_PORTS];
extern struct Vlan board_vlans[VLAN_COUNT];

// One lock for the whole board. Calls come from two threads, and from a signal handler on the main
// thread; that one sleeps then, so it does not hold the lock. No function calls another one of the
// library while it holds it.
void lock_board(void);
int unlock_board(int code); // returns `code`

static inline int is_port(int port) { return port >= 0 && port < LOGICAL_PORTS; }
static inline int is_physical(int port) { return port >= 0 && port < PHYSICAL_PORTS; }
static inline int is_within(long long value, long long low, long long high) {
    return value >= low && value <= high;
}

static inline int has_bit(const uint32_t* words, int bit) {
    return words[bit / 32] >> (bit % 32) & 1;
}
static inline void set_bit(uint32_t* words, int bit, int on) {
    words[bit / 32] = (words[bit / 32] & ~(1u << bit % 32)) | (uint32_t)on << bit % 32;
}

// A number of the switch as a whole, and a member of a port's record.
int get_word(const uint32_t* place, uint32_t* value);
int set_word(uint32_t* place, long long value, long long low, long long high);
int get_of_port(int port, size_t member, uint32_t* value);
int set_of_port(int port, size_t member, long long value, long long low, long long high);

// A text of at most `size` - 1 characters.
int get_text(const char* place, char* text);
int set_text(char* place, const char* text, size_t size);
