// JSON texts from outside, and from a database that another version of the lab has written.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string_view>

namespace lab {

// The JSON library copies, compares and prints by recursion: each level of a document takes some of
// the stack. No document of a switch comes near this depth.
constexpr int deepest_nesting = 64;

bool is_nested_too_deeply(std::string_view text);

// Discarded when the text is no JSON or is nested too deeply.
nlohmann::ordered_json parse_json(std::string_view text);

} // namespace lab
