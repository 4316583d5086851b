// The agent's function is taken over when the target is linked.
#include "tests/fuzz/support/whole_reports.h"

#include <cjson/cJSON.h>

bool whole_reports = true;

extern "C" {
void __real_vxc_get(cJSON* document);
void __wrap_vxc_get(cJSON* document);

void __wrap_vxc_get(cJSON* document) {
    if (whole_reports)
        __real_vxc_get(document);
}
}
