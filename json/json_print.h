// A JSON document as text: one member a line, indented by tabs, with the counters of a switch in
// full and other fractions cut to one decimal.
#pragma once

#include <cjson/cJSON.h>

extern "C" {

// The text of `root` and everything below it. The caller frees it with free(). Null for a null
// root, for a tree that holds a node of no type, and where memory is short.
//
// A number that is not one of the exact counters is printed as "%d" if it is a whole number of
// 32 bits, as "%.0f" if it is whole and below 1e60, as "%e" below 1e-6 and above 1e9, else as
// "%.1f"; always with a point as the decimal sign. What is no finite number becomes null.
char* printJson(const cJSON* root);
}
