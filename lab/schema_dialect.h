// The schemas of the wire are written in the JSON Schema of 2020-12; the library that holds
// documents against them reads draft-07.
#pragma once

#include <nlohmann/json_fwd.hpp>

namespace lab {

// The keyword of a translated schema that stands for "pattern"; see schema_pattern.h.
constexpr const char* pattern_keyword = "textPattern";

// The same schema in draft-07. Throws std::invalid_argument for a keyword of which nothing is known
// here: the library would pass over it, and documents would be taken that the schema refuses.
nlohmann::json translate_schema(const nlohmann::json& schema);

} // namespace lab
