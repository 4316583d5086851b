// Port-based network access control (802.1X).
// Commands from 768 on.
#pragma once

#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { DOT1X_SECRET_SIZE = 64 };

// An authentication server. 84 bytes.
typedef struct Dot1xRadiusServer {
    uint32_t index;   // 0 primary, 1 backup
    uint32_t address; // IPv4, most significant byte first in the number; 0 is none
    uint32_t port;    // UDP port
    uint32_t retries;
    uint32_t timeout_s;
    char secret[DOT1X_SECRET_SIZE]; // NUL-terminated
} Dot1xRadiusServer;

// What the RADIUS client counted for one server. 48 bytes.
typedef struct Dot1xRadiusStatistics {
    uint32_t round_trip_hundredths;
    uint32_t requests;
    uint32_t retransmissions;
    uint32_t accepts;
    uint32_t rejects;
    uint32_t challenges;
    uint32_t malformed;
    uint32_t bad_authenticators;
    uint32_t pending;
    uint32_t timeouts;
    uint32_t unknown_types;
    uint32_t dropped;
} Dot1xRadiusStatistics;

// A host that a port let in. 16 bytes.
typedef struct Dot1xHost {
    uint8_t mac[MAC_ADDRESS_SIZE];
    uint8_t reserved[2];
    uint32_t vlan;
    uint32_t session_s; // how long it has been in
} Dot1xHost;

// Access control as a whole: 0 off, 1 on.
int dot1x_enable_set(uint32_t enable);

// Gateway through which the servers are reached, IPv4, most significant byte first in the number.
int dot1x_gateway_set(uint32_t address);
int dot1x_gateway_get(uint32_t* address);

// Periodic reauthentication on a port: 0 off, 1 on; its period, and what is left of it, in seconds.
int dot1x_portReauthEbl_set(uint32_t port, uint32_t enable);
int dot1x_portReauthEbl_get(uint32_t port, uint32_t* enable);
int dot1x_portReauthPeriod_set(uint32_t port, uint32_t seconds);
int dot1x_portReauthLifeTime_get(uint32_t port, uint32_t* seconds);

// An authentication server, at the index that it carries.
int dot1x_radiusSrv_set(const Dot1xRadiusServer* server);
int dot1x_mibRadiusClientStatInfo_get(uint32_t server, Dot1xRadiusStatistics* statistics);

// Control of a port: 0 always closed, 1 always open, 2 by authentication.
int dot1x_portMode_set(uint32_t port, uint32_t mode);

// Guest VLAN, 1 to 4094, 0 for none; on a port: 0 off, 1 on; and 1 while the port is in it.
int dot1x_guestVlan_set(uint32_t vlan);
int dot1x_guestVlan_port_set(uint32_t port, uint32_t enable);
int dot1x_guestVlan_state_port_get(uint32_t port, uint32_t* active);

// Silence after a failed authentication, in seconds.
int dot1x_timeoutQuiet_set(uint32_t seconds);

// Wait for a supplicant's answer, in seconds, and how many times it is asked.
int dot1x_portTimeoutSupplicant_set(uint32_t port, uint32_t seconds);
int dot1x_portMaxReq_set(uint32_t port, uint32_t requests);

// State of the authenticator's machine on a port (1 initialize to 9 force-unauthorized), and what
// came of it: 1 authorized, 2 not.
int dot1x_authPortCurState_get(uint32_t port, uint32_t* state);
int dot1x_authPortStatus_get(uint32_t port, uint32_t* status);

// Host `index` (from 0) that a port let in.
int dot1x_authedHost_get(uint32_t port, uint32_t index, Dot1xHost* host);

#ifdef __cplusplus
}
#endif
