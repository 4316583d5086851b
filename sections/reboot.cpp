// "reboot"; see reboot.h.
#include "sections/reboot.h"

#include "base/debug.h"
#include "base/errors.h"
#include "json/json_document.h"
#include "platform/system.h"

int vxc_reboot_get(cJSON* system) {
    if (!system)
        return ERROR_NO_SECTION;
    addJsonObjectBoolItem(system, "reboot", 0);
    return 0;
}

int vxc_reboot_set(const cJSON* system) {
    if (!system)
        return ERROR_NO_SECTION;
    int found;
    if (!getJsonBoolValueForKey(system, "reboot", &found))
        return 0;
    debug_print("VX_cloud : reboot\n");
    sal_sys_reboot();
    return 0;
}
