// "jumbo_frames": the limit that holds for every port.
#include "sections/jumbo_frames.h"

#include <stdint.h>

#include "base/errors.h"
#include "platform/switch.h"
#include "sections/section.h"

namespace {

enum { SMALLEST_LIMIT = 1522, LARGEST_LIMIT = 9216 };

} // namespace

int vxc_jumbo_frmGet(cJSON* system) {
    cJSON* frames = attachJsonObject(system, "jumbo_frames");
    uint32_t bytes = 0;
    if (int code = sal_switch_maxFrameSize_get(&bytes))
        return record_error(code);
    addJsonObjectIntItem(frames, "size", static_cast<int32_t>(bytes));
    return 0;
}

int vxc_jumbo_frmSet(const cJSON* system) {
    int bytes = 0;
    if (!read_int(getJsonObjectForKey(system, "jumbo_frames"), "size", &bytes))
        return 0;
    if (bytes < SMALLEST_LIMIT || bytes > LARGEST_LIMIT)
        return record_error(ERROR_OUT_OF_RANGE);
    if (int code = sal_switch_maxFrameSize_set(static_cast<uint32_t>(bytes)))
        return record_error(code);
    return 0;
}
