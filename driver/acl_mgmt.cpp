// Management access lists: who may manage the switch, and how.
#include "driver/acl_mgmt.h"

#include "driver/shapes.h"

static_assert(sizeof(AclMgmtEntry) == 68, "the driver's record");
static_assert(sizeof(AclMgmtClass) == 40, "the driver's record");
static_assert(sizeof(AclMgmtCount) == 40, "the driver's record");

// clang-format off
int rsd_acl_mgmt_list_add(const char* name)           { return request_chip_text_set<ACL_MGMT_NAME_SIZE>(2817, name); }
int rsd_acl_mgmt_list_del(const char* name)           { return request_chip_text_set<ACL_MGMT_NAME_SIZE>(2818, name); }
int rsd_acl_mgmt_ace_add(const AclMgmtEntry* entry)   { return request_chip_entry_set(2819, entry); }
int rsd_acl_mgmt_ace_del(const AclMgmtEntry* entry)   { return request_chip_entry_set(2820, entry); }
int rsd_acl_mgmt_class_add(const AclMgmtClass* entry) { return request_chip_entry_set(2821, entry); }
int rsd_acl_mgmt_class_del(const AclMgmtClass* entry) { return request_chip_entry_set(2822, entry); }

int rsd_acl_mgmt_list_num_get(uint32_t* lists)        { return request_chip(2881, lists); }
int rsd_acl_mgmt_name_get(uint32_t index, char* name) { return request_chip_text_get<ACL_MGMT_NAME_SIZE>(2882, name, index); }
int rsd_acl_mgmt_list_acenum_get(AclMgmtCount* count) { return request_chip_entry_find(2883, count); }
int rsd_acl_mgmt_all_acenum_get(uint32_t* rules)      { return request_chip(2884, rules); }
int rsd_acl_mgmt_ace_get(AclMgmtEntry* entry)         { return request_chip_entry_find(2885, entry); }
int rsd_acl_mgmt_class_get(AclMgmtClass* entry)       { return request_chip_entry_get(2886, entry); }
// clang-format on
