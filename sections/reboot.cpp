// "reboot": the switch goes down while the order is carried out.
#include "sections/reboot.h"

#include "base/debug.h"
#include "base/errors.h"
#include "platform/system.h"
#include "sections/section.h"

int vxc_reboot_get(cJSON* system) {
    if (!system)
        return ERROR_NO_SECTION;
    addJsonObjectBoolItem(system, "reboot", 0);
    return 0;
}

int vxc_reboot_set(const cJSON* system) {
    if (!system)
        return ERROR_NO_SECTION;
    bool ordered = false;
    read_bool(system, "reboot", &ordered);
    if (!ordered)
        return 0;
    debug_print("VX_cloud : reboot\n");
    sal_sys_reboot();
    return 0;
}
