// The function layer over cJSON: a node, its name and its text are one block of memory.
#include "json/json_document.h"

#include <stddef.h>
#include <string.h>

#include "json/json_list.h"
#include "json/json_node.h"
#include "json/utf8.h"

static_assert(sizeof(double) == sizeof(uint64_t) && sizeof(int) == sizeof(uint32_t));

// --- Reading.

cJSON* parseJsonString(const char* text) { return cJSON_Parse(text); }

cJSON* getJsonObjectForKey(const cJSON* object, const char* name) {
    return cJSON_GetObjectItem(object, name);
}

int getJsonArraySize(const cJSON* array) { return cJSON_GetArraySize(array); }

cJSON* getJsonArrayItem(const cJSON* array, int index) { return cJSON_GetArrayItem(array, index); }

cJSON* getJsonArrayForKey(const cJSON* object, const char* name) {
    cJSON* member = getJsonObjectForKey(object, name);
    return cJSON_IsArray(member) ? member : nullptr;
}

cJSON* getJsonChild(const cJSON* node) { return node ? node->child : nullptr; }

cJSON* getJsonNext(const cJSON* node) { return node ? node->next : nullptr; }

const char* getJsonStringValue(const cJSON* node) { return cJSON_GetStringValue(node); }

const char* getJsonStringValueForKey(const cJSON* object, const char* name) {
    return getJsonStringValue(getJsonObjectForKey(object, name));
}

int getJsonIntValue(const cJSON* node) { return node ? node->valueint : 0; }

int getJsonIntValueForKey(const cJSON* object, const char* name, int* found) {
    const cJSON* member = getJsonObjectForKey(object, name);
    *found = member != nullptr;
    return getJsonIntValue(member);
}

int getJsonBoolValue(const cJSON* node) {
    if (!node)
        return JSON_FALSE;
    if (node->type & NODE_UINT32)
        return JSON_UINT32;
    if (node->type & NODE_UINT64)
        return JSON_UINT64;
    static const int kinds[] = {cJSON_False,  cJSON_True,  cJSON_NULL,  cJSON_Number,
                                cJSON_String, cJSON_Array, cJSON_Object};
    for (int type = JSON_FALSE; type <= JSON_OBJECT; ++type) {
        if ((node->type & NODE_KIND) == kinds[type])
            return type;
    }
    return JSON_FALSE;
}

int getJsonBoolValueForKey(const cJSON* object, const char* name, int* found) {
    const cJSON* member = getJsonObjectForKey(object, name);
    *found = member != nullptr;
    return getJsonBoolValue(member);
}

// The double of a 64-bit counter is only the place where its bits are kept.
double getJsonDoubleValue(const cJSON* node) {
    return node && !(node->type & NODE_UINT64) ? node->valuedouble : 0;
}

double getJsonDoubleValueForKey(const cJSON* object, const char* name) {
    return getJsonDoubleValue(getJsonObjectForKey(object, name));
}

// --- Building.

namespace {

// A node, its member name and room for its text in one allocation: a report has thousands of
// members, and allocating is most of what building one costs. The two flags tell cJSON_Delete that
// the texts are not allocations of their own; they also make cJSON_Duplicate share the name with
// the original, which is why the layer has no copy of a tree.
inline cJSON* new_node(int type, const char* name, size_t text_size = 0) {
    size_t name_size = name ? strlen(name) + 1 : 0;
    cJSON* node = static_cast<cJSON*>(cJSON_malloc(sizeof(cJSON) + name_size + text_size));
    if (!node)
        return nullptr;
    *node = cJSON{};
    node->type = type;
    char* texts = reinterpret_cast<char*>(node + 1);
    if (name) {
        node->type |= cJSON_StringIsConst;
        if (name_size <= LONGEST_NODE_NAME)
            node->type |= static_cast<int>(name_size - 1) << NODE_LENGTH;
        node->string = static_cast<char*>(memcpy(texts, name, name_size));
    }
    if (text_size) {
        node->type |= cJSON_IsReference;
        node->valuestring = texts + name_size;
    }
    return node;
}

cJSON* new_repaired_text(const char* name, const char* text, size_t length) {
    cJSON* node = new_node(cJSON_String, name, REPLACEMENT_SIZE * length + 1);
    if (node)
        repair_utf8(text, node->valuestring);
    return node;
}

// Here every text enters a document. One of the agent's state may be changed by another thread
// meanwhile, so what is looked at is the copy, and the terminator is never one that was copied.
cJSON* new_text(const char* name, const char* text) {
    size_t length = strlen(text);
    cJSON* node = new_node(cJSON_String, name, length + 1);
    if (!node)
        return nullptr;
    memcpy(node->valuestring, text, length);
    node->valuestring[length] = '\0';
    if (is_utf8(node->valuestring, length))
        return node;
    cJSON* repaired = new_repaired_text(name, node->valuestring, length);
    cJSON_Delete(node);
    return repaired;
}

// A double outside the range of an int is cut to the nearer end, as the parser does.
int truncated(double value) {
    if (value >= INT32_MAX)
        return INT32_MAX;
    if (value <= INT32_MIN)
        return INT32_MIN;
    return value == value ? static_cast<int>(value) : 0;
}

cJSON* new_number(const char* name, double value) {
    cJSON* node = new_node(cJSON_Number, name);
    if (node) {
        node->valuedouble = value;
        node->valueint = truncated(value);
    }
    return node;
}

cJSON* new_uint32(const char* name, uint32_t value) {
    cJSON* node = new_node(cJSON_Number | NODE_UINT32, name);
    if (node)
        memcpy(&node->valueint, &value, sizeof value);
    return node;
}

cJSON* new_uint64(const char* name, uint64_t value) {
    cJSON* node = new_node(cJSON_Number | NODE_UINT64, name);
    if (node)
        memcpy(&node->valuedouble, &value, sizeof value);
    return node;
}

bool takes_nodes(const cJSON* parent) {
    int kind = parent ? parent->type & NODE_KIND : cJSON_Invalid;
    return kind == cJSON_Object || kind == cJSON_Array;
}

// The first child's `prev` is the last child, which spares most nodes a call of cJSON.
inline bool append(cJSON* parent, cJSON* node) {
    cJSON* first = parent->child;
    if (!node || !first || !first->prev)
        return cJSON_AddItemToArray(parent, node);
    node->prev = first->prev;
    first->prev->next = node;
    first->prev = node;
    return true;
}

// The one rule for all that is added: what cannot be taken is deleted, and null comes of it.
inline cJSON* take(cJSON* parent, cJSON* node) {
    if (node == parent)
        return nullptr;
    if (takes_nodes(parent) && append(parent, node))
        return node;
    cJSON_Delete(node);
    return nullptr;
}

// For a node that already carries its name; to cJSON, appending to an object is the same as
// appending to an array.
cJSON* take_member(cJSON* object, cJSON* node) {
    return take(node && node->string ? object : nullptr, node);
}

} // namespace

