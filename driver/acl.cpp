// Access control lists: lists, their bindings, their entries, and layer-4 port ranges.
#include "driver/acl.h"

#include "driver/request.h"

static_assert(sizeof(AclEntry) == 72, "the driver's entry");
static_assert(sizeof(AclRecord) == 336, "the driver's record");
static_assert(offsetof(AclRecord, range) == 276, "the driver's record");
static_assert(offsetof(AclRecord, range_index) == 296, "the driver's record");

namespace {

// The record that says which list, or which of its kind or entries, is meant.
AclRecord list_record(const char* name, uint32_t kind = 0, uint32_t index = 0) {
    AclRecord record = {};
    memcpy(record.name, name, strnlen(name, ACL_NAME_SIZE - 1));
    record.kind = kind;
    record.index = index;
    return record;
}

int list_write(uint32_t command, const char* name, uint32_t kind) {
    if (!name)
        return REQUEST_NULL_POINTER;
    AclRecord record = list_record(name, kind);
    return glue_util_ioctl(command, &record);
}

int entry_write(uint32_t command, const char* name, const AclEntry* entry) {
    if (!name || !entry)
        return REQUEST_NULL_POINTER;
    AclRecord record = list_record(name);
    record.sequence = entry->sequence;
    record.entry = *entry;
    return glue_util_ioctl(command, &record);
}

// Requests with `record` and, on success, hands its `member` to `result`.
template <class Member>
int member_read(uint32_t command, AclRecord record, Member AclRecord::*member, Member* result) {
    if (!result)
        return REQUEST_NULL_POINTER;
    if (int code = glue_util_ioctl(command, &record))
        return code;
    *result = record.*member;
    return 0;
}

template <class Member>
int list_read(
    uint32_t command, const char* name, uint32_t kind, uint32_t index, Member AclRecord::*member,
    Member* result) {
    if (!name)
        return REQUEST_NULL_POINTER;
    return member_read(command, list_record(name, kind, index), member, result);
}

} // namespace

// clang-format off
int rsd_acl_entry_create(const char* name, uint32_t kind) { return list_write(257, name, kind); }
int rsd_acl_entry_del(const char* name, uint32_t kind)    { return list_write(258, name, kind); }
// clang-format on

int rsd_acl_entry_bind(const AclBinding* binding, const PortBitmap* ports) {
    if (!binding || !ports)
        return REQUEST_NULL_POINTER;
    AclRecord record = list_record("", binding->kind);
    record.binding = *binding;
    record.ports = *ports;
    return glue_util_ioctl(259, &record);
}

int rsd_acl_entry_unbind(uint32_t kind, const PortBitmap* ports) {
    if (!ports)
        return REQUEST_NULL_POINTER;
    AclRecord record = list_record("", kind);
    record.ports = *ports;
    return glue_util_ioctl(260, &record);
}

// clang-format off
int rsd_acl_ace_entry_create(const char* name, const AclEntry* entry) { return entry_write(261, name, entry); }
int rsd_acl_ace_entry_modify(const char* name, const AclEntry* entry) { return entry_write(262, name, entry); }
// clang-format on

int rsd_acl_ace_entry_del(const char* name, uint32_t sequence) {
    if (!name)
        return REQUEST_NULL_POINTER;
    AclRecord record = list_record(name);
    record.sequence = sequence;
    return glue_util_ioctl(263, &record);
}

int rsd_acl_l4port_range_del(uint8_t index) {
    AclRecord record = {};
    record.range_index = index;
    return glue_util_ioctl(264, &record);
}

int rsd_acl_entry_countByType_get(uint32_t kind, uint32_t* count) {
    return list_read(321, "", kind, 0, &AclRecord::count, count);
}

int rsd_acl_entry_nameByIdx_get(char* name, uint32_t kind, uint32_t index) {
    if (!name)
        return REQUEST_NULL_POINTER;
    AclRecord record = list_record("", kind, index);
    if (int code = glue_util_ioctl(322, &record))
        return code;
    record.name[ACL_NAME_SIZE - 1] = '\0';
    memcpy(name, record.name, ACL_NAME_SIZE);
    return 0;
}

int rsd_acl_entry_typeByName_get(const char* name, uint32_t* kind) {
    return list_read(323, name, 0, 0, &AclRecord::kind, kind);
}

int rsd_acl_entry_portBinding_get(uint32_t port, AclBinding* binding) {
    if (binding && !is_logical_port(port))
        return REQUEST_BAD_PORT;
    AclRecord record = {};
    record.port = port;
    return member_read(324, record, &AclRecord::binding, binding);
}

int rsd_ace_entry_count_get(const char* name, uint32_t kind, uint32_t* count) {
    return list_read(325, name, kind, 0, &AclRecord::count, count);
}

int rsd_ace_entry_byIdx_get(const char* name, uint32_t kind, uint32_t index, AclEntry* entry) {
    return list_read(326, name, kind, index, &AclRecord::entry, entry);
}

int rsd_acl_l4port_range_get(AclPortRange* range, uint8_t index) {
    AclRecord record = {};
    record.range_index = index;
    return member_read(327, record, &AclRecord::range, range);
}

int rsd_acl_l4port_range_set(const AclPortRange* range, uint8_t* index) {
    if (!range)
        return REQUEST_NULL_POINTER;
    AclRecord record = {};
    record.range = *range;
    return member_read(328, record, &AclRecord::range_index, index);
}

int rsd_acl_pieUsage_get(AclUsage* usage) {
    return member_read(329, AclRecord{}, &AclRecord::usage, usage);
}
