// "management_vlan" is what the platform says.
#include "sections/management_vlan.h"

#include <stdint.h>

#include "base/errors.h"
#include "json/json_document.h"
#include "platform/vlan.h"

int vxc_management_vlan_get(cJSON* system) {
    if (!system)
        return ERROR_NO_SECTION;
    uint32_t vid;
    if (int code = sal_vlan_mgmtVid_get(&vid))
        return code;
    addJsonObjectIntItem(system, "management_vlan", static_cast<int32_t>(vid));
    return 0;
}
