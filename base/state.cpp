// What the agent's state is when the process starts.
#include "base/state.h"

int32_t CheckinInterval = 300;
const char* proto = "https";
char CheckinHost[HOST_SIZE];
char fallback_host[HOST_SIZE];
char ConnectionKeeperHost[KEEPER_HOST_SIZE];
char Checkinstr[CHECKIN_PATH_SIZE];
char macstr[MAC_TEXT_SIZE];
char macaddrstr[MAC_TEXT_SIZE];
CloudAttributes gCattr;

uint32_t checkin_connect_establish;
uint32_t checkin_connect_retry;
uint32_t checkin_retry_count;
int32_t checkin_timeout = TRANSFER_TIMEOUT;
int32_t checkin_connect_timeout = TRANSFER_TIMEOUT;
int32_t checkin_type = CHECKIN_ANY_ADDRESS;
uint32_t setting_from_cloud;
uint32_t connection_url_change;
void* thread_curl;
pthread_mutex_t vx_fm_mutex = PTHREAD_MUTEX_INITIALIZER;

void mark_port_reset(int port) {
    if (port >= 0 && port < PORT_RESET_FLAGS)
        gCattr.port_reset_flags[port] = 1;
}
