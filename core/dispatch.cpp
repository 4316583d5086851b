// The sections of a report and of a settings document are tables, in the order of their handling.
#include "core/dispatch.h"

#include <stddef.h>
#include <unistd.h>

#include "base/debug.h"
#include "base/errors.h"
#include "base/state.h"
#include "json/json_document.h"
#include "platform/system.h"
#include "sections/access.h"
#include "sections/acl/lists.h"
#include "sections/cloud.h"
#include "sections/dark_mode.h"
#include "sections/diagnostic.h"
#include "sections/firmware.h"
#include "sections/igmp.h"
#include "sections/jumbo_frames.h"
#include "sections/lldp.h"
#include "sections/management_vlan.h"
#include "sections/mirror.h"
#include "sections/port/configuration.h"
#include "sections/port/report.h"
#include "sections/qos.h"
#include "sections/reboot.h"
#include "sections/snmp.h"
#include "sections/stp.h"
#include "sections/summary.h"
#include "sections/trunk.h"
#include "sections/uplink_port.h"
#include "sections/voice_vlan.h"

namespace {

// For handlers that have no result.
template <class Object, void (*handler)(Object*)> int without_result(Object* object) {
    handler(object);
    return 0;
}

struct ReportBuilder {
    const char* name; // shown on the console beforehand, or null
    int (*build)(cJSON* object);
    const char* failure; // for the system log, or null
};

const ReportBuilder report_builders[] = {
    {"vxc_system_get", vxc_system_get, nullptr},
    {"vxc_acl_get", vxc_acl_get, nullptr},
    {"vxc_qos_get", vxc_qos_get, nullptr},
    {"vxc_voice_vlan_get", vxc_voice_vlan_get, "voice vlan get fail"},
    {"vxc_lldp_get", vxc_lldp_get, nullptr},
    {"vxc_diagnostic_get", vxc_diagnostic_get, "diagnostic get fail"},
};

const ReportBuilder system_builders[] = {
    {nullptr, vxc_jumbo_frmGet, nullptr},
    {"vxc_cloud_get", without_result<cJSON, vxc_cloud_get>, nullptr},
    {"vxc_firmware_get", vxc_firmware_get, "firmware get fail"},
    {"vxc_summary_get", vxc_summary_get, "summary info get fail"},
    {"vxc_management_vlan_get", vxc_management_vlan_get, "management vlan get fail"},
    {"vxc_uplink_port_get", vxc_uplink_port_get, "uplink port get fail"},
    {"vxc_reboot_get", vxc_reboot_get, "reboot get fail"},
    {"vxc_dark_mode_get", vxc_dark_mode_get, "dark_mode get fail"},
    {"vxc_port_get", vxc_port_get, "port get fail"},
    {"vxc_snmp_get", vxc_snmp_get, "snmp get fail"},
    {"vxc_stp_get", vxc_stp_get, "stp get fail"},
    {"vxc_igmp_get", vxc_igmp_get, "igmp get fail"},
    {"vxc_mirror_get", vxc_mirror_get, "mirror get fail"},
    {"vxc_trunk_get", vxc_trunk_get, "trunk get fail"},
    {"vxc_access_get", vxc_access_get, "access get fail"},
};

void run_builder(const ReportBuilder& builder, cJSON* object) {
    if (builder.name)
        debug_print("api_checkin: before %s pid %d\n", builder.name, getpid());
    if (builder.build(object) && builder.failure)
        log_failure(builder.failure);
}

} // namespace

void vxc_get(cJSON* document) {
    for (const ReportBuilder& builder : report_builders)
        run_builder(builder, document);
    debug_print("Done and leave\n");
}

int vxc_system_get(cJSON* document) {
    cJSON* system = attachJsonObject(document, "system");
    for (const ReportBuilder& builder : system_builders)
        run_builder(builder, system);
    debug_print("vxc_system_get finish\n");
    return 0;
}

namespace {

struct SectionSetter {
    const char* key;
    int (*apply)(const cJSON* object);
    const char* failure; // for the system log; without one the section always counts as applied
};

// Each is given its own object.
const SectionSetter top_setters[] = {
    {"acl", vxc_acl_set, "Acl set fail"},
    {"qos", vxc_qos_set, "Qos set fail"},
    {"vlan", vxc_voice_vlan_set, "Voice Vlan set fail"},
    {"lldp", vxc_lldp_set, "LLDP set fail"},
};

// These are given "system", in which they look their own key up.
const SectionSetter system_setters[] = {
    {"jumbo_frames", vxc_jumbo_frmSet, nullptr},
    {"cloud", without_result<const cJSON, vxc_cloud_set>, nullptr},
    {"summary_info", vxc_summary_set, "summary info set fail"},
    {"dark_mode", vxc_dark_mode_set, "dark mode set fail"},
    {"ports", vxc_port_set, "port set fail"},
    {"snmp", vxc_snmp_set, "snmp set fail"},
    {"stp", vxc_stp_set, "stp set fail"},
    {"igmp", vxc_igmp_set, "igmp set fail"},
    {"port_mirror", vxc_mirror_set, "mirror set fail"},
    {"link_aggregation", vxc_trunk_set, "trunk set fail"},
    {"device_access", vxc_access_set, "access set fail"},
};

// The same, for after the save.
const SectionSetter system_orders[] = {
    {"firmware", vxc_firmware_set, "firmware set fail"},
    {"reboot", vxc_reboot_set, "reboot set fail"},
};

// Whether the section counts as applied.
bool apply_section(const SectionSetter& setter, const cJSON* object) {
    if (setter.apply(object) == 0 || !setter.failure)
        return true;
    log_failure(setter.failure);
    return false;
}

// How many sections were applied.
int apply_top_sections(const cJSON* document) {
    int applied = 0;
    for (const SectionSetter& setter : top_setters) {
        const cJSON* section = getJsonObjectForKey(document, setter.key);
        if (!section)
            continue;
        applied += apply_section(setter, section);
        setting_from_cloud = 1;
    }
    return applied;
}

template <size_t Count>
int apply_to_system(const SectionSetter (&setters)[Count], const cJSON* system) {
    int applied = 0;
    for (const SectionSetter& setter : setters) {
        if (getJsonObjectForKey(system, setter.key))
            applied += apply_section(setter, system);
    }
    return applied;
}

} // namespace

int vxc_set(const cJSON* document) {
    int applied = apply_top_sections(document);
    const cJSON* system = getJsonObjectForKey(document, "system");
    if (system) {
        setting_from_cloud = 1;
        applied += apply_to_system(system_setters, system);
    }
    if (applied > 0) {
        debug_print("conf_startupConfig_save\n");
        cmd_conf_startupConfig_save();
    }
    apply_to_system(system_orders, system);
    return 0;
}
