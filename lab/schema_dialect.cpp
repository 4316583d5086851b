// A table says of each keyword what becomes of it.
#include "lab/schema_dialect.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <stdexcept>
#include <string_view>

namespace lab {

namespace {

using Json = nlohmann::json;

Json keep_value(const Json& value) { return value; }

Json translate_list(const Json& schemas) {
    Json list = Json::array();
    for (const Json& schema : schemas)
        list.push_back(translate_schema(schema));
    return list;
}

Json translate_members(const Json& schemas) {
    Json members = Json::object();
    for (const auto& [name, schema] : schemas.items())
        members[name] = translate_schema(schema);
    return members;
}

struct Keyword {
    std::string_view name;
    const char* becomes; // nullptr: says nothing of what is right
    Json (*translate)(const Json& value);
};

constexpr Keyword keywords[] = {
    {"$schema", nullptr, keep_value},
    {"$id", nullptr, keep_value},
    {"title", nullptr, keep_value},
    {"description", nullptr, keep_value},
    {"default", nullptr, keep_value},
    {"deprecated", nullptr, keep_value},
    {"$defs", "$defs", translate_members},
    {"$ref", "$ref", keep_value},
    {"type", "type", keep_value},
    {"enum", "enum", keep_value},
    {"const", "const", keep_value},
    {"minimum", "minimum", keep_value},
    {"maximum", "maximum", keep_value},
    {"multipleOf", "multipleOf", keep_value},
    {"minLength", "minLength", keep_value},
    {"maxLength", "maxLength", keep_value},
    {"pattern", pattern_keyword, keep_value},
    {"minItems", "minItems", keep_value},
    {"maxItems", "maxItems", keep_value},
    {"items", "items", translate_schema},
    {"required", "required", keep_value},
    {"dependentRequired", "dependencies", keep_value},
    {"properties", "properties", translate_members},
    {"additionalProperties", "additionalProperties", translate_schema},
    {"allOf", "allOf", translate_list},
    {"anyOf", "anyOf", translate_list},
    {"oneOf", "oneOf", translate_list},
    {"if", "if", translate_schema},
    {"then", "then", translate_schema},
    {"else", "else", translate_schema},
};

// Draft-07 knows no keyword beside a reference, and passes over those that are there.
void part_reference(Json& schema) {
    if (!schema.contains("$ref") || schema.size() == 1)
        return;
    Json reference = {{"$ref", schema["$ref"]}};
    schema.erase("$ref");
    schema["allOf"].push_back(std::move(reference));
}

} // namespace

Json translate_schema(const Json& schema) {
    if (schema.is_boolean())
        return schema;
    Json translated = Json::object();
    for (const auto& [name, value] : schema.items()) {
        const auto known = std::ranges::find(keywords, name, &Keyword::name);
        if (known == std::end(keywords))
            throw std::invalid_argument("the schema has \"" + name + "\", which nobody checks");
        if (known->becomes)
            translated[known->becomes] = known->translate(value);
    }
    part_reference(translated);
    return translated;
}

} // namespace lab
