// The agent's state: process-wide words and texts that the main thread, the connection keeper and
// the local request handler share without a lock. Stores are word-sized; races are accepted.
#pragma once

#include <pthread.h>
#include <stdint.h>

enum {
    HOST_SIZE = 256,
    KEEPER_HOST_SIZE = 128,
    CHECKIN_PATH_SIZE = 256,
    MAC_TEXT_SIZE = 32,
    CREDENTIAL_SIZE = 128,
    SIGN_BLOCK_SIZE = 64,
    PORT_RESET_FLAGS = 72,
};

enum { TRANSFER_TIMEOUT = 120 }; // seconds, until the cloud sets others

// How the host of a check-in is resolved; the values are libcurl's CURL_IPRESOLVE_*.
enum { CHECKIN_ANY_ADDRESS = 0, CHECKIN_IPV4_ONLY = 1, CHECKIN_IPV6_ONLY = 2 };

// The account at the cloud, and which ports were reset since the last report.
struct CloudAttributes {
    char key[CREDENTIAL_SIZE];
    char secret[CREDENTIAL_SIZE];
    uint8_t sign_block[SIGN_BLOCK_SIZE];         // work space of the nonce generator
    uint32_t port_reset_flags[PORT_RESET_FLAGS]; // by zero-based logical port
};

extern "C" {

extern int32_t CheckinInterval; // seconds between check-ins while the cloud is reachable
extern const char* proto;       // scheme of every check-in
extern char CheckinHost[HOST_SIZE];
extern char fallback_host[HOST_SIZE];
extern char ConnectionKeeperHost[KEEPER_HOST_SIZE];
extern char Checkinstr[CHECKIN_PATH_SIZE]; // request path of every check-in
extern char macstr[MAC_TEXT_SIZE];         // 0a1b2c3d4e5f
extern char macaddrstr[MAC_TEXT_SIZE];     // 0A:1B:2C:3D:4E:5F
extern CloudAttributes gCattr;

extern uint32_t checkin_connect_establish; // 1 once a check-in reached the cloud
extern uint32_t checkin_connect_retry;     // 1 asks the main loop for a check-in at once
extern uint32_t checkin_retry_count;       // failed connection attempts in a row
extern int32_t checkin_timeout;            // seconds, a whole transfer
extern int32_t checkin_connect_timeout;    // seconds, its connection phase
extern int32_t checkin_type;               // CHECKIN_ANY_ADDRESS and so on
extern uint32_t setting_from_cloud;        // 1: the cloud is to get a fresh report at once
extern uint32_t connection_url_change;     // 1: the connection-keeper host was changed
extern void* thread_curl;                  // the keeper's transfer (CURL*), null between two
extern pthread_mutex_t vx_fm_mutex;        // held while a firmware order is carried out
}

// Marks `port` as reset for the next report. A number that has no mark, as a port designator of
// the cloud can yield, is ignored.
void mark_port_reset(int port);
