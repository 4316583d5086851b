// What is bound where is the platform's to know; what was taken off meanwhile is remembered here.
#include "sections/acl/bindings.h"

#include <string.h>

#include "base/errors.h"
#include "base/port_set.h"
#include "platform/system.h"

AclPortBinding bind_recover_names[ACL_PORTS];
uint32_t acl_recover_bind;

int count_bound_ports() {
    int ports = sys_logic_port_num_ret();
    return ports < ACL_PORTS ? ports : ACL_PORTS;
}

int check_binding(const AclPortBinding& port, uint32_t type, bool* bound) {
    uint32_t found = 0;
    *bound = false;
    if (!port.name[type][0])
        return 0;
    if (int code = sal_acl_entry_typeByName_get(port.name[type], &found))
        return code;
    *bound = found == type;
    return 0;
}

// --- While entries change.

namespace {

bool begins_with(const char* text, const char* start) {
    return strncmp(text, start, strlen(start)) == 0;
}

bool is_remembered(uint32_t type, const char* name) {
    for (int port = 0, ports = count_bound_ports(); port < ports; ++port) {
        const char* remembered = bind_recover_names[port].name[type];
        if (remembered[0] && begins_with(remembered, name))
            return true;
    }
    return false;
}

void remember(int port, uint32_t type, const AclPortBinding& bound) {
    memcpy(bind_recover_names[port].name[type], bound.name[type], sizeof bound.name[type]);
    bind_recover_names[port].type = type;
    acl_recover_bind = 1;
}

// A list whose type cannot be told stays where it is.
PortBitmap remember_ports(const AclPortBinding* table, uint32_t type, const char* name) {
    PortBitmap bound_ports = {};
    for (int port = 0, ports = count_bound_ports(); port < ports; ++port) {
        bool bound;
        if (int code = check_binding(table[port], type, &bound))
            record_error(code);
        if (!bound || !begins_with(table[port].name[type], name))
            continue;
        add_port(&bound_ports, port);
        remember(port, type, table[port]);
    }
    return bound_ports;
}

} // namespace

int _acl_unbind(uint32_t type, const char* name) {
    if (acl_recover_bind && is_remembered(type, name))
        return 0;
    AclPortBinding table[ACL_PORTS] = {};
    if (int code = sal_acl_entry_portBinding_get(table))
        return record_error(code);
    PortBitmap ports = remember_ports(table, type, name);
    if (!acl_recover_bind)
        return 0;
    if (int code = sal_acl_entry_unbind(type, ports))
        return record_error(code);
    return 0;
}

namespace {

int put_back(int port, uint32_t type, const char* name) {
    AclPortBinding* binding = &bind_recover_names[port];
    uint32_t entries = 0;
    if (int code = sal_ace_entry_count_get(name, type, &entries))
        return record_error(code);
    if (entries) {
        binding->type = type;
        if (int code = sal_acl_entry_bind(binding, only_port(port))) {
            record_error(code);
            return 0;
        }
    }
    memset(binding->name[type], 0, sizeof binding->name[type]);
    binding->type = 0;
    return 0;
}

} // namespace

int _acl_rebind(uint32_t type) {
    if (!acl_recover_bind)
        return 0;
    for (int port = 0, ports = count_bound_ports(); port < ports; ++port) {
        const char* name = bind_recover_names[port].name[type];
        if (!name[0])
            continue;
        if (int code = put_back(port, type, name))
            return code;
    }
    acl_recover_bind = 0;
    return 0;
}

// --- By settings of a port.

namespace {

int replace(PortBitmap port, uint32_t type, const char* name, bool bound) {
    AclPortBinding binding = {};
    if (bound) {
        if (int code = sal_acl_entry_unbind(type, port))
            return code;
    }
    strncpy(binding.name[type], name, ACL_NAME_LENGTH);
    binding.type = type;
    return sal_acl_entry_bind(&binding, port);
}

int bind_one(PortBitmap port, uint32_t type, const char* name, const char* bound) {
    uint32_t entries = 0;
    if (!name[0])
        return sal_acl_entry_unbind(type, port);
    if (!strcmp(name, bound))
        return 0;
    if (int code = sal_ace_entry_count_get(name, type, &entries))
        return code;
    return entries ? replace(port, type, name, bound[0] != '\0') : 0;
}

} // namespace

int vxc_acl_port_bind(int port, const char* macName, uint32_t type, const char* otherName) {
    AclPortBinding table[ACL_PORTS] = {};
    if (int code = sal_acl_entry_portBinding_get(table))
        return record_error(code);
    if (port < 0 || port >= count_bound_ports())
        return record_error(ERROR_BAD_VALUE);
    const PortBitmap only = only_port(port);
    if (macName) {
        if (int code = bind_one(only, ACL_MAC, macName, table[port].name[ACL_MAC]))
            return record_error(code);
    }
    if (otherName) {
        if (int code = bind_one(only, type, otherName, table[port].name[type]))
            return record_error(code);
    }
    return 0;
}
