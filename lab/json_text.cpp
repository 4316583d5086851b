// The depth of a text is counted before it is parsed: a parser would already build every level.
#include "lab/json_text.h"

#include <nlohmann/json.hpp>

namespace lab {

bool is_nested_too_deeply(std::string_view text) {
    int depth = 0;
    bool in_string = false;
    for (std::size_t at = 0; at < text.size(); at++) {
        const char c = text[at];
        if (in_string && c == '\\')
            at++;
        else if (c == '"')
            in_string = !in_string;
        else if (!in_string && (c == '{' || c == '['))
            depth++;
        else if (!in_string && (c == '}' || c == ']'))
            depth--;
        if (depth > deepest_nesting)
            return true;
    }
    return false;
}

nlohmann::ordered_json parse_json(std::string_view text) {
    if (is_nested_too_deeply(text))
        return nlohmann::ordered_json(nlohmann::ordered_json::value_t::discarded);
    return nlohmann::ordered_json::parse(text, nullptr, false);
}

} // namespace lab
