// Three sections, applied without the dispatch around them: no save, no flag.
#include "core/api_test.h"

#include "sections/access.h"
#include "sections/snmp.h"
#include "sections/summary.h"

int api_test(const cJSON* document) {
    vxc_summary_set(document);
    vxc_snmp_set(document);
    return vxc_access_set(document);
}
