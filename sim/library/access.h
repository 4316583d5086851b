// The management services: what is set, what inetd has been told, and who is connected.
#pragma once

#include "sim/instruments/fields.h"

namespace sim {

// The services that inetd starts.
struct Inetd {
    bool telnet = false;
    bool ssh = false;
};

struct Access {
    bool http = true;
    bool https = true;
    bool telnet = false;
    bool ssh = false;

    Inetd written; // inetd's configuration file
    Inetd running; // what inetd read at its last start
    int telnet_connections = 0;
    int ssh_connections = 0;

    void hardware(Fields& f);
    void config(Fields& f);
};

} // namespace sim
