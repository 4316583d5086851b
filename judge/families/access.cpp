// The services through which the switch is managed.
#include "platform/access.h"

#include "judge/family.h"

namespace judge {

namespace {

Operations reads() {
    return {
        {NAMED(sal_sys_httpEnable_get), {gives_flag("enable")}},
        {NAMED(sal_sys_telnetdEnable_get), {gives_flag("enable")}},
        {NAMED(sal_ssh_sshdEnable_get), {gives_flag("enable")}},
    };
}

Settings settings() {
    return {
        {NAMED(sal_sys_httpEnable_set), {}, {flag("enable")}, outputs(sal_sys_httpEnable_get)},
        {NAMED(sal_sys_httpsEnable_set), {}, {flag("enable")}, nullptr},
        {NAMED(sal_sys_telnetdEnable_set),
         {},
         {flag("enable")},
         outputs(sal_sys_telnetdEnable_get)},
        {NAMED(sal_ssh_sshdEnable_set), {}, {flag("enable")}, outputs(sal_ssh_sshdEnable_get)},
    };
}

} // namespace

const Family access_family = {"access", reads, nullptr, settings, nullptr};

} // namespace judge
