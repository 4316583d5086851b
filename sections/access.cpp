// "device_access": a service a row.
#include "sections/access.h"

#include <stdint.h>
#include <stdlib.h>

#include "base/command.h"
#include "base/errors.h"
#include "platform/access.h"
#include "sections/section.h"

namespace {

// The web interface is one service to the cloud, known by its plain half.
int set_gui(int on) {
    if (int code = sal_sys_httpEnable_set(on))
        return code;
    return sal_sys_httpsEnable_set(on);
}

int reload_inetd() {
    if (int code = sal_sys_inetdConfig_set())
        return code;
    return sal_inetd_restart();
}

int set_telnet(int on) {
    if (int code = sal_sys_telnetdEnable_set(on))
        return code;
    if (int code = reload_inetd())
        return code;
    if (!on)
        run_command("handler -c telnet &");
    return 0;
}

int set_ssh(int on) {
    if (int code = sal_ssh_sshdEnable_set(on))
        return code;
    if (int code = reload_inetd())
        return code;
    return on ? 0 : sal_util_process_kill("/bin/sshd:");
}

struct Service {
    const char* key;
    int (*get)(uint32_t* on);
    int (*set)(int on);
};

const Service services[] = {
    {"gui", sal_sys_httpEnable_get, set_gui},
    {"telnet", sal_sys_telnetdEnable_get, set_telnet},
    {"ssh", sal_ssh_sshdEnable_get, set_ssh},
};

enum { SERVICES = sizeof services / sizeof services[0] };

} // namespace

int vxc_access_get(cJSON* system) {
    uint32_t on[SERVICES] = {};
    for (int i = 0; i < SERVICES; ++i) {
        if (int code = services[i].get(&on[i]))
            return record_error(code);
    }
    cJSON* access = attachJsonObject(system, "device_access");
    for (int i = 0; i < SERVICES; ++i)
        addJsonObjectBoolItem(access, services[i].key, on[i] != 0);
    return 0;
}

int vxc_access_set(const cJSON* system) {
    if (!system)
        return ERROR_NO_SECTION;
    const cJSON* access = getJsonObjectForKey(system, "device_access");
    if (!access)
        return record_error(ERROR_BAD_VALUE);
    for (const Service& service : services) {
        if (int code = apply_bool(access, service.key, service.set))
            return record_error(code);
    }
    return 0;
}
