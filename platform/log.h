// Platform library: the switch's system log.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

// The facility and level under which the cloud agent's lines appear.
enum { SYS_LOG_FACILITY_CLOUD = 7, SYS_LOG_LEVEL_CLOUD = 21 };

// Appends one line to the system log. `text` is NUL-terminated, without a newline, and copied.
// Returns 0, or a platform code when the line was not taken.
int sys_log(int facility, int level, const char* text);

#ifdef __cplusplus
}
#endif
