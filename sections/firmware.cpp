// "firmware"; see firmware.h.
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

cJSON* status_array() {
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
    addJsonObjectIntItem(firmware, "active_partition", selected + 1);
    addJsonObjectStringItem(firmware, "version_partition_1", versions[0]);
    addJsonObjectStringItem(firmware, "version_partition_2", versions[1]);
    addJsonObject(firmware, "flags", status_array());
    memset(flags, 0, sizeof flags);
    return 0;
}

// --- Orders.

enum Outcome { NO_UPGRADE, UPGRADED, UPGRADE_FAILED };

namespace {

// Says why on the console and on standard error.
bool lock_failed(int code, const char* text, const char* call) {
    if (!code)
        return false;
    debug_print("%s", text);
    errno = code;
    perror(call);
    return true;
}

bool lock_taken() {
    int code = pthread_mutex_trylock(&vx_fm_mutex);
    if (code == EBUSY) {
        debug_print("vxc_firmware_set is processing\n");
        return false;
    }
    return !lock_failed(
        code, "vxc_firmware_set pthread_mutex_trylock error\n", "pthread_mutex_trylock");
}

bool lock_released() {
    return !lock_failed(
        pthread_mutex_unlock(&vx_fm_mutex), "vxc_firmware_set pthread_mutex_unlock error\n",
        "pthread_mutex_unlock");
}

// Numbers of partitions are the cloud's word: the lowest int has no predecessor, and wraps.
int partition_index(int number) { return static_cast<int>(static_cast<uint32_t>(number) - 1); }

Outcome upgrade(const cJSON* firmware) {
    int found;
    int partition = getJsonIntValueForKey(firmware, "upgrade_partition", &found);
    const char* url = getJsonStringValueForKey(firmware, "upgrade_url");
    debug_print("upgrade_partition %d\n", partition);
    debug_print("upgrade_url %s\n", url ? url : "(null)");
    if (!url || !found)
        return NO_UPGRADE;
    if (vxc_upgrade(url, partition_index(partition)))
        return UPGRADE_FAILED;
    sleep(UPGRADED_PAUSE);
    return UPGRADED;
}

void select_partition(const cJSON* firmware) {
    int found;
    int partition = getJsonIntValueForKey(firmware, "active_partition", &found);
    if (found) {
        vxc_act_partiton_set(partition_index(partition));
        sleep(SELECTED_PAUSE);
    }
    debug_print("active_partition %d\n", partition);
}

// A failed upgrade keeps the switch up, so that the cloud hears of it in the next report.
void restart(const cJSON* firmware, Outcome outcome) {
    int found;
    if (outcome == UPGRADE_FAILED)
        return;
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
    if (!lock_taken())
        return 0;
    Outcome outcome = upgrade(firmware);
    select_partition(firmware);
    if (!lock_released())
        return 0;
    debug_print("vxc_firmware_set is finish\n");
    restart(firmware, outcome);
    return 0;
}