cJSON* createJsonObject() { return cJSON_CreateObject(); }

cJSON* createJsonArray() { return cJSON_CreateArray(); }

cJSON* createJsonIntArray(const int32_t* values, int count) {
    return cJSON_CreateIntArray(values, count);
}

cJSON* createJsonDoubleArray(const double* values, int count) {
    return cJSON_CreateDoubleArray(values, count);
}

cJSON* createJsonStringArray(const char* const* texts, int count) {
    cJSON* array = texts && count >= 0 ? createJsonArray() : nullptr;
    for (int i = 0; array && i < count; ++i) {
        if (take(array, texts[i] ? new_text(nullptr, texts[i]) : nullptr))
            continue;
        cJSON_Delete(array);
        array = nullptr;
    }
    return array;
}

cJSON* cJSON_CreateLongUintNumber(uint32_t value) { return new_uint32(nullptr, value); }

cJSON* cJSON_CreateLongLongUintNumber(uint64_t value) { return new_uint64(nullptr, value); }

cJSON* attachJsonObject(cJSON* object, const char* name) {
    return take_member(object, new_node(cJSON_Object, name));
}

cJSON* attachJsonArray(cJSON* object, const char* name) {
    return take_member(object, new_node(cJSON_Array, name));
}

void addJsonObject(cJSON* object, const char* name, cJSON* node) {
    if (!node || node == object)
        return;
    if (!takes_nodes(object) || !cJSON_AddItemToObject(object, name, node))
        cJSON_Delete(node);
}

void addJsonArrayItem(cJSON* array, cJSON* node) { take(array, node); }

void addJsonArrayStringItem(cJSON* array, const char* text) {
    if (text)
        take(array, new_text(nullptr, text));
}

void addJsonObjectStringItem(cJSON* object, const char* name, const char* text) {
    if (text)
        take_member(object, new_text(name, text));
}

void addJsonObjectIntItem(cJSON* object, const char* name, int32_t value) {
    take_member(object, new_number(name, value));
}

void addJsonObjectLongUintItem(cJSON* object, const char* name, uint32_t value) {
    take_member(object, new_uint32(name, value));
}

void addJsonObjectLongLongUintItem(cJSON* object, const char* name, uint64_t value) {
    take_member(object, new_uint64(name, value));
}

void addJsonObjectBoolItem(cJSON* object, const char* name, int value) {
    take_member(object, new_node(value ? cJSON_True : cJSON_False, name));
}

void addJsonObjectDoubleItem(cJSON* object, const char* name, double value) {
    take_member(object, new_number(name, value));
}

void copyJsonStringItem(const cJSON* source, cJSON* destination, const char* name) {
    addJsonObjectStringItem(destination, name, getJsonStringValueForKey(source, name));
}

void removeJsonObject(cJSON* object, const char* name) {
    cJSON_Delete(cJSON_DetachItemFromObject(object, name));
}

void deleteJsonObject(cJSON* root) { cJSON_Delete(root); }
