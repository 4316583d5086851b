// How sections read settings: one that is missing is left alone.
#pragma once

#include "base/numbers.h"
#include "json/json_document.h"

// What a "method" asks for.
enum Method { METHOD_DELETE = 0, METHOD_ADD = 1, METHOD_CHANGE = 2 };

// The setting under `key`. False, with `*value` unchanged, when it is missing. A text is the number
// 0; whatever is not false is true.
inline bool read_int(const cJSON* settings, const char* key, int* value) {
    int found;
    int read = getJsonIntValueForKey(settings, key, &found);
    if (found)
        *value = read;
    return found;
}

inline bool read_bool(const cJSON* settings, const char* key, bool* value) {
    int found;
    bool read = getJsonBoolValueForKey(settings, key, &found) != JSON_FALSE;
    if (found)
        *value = read;
    return found;
}

// Gives the setting under `key` to `set`. Returns 0 when it is missing, or what `set` returned.
template <class Set> int apply_int(const cJSON* settings, const char* key, Set set) {
    int value = 0;
    return read_int(settings, key, &value) ? set(value) : 0;
}

template <class Set> int apply_bool(const cJSON* settings, const char* key, Set set) {
    bool value = false;
    return read_bool(settings, key, &value) ? set(value) : 0;
}
