// An entry is changed while its list is off its ports; the lists go back when the last one is.
#include "sections/acl/entries.h"

#include "sections/acl/bindings.h"
#include "sections/acl/each_list.h"
#include "sections/section.h"

// --- Report.

namespace {

int report_entry(const AceKind& kind, cJSON* array, const char* list, const Ace& ace) {
    cJSON* item = createJsonObject();
    addJsonObjectStringItem(item, "acl_name", list);
    addJsonObjectIntItem(item, "sequence", static_cast<int32_t>(ace.sequence));
    addJsonObjectIntItem(item, "action", ace.action > 0);
    if (int code = kind.report(item, ace)) {
        deleteJsonObject(item);
        return code;
    }
    addJsonArrayItem(array, item);
    return 0;
}

int report_entries(const AceKind& kind, cJSON* array, const char* list) {
    uint32_t count = 0;
    if (int code = sal_ace_entry_count_get(list, kind.type, &count))
        return record_error(code);
    for (uint32_t index = 0; index < count; ++index) {
        Ace ace = {};
        int code = sal_ace_entry_byIdx_get(list, kind.type, index, &ace);
        if (!code)
            code = report_entry(kind, array, list, ace);
        if (code)
            record_error(code);
    }
    return 0;
}

} // namespace

int report_aces(const AceKind& kind, cJSON* acl) {
    cJSON* array = attachJsonArray(acl, kind.key);
    return for_each_list(
        kind.type, [&](const char* list) { return report_entries(kind, array, list); });
}

// --- Settings.

namespace {

struct AceItem {
    const cJSON* json;
    const char* list;
    uint32_t sequence;
    int method;
};

bool read_item(const cJSON* json, AceItem* item) {
    int sequence = 0;
    item->json = json;
    item->list = getJsonStringValueForKey(json, "acl_name");
    if (!item->list || !read_int(json, "sequence", &sequence))
        return false;
    item->sequence = static_cast<uint32_t>(sequence);
    return read_int(json, "method", &item->method);
}

// Returns 0 or a recorded code.
int read_members(const AceKind& kind, const AceItem& item, Ace* ace, bool needs_action) {
    int action = 0;
    if (read_int(item.json, "action", &action))
        ace->action = static_cast<uint32_t>(action);
    else if (needs_action)
        return record_error(ERROR_BAD_VALUE);
    return kind.read(item.json, ace);
}

// The three changes return 0 when the next item may follow, or the recorded code that ends the
// section.
int create_entry(const AceKind& kind, const AceItem& item) {
    Ace ace = {};
    int check = _ace_number_check(kind.type);
    if (kind.is_refusal(check)) {
        record_error(check);
        return 0;
    }
    ace.sequence = item.sequence;
    ace.type = kind.type;
    if (read_members(kind, item, &ace, true))
        return 0;
    _acl_unbind(kind.type, item.list);
    if (int code = sal_ace_entry_create(item.list, &ace))
        record_error(code);
    return 0;
}

int find_entry(const AceKind& kind, const AceItem& item, Ace* ace, bool* found) {
    uint32_t count = 0;
    *found = false;
    if (int code = sal_ace_entry_count_get(item.list, kind.type, &count))
        return record_error(code);
    for (uint32_t index = 0; index < count && !*found; ++index) {
        *ace = {};
        if (int code = sal_ace_entry_byIdx_get(item.list, kind.type, index, ace))
            record_error(code);
        else
            *found = ace->sequence == item.sequence;
    }
    return 0;
}

// A change that the platform does not take leaves the entry as it was, and is not recorded.
int replace_entry(const char* list, const Ace& before, const Ace& after) {
    if (int code = sal_ace_entry_del(list, before.sequence))
        return record_error(code);
    if (!sal_ace_entry_create(list, &after))
        return 0;
    if (int code = sal_ace_entry_create(list, &before))
        return record_error(code);
    return 0;
}

int modify_entry(const AceKind& kind, const AceItem& item) {
    Ace before;
    bool found;
    if (int code = find_entry(kind, item, &before, &found))
        return code;
    if (!found) {
        record_error(ERROR_BAD_VALUE);
        return 0;
    }
    Ace after = before;
    if (read_members(kind, item, &after, false))
        return 0;
    _acl_unbind(kind.type, item.list);
    return replace_entry(item.list, before, after);
}

int delete_entry(const AceKind& kind, const AceItem& item) {
    _acl_unbind(kind.type, item.list);
    if (int code = sal_ace_entry_del(item.list, item.sequence))
        return record_error(code);
    return 0;
}

int change_entry(const AceKind& kind, const AceItem& item) {
    switch (item.method) {
    case METHOD_DELETE:
        return delete_entry(kind, item);
    case METHOD_ADD:
        return create_entry(kind, item);
    case METHOD_CHANGE:
        return modify_entry(kind, item);
    default:
        return 0;
    }
}

} // namespace

int apply_aces(const AceKind& kind, const cJSON* entries) {
    for (const cJSON* json = getJsonChild(entries); json; json = getJsonNext(json)) {
        AceItem item = {};
        if (!read_item(json, &item)) {
            record_error(ERROR_BAD_VALUE);
            continue;
        }
        if (int code = change_entry(kind, item))
            return code;
    }
    return _acl_rebind(kind.type);
}
