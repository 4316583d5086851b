// Which access lists are bound to which ports, and how a list is taken off its ports while its
// entries change. `type` is ACL_MAC or ACL_IPV4 throughout.
#pragma once

#include <stdint.h>

#include "platform/acl.h"

extern "C" {

// The lists taken off each port during this apply, by type; cleared when an apply begins.
extern AclPortBinding bind_recover_names[ACL_PORTS];
extern uint32_t acl_recover_bind; // 1 while a list is to be put back

// Takes the list off every port and remembers the ports. So are lists whose name begins with
// `name`; and when one of those is remembered already, the call does nothing. Returns 0 or a
// recorded code.
int _acl_unbind(uint32_t type, const char* name);

// Puts the remembered lists of a type back, each port by itself; one that has no entries any more
// stays off. A failed bind is recorded and its name stays remembered. Returns 0, or the recorded
// code of a count that failed, where it ends.
int _acl_rebind(uint32_t type);

// Binds the MAC list `macName`, then the list `otherName` of another type, to a zero-based logical
// port. Null leaves that type as it is, "" takes its list off; a list that is bound already and one
// without entries change nothing. Returns 0 or the recorded code at which it ended; 19 for a port
// that does not exist.
int vxc_acl_port_bind(int port, const char* macName, uint32_t type, const char* otherName);
}

// The number of logical ports in a table of bindings.
int count_bound_ports();

// Whether the port's list of a type, if it has one, is known to be of that type. Returns 0 or the
// platform's code, which is not recorded.
int check_binding(const AclPortBinding& port, uint32_t type, bool* bound);
