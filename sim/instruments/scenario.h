// Reading and writing the simulated switch as JSON: the scenario that a board starts from, and the
// configurations that it keeps in its root folder.
#pragma once

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>

#include "sim/instruments/fields.h"

namespace sim {

// "FILE:LINE: reason"
class ScenarioError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Fills a record from a JSON file. A member that the record does not have, a value of the wrong
// type or out of range, or text that is not JSON is a ScenarioError, and what was read before it
// stays in the record.
void read_fields(const std::filesystem::path& file, const std::function<void(Fields&)>& record);

// The number at `/section/key` of a JSON file, or `otherwise` where it has none. For what must be
// known before there is a record to fill.
std::int64_t peek_number(
    const std::filesystem::path& file, const char* section, const char* key,
    std::int64_t otherwise);

// The record as JSON text.
std::string write_fields(const std::function<void(Fields&)>& record);

// Writes a file so that it is seen either whole or not at all. False, and the file is as it was,
// when it cannot be written, for instance for want of room.
[[nodiscard]] bool write_atomically(const std::filesystem::path& file, const std::string& text);

} // namespace sim
