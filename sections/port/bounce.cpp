// A port is down for one second.
#include "sections/port/bounce.h"

#include <stdint.h>
#include <unistd.h>

#include "platform/port.h"

void bounce_port(int port) {
    sal_port_enable_set(port, 0);
    sleep(1);
    sal_port_enable_set(port, 1);
}

int bounce_enabled_port(int port) {
    uint32_t enabled = 0;
    if (int code = sal_port_enable_get(port, &enabled))
        return code;
    if (enabled)
        bounce_port(port);
    return 0;
}
