// Spanning tree: the common tree, the ports, and the instances of multiple spanning tree.
// Commands from 3968 on.
//
// An instance is 0 (the common tree) to 15. Times are in seconds.
#pragma once

#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { STP_NAME_SIZE = 33 };

// A bridge as it names itself. 8 bytes.
typedef struct StpBridgeId {
    uint16_t priority;
    uint8_t mac[MAC_ADDRESS_SIZE];
} StpBridgeId;

// State of the common tree. 44 bytes.
typedef struct StpTreeInfo {
    StpBridgeId bridge;
    StpBridgeId root;
    uint32_t root_port; // logical port
    uint32_t root_path_cost;
    uint32_t topology_changes;
    uint32_t since_change_s;
    uint32_t hello_time_s, maximum_age_s, forward_delay_s;
} StpTreeInfo;

// State of a port. 24 bytes.
typedef struct StpPortInfo {
    uint32_t state; // 0 disabled, 1 blocking, 2 learning, 3 forwarding
    uint32_t role;  // 0 disabled, 1 root, 2 designated, 3 alternate, 4 backup
    uint32_t path_cost;
    uint32_t edge;
    uint32_t point_to_point;
    uint32_t guarded; // shut by the guard
} StpPortInfo;

// State of an instance. 36 bytes.
typedef struct StpMstInfo {
    StpBridgeId bridge;
    StpBridgeId regional_root;
    uint32_t root_port;
    uint32_t internal_path_cost;
    uint32_t remaining_hops;
    uint32_t topology_changes;
    uint32_t since_change_s;
} StpMstInfo;

// State of a port in an instance. 28 bytes.
typedef struct StpMstPortInfo {
    uint32_t state;
    uint32_t role;
    uint32_t path_cost;
    uint32_t priority;
    StpBridgeId designated_bridge;
    uint32_t designated_port;
} StpMstPortInfo;

// Messages of a port in an instance. 24 bytes.
typedef struct StpMstPortMessages {
    uint32_t config_sent, config_received;
    uint32_t change_sent, change_received;
    uint32_t rapid_sent, rapid_received;
} StpMstPortMessages;

// Spanning tree as a whole: 0 off, 1 on; and messages of others while it is off: 0 filtered, 1
// flooded.
int stp_enable_set(uint32_t enable);
int stp_enable_get(uint32_t* enable);
int stp_forwardBpdu_set(uint32_t forward);
int stp_forwardBpdu_get(uint32_t* forward);

// Protocol: 0 spanning tree, 2 rapid, 3 multiple.
int stp_forceVersion_set(uint32_t version);
int stp_forceVersion_get(uint32_t* version);

// Timers and limits: hello 1 to 10 s, hops 1 to 40, forward delay 4 to 30 s, age 6 to 40 s,
// messages a hello time 1 to 10.
int stp_helloTime_set(uint32_t seconds);
int stp_helloTime_get(uint32_t* seconds);
int stp_maxHops_set(uint32_t hops);
int stp_maxHops_get(uint32_t* hops);
int stp_forwardDelay_set(uint32_t seconds);
int stp_forwardDelay_get(uint32_t* seconds);
int stp_maximumAge_set(uint32_t seconds);
int stp_maximumAge_get(uint32_t* seconds);
int stp_txHoldCount_set(uint32_t messages);
int stp_txHoldCount_get(uint32_t* messages);

// Width of path costs: 0 sixteen bits, 1 thirty-two.
int stp_pathcostMethod_set(uint32_t method);
int stp_pathcostMethod_get(uint32_t* method);

// A port: part of the tree (0 no, 1 yes), messages of others while it is not (0 filtered, 1
// flooded), path cost (0 by speed).
int stp_portAdminEnable_set(uint32_t port, uint32_t enable);
int stp_portAdminEnable_get(uint32_t port, uint32_t* enable);
int stp_portForwardBpdu_set(uint32_t port, uint32_t forward);
int stp_portForwardBpdu_get(uint32_t port, uint32_t* forward);
int stp_portPathCost_set(uint32_t port, uint32_t cost);
int stp_portPathCost_get(uint32_t port, uint32_t* cost);

// A port with nothing but a host behind it: 0 no, 1 yes; its filter and guard: 0 off, 1 on.
int stp_portEdgePort_set(uint32_t port, uint32_t edge);
int stp_portEdgePort_get(uint32_t port, uint32_t* edge);
int stp_portBpduFilter_set(uint32_t port, uint32_t enable);
int stp_portBpduFilter_get(uint32_t port, uint32_t* enable);
int stp_portBpduGuard_set(uint32_t port, uint32_t enable);
int stp_portBpduGuard_get(uint32_t port, uint32_t* enable);

// Link of a port to one bridge only: 0 no, 1 yes, 2 by duplex.
int stp_portPointToPointMac_set(uint32_t port, uint32_t mode);
int stp_portPointToPointMac_get(uint32_t port, uint32_t* mode);

// Makes a port try the rapid protocol again: 1; reads 1 until that is done.
int stp_portMcheck_set(uint32_t port, uint32_t check);
int stp_portMcheck_get(uint32_t port, uint32_t* check);

// Region: name, NUL-terminated, what exceeds STP_NAME_SIZE with its terminator is cut, the getter
// fills a buffer of that size; revision 0 to 65535; instance of a VLAN; VLANs of an instance.
int stp_mstConfigName_set(const char* name);
int stp_mstConfigName_get(char* name);
int stp_mstConfigRevision_set(uint32_t revision);
int stp_mstConfigRevision_get(uint32_t* revision);
int stp_mstVlanInstance_set(uint32_t vlan, uint32_t instance);
int stp_mstVlanInstance_get(uint32_t vlan, uint32_t* instance);
int stp_mstVlanmask_set(uint32_t instance, const VlanMask* vlans);

// The switch in an instance: priority, 0 to 61440 in steps of 4096.
int stp_mstPriority_set(uint32_t instance, uint32_t priority);
int stp_mstPriority_get(uint32_t instance, uint32_t* priority);

// A port in an instance: path cost (0 by speed), priority, 0 to 240 in steps of 16.
int stp_mstPortPathCost_set(uint32_t instance, uint32_t port, uint32_t cost);
int stp_mstPortPathCost_get(uint32_t instance, uint32_t port, uint32_t* cost);
int stp_mstPortPriority_set(uint32_t instance, uint32_t port, uint32_t priority);
int stp_mstPortPriority_get(uint32_t instance, uint32_t port, uint32_t* priority);

// State: of the common tree, a port, an instance, a port in an instance, and that port's messages.
int stp_info_get(StpTreeInfo* info);
int stp_portInfo_get(uint32_t port, StpPortInfo* info);
int stp_mstInfo_get(uint32_t instance, StpMstInfo* info);
int stp_mstPortInfo_get(uint32_t instance, uint32_t port, StpMstPortInfo* info);
int stp_mstPortMsg_get(uint32_t instance, uint32_t port, StpMstPortMessages* messages);

#ifdef __cplusplus
}
#endif
