// Settings held against docs/schema/settings.schema.json.
#pragma once

#include <optional>
#include <string>

namespace lab {

struct SettingsFault {
    std::string place; // a JSON pointer, empty for the document itself
    std::string reason;
};

// The first thing in a document of parse_settings() that a switch would not take as it is meant.
std::optional<SettingsFault> find_settings_fault(const std::string& document);

} // namespace lab
