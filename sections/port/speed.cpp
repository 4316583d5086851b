// Codes are read and written by tables; which setter a code leads to depends on the port.
#include "sections/port/speed.h"

#include <stddef.h>
#include <stdint.h>

#include "base/debug.h"
#include "base/ports.h"
#include "platform/system.h"
#include "sections/port/bounce.h"

// --- Reading.

namespace {

// A mode under a code; two of the platform's speed values can stand for one speed.
struct SpeedRow {
    uint32_t speed;
    uint32_t other_speed;
    uint32_t duplex;
    int code;
};

// The two encodings differ in duplex and in which of 4 and 5 is the 10-gigabit speed.
const SpeedRow configured_rows[] = {
    {2, 5, 0, SPEED_1000_FULL}, {1, 3, 0, SPEED_100_FULL}, {1, 3, 1, SPEED_100_HALF},
    {0, 0, 0, SPEED_10_FULL},   {0, 0, 1, SPEED_10_HALF},  {4, 4, 0, SPEED_10G_FULL},
};

const SpeedRow running_rows[] = {
    {2, 4, 1, SPEED_1000_FULL}, {1, 3, 1, SPEED_100_FULL}, {1, 3, 0, SPEED_100_HALF},
    {0, 0, 1, SPEED_10_FULL},   {0, 0, 0, SPEED_10_HALF},  {5, 5, 1, SPEED_10G_FULL},
};

template <size_t count>
int find_code(const SpeedRow (&rows)[count], uint32_t speed, uint32_t duplex) {
    for (const SpeedRow& row : rows) {
        if ((row.speed == speed || row.other_speed == speed) && row.duplex == duplex)
            return row.code;
    }
    return SPEED_OTHER;
}

} // namespace

int configured_speed_code(const PortSpeed* speed, const PortDuplex* duplex) {
    if (speed->automatic == 1)
        return SPEED_AUTOMATIC;
    return find_code(configured_rows, speed->speed, duplex->duplex);
}

int running_speed_code(const PortLinkMode* mode) {
    return find_code(running_rows, mode->speed, mode->duplex);
}

// --- Writing.

namespace {

// What a code sets. Where the platform does not look at a value, it is 0.
struct SpeedSetting {
    int speed_automatic;
    int speed;
    int duplex_automatic;
    int duplex;
    int media; // of a 10-gigabit port
};

const SpeedSetting settings[] = {
    {1, 5, 1, 0, 0},                    // SPEED_AUTOMATIC
    {0, 2, 0, 0, PORT_10G_MEDIA_1000M}, // SPEED_1000_FULL
    {0, 1, 0, 0, 0},                    // SPEED_100_FULL
    {0, 1, 0, 1, 0},                    // SPEED_100_HALF
    {0, 0, 0, 0, 0},                    // SPEED_10_FULL
    {0, 0, 0, 1, 0},                    // SPEED_10_HALF
    {0, 4, 0, 0, PORT_10G_MEDIA_10G},   // SPEED_10G_FULL
};

int set_speed(int port, int code) {
    return sal_port_speed_set(port, settings[code].speed_automatic, settings[code].speed);
}

int set_duplex(int port, int code) {
    return sal_port_duplex_set(port, settings[code].duplex_automatic, settings[code].duplex);
}

int set_speed_then_duplex(int port, int code) {
    if (int failure = set_speed(port, code))
        return failure;
    return set_duplex(port, code);
}

// Full duplex must be in place before the speed is forced to a gigabit.
int set_duplex_then_speed(int port, int code) {
    if (int failure = set_duplex(port, code))
        return failure;
    return set_speed(port, code);
}

int leave_alone(int, int) { return 0; }

// A 10-gigabit port takes what it can of a mode; what it refuses is for the console only.
void try_speed(int port, int code) {
    if (set_speed(port, code))
        debug_print("sal_port_speed_set(id, speed)!=SYS_ERR_OK failed!!!!!\n");
}

void try_media(int port, int code) {
    if (sal_port_10g_media_set(port, settings[code].media))
        debug_print("sal_port_10g_media_set(id,mdedia_10g_type ) failed!!!!!\n");
}

int set_10g_fibre(int port, int code) {
    if (code == SPEED_100_FULL)
        return 0;
    if (code == SPEED_AUTOMATIC) {
        if (int failure = sal_10g_port_init(port))
            return failure;
    }
    try_speed(port, code);
    if (code != SPEED_AUTOMATIC)
        try_media(port, code);
    sal_port_port_fiberNwayForceLinkEnable_set(port, 0);
    sal_port_port_fiberNwayForceLinkEnable_set(port, 1);
    return bounce_enabled_port(port);
}

int set_fibre(int port, int code) {
    if (sys_port_isLPort10G_ret(port))
        return set_10g_fibre(port, code);
    return code == SPEED_10G_FULL ? 0 : set_speed(port, code);
}

int set_10g_group(int port, int code) {
    try_speed(port, code);
    try_media(port, code);
    return bounce_enabled_port(port);
}

enum Place { FIBRE, GROUP, ANYWHERE };

struct SpeedRule {
    Place place;
    uint32_t codes; // a bit each
    int (*apply)(int port, int code);
};

constexpr uint32_t bit(int code) { return 1u << code; }

// The first rule that fits decides.
const SpeedRule rules[] = {
    {FIBRE, bit(SPEED_AUTOMATIC) | bit(SPEED_1000_FULL) | bit(SPEED_100_FULL) | bit(SPEED_10G_FULL),
     set_fibre},
    {GROUP, bit(SPEED_10G_FULL), set_10g_group},
    {GROUP, bit(SPEED_AUTOMATIC) | bit(SPEED_1000_FULL) | bit(SPEED_100_FULL) | bit(SPEED_10_FULL),
     set_speed_then_duplex},
    {GROUP, bit(SPEED_100_HALF) | bit(SPEED_10_HALF), leave_alone},
    {FIBRE, bit(SPEED_100_HALF) | bit(SPEED_10_FULL) | bit(SPEED_10_HALF), leave_alone},
    {ANYWHERE, bit(SPEED_1000_FULL), set_duplex_then_speed},
    {ANYWHERE, ~0u, set_speed_then_duplex},
};

} // namespace

int apply_speed_code(int port, int code) {
    bool fits[] = {
        sys_port_lPortMedia_ret(port) == PORT_MEDIA_FIBRE,
        is_group(port),
        true,
    };
    for (const SpeedRule& rule : rules) {
        if (fits[rule.place] && (rule.codes & bit(code)))
            return rule.apply(port, code);
    }
    return 0;
}
