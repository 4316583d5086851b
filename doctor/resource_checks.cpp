// Memory, room and what was saved.
#include "doctor/resource_checks.h"

#include <stdint.h>
#include <stdio.h>
#include <sys/statvfs.h>

#include "base/credentials.h"

namespace {

// An upgrade holds the image that it fetched, and then the one that it reads back, in /tmp, which
// is memory on a switch. Images are below sixteen megabytes.
enum { UPGRADE_KB = 16 * 1024, KB = 1024 };

// --- Memory.

enum { ENOUGH_MEMORY, LITTLE_MEMORY, UNKNOWN_MEMORY };

const Finding memory_table[] = {
    {"enough", VERDICT_OK, "there is memory for reports and for an upgrade", ""},
    {"little", VERDICT_WARNING, "less than 16 MB of memory are available: an upgrade may fail",
     "restart the switch before an upgrade; look at what grows"},
    {"unknown", VERDICT_WARNING, "the system does not tell how much memory is available", ""},
};

// Systems before 2014 tell only what is free, which is less.
long available_kb() {
    FILE* file = fopen("/proc/meminfo", "r");
    if (!file)
        return -1;
    char line[128];
    long free_kb = -1;
    long found = -1;
    while (found < 0 && fgets(line, sizeof line, file)) {
        sscanf(line, "MemFree: %ld", &free_kb);
        sscanf(line, "MemAvailable: %ld", &found);
    }
    fclose(file);
    return found < 0 ? free_kb : found;
}

} // namespace

const Findings memory_findings(memory_table);

int check_memory(char* detail) {
    long available = available_kb();
    if (available < 0)
        return UNKNOWN_MEMORY;
    describe(detail, "%ld MB available", available / KB);
    return available < UPGRADE_KB ? LITTLE_MEMORY : ENOUGH_MEMORY;
}

// --- Room.

namespace {

enum { ENOUGH_SPACE, LITTLE_SPACE, UNKNOWN_SPACE };

const Finding space_table[] = {
    {"enough", VERDICT_OK, "there is room for an image in /tmp", ""},
    {"little", VERDICT_WARNING, "less than 16 MB are free in /tmp: an upgrade fails",
     "remove what lies in /tmp, or restart the switch"},
    {"unknown", VERDICT_WARNING, "the system does not tell how much room /tmp has", ""},
};

} // namespace

const Findings space_findings(space_table);

int check_space(char* detail) {
    struct statvfs status = {};
    if (statvfs("/tmp", &status) != 0)
        return UNKNOWN_SPACE;
    uint64_t free_kb = static_cast<uint64_t>(status.f_bavail) * status.f_frsize / KB;
    describe(detail, "%lu MB free", static_cast<unsigned long>(free_kb / KB));
    return free_kb < UPGRADE_KB ? LITTLE_SPACE : ENOUGH_SPACE;
}

// --- What was saved.

namespace {

enum { IS_READABLE, IS_UNREADABLE };

const Finding saved_table[] = {
    {"readable", VERDICT_OK,
     "the number of the last configuration can be read; what the switch would start from is its "
     "firmware's own and not looked at",
     ""},
    {"unreadable", VERDICT_WRONG,
     "the number of the last configuration cannot be read: the cloud is told 1 and sends all of it "
     "again, with every check-in",
     "have the switch's maker look at that call"},
};

} // namespace

const Findings saved_findings(saved_table);

int check_saved(char* detail) {
    int32_t number = 0;
    if (int code = api_vxcloud_seqno_get(&number)) {
        describe(detail, "sal_vxcloud_seqno_get = %d", code);
        return IS_UNREADABLE;
    }
    describe(detail, "configuration %d was the last one applied without an error", number);
    return IS_READABLE;
}
