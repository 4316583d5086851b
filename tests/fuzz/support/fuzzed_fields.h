// A switch from bytes: whatever its scenario and its configuration may hold, with every number in
// its range and every text of any bytes.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <functional>
#include <string>

#include "sim/instruments/fields.h"

// Fills the record as far as the bytes go, or up to what the record refuses.
void fill_record(FuzzedDataProvider& bytes, const std::function<void(sim::Fields&)>& record);
