// Dynamic ARP inspection.
// Commands from 512 on.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// What inspection counted, on a port or in a VLAN. 28 bytes.
typedef struct DaiMib {
    uint32_t received; // ARP packets inspected
    uint32_t forwarded;
    uint32_t source_mac;      // dropped: source address differs from the ARP sender's
    uint32_t destination_mac; // dropped: destination address differs from the ARP target's
    uint32_t ip;              // dropped: address that no host may have
    uint32_t binding;         // dropped: no binding of address, port and VLAN
    uint32_t rate;            // dropped: above the rate limit
} DaiMib;

// Inspection as a whole, and in a VLAN: 0 off, 1 on.
int dai_enable_set(uint32_t enable);
int dai_enable_get(uint32_t* enable);
int dai_vlan_enable_set(uint32_t vlan, uint32_t enable);
int dai_vlan_enable_get(uint32_t vlan, uint32_t* enable);

// Port that is not inspected: 0 untrusted, 1 trusted.
int dai_port_trust_set(uint32_t port, uint32_t trusted);
int dai_port_trust_get(uint32_t port, uint32_t* trusted);

// Checks on a port, 0 off, 1 on: source MAC, destination MAC, IP addresses, and whether the check
// of addresses lets 0.0.0.0 pass.
int dai_port_smacChk_set(uint32_t port, uint32_t enable);
int dai_port_smacChk_get(uint32_t port, uint32_t* enable);
int dai_port_dmacChk_set(uint32_t port, uint32_t enable);
int dai_port_dmacChk_get(uint32_t port, uint32_t* enable);
int dai_port_ipChk_set(uint32_t port, uint32_t enable);
int dai_port_ipChk_get(uint32_t port, uint32_t* enable);
int dai_port_ipZeroAllow_set(uint32_t port, uint32_t allow);
int dai_port_ipZeroAllow_get(uint32_t port, uint32_t* allow);

// Counters of a port and of a VLAN.
int dai_portMib_clear(uint32_t port);
int dai_portMib_get(uint32_t port, DaiMib* mib);
int dai_vlanMib_clear(uint32_t vlan);
int dai_vlanMib_get(uint32_t vlan, DaiMib* mib);

// ARP packets a second that a port may send to the processor; 0 is no limit.
int dai_arp_rateLimit_set(uint32_t port, uint32_t packets);

#ifdef __cplusplus
}
#endif
