// JSON documents as the agent reads and writes them: a function layer over cJSON, with the exact
// unsigned 32-bit and 64-bit numbers that a switch's counters need.
//
// A node belongs to whoever created or parsed its root; a node that is added to an object or array
// is handed over to it. Texts that are added are copied; what in them is not UTF-8 is replaced by
// U+FFFD, while names are taken as they are. A null document, a missing member and a node of
// another type give the stated default, never a crash. Where memory is short a builder returns null
// and an add leaves the document as it was.
#pragma once

#include <cjson/cJSON.h>
#include <stdint.h>

// What kind of value a node holds. Numbers that were parsed are always JSON_NUMBER.
enum JsonType {
    JSON_FALSE = 0,
    JSON_TRUE = 1,
    JSON_NULL = 2,
    JSON_NUMBER = 3, // a double, with its integer truncation beside it
    JSON_STRING = 4,
    JSON_ARRAY = 5,
    JSON_OBJECT = 6,
    JSON_UINT32 = 7,
    JSON_UINT64 = 8,
};

extern "C" {

// --- Reading. Member names match without regard to letter case.

cJSON* parseJsonString(const char* text); // null if the text is not JSON; the caller deletes it
cJSON* getJsonObjectForKey(const cJSON* object, const char* name);
int getJsonArraySize(const cJSON* array);
cJSON* getJsonArrayItem(const cJSON* array, int index);
// The member if it is an array, else null: what is given for a list and is none has no items, and
// an object's members are none either.
cJSON* getJsonArrayForKey(const cJSON* object, const char* name);
cJSON* getJsonChild(const cJSON* node);
cJSON* getJsonNext(const cJSON* node);

// Null for a member or node that is missing or not a string.
const char* getJsonStringValueForKey(const cJSON* object, const char* name);
const char* getJsonStringValue(const cJSON* node);

// `*found` is set to 1, or to 0 (and the result is 0) when the member is missing.
int getJsonIntValueForKey(const cJSON* object, const char* name, int* found);
int getJsonIntValue(const cJSON* node);

// The member's JsonType: 1 for true, 0 for false, and a type number, hence "true" to a caller that
// tests for non-zero, for any other member. `*found` as above.
int getJsonBoolValueForKey(const cJSON* object, const char* name, int* found);
int getJsonBoolValue(const cJSON* node);

double getJsonDoubleValueForKey(const cJSON* object, const char* name);
double getJsonDoubleValue(const cJSON* node);

// --- Building.

cJSON* createJsonObject();
cJSON* createJsonArray();
cJSON* createJsonIntArray(const int32_t* values, int count);
cJSON* createJsonDoubleArray(const double* values, int count);
cJSON* createJsonStringArray(const char* const* texts, int count);
cJSON* cJSON_CreateLongUintNumber(uint32_t value);
cJSON* cJSON_CreateLongLongUintNumber(uint64_t value);

// Only an object or array takes nodes, and a member needs a name; a node that is not taken is
// deleted. A document that is added to itself stays as it was.

// A new object or array as a member of `object`, for the caller to fill. It belongs to `object`.
// Null where it is not taken or memory is short; a null may be filled too, to no effect.
cJSON* attachJsonObject(cJSON* object, const char* name);
cJSON* attachJsonArray(cJSON* object, const char* name);

// The node is handed over, and deleted where memory is short, so a node that is to be filled after
// it was added comes from attachJsonObject. Adding null does nothing.
void addJsonObject(cJSON* object, const char* name, cJSON* node);
void addJsonArrayItem(cJSON* array, cJSON* node);

void addJsonObjectStringItem(cJSON* object, const char* name, const char* text);
void addJsonObjectIntItem(cJSON* object, const char* name, int32_t value);
void addJsonObjectLongUintItem(cJSON* object, const char* name, uint32_t value);
void addJsonObjectLongLongUintItem(cJSON* object, const char* name, uint64_t value);
void addJsonObjectBoolItem(cJSON* object, const char* name, int value);
void addJsonObjectDoubleItem(cJSON* object, const char* name, double value);
void copyJsonStringItem(const cJSON* source, cJSON* destination, const char* name);

// Takes the first member of that name out of `object` and deletes it; without one nothing happens.
void removeJsonObject(cJSON* object, const char* name);

void deleteJsonObject(cJSON* root);
}
