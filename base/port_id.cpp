// Port ids; see port_id.h.
#include "base/port_id.h"

#include <errno.h>
#include <limits.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "platform/system.h"

void format_port_id(int port, char* id) {
    int ports = sys_logic_port_num_ret();
    if (port >= ports - 8)
        snprintf(id, PORT_ID_SIZE, "trunk%d", port - ports + 9);
    else if (port >= ports - 10)
        snprintf(id, PORT_ID_SIZE, "F%d", port - ports + 11);
    else
        snprintf(id, PORT_ID_SIZE, "%d", port + 1);
}

namespace {

// Reads the decimal number behind `prefix`, with which `id` must begin, and adds `offset`.
bool read_number(const char* id, const char* prefix, int offset, int* port) {
    size_t skipped = strlen(prefix);
    if (strncmp(id, prefix, skipped) != 0)
        return false;
    char* end;
    errno = 0;
    int64_t number = strtol(id + skipped, &end, 10);
    if (end == id + skipped || errno == ERANGE || number < INT_MIN || number > INT_MAX)
        return false;
    number += offset;
    if (number < INT_MIN || number > INT_MAX)
        return false;
    *port = static_cast<int>(number);
    return true;
}

} // namespace

// The last ten logical ports are two fibre ports and eight groups; the cloud counts from 1.
bool parse_port_id(const char* id, int* port) {
    if (strstr(id, "trunk"))
        return read_number(id, "trunk", sys_logic_port_num_ret() - 9, port);
    if (strchr(id, 'F'))
        return read_number(id, "F", sys_logic_port_num_ret() - 11, port);
    return parse_copper_port_id(id, port);
}

bool parse_copper_port_id(const char* id, int* port) { return read_number(id, "", -1, port); }
