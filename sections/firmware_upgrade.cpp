// Firmware upgrade: download, write, read back; a partition that cannot be read back is written
// again.
#include "sections/firmware_upgrade.h"

#include <unistd.h>

#include "base/debug.h"
#include "base/errors.h"
#include "platform/firmware.h"

namespace {

enum {
    ATTEMPTS = 3,
    SETTLE_PAUSE = 10, // seconds, between writing a partition and reading it back
    FLAG_NO_IMAGE = 101,
    FLAG_BAD_IMAGE = 102,
};

} // namespace

uint32_t flags[STATUS_FLAGS];

namespace {

const char* const image_file = "/tmp/tmp_vmlinux.bix";
const char* const backup_file = "/tmp/tmp_backup.bix";

// Other codes are not worth a flag: nothing is wrong with an image.
void flag_image_fault(int code) {
    if (code == FW_NO_IMAGE)
        flags[0] = FLAG_NO_IMAGE;
    else if (code == FW_BAD_IMAGE)
        flags[0] = FLAG_BAD_IMAGE;
}

int download(const char* url) {
    int code = sal_fwImage_download(image_file, url);
    debug_print("sal_fwImage_download ret %d\n", code);
    if (code) {
        sal_sys_fwImageSaveMem_gen(image_file);
        sal_sys_fwImageLock_give();
        flag_image_fault(code);
    }
    return code;
}

int write_partition(int partition) {
    int code = sal_sys_fwImage_write(image_file, partition);
    debug_print("sal_sys_fwImage_write to partition %d ret %d\n", partition, code);
    return code;
}

int read_back(int partition) {
    sleep(SETTLE_PAUSE);
    debug_print("sal_sys_fwImage_backup at partition %d start\n", partition);
    int code = sal_sys_fwImage_backup(partition, backup_file);
    debug_print("sal_sys_fwImage_backup at partition %d ret %d\n", partition, code);
    return code;
}

} // namespace

int vxc_upgrade(const char* url, int partition) {
    for (int attempt = 1;; ++attempt) {
        if (int code = download(url))
            return code;
        if (int code = write_partition(partition))
            return code;
        int fault = read_back(partition);
        flag_image_fault(fault);
        if (int code = sal_sys_fwImageSaveMem_gen(backup_file))
            return code;
        if (!fault || attempt == ATTEMPTS)
            return fault;
        debug_print("Restart upgrade\n");
    }
}

namespace {

int read_header(int partition) {
    uint32_t length, built;
    uint8_t digest[FW_DIGEST_SIZE];
    char raw_version[FW_RAW_VERSION_SIZE];
    return sal_sys_fwImageHdrInfo_get(partition, &length, &built, digest, raw_version);
}

} // namespace

// Without a second image the selection is left alone, whichever partition is asked for.
void vxc_act_partiton_set(int partition) {
    int selected = 0;
    sal_sys_dualImageCurrSel_get(&selected);
    read_header(0);
    int second = read_header(1);
    if (second == FW_NO_IMAGE && (partition == 0 || partition == 1))
        return;
    if (partition == selected)
        return;
    if (int code = sal_sys_dualImage_sel(partition))
        record_error(code);
}
