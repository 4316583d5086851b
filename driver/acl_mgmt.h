// Management access lists: who may manage the switch, and how.
// Commands from 2816 on.
//
// A name is NUL-terminated, at most 32 characters; a longer one is cut.
#pragma once

#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { ACL_MGMT_NAME_SIZE = 33 };

// A rule of a list, found by name and priority. 68 bytes.
typedef struct AclMgmtEntry {
    char name[ACL_MGMT_NAME_SIZE]; // of the list
    uint8_t reserved[3];
    uint32_t priority; // 1 to 65535
    uint32_t action;   // 0 deny, 1 permit
    uint32_t service;  // 0 all, 1 telnet, 2 SSH, 3 HTTP, 4 HTTPS, 5 SNMP
    uint32_t address;  // IPv4, most significant byte first in the number
    uint32_t mask;     // 0: any address
    PortBitmap ports;
} AclMgmtEntry;

// The list in force. 40 bytes.
typedef struct AclMgmtClass {
    char name[ACL_MGMT_NAME_SIZE];
    uint8_t reserved[3];
    uint32_t active;
} AclMgmtClass;

// Rules of a list. 40 bytes.
typedef struct AclMgmtCount {
    char name[ACL_MGMT_NAME_SIZE];
    uint8_t reserved[3];
    uint32_t rules;
} AclMgmtCount;

// Lists: a new one, the end of one, their number, and their names by index from 0 in a buffer of
// ACL_MGMT_NAME_SIZE bytes.
int rsd_acl_mgmt_list_add(const char* name);
int rsd_acl_mgmt_list_del(const char* name);
int rsd_acl_mgmt_list_num_get(uint32_t* lists);
int rsd_acl_mgmt_name_get(uint32_t index, char* name);

// Rules: a new one, the end of one, the one whose name and priority `entry` holds.
int rsd_acl_mgmt_ace_add(const AclMgmtEntry* entry);
int rsd_acl_mgmt_ace_del(const AclMgmtEntry* entry);
int rsd_acl_mgmt_ace_get(AclMgmtEntry* entry);

// Rules of the list that `count` names, and of all lists.
int rsd_acl_mgmt_list_acenum_get(AclMgmtCount* count);
int rsd_acl_mgmt_all_acenum_get(uint32_t* rules);

// The list in force: put in force, taken out, read.
int rsd_acl_mgmt_class_add(const AclMgmtClass* entry);
int rsd_acl_mgmt_class_del(const AclMgmtClass* entry);
int rsd_acl_mgmt_class_get(AclMgmtClass* entry);

#ifdef __cplusplus
}
#endif
