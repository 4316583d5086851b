// Lists that grow by one text at a time.
#pragma once

#include <cjson/cJSON.h>

extern "C" {

// Appends a copy of `text` to `array`, repaired as texts of members are. Where memory is short, or
// there is no array or no text, the document stays as it was.
void addJsonArrayStringItem(cJSON* array, const char* text);
}
