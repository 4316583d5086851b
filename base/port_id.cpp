// The three forms of a port id, and the numbers behind them.
#include "base/port_id.h"

#include <errno.h>
#include <limits.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "base/ports.h"

void format_port_id(int port, char* id) {
    if (is_group(port))
        snprintf(id, PORT_ID_SIZE, "trunk%d", port - first_group_port() + 1);
    else if (port >= first_fibre_port())
        snprintf(id, PORT_ID_SIZE, "F%d", port - first_fibre_port() + 1);
    else
        snprintf(id, PORT_ID_SIZE, "%d", port + 1);
}

namespace {

// Reads the decimal number behind `prefix`, with which `id` must begin: 1 is the port `first`.
bool read_number(const char* id, const char* prefix, int first, int* port) {
    size_t skipped = strlen(prefix);
    if (strncmp(id, prefix, skipped) != 0)
        return false;
    char* end;
    errno = 0;
    int64_t number = strtol(id + skipped, &end, 10);
    if (end == id + skipped || errno == ERANGE || number < INT_MIN || number > INT_MAX)
        return false;
    number += first - 1;
    if (number < INT_MIN || number > INT_MAX)
        return false;
    *port = static_cast<int>(number);
    return true;
}

} // namespace

bool parse_port_id(const char* id, int* port) {
    if (strstr(id, "trunk"))
        return read_number(id, "trunk", first_group_port(), port);
    if (strchr(id, 'F'))
        return read_number(id, "F", first_fibre_port(), port);
    return parse_copper_port_id(id, port);
}

bool parse_copper_port_id(const char* id, int* port) { return read_number(id, "", 0, port); }
