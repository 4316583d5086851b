// The error list and the system log; see errors.h.
#include "base/errors.h"

#include <string.h>

#include "platform/log.h"

uint32_t error_flags[ERROR_LIST_SIZE];
uint32_t error_count;

int record_error(int code) {
    if (error_count < ERROR_LIST_SIZE)
        error_flags[error_count++] = static_cast<uint32_t>(code);
    return code;
}

void clear_errors() {
    error_count = 0;
    memset(error_flags, 0, sizeof error_flags);
}

int log_failure(const char* text) {
    return sys_log(SYS_LOG_FACILITY_CLOUD, SYS_LOG_LEVEL_CLOUD, text);
}
