// Platform library: the cloud agent's settings in the switch's persistent store. A value is stored
// at once, outside the startup configuration, so it survives a restart without a save.
//
// Every call returns 0 or a platform code; a failing _get leaves its buffer unchanged, a failing
// _set the stored value.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// Host names with an optional port, NUL-terminated. The stored text is at most 255 characters, that
// of the connection keeper 127; a longer one is refused. The getters fill buffers of 256 and 128.
int sal_vxcloud_checkin_host_set(const char* host);
int sal_vxcloud_checkin_host_get(char* host);
int sal_vxcloud_fallback_host_set(const char* host);
int sal_vxcloud_fallback_host_get(char* host);
int sal_vxcloud_connkeeper_host_set(const char* host);
int sal_vxcloud_connkeeper_host_get(char* host);

// Seconds between two check-ins. 60 to 3600 are taken.
int sal_vxcloud_checkin_interval_set(int32_t seconds);
int sal_vxcloud_checkin_interval_get(int32_t* seconds);

// Key and secret of the cloud account, texts of at most 127 characters; buffers of 128. The agent
// writes and expects each with the twelve lower-case hexadecimal digits of the switch's MAC behind
// it
// ("lab-key021b2c3d4e5f"), so that a stored account belongs to one switch. Whoever stores an
// account by other means writes it so, too; one without the digits counts as none.
int sal_vxcloud_key_set(const char* text);
int sal_vxcloud_key_get(char* text);
int sal_vxcloud_secret_set(const char* text);
int sal_vxcloud_secret_get(char* text);

// The sequence number of the last configuration applied without error.
int sal_vxcloud_seqno_set(int32_t number);
int sal_vxcloud_seqno_get(int32_t* number);

// 1 while the agent is to write its debug texts to the console.
int sal_vxcloud_debug_flag_get(uint32_t* flag);

// Ends the agent's process and starts it afresh. Does not return to a caller in that process.
int sal_vxcloud_kill(void);

#ifdef __cplusplus
}
#endif
