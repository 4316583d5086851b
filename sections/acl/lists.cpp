// Lists and their entries, type by type: lists are made before the entries that go into them.
#include "sections/acl/lists.h"

#include <string.h>

#include "base/errors.h"
#include "base/port_set.h"
#include "sections/acl/bindings.h"
#include "sections/acl/each_list.h"
#include "sections/acl/ipv4_entries.h"
#include "sections/acl/mac_entries.h"
#include "sections/section.h"

// --- Report.

namespace {

int report_names(cJSON* acl, const char* key, uint32_t type) {
    cJSON* names = attachJsonArray(acl, key);
    return for_each_list(type, [names](const char* name) {
        cJSON* item = createJsonObject();
        addJsonObjectStringItem(item, "name", name);
        addJsonArrayItem(names, item);
        return 0;
    });
}

} // namespace

int acl_mac_get(cJSON* acl) { return report_names(acl, "mac_acl", ACL_MAC); }

int acl_ipv4_get(cJSON* acl) { return report_names(acl, "ipv4_acl", ACL_IPV4); }

namespace {

struct ReportPart {
    int (*report)(cJSON* acl);
    const char* failure;
};

const ReportPart report_parts[] = {
    {acl_mac_get, "acl mac get fail"},
    {ace_mac_get, "ace mac get fail"},
    {acl_ipv4_get, "acl ipv4 get fail"},
    {ace_ipv4_get, "ace ipv4 get fail"},
};

} // namespace

int vxc_acl_get(cJSON* parent) {
    cJSON* acl = attachJsonObject(parent, "acl");
    int result = 0;
    for (const ReportPart& part : report_parts)
        result = part.report(acl) ? log_failure(part.failure) : 0;
    return result;
}

// --- Settings.

int _acl_name_check(uint32_t type, const char* name) {
    return for_each_list(
        type, [name](const char* other) { return strcmp(name, other) ? 0 : ERROR_REFUSED; });
}

namespace {

int create_list(uint32_t type, const char* name) {
    if (_acl_name_check(type, name) == ERROR_REFUSED)
        return ERROR_REFUSED;
    if (int code = sal_acl_entry_create(name, type))
        return record_error(code);
    return 0;
}

// Every port gives up its list of this type, whichever it is.
int delete_list(uint32_t type, const char* name, const AclPortBinding* table) {
    PortBitmap bound_ports = {};
    for (int port = 0, ports = count_bound_ports(); port < ports; ++port) {
        bool bound;
        if (int code = check_binding(table[port], type, &bound))
            return record_error(code);
        if (bound)
            add_port(&bound_ports, port);
    }
    if (int code = sal_acl_entry_unbind(type, bound_ports))
        return record_error(code);
    if (int code = sal_acl_entry_del(name, type))
        return record_error(code);
    return 0;
}

} // namespace

int acl_set(int method, uint32_t type, const char* name) {
    AclPortBinding table[ACL_PORTS] = {};
    if (int code = sal_acl_entry_portBinding_get(table))
        return record_error(code);
    if (method == METHOD_DELETE)
        return delete_list(type, name, table);
    return method == METHOD_ADD ? create_list(type, name) : 0;
}

namespace {

int apply_lists(const cJSON* lists, uint32_t type) {
    for (const cJSON* list = getJsonChild(lists); list; list = getJsonNext(list)) {
        int method = 0;
        const char* name = getJsonStringValueForKey(list, "name");
        if (name && read_int(list, "method", &method))
            acl_set(method, type, name);
    }
    return 0;
}

struct SettingsPart {
    const char* key;
    int (*apply)(const cJSON* items);
};

const SettingsPart settings_parts[] = {
    {"mac_acl", [](const cJSON* lists) { return apply_lists(lists, ACL_MAC); }},
    {"mac_ace", ace_mac_set},
    {"ipv4_acl", [](const cJSON* lists) { return apply_lists(lists, ACL_IPV4); }},
    {"ipv4_ace", ace_ipv4_set},
};

} // namespace

int vxc_acl_set(const cJSON* acl) {
    memset(bind_recover_names, 0, sizeof bind_recover_names);
    for (const SettingsPart& part : settings_parts) {
        if (const cJSON* items = getJsonArrayForKey(acl, part.key))
            part.apply(items);
    }
    return 0;
}
