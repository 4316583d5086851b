// Documents held against each other, and what a prescription takes out of one.
#pragma once

#include <cjson/cJSON.h>

#include <string>
#include <vector>

namespace torture {

// Where and how `is` first differs from `wanted`, or "". Members are compared in their order.
std::string first_difference(const cJSON* wanted, const cJSON* is);

// The paths of what `left` lacks of `whole`, an outermost path for all that goes with it. One empty
// path when `left` is not what remains of `whole`: it holds something else.
std::vector<std::string> losses(const cJSON* whole, const cJSON* left);

// Carries out an edit, "a/b/3" (removed), "a/b/3.." (removed with all that follow it in its parent)
// or "a/b = JSON" or "a/b -= NUMBER". False when there is no such place.
bool edit(cJSON* document, const std::string& edit);

} // namespace torture
