// The schema of settings in the dialect of the library that reads it.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <stdexcept>

#include "lab/page_files.h"
#include "lab/schema_dialect.h"
#include "lab/schema_pattern.h"
#include "lab/settings_schema.h"

namespace lab_test {

namespace {

using Json = nlohmann::json;

Json read_settings_schema() {
    const auto files = lab::list_page_files();
    const auto file = std::ranges::find(files, "settings.schema.json", &lab::PageFile::name);
    return file == files.end() ? Json() : Json::parse(file->content);
}

TEST(Schema, of_settings_has_no_keyword_that_nobody_checks) {
    const Json schema = read_settings_schema();
    ASSERT_TRUE(schema.contains("$defs"));
    EXPECT_NO_THROW(lab::translate_schema(schema));
    EXPECT_FALSE(lab::find_settings_fault(R"({"lldp":{}})"));
}

TEST(Schema, with_a_keyword_that_nobody_checks_is_refused_wherever_it_stands) {
    const Json places[] = {
        R"({"contains":{}})"_json,
        R"({"properties":{"a":{"uniqueItems":true}}})"_json,
        R"({"$defs":{"a":{"prefixItems":[]}}})"_json,
        R"({"items":{"format":"ipv4"}})"_json,
        R"({"additionalProperties":{"exclusiveMinimum":1}})"_json,
        R"({"anyOf":[{"not":{}}]})"_json,
        R"({"then":{"dependentSchemas":{}}})"_json,
    };
    for (const Json& place : places)
        EXPECT_THROW(lab::translate_schema(place), std::invalid_argument) << place;
}

TEST(Schema, in_draft_07_says_the_same) {
    const std::pair<Json, Json> translations[] = {
        {true, true},
        {R"({"title":"T","description":"D","type":"object"})"_json, R"({"type":"object"})"_json},
        {R"({"dependentRequired":{"a":["b"]}})"_json, R"({"dependencies":{"a":["b"]}})"_json},
        {R"({"description":"D","$ref":"#/$defs/a"})"_json, R"({"$ref":"#/$defs/a"})"_json},
        {R"({"items":{"$ref":"#/$defs/a","maxLength":3}})"_json,
         R"({"items":{"allOf":[{"$ref":"#/$defs/a"}],"maxLength":3}})"_json},
        {R"({"$ref":"#/$defs/a","allOf":[{"if":true,"then":false}]})"_json,
         R"({"allOf":[{"if":true,"then":false},{"$ref":"#/$defs/a"}]})"_json},
        // Members may be called as keywords are.
        {R"({"properties":{"title":{"default":1,"minimum":0},"format":true}})"_json,
         R"({"properties":{"title":{"minimum":0},"format":true}})"_json},
    };
    for (const auto& [schema, expected] : translations)
        EXPECT_EQ(lab::translate_schema(schema), expected);
}

TEST(Schema, with_a_pattern_that_would_be_misread_is_refused) {
    for (const char* pattern : {"\\d", "a\\b", "(?:a)", "(", "[a"})
        EXPECT_THROW(lab::make_pattern_rule(pattern), std::invalid_argument) << pattern;
    EXPECT_NO_THROW(lab::make_pattern_rule("^\\[a\\.b\\]$"));
}

} // namespace

} // namespace lab_test
