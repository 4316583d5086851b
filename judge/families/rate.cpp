// Bandwidth limits.
#include "platform/rate.h"

#include "judge/family.h"

namespace judge {

namespace {

Operations reads() {
    const Parameter rate = gives_number("kbps", RATE_LOWEST, RATE_UNLIMITED);
    return {
        {NAMED(sal_rate_igrBandwidthCtrlEnable_get), {port, gives_flag("enable")}},
        {NAMED(sal_rate_egrBandwidthCtrlEnable_get), {port, gives_flag("enable")}},
        {NAMED(sal_rate_igrBandwidthCtrlRate_get), {port, rate}},
        {NAMED(sal_rate_egrBandwidthCtrlRate_get), {port, rate}},
    };
}

Settings settings() {
    const Parameter rate = within("kbps", RATE_LOWEST, RATE_UNLIMITED);
    return {
        {NAMED(sal_rate_igrBandwidthCtrlEnable_set),
         {port},
         {flag("enable")},
         outputs(sal_rate_igrBandwidthCtrlEnable_get)},
        {NAMED(sal_rate_egrBandwidthCtrlEnable_set),
         {port},
         {flag("enable")},
         outputs(sal_rate_egrBandwidthCtrlEnable_get)},
        {NAMED(sal_rate_igrBandwidthCtrlRate_set),
         {port},
         {rate},
         outputs(sal_rate_igrBandwidthCtrlRate_get)},
        {NAMED(sal_rate_egrBandwidthCtrlRate_set),
         {port},
         {rate},
         outputs(sal_rate_egrBandwidthCtrlRate_get)},
    };
}

} // namespace

const Family rate_family = {"rate", reads, nullptr, settings, nullptr};

} // namespace judge
