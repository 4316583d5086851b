// Access control lists: lists, their bindings, their entries, and layer-4 port ranges.
#include "driver/acl.h"

#include "driver/shapes.h"

static_assert(sizeof(AclPortRange) == 16, "the driver's record");
static_assert(sizeof(AclEntry) == 72, "the driver's record");
static_assert(sizeof(AclBinding) == 104, "the driver's record");
static_assert(sizeof(AclUsage) == 8, "the driver's record");
static_assert(sizeof(AclRecord) == 336, "the driver's record");
static_assert(offsetof(AclRecord, range) == 276, "the driver's record");
static_assert(offsetof(AclRecord, range_index) == 296, "the driver's record");

namespace {

AclRecord name_list(const char* name) {
    AclRecord record = {};
    put_text(record.name, ACL_NAME_SIZE, name);
    return record;
}

int write_list(uint32_t command, const char* name, uint32_t kind) {
    if (!name)
        return REQUEST_NULL_POINTER;
    AclRecord record = name_list(name);
    record.kind = kind;
    return carry_record(command, &record);
}

int write_list_entry(uint32_t command, const char* name, const AclEntry* entry) {
    if (!name || !entry)
        return REQUEST_NULL_POINTER;
    AclRecord record = name_list(name);
    record.sequence = entry->sequence;
    record.entry = *entry;
    return carry_record(command, &record);
}

// Sends `record` and, on success, hands its `member` out.
template <class Member>
int fetch_member(uint32_t command, AclRecord* record, Member AclRecord::*member, Member* result) {
    if (!result)
        return REQUEST_NULL_POINTER;
    if (int code = carry_record(command, record))
        return code;
    *result = record->*member;
    return 0;
}

} // namespace

// clang-format off
int rsd_acl_entry_create(const char* name, uint32_t kind) { return write_list(257, name, kind); }
int rsd_acl_entry_del(const char* name, uint32_t kind)    { return write_list(258, name, kind); }
// clang-format on

int rsd_acl_entry_bind(const AclBinding* binding, const PortBitmap* ports) {
    if (!binding || !ports)
        return REQUEST_NULL_POINTER;
    AclRecord record = {};
    record.kind = binding->kind;
    record.binding = *binding;
    record.ports = *ports;
    return carry_record(259, &record);
}

int rsd_acl_entry_unbind(uint32_t kind, const PortBitmap* ports) {
    if (!ports)
        return REQUEST_NULL_POINTER;
    AclRecord record = {};
    record.kind = kind;
    record.ports = *ports;
    return carry_record(260, &record);
}

// clang-format off
int rsd_acl_ace_entry_create(const char* name, const AclEntry* entry) { return write_list_entry(261, name, entry); }
int rsd_acl_ace_entry_modify(const char* name, const AclEntry* entry) { return write_list_entry(262, name, entry); }
// clang-format on

int rsd_acl_ace_entry_del(const char* name, uint32_t sequence) {
    if (!name)
        return REQUEST_NULL_POINTER;
    AclRecord record = name_list(name);
    record.sequence = sequence;
    return carry_record(263, &record);
}

int rsd_acl_l4port_range_del(uint8_t index) {
    AclRecord record = {};
    record.range_index = index;
    return carry_record(264, &record);
}

int rsd_acl_entry_countByType_get(uint32_t kind, uint32_t* count) {
    AclRecord record = {};
    record.kind = kind;
    return fetch_member(321, &record, &AclRecord::count, count);
}

int rsd_acl_entry_nameByIdx_get(char* name, uint32_t kind, uint32_t index) {
    if (!name)
        return REQUEST_NULL_POINTER;
    AclRecord record = {};
    record.kind = kind;
    record.index = index;
    if (int code = carry_record(322, &record))
        return code;
    take_text(name, ACL_NAME_SIZE, record.name);
    return 0;
}

int rsd_acl_entry_typeByName_get(const char* name, uint32_t* kind) {
    if (!name)
        return REQUEST_NULL_POINTER;
    AclRecord record = name_list(name);
    return fetch_member(323, &record, &AclRecord::kind, kind);
}

int rsd_acl_entry_portBinding_get(uint32_t port, AclBinding* binding) {
    if (int code = refuse(binding != nullptr, port))
        return code;
    AclRecord record = {};
    record.port = port;
    return fetch_member(324, &record, &AclRecord::binding, binding);
}

int rsd_ace_entry_count_get(const char* name, uint32_t kind, uint32_t* count) {
    if (!name)
        return REQUEST_NULL_POINTER;
    AclRecord record = name_list(name);
    record.kind = kind;
    return fetch_member(325, &record, &AclRecord::count, count);
}

int rsd_ace_entry_byIdx_get(const char* name, uint32_t kind, uint32_t index, AclEntry* entry) {
    if (!name)
        return REQUEST_NULL_POINTER;
    AclRecord record = name_list(name);
    record.kind = kind;
    record.index = index;
    return fetch_member(326, &record, &AclRecord::entry, entry);
}

int rsd_acl_l4port_range_get(AclPortRange* range, uint8_t index) {
    AclRecord record = {};
    record.range_index = index;
    return fetch_member(327, &record, &AclRecord::range, range);
}

int rsd_acl_l4port_range_set(const AclPortRange* range, uint8_t* index) {
    if (!range)
        return REQUEST_NULL_POINTER;
    AclRecord record = {};
    record.range = *range;
    return fetch_member(328, &record, &AclRecord::range_index, index);
}

int rsd_acl_pieUsage_get(AclUsage* usage) {
    AclRecord record = {};
    return fetch_member(329, &record, &AclRecord::usage, usage);
}
