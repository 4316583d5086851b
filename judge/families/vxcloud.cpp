// The cloud agent's settings.
#include "platform/vxcloud.h"

#include "judge/changes.h"
#include "judge/family.h"

namespace judge {

namespace {

enum { HOST_SIZE = 256, KEEPER_HOST_SIZE = 128, CREDENTIAL_SIZE = 128 };

Operations reads() {
    return {
        {NAMED(sal_vxcloud_checkin_host_get), {gives_text("host", HOST_SIZE)}},
        {NAMED(sal_vxcloud_fallback_host_get), {gives_text("host", HOST_SIZE)}},
        {NAMED(sal_vxcloud_connkeeper_host_get), {gives_text("host", KEEPER_HOST_SIZE)}},
        {NAMED(sal_vxcloud_checkin_interval_get), {gives_any("seconds")}},
        {NAMED(sal_vxcloud_key_get), {gives_text("text", CREDENTIAL_SIZE)}},
        {NAMED(sal_vxcloud_secret_get), {gives_text("text", CREDENTIAL_SIZE)}},
        {NAMED(sal_vxcloud_seqno_get), {gives_any("number")}},
        {NAMED(sal_vxcloud_debug_flag_get), {gives_flag("flag")}},
    };
}

// What the agent stores: intervals that it takes from the cloud, and numbers that the cloud chose.
Settings settings() {
    const Parameter interval = asked(
        "seconds", "60 to 3600 at least", [] { return spread(60, 3600); }, nullptr);
    const Parameter number = asked(
        "number", "any",
        [] {
            return Numbers{0, 1, 2, 1000, INT32_MAX};
        },
        nullptr);
    return {
        {NAMED(sal_vxcloud_checkin_interval_set),
         {},
         {interval},
         outputs(sal_vxcloud_checkin_interval_get)},
        {NAMED(sal_vxcloud_seqno_set), {}, {number}, outputs(sal_vxcloud_seqno_get)},
    };
}

void changes() {
    const TextSetting texts[] = {
        {NAMED(sal_vxcloud_checkin_host_set), NAMED(sal_vxcloud_checkin_host_get), HOST_SIZE,
         HOST_SIZE - 1},
        {NAMED(sal_vxcloud_fallback_host_set), NAMED(sal_vxcloud_fallback_host_get), HOST_SIZE,
         HOST_SIZE - 1},
        {NAMED(sal_vxcloud_connkeeper_host_set), NAMED(sal_vxcloud_connkeeper_host_get),
         KEEPER_HOST_SIZE, KEEPER_HOST_SIZE - 1},
        {NAMED(sal_vxcloud_key_set), NAMED(sal_vxcloud_key_get), CREDENTIAL_SIZE,
         CREDENTIAL_SIZE - 1, true},
        {NAMED(sal_vxcloud_secret_set), NAMED(sal_vxcloud_secret_get), CREDENTIAL_SIZE,
         CREDENTIAL_SIZE - 1, true},
    };
    for (const TextSetting& text : texts)
        back_as_before(reads(), [&] { judge_text(text); });
}

} // namespace

const Family vxcloud_family = {"vxcloud", reads, nullptr, settings, changes};

} // namespace judge
