// Entries of access lists; see ace_frame.h.
#include "sections/acl/entries.h"

#include "sections/acl/bindings.h"
#include "sections/acl/each_list.h"

// --- Report.

namespace {

int entry_report(const AceKind& kind, cJSON* array, const char* list, const Ace& ace) {
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

int entries_report(const AceKind& kind, cJSON* array, const char* list) {
    uint32_t count = 0;
    if (int code = sal_ace_entry_count_get(list, kind.type, &count))
        return record_error(code);
    for (uint32_t index = 0; index < count; ++index) {
        Ace ace = {};
        int code = sal_ace_entry_byIdx_get(list, kind.type, index, &ace);
        if (!code)
            code = entry_report(kind, array, list, ace);
        if (code)
            record_error(code);
    }
    return 0;
}

} // namespace

int ace_list_get(const AceKind& kind, cJSON* acl) {
    cJSON* array = attachJsonArray(acl, kind.key);
    return acl_each_list(
        kind.type, [&](const char* list) { return entries_report(kind, array, list); });
}

// --- Settings.

namespace {

struct AceItem {
    const cJSON* json;
    const char* list;
    uint32_t sequence;
    int method;
};

bool item_read(const cJSON* json, AceItem* item) {
    int has_sequence, has_method;
    item->json = json;
    item->list = getJsonStringValueForKey(json, "acl_name");
    item->sequence = static_cast<uint32_t>(getJsonIntValueForKey(json, "sequence", &has_sequence));
    item->method = getJsonIntValueForKey(json, "method", &has_method);
    return item->list && has_sequence && has_method;
}

// Returns 0 or a recorded code.
int members_read(const AceKind& kind, const AceItem& item, Ace* ace, bool needs_action) {
    int found;
    int action = getJsonIntValueForKey(item.json, "action", &found);
    if (found)
        ace->action = static_cast<uint32_t>(action);
    else if (needs_action)
        return record_error(ERROR_BAD_VALUE);
    return kind.read(item.json, ace);
}

// The three changes return 0 when the next item may follow, or the recorded code that ends the
// section.
int entry_create(const AceKind& kind, const AceItem& item) {
    Ace ace = {};
    int check = _ace_number_check(kind.type);
    if (kind.is_refusal(check)) {
        record_error(check);
        return 0;
    }
    ace.sequence = item.sequence;
    ace.type = kind.type;
    if (members_read(kind, item, &ace, true))
        return 0;
    _acl_unbind(kind.type, item.list);
    if (int code = sal_ace_entry_create(item.list, &ace))
        record_error(code);
    return 0;
}

int entry_find(const AceKind& kind, const AceItem& item, Ace* ace, bool* found) {
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
int entry_replace(const char* list, const Ace& before, const Ace& after) {
    if (int code = sal_ace_entry_del(list, before.sequence))
        return record_error(code);
    if (!sal_ace_entry_create(list, &after))
        return 0;
    if (int code = sal_ace_entry_create(list, &before))
        return record_error(code);
    return 0;
}

int entry_modify(const AceKind& kind, const AceItem& item) {
    Ace before;
    bool found;
    if (int code = entry_find(kind, item, &before, &found))
        return code;
    if (!found) {
        record_error(ERROR_BAD_VALUE);
        return 0;
    }
    Ace after = before;
    if (members_read(kind, item, &after, false))
        return 0;
    _acl_unbind(kind.type, item.list);
    return entry_replace(item.list, before, after);
}

int entry_delete(const AceKind& kind, const AceItem& item) {
    _acl_unbind(kind.type, item.list);
    if (int code = sal_ace_entry_del(item.list, item.sequence))
        return record_error(code);
    return 0;
}

enum { METHODS = 3 }; // 0 deletes, 1 creates, 2 modifies

using EntryChange = int (*)(const AceKind& kind, const AceItem& item);
const EntryChange changes[METHODS] = {entry_delete, entry_create, entry_modify};

} // namespace

int ace_list_set(const AceKind& kind, const cJSON* entries) {
    for (const cJSON* json = getJsonChild(entries); json; json = getJsonNext(json)) {
        AceItem item;
        if (!item_read(json, &item)) {
            record_error(ERROR_BAD_VALUE);
            continue;
        }
        if (item.method < 0 || item.method >= METHODS)
            continue;
        if (int code = changes[item.method](kind, item))
            return code;
    }
    return _acl_rebind(kind.type);
}
