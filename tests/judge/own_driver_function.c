// A driver function in a platform library, which should find the agent's.
#include <stdint.h>

int rsd_port_enable_get(uint32_t port, uint32_t* enable);

int rsd_port_enable_get(uint32_t port, uint32_t* enable) {
    *enable = port == 0;
    return 0;
}
