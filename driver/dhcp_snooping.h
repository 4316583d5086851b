// DHCP snooping and the relay agent option (82).
// Commands from 640 on.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum { DHCP_OPTION_TEXT_SIZE = 64 };

// What snooping counted on a port. 20 bytes.
typedef struct DhcpSnoopingMib {
    uint32_t forwarded;
    uint32_t hardware_address; // dropped: client address differs from the sender's
    uint32_t untrusted_server; // dropped: server message on an untrusted port
    uint32_t untrusted_option; // dropped: option 82 on an untrusted port
    uint32_t invalid;          // dropped: malformed
} DhcpSnoopingMib;

// The circuit id that the switch writes for a port. 68 bytes.
typedef struct DhcpCircuitId {
    uint32_t vlan; // 0: every VLAN without one of its own
    char text[DHCP_OPTION_TEXT_SIZE];
} DhcpCircuitId;

// Snooping as a whole, and in a VLAN: 0 off, 1 on.
int dhcp_snooping_enable_set(uint32_t enable);
int dhcp_snooping_enable_get(uint32_t* enable);
int dhcp_snooping_vlan_enable_set(uint32_t vlan, uint32_t enable);
int dhcp_snooping_vlan_enable_get(uint32_t vlan, uint32_t* enable);

// Port with a DHCP server behind it: 0 untrusted, 1 trusted.
int dhcp_snooping_port_trust_set(uint32_t port, uint32_t trusted);
int dhcp_snooping_port_trust_get(uint32_t port, uint32_t* trusted);

// Check of the client's hardware address on a port: 0 off, 1 on.
int dhcp_snooping_portChaddrChk_set(uint32_t port, uint32_t enable);
int dhcp_snooping_portChaddrChk_get(uint32_t port, uint32_t* enable);

// Counters of a port.
int dhcp_snooping_portMib_clear(uint32_t port);
int dhcp_snooping_portMib_get(uint32_t port, DhcpSnoopingMib* mib);

// DHCP packets a second that a port may send to the processor; 0 is no limit.
int dhcp_snooping_rateLimit_set(uint32_t port, uint32_t packets);

// Option 82 as a whole: 0 off, 1 on.
int dhcp_option82_enable_set(uint32_t enable);
int dhcp_option82_enable_get(uint32_t* enable);

// What happens to an option that is already there: 0 drop the packet, 1 keep it, 2 replace it.
int dhcp_option82_action_set(uint32_t action);
int dhcp_option82_action_get(uint32_t* action);

// Form of the ids: 0 binary, 1 text.
int dhcp_option82_format_set(uint32_t format);
int dhcp_option82_format_get(uint32_t* format);

// Remote id, NUL-terminated; what exceeds DHCP_OPTION_TEXT_SIZE with its terminator is cut. The
// getter fills a buffer of that size.
int dhcp_option82_remoteID_set(const char* text);
int dhcp_option82_remoteID_get(char* text);

// Circuit id of a port.
int dhcp_option82_circuitID_set(uint32_t port, const DhcpCircuitId* id);

#ifdef __cplusplus
}
#endif
