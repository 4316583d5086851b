// Speed and duplex as the cloud codes them, 0 to 7, and as the platform library does, which has one
// encoding for what is configured and another for what runs.
#pragma once

#include "platform/port.h"

enum {
    SPEED_AUTOMATIC = 0,
    SPEED_1000_FULL = 1,
    SPEED_100_FULL = 2,
    SPEED_100_HALF = 3,
    SPEED_10_FULL = 4,
    SPEED_10_HALF = 5,
    SPEED_10G_FULL = 6,
    SPEED_OTHER = 7
};

// The code of a configured mode, "link_speed_mode".
int configured_speed_code(const PortSpeed* speed, const PortDuplex* duplex);

// The code of a running link, "link_speed_neg". Never SPEED_AUTOMATIC.
int running_speed_code(const PortLinkMode* mode);

// Configures `port` for a code from 0 to 6, as its medium and its place among the ports allow; what
// a port cannot do is passed over in silence. Bounces 10-gigabit ports, which takes a second.
// Returns 0 or the code of the platform call that failed; not every failure counts.
int apply_speed_code(int port, int code);
