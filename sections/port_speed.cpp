// Speed and duplex codes; see port_speed.h.
#include "sections/port_speed.h"

#include <stddef.h>
#include <stdint.h>

// A mode under a code; two of the platform's speed values can stand for one speed.
struct SpeedRow {
    uint32_t speed;
    uint32_t other_speed;
    uint32_t duplex;
    int code;
};

// The two encodings differ in duplex and in which of 4 and 5 is the 10-gigabit speed.
static const SpeedRow configured_rows[] = {
    {2, 5, 0, SPEED_1000_FULL}, {1, 3, 0, SPEED_100_FULL}, {1, 3, 1, SPEED_100_HALF},
    {0, 0, 0, SPEED_10_FULL},   {0, 0, 1, SPEED_10_HALF},  {4, 4, 0, SPEED_10G_FULL},
};

static const SpeedRow running_rows[] = {
    {2, 4, 1, SPEED_1000_FULL}, {1, 3, 1, SPEED_100_FULL}, {1, 3, 0, SPEED_100_HALF},
    {0, 0, 1, SPEED_10_FULL},   {0, 0, 0, SPEED_10_HALF},  {5, 5, 1, SPEED_10G_FULL},
};

template <size_t count>
static int find_code(const SpeedRow (&rows)[count], uint32_t speed, uint32_t duplex) {
    for (const SpeedRow& row : rows) {
        if ((row.speed == speed || row.other_speed == speed) && row.duplex == duplex)
            return row.code;
    }
    return SPEED_OTHER;
}

int configured_speed_code(const PortSpeed* speed, const PortDuplex* duplex) {
    if (speed->automatic == 1)
        return SPEED_AUTOMATIC;
    return find_code(configured_rows, speed->speed, duplex->duplex);
}

int running_speed_code(const PortLinkMode* mode) {
    return find_code(running_rows, mode->speed, mode->duplex);
}
