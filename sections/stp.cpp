// "stp": the settings of the bridge, three steps in a fixed order.
#include "sections/stp.h"

#include <stdio.h>

#include "base/errors.h"
#include "platform/stp.h"
#include "sections/section.h"

namespace {

// The cloud's force version of an STP-compatible bridge; the other two are the platform's own.
enum { CLOUD_STP = 1, CLOUD_MSTP = 3 };

// A bridge priority has its instance number in the low 12 bits of the field.
enum { PRIORITY_MASK = 0xF000 };

// --- Report.

void add_root(cJSON* stp, const StpInstance& instance) {
    const uint8_t* mac = instance.root_mac;
    char address[sizeof "FF:FF:FF:FF:FF:FF"];
    snprintf(
        address, sizeof address, "%02X:%02X:%02X:%02X:%02X:%02X", mac[0], mac[1], mac[2], mac[3],
        mac[4], mac[5]);
    cJSON* root = attachJsonObject(stp, "root_bridge");
    addJsonObjectStringItem(root, "root_address", address);
    addJsonObjectIntItem(root, "priority", instance.root_priority & PRIORITY_MASK);
    addJsonObjectIntItem(root, "cost", static_cast<int32_t>(instance.root_path_cost));
    addJsonObjectIntItem(root, "port", instance.root_port);
    addJsonObjectIntItem(root, "forward_delay_s", instance.forward_delay);
    addJsonObjectIntItem(root, "maximum_age_s", instance.maximum_age);
    addJsonObjectIntItem(root, "hello_time_s", instance.hello_time);
}

} // namespace

int vxc_stp_get(cJSON* system) {
    StpInfo info = {};
    StpInstance instance = {};
    if (int code = sal_stp_info_get(&info))
        return record_error(code);
    if (int code = sal_stp_mstInfo_get(STP_COMMON_INSTANCE, &instance))
        return record_error(code);
    int version = info.force_version;
    if (version == STP_FORCE_STP)
        version = CLOUD_STP;
    cJSON* stp = attachJsonObject(system, "stp");
    addJsonObjectBoolItem(stp, "enable", info.enable != 0);
    addJsonObjectIntItem(stp, "force_version", version);
    addJsonObjectIntItem(stp, "priority", instance.priority);
    add_root(stp, instance);
    return 0;
}

// --- Settings.

namespace {

int set_force_version(int version) {
    if (version < CLOUD_STP || version > CLOUD_MSTP)
        return 0;
    return sal_stp_forceVersion_set(version == CLOUD_STP ? STP_FORCE_STP : version);
}

int set_priority(int priority) {
    if (priority < 0 || priority > STP_HIGHEST_PRIORITY || priority % STP_PRIORITY_STEP)
        return ERROR_BAD_PRIORITY;
    return sal_stp_priority_set(priority);
}

} // namespace

int vxc_stp_set(const cJSON* system) {
    const cJSON* stp = getJsonObjectForKey(system, "stp");
    if (!stp)
        return 0;
    if (int code = apply_bool(stp, "enable", sal_stp_enable_set))
        return record_error(code);
    if (int code = apply_int(stp, "force_version", set_force_version))
        return record_error(code);
    if (int code = apply_int(stp, "priority", set_priority))
        return record_error(code);
    return 0;
}
