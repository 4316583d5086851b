// The layout is counted from the last port, where the groups are.
#include "base/ports.h"

#include "base/numbers.h"
#include "base/port_set.h"
#include "platform/poe.h"
#include "platform/system.h"
#include "platform/trunk.h"

namespace {

enum { FIBRE_PORTS = 2 };

} // namespace

bool is_port(int port) { return port >= 0 && port < sys_logic_port_num_ret(); }

PortBitmap all_ports() {
    PortBitmap ports = {};
    for (int port = 0, count = sys_logic_port_num_ret(); port < count && has_room(port); ++port)
        add_port(&ports, port);
    return ports;
}

int first_fibre_port() { return first_group_port() - FIBRE_PORTS; }

int first_group_port() { return sys_logic_port_num_ret() - TRUNK_GROUPS; }

bool is_group(int port) { return port >= first_group_port(); }

bool has_poe(int port) { return port < POE_PORTS; }

int group_port(int group) { return wrapping_sum(first_group_port(), group); }
