// Platform library: the firmware images. The switch keeps two of them in two partitions, numbered 0
// and 1, and starts the one that is selected.
//
// Every call returns 0 or a platform code; a failing one leaves its outputs unchanged. Two codes
// are fixed: FW_NO_IMAGE for a file or partition that does not begin with the header of an image,
// FW_BAD_IMAGE for an image that has one but is damaged.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum {
    FW_PARTITIONS = 2,
    FW_NO_IMAGE = 46,
    FW_BAD_IMAGE = 47,
    FW_DIGEST_SIZE = 32,
    FW_RAW_VERSION_SIZE = 32,
    FW_VERSION_SIZE = 128,
};

// Takes the firmware lock, fetches an image from `url` into the file `path`, and checks it. The
// caller of a failed download gives the lock back and releases the file, which may hold a part of
// the image or not be there at all. A server may be slow, silent or without an end: a download is
// bounded in time, for nothing else is done meanwhile, and by the size of a partition.
int sal_fwImage_download(const char* path, const char* url);

// Writes the image in the file `path` to a partition, 0 or 1, and gives the firmware lock back.
// After a failure the partition may hold no image. Takes minutes on a large flash.
int sal_sys_fwImage_write(const char* path, int partition);

// Reads a partition, 0 or 1, back into the file `path` and checks what it read.
int sal_sys_fwImage_backup(int partition, const char* path);

// Gives back the memory that a temporary image file takes up: the file is deleted. One that is not
// there is no failure.
int sal_sys_fwImageSaveMem_gen(const char* path);

// Gives the firmware lock back.
int sal_sys_fwImageLock_give(void);

// The partition that the switch starts from, 0 or 1. A selection is kept at once and obeyed at the
// next start of the switch; a partition without an image cannot be selected.
int sal_sys_dualImageCurrSel_get(int* partition);
int sal_sys_dualImage_sel(int partition);

// The header of the image in a partition, 0 or 1: its length in bytes without the header, when it
// was built in seconds since 1970, its FW_DIGEST_SIZE bytes of digest, and its version, a text of
// FW_RAW_VERSION_SIZE bytes that is padded with NULs and, when it fills them, not terminated.
int sal_sys_fwImageHdrInfo_get(
    int partition, uint32_t* length, uint32_t* built, uint8_t* digest, char* raw_version);

// The version as it is shown, NUL-terminated in FW_VERSION_SIZE bytes, of a raw version of
// FW_RAW_VERSION_SIZE bytes.
int sal_filter_ver_get(const char* raw_version, char* version);

// Deletes the startup configuration, so that the switch starts with factory defaults. The cloud
// settings stay. `what` is 0: all of it.
int sal_sys_restore_defaults(int what);

#ifdef __cplusplus
}
#endif
