// The error list is filled by every thread that applies settings, without a lock.
#include "base/errors.h"

#include <string.h>

#include "platform/log.h"

uint32_t error_flags[ERROR_LIST_SIZE];
uint32_t error_count;

namespace {

// The next place of the list, or ERROR_LIST_SIZE. Handlers of two threads never get the same one.
uint32_t take_place() {
    uint32_t place = __atomic_load_n(&error_count, __ATOMIC_RELAXED);
    while (place < ERROR_LIST_SIZE &&
           !__atomic_compare_exchange_n(
               &error_count, &place, place + 1, true, __ATOMIC_RELAXED, __ATOMIC_RELAXED)) {}
    return place;
}

} // namespace

int record_error(int code) {
    uint32_t place = take_place();
    if (place < ERROR_LIST_SIZE)
        error_flags[place] = static_cast<uint32_t>(code);
    return code;
}

void clear_errors() {
    error_count = 0;
    memset(error_flags, 0, sizeof error_flags);
}

int log_failure(const char* text) {
    return sys_log(SYS_LOG_FACILITY_CLOUD, SYS_LOG_LEVEL_CLOUD, text);
}
