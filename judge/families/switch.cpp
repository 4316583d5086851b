// Settings of the switch chip as a whole.
#include "platform/switch.h"

#include "judge/family.h"

namespace judge {

namespace {

// What lies beside the sizes that every switch takes is the switch's own affair.
const Parameter frame_size = asked(
    "bytes", "1522 to 9216 at least", [] { return spread(1522, 9216); }, nullptr);

Operations reads() { return {{NAMED(sal_switch_maxFrameSize_get), {gives_any("bytes")}}}; }

Settings settings() {
    return {
        {NAMED(sal_switch_maxFrameSize_set),
         {},
         {frame_size},
         outputs(sal_switch_maxFrameSize_get)}};
}

} // namespace

const Family switch_family = {"switch", reads, nullptr, settings, nullptr};

} // namespace judge
