// "summary_info": read whole, then reported.
#include "sections/summary.h"

#include "base/errors.h"
#include "base/ports.h"
#include "base/validators.h"
#include "json/json_document.h"
#include "platform/system.h"
#include "platform/types.h"
#include "platform/util.h"

namespace {

enum { NAME_SIZE = 256, ADDRESS_TEXT_SIZE = 32 };

// What the platform tells; read whole before anything of it is reported.
struct Summary {
    char name[NAME_SIZE];
    char mac[ADDRESS_TEXT_SIZE];
    char ip[ADDRESS_TEXT_SIZE];
    char gateway[ADDRESS_TEXT_SIZE];
    uint32_t uptime; // hundredths of a second
    int32_t active_ports;
};

} // namespace

int vxc_active_port_count(int32_t* count) {
    *count = 0;
    for (int port = 0, ports = first_group_port(); port < ports; ++port) {
        if (sys_port_linkStatus_ret(port))
            ++*count;
    }
    return 0;
}

namespace {

int read_identity(Summary* summary) {
    uint8_t mac[MAC_ADDRESS_SIZE] = {};
    uint32_t address = 0;
    uint32_t mask = 0;
    if (int code = sal_sys_macAddr_get(mac))
        return code;
    if (int code = sal_sys_systemName_get(summary->name))
        return code;
    if (int code = sys_util_mac2Str(mac, summary->mac))
        return code;
    if (int code = sal_sys_ip_get(&address, &mask))
        return code;
    return sys_util_ip2Str(address, summary->ip);
}

// A switch without a gateway is a switch all the same: it is reported as 0.0.0.0.
int read_gateway(Summary* summary) {
    uint32_t gateway = 0;
    sal_sys_gateway_get(&gateway);
    return sys_util_ip2Str(gateway, summary->gateway);
}

int read_summary(Summary* summary) {
    if (int code = read_identity(summary))
        return code;
    if (int code = read_gateway(summary))
        return code;
    if (int code = sal_sys_systemUptime_get(&summary->uptime))
        return code;
    return vxc_active_port_count(&summary->active_ports);
}

} // namespace

int vxc_summary_get(cJSON* system) {
    Summary summary = {};
    if (int code = read_summary(&summary))
        return record_error(code);
    cJSON* info = attachJsonObject(system, "summary_info");
    addJsonObjectStringItem(info, "device_name", summary.name);
    addJsonObjectStringItem(info, "model", "Q18r5");
    addJsonObjectStringItem(info, "mac", summary.mac);
    addJsonObjectStringItem(info, "firmware_version", fds_sys_version_ret());
    addJsonObjectIntItem(info, "uptime_seconds", static_cast<int32_t>(summary.uptime / 100));
    addJsonObjectIntItem(info, "total_ports", first_group_port());
    addJsonObjectIntItem(info, "active_ports", summary.active_ports);
    addJsonObjectStringItem(info, "ip", summary.ip);
    addJsonObjectStringItem(info, "gateway_ip", summary.gateway);
    return 0;
}

int vxc_summary_set(const cJSON* system) {
    if (!system)
        return ERROR_NO_SECTION;
    const cJSON* info = getJsonObjectForKey(system, "summary_info");
    if (!info)
        return record_error(ERROR_BAD_VALUE);
    const char* name = getJsonStringValueForKey(info, "device_name");
    if (int code = systemName_validate(name))
        return record_error(code);
    if (int code = sal_sys_systemName_set(name))
        return record_error(code);
    return 0;
}
