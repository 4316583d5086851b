// Platform library: the switch's SNMP agent - communities, the groups and access records behind
// them, views, notification targets - and the RMON events that notify under a community.
//
// Calls return 0 or a platform code; a failing one changes neither the switch nor its output. Texts
// are NUL-terminated within their field; a record whose text is empty is a free slot. Slots count
// from 0; asking for one that the table does not have is an error. Changes to the tables take
// effect with the next restart of the service.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum {
    SNMP_COMMUNITIES = 8, // slots
    SNMP_TARGETS = 8,
    SNMP_RMON_EVENTS = 32,
    SNMP_COMMUNITY_LENGTH = 20, // characters of a community's name
    SNMP_NAME_SIZE = 33,        // bytes of a name's field, with the terminator
    SNMP_HOST_SIZE = 128,
    SNMP_NO_INDEX = -1,
};

// The security models of a community: SNMPv1 and SNMPv2c.
enum { SNMP_MODEL_V1 = 0, SNMP_MODEL_V2C = 1 };

// --- The service.

// Whether it is to run: 0 or 1. What is set takes effect with one of the calls below.
int sal_snmp_enable_get(uint32_t* enable);
int sal_snmp_enable_set(int enable);

// Starts the service, afresh when it runs; stops it; starts it afresh if it is to run.
int cmd_snmp_demo_restart(void);
int sal_snmp_stop(void);
int sal_snmp_restart(void);

// --- Communities.

enum { SNMP_READ_ONLY = 0, SNMP_READ_WRITE = 1 };

typedef struct SnmpCommunity {
    char name[SNMP_NAME_SIZE];
    uint32_t right;    // SNMP_READ_...
    uint32_t internal; // 1 for one that the firmware keeps for its own tools; nobody is shown it
} SnmpCommunity;

int sal_snmp_com2sec_get(int slot, SnmpCommunity* community);

// Takes the first free slot; refused without one and for a name that exists. `internal` is 0.
int sal_snmp_com2sec_add(const SnmpCommunity* community);

// Empties the slot. Refused for a name that no slot has, and while an active RMON event notifies
// under it.
int sal_snmp_com2sec_del(const char* name);

// --- Groups: the group of access records that a community has under a security model.

typedef struct SnmpGroup {
    char community[SNMP_NAME_SIZE];
    uint32_t model; // SNMP_MODEL_...
    char name[SNMP_NAME_SIZE];
    char read_view[SNMP_NAME_SIZE];  // what the group's access record of this model gives it, empty
    char write_view[SNMP_NAME_SIZE]; // for none
} SnmpGroup;

// The index of the record of a community under a model, valid until the table changes. That there
// is none is no failure: the index is SNMP_NO_INDEX then.
int sal_snmp_groupIndex_get(const char* community, int model, int* index);
int sal_snmp_group_get(int index, SnmpGroup* group);

// Refused for a community that has a group under that model already.
int sal_snmp_group_add(const char* community, int model, const char* group);
int sal_snmp_group_del(const char* community, int model);

// --- Access records: what a group may read and write under a security model.

typedef struct SnmpAccess {
    char group[SNMP_NAME_SIZE];
    uint32_t model; // SNMP_MODEL_...
    char read_view[SNMP_NAME_SIZE];
    char write_view[SNMP_NAME_SIZE]; // empty for a group that may not write
} SnmpAccess;

// The index of the record of a group under a model, as for groups: SNMP_NO_INDEX, and 0 returned,
// when there is none.
int sal_snmp_accessIndex_get(const char* group, int model, int* index);
int sal_snmp_access_get(int index, SnmpAccess* access);

// Refused when the record exists, when a view does not, and without a read view.
int sal_snmp_access_add(const SnmpAccess* access);
int sal_snmp_access_del(const char* group, int model);

// Whether there are views that access records of `group` can give; whether the records of both
// models can be added: the name fits, and there is room for them. 0, or the code that tells why
// not. Nothing is changed.
int sal_snmp_accessView_test(const char* group);
int sal_snmp_basic_accessAdd_test(const char* group);

// --- Views: named parts of the object tree.

typedef struct SnmpView {
    char name[SNMP_NAME_SIZE];
    char subtree[128]; // object identifier, such as ".1"
    uint32_t included; // 0 for a part that is left out
} SnmpView;

// Slot 0 is the view of everything.
int sal_snmp_view_get(int slot, SnmpView* view);

// --- Targets of notifications.

enum { SNMP_VERSION_V1 = 0, SNMP_VERSION_V2C = 1, SNMP_VERSION_V3 = 2 };

// Traps are sent once, informs until they are acknowledged.
enum {
    SNMP_TRAP_V1 = 0,
    SNMP_TRAP_V2C = 1,
    SNMP_INFORM_V2C = 2,
    SNMP_TRAP_V3 = 3,
    SNMP_INFORM_V3 = 4,
};

typedef struct SnmpTarget {
    char host[SNMP_HOST_SIZE]; // name or address
    uint32_t version;          // SNMP_VERSION_...
    uint32_t type;             // SNMP_TRAP_... or SNMP_INFORM_... of that version
    char community[SNMP_NAME_SIZE];
    uint32_t udp;     // port, 1 to 65535
    uint16_t timeout; // of an inform, 1 to 300 seconds
    uint16_t retry;   // of an inform, 1 to 255
} SnmpTarget;

int sal_snmp_target_get(int slot, SnmpTarget* target);

// Takes the first free slot; refused without one, and for a host that has a target of that version
// and type already.
int sal_snmp_target_add(const SnmpTarget* target);

// Empties the slot; refused when there is no such target.
int sal_snmp_target_del(const char* host, int version, int type);

// --- RMON events.

typedef struct RmonEvent {
    char community[SNMP_NAME_SIZE]; // under which it notifies; empty for one that only logs
    char description[128];
} RmonEvent;

typedef struct RmonEventRuntime {
    uint32_t active;    // 1 while the slot holds an event
    uint32_t last_sent; // hundredths of a second after the switch started; 0 for never
} RmonEventRuntime;

// Both succeed for a free slot too; its record is empty, its runtime not active.
int sal_rmon_event_get(int slot, RmonEvent* event);
int sal_rmon_eventRuntime_get(int slot, RmonEventRuntime* runtime);

#ifdef __cplusplus
}
#endif
