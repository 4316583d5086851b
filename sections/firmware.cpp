// "firmware": what is reported, and the order of the cloud's orders; an upgrade is in
// firmware_upgrade.cpp.
#include "sections/firmware.h"

#include <errno.h>
#include <pthread.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "base/debug.h"
#include "base/errors.h"
#include "base/state.h"
#include "platform/firmware.h"
#include "platform/system.h"
#include "sections/firmware_upgrade.h"
#include "sections/section.h"

namespace {

enum {
    UPGRADED_PAUSE = 2, // seconds
    SELECTED_PAUSE = 1,
    FLAG_ERRORS = 1, // the error list holds entries
};

// --- Report.

// Without an image the text stays empty.
void read_version(int partition, char* version) {
    uint32_t length, built;
    uint8_t digest[FW_DIGEST_SIZE];
    char raw_version[FW_RAW_VERSION_SIZE] = {};
    if (sal_sys_fwImageHdrInfo_get(partition, &length, &built, digest, raw_version) != FW_NO_IMAGE)
        sal_filter_ver_get(raw_version, version);
}

cJSON* list_statuses() {
    int32_t codes[2];
    int count = 0;
    if (error_count)
        codes[count++] = FLAG_ERRORS;
    if (flags[0])
        codes[count++] = static_cast<int32_t>(flags[0]);
    return createJsonIntArray(codes, count);
}

} // namespace

int vxc_firmware_get(cJSON* system) {
    int selected = 0;
    if (int code = sal_sys_dualImageCurrSel_get(&selected))
        return code;
    char versions[FW_PARTITIONS][FW_VERSION_SIZE] = {};
    for (int partition = 0; partition < FW_PARTITIONS; ++partition)
        read_version(partition, versions[partition]);
    cJSON* firmware = attachJsonObject(system, "firmware");
    addJsonObjectIntItem(firmware, "active_partition", one_based(selected));
    addJsonObjectStringItem(firmware, "version_partition_1", versions[0]);
    addJsonObjectStringItem(firmware, "version_partition_2", versions[1]);
    addJsonObject(firmware, "flags", list_statuses());
    if (getJsonArrayForKey(firmware, "flags")) // or memory was short, and they are told next time
        memset(flags, 0, sizeof flags);
    return 0;
}

// --- Orders.

namespace {

enum Outcome { NO_UPGRADE, UPGRADED, UPGRADE_FAILED };

// Says why on the console and on standard error.
bool tell_lock_failure(int code, const char* text, const char* call) {
    if (!code)
        return false;
    debug_print("%s", text);
    errno = code;
    perror(call);
    return true;
}

bool take_lock() {
    int code = pthread_mutex_trylock(&vx_fm_mutex);
    if (code == EBUSY) {
        debug_print("vxc_firmware_set is processing\n");
        return false;
    }
    return !tell_lock_failure(
        code, "vxc_firmware_set pthread_mutex_trylock error\n", "pthread_mutex_trylock");
}

bool release_lock() {
    return !tell_lock_failure(
        pthread_mutex_unlock(&vx_fm_mutex), "vxc_firmware_set pthread_mutex_unlock error\n",
        "pthread_mutex_unlock");
}

Outcome upgrade(const cJSON* firmware) {
    int partition = 0;
    bool given = read_int(firmware, "upgrade_partition", &partition);
    const char* url = getJsonStringValueForKey(firmware, "upgrade_url");
    debug_print("upgrade_partition %d\n", partition);
    debug_print("upgrade_url %s\n", url ? url : "(null)");
    if (!url || !given)
        return NO_UPGRADE;
    if (vxc_upgrade(url, zero_based(partition)))
        return UPGRADE_FAILED;
    sleep(UPGRADED_PAUSE);
    return UPGRADED;
}

void select_partition(const cJSON* firmware) {
    int partition = 0;
    if (read_int(firmware, "active_partition", &partition)) {
        vxc_act_partiton_set(zero_based(partition));
        sleep(SELECTED_PAUSE);
    }
    debug_print("active_partition %d\n", partition);
}

// A failed upgrade keeps the switch up, so that the cloud hears of it in the next report.
void restart(const cJSON* firmware, Outcome outcome) {
    if (outcome == UPGRADE_FAILED)
        return;
    int found;
    bool factory_reset = getJsonBoolValueForKey(firmware, "factory_reset", &found) == JSON_TRUE;
    if (factory_reset)
        sal_sys_restore_defaults(0);
    if (factory_reset || outcome == UPGRADED)
        sal_sys_reboot();
}

} // namespace

int vxc_firmware_set(const cJSON* system) {
    const cJSON* firmware = getJsonObjectForKey(system, "firmware");
    if (!firmware)
        return 0;
    debug_print("vxc_firmware_set\n");
    if (!take_lock())
        return 0;
    Outcome outcome = upgrade(firmware);
    select_partition(firmware);
    if (!release_lock())
        return 0;
    debug_print("vxc_firmware_set is finish\n");
    restart(firmware, outcome);
    return 0;
}
