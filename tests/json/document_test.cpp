// Reading and building documents.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "support.h"

namespace {

Document object() { return Document(createJsonObject()); }

TEST(Parse, text_that_is_not_json_is_null) {
    for (const char* text : {"", "{", "nope", "{\"a\":}", "[1,]", "\"open"})
        EXPECT_EQ(parseJsonString(text), nullptr) << text;
    EXPECT_EQ(parseJsonString(nullptr), nullptr);
}

TEST(Parse, numbers_are_never_exact_counters) {
    Document root = parse("[1, 4294967295, 18446744073709551615, -1, 1.5]");
    for (cJSON* node = getJsonChild(root.get()); node; node = getJsonNext(node))
        EXPECT_EQ(getJsonBoolValue(node), JSON_NUMBER);
}

TEST(Parse, integer_beyond_32_bits_is_cut_to_the_range) {
    Document root = parse(R"({"high": 4294967295, "low": -4294967295})");
    int found = 0;
    EXPECT_EQ(getJsonIntValueForKey(root.get(), "high", &found), INT32_MAX);
    EXPECT_EQ(getJsonIntValueForKey(root.get(), "low", &found), INT32_MIN);
}

TEST(Parse, nesting_beyond_a_thousand_is_refused) {
    EXPECT_NE(parse(std::string(1000, '[') + std::string(1000, ']')), nullptr);
    EXPECT_EQ(parse(std::string(1001, '[') + std::string(1001, ']')), nullptr);
}

TEST(Read, member_names_match_without_regard_to_case) {
    Document root = parse(R"({"Device_Name": "x"})");
    EXPECT_STREQ(getJsonStringValueForKey(root.get(), "device_name"), "x");
    EXPECT_STREQ(getJsonStringValueForKey(root.get(), "DEVICE_NAME"), "x");
}

TEST(Read, first_of_two_members_of_one_name_counts) {
    Document root = parse(R"({"a": 1, "A": 2})");
    int found = 0;
    EXPECT_EQ(getJsonIntValueForKey(root.get(), "A", &found), 1);
}

TEST(Read, null_document_gives_the_defaults) {
    int found = 7;
    EXPECT_EQ(getJsonObjectForKey(nullptr, "a"), nullptr);
    EXPECT_EQ(getJsonArraySize(nullptr), 0);
    EXPECT_EQ(getJsonArrayItem(nullptr, 0), nullptr);
    EXPECT_EQ(getJsonStringValueForKey(nullptr, "a"), nullptr);
    EXPECT_EQ(getJsonIntValueForKey(nullptr, "a", &found), 0);
    EXPECT_EQ(found, 0);
    found = 7;
    EXPECT_EQ(getJsonBoolValueForKey(nullptr, "a", &found), 0);
    EXPECT_EQ(found, 0);
    EXPECT_EQ(getJsonBoolValue(nullptr), 0);
    EXPECT_EQ(getJsonStringValue(nullptr), nullptr);
    EXPECT_EQ(getJsonIntValue(nullptr), 0);
    EXPECT_EQ(getJsonDoubleValue(nullptr), 0);
    EXPECT_EQ(getJsonDoubleValueForKey(nullptr, "a"), 0);
    EXPECT_EQ(getJsonChild(nullptr), nullptr);
    EXPECT_EQ(getJsonNext(nullptr), nullptr);
}

TEST(Read, missing_member_gives_the_defaults) {
    Document root = parse(R"({"b": 1})");
    int found = 7;
    EXPECT_EQ(getJsonObjectForKey(root.get(), "a"), nullptr);
    EXPECT_EQ(getJsonObjectForKey(root.get(), nullptr), nullptr);
    EXPECT_EQ(getJsonStringValueForKey(root.get(), "a"), nullptr);
    EXPECT_EQ(getJsonIntValueForKey(root.get(), "a", &found), 0);
    EXPECT_EQ(found, 0);
    found = 7;
    EXPECT_EQ(getJsonBoolValueForKey(root.get(), "a", &found), 0);
    EXPECT_EQ(found, 0);
    EXPECT_EQ(getJsonDoubleValueForKey(root.get(), "a"), 0);
}

TEST(Read, members_of_an_array_are_missing) {
    Document root = parse(R"([1, {"a": 2}])");
    EXPECT_EQ(getJsonObjectForKey(root.get(), "a"), nullptr);
}

TEST(Read, string_of_a_member_that_is_no_string_is_null) {
    Document root = parse(R"({"a": 1, "b": true, "c": null, "d": [], "e": {}})");
    for (const char* name : {"a", "b", "c", "d", "e"})
        EXPECT_EQ(getJsonStringValueForKey(root.get(), name), nullptr) << name;
}

TEST(Read, integer_of_a_member_that_is_no_number_is_zero_but_found) {
    Document root = parse(R"({"a": "12"})");
    int found = 0;
    EXPECT_EQ(getJsonIntValueForKey(root.get(), "a", &found), 0);
    EXPECT_EQ(found, 1);
}

TEST(Read, integer_of_a_fraction_is_truncated) {
    Document root = parse(R"([2.9, -2.9])");
    EXPECT_EQ(getJsonIntValue(getJsonArrayItem(root.get(), 0)), 2);
    EXPECT_EQ(getJsonIntValue(getJsonArrayItem(root.get(), 1)), -2);
    EXPECT_EQ(getJsonDoubleValue(getJsonArrayItem(root.get(), 0)), 2.9);
}

TEST(Read, boolean_of_the_number_seven_is_three_and_found) {
    Document root = parse(R"({"a": 7})");
    int found = 0;
    EXPECT_EQ(getJsonBoolValueForKey(root.get(), "a", &found), 3);
    EXPECT_EQ(found, 1);
}

TEST(Read, boolean_is_the_type_number_of_any_member) {
    Document root = parse(R"({"false": false, "true": true, "null": null, "number": 0,
                              "string": "false", "array": [], "object": {}})");
    addJsonObjectLongUintItem(root.get(), "u32", 0);
    addJsonObjectLongLongUintItem(root.get(), "u64", 0);
    int type = 0;
    for (cJSON* node = getJsonChild(root.get()); node; node = getJsonNext(node)) {
        int found = 0;
        EXPECT_EQ(getJsonBoolValueForKey(root.get(), node->string, &found), type);
        EXPECT_EQ(found, 1);
        EXPECT_EQ(getJsonBoolValue(node), type++);
    }
    EXPECT_EQ(type, 9);
}

TEST(Read, a_node_of_none_of_the_types_is_false) {
    Document raw(cJSON_CreateRaw("true"));
    EXPECT_EQ(getJsonBoolValue(raw.get()), JSON_FALSE);
}

TEST(Read, array_items_are_counted_from_zero) {
    Document root = parse("[10, 11, 12]");
    EXPECT_EQ(getJsonArraySize(root.get()), 3);
    EXPECT_EQ(getJsonIntValue(getJsonArrayItem(root.get(), 0)), 10);
    EXPECT_EQ(getJsonIntValue(getJsonArrayItem(root.get(), 2)), 12);
    EXPECT_EQ(getJsonArrayItem(root.get(), 3), nullptr);
    EXPECT_EQ(getJsonArrayItem(root.get(), -1), nullptr);
}

TEST(Read, only_an_array_is_a_list) {
    Document root = parse(R"({"list": [1], "empty": [], "object": {"a": 1}, "null": null,
                              "number": 1, "string": "[1]", "true": true})");
    EXPECT_EQ(getJsonArrayForKey(root.get(), "List"), getJsonObjectForKey(root.get(), "list"));
    EXPECT_EQ(getJsonArraySize(getJsonArrayForKey(root.get(), "list")), 1);
    EXPECT_NE(getJsonArrayForKey(root.get(), "empty"), nullptr);
    for (const char* name : {"object", "null", "number", "string", "true", "missing"})
        EXPECT_EQ(getJsonArrayForKey(root.get(), name), nullptr) << name;
    EXPECT_EQ(getJsonArrayForKey(nullptr, "list"), nullptr);
}

TEST(Counter, unsigned_32_bits_are_kept_in_the_integer_value) {
    Document node(cJSON_CreateLongUintNumber(4294967295));
    EXPECT_EQ(getJsonIntValue(node.get()), -1);
    EXPECT_EQ(getJsonDoubleValue(node.get()), 0);
    EXPECT_EQ(printed(node), "4294967295");
}

TEST(Counter, unsigned_64_bits_show_in_neither_number_of_the_node) {
    Document node(cJSON_CreateLongLongUintNumber(UINT64_MAX));
    EXPECT_EQ(getJsonIntValue(node.get()), 0);
    EXPECT_EQ(getJsonDoubleValue(node.get()), 0);
    EXPECT_EQ(printed(node), "18446744073709551615");
}

TEST(Counter, any_bit_pattern_of_64_bits_survives) {
    // Among them what would be a NaN, an infinity and a denormal as a double.
    for (uint64_t value :
         {uint64_t{0}, uint64_t{1}, uint64_t{0x7FF0000000000001}, uint64_t{0x7FF0000000000000},
          uint64_t{0xFFF8000000000000}}) {
        Document node(cJSON_CreateLongLongUintNumber(value));
        EXPECT_EQ(printed(node), std::to_string(value));
    }
}

TEST(Build, every_kind_of_member_in_the_order_of_the_adds) {
    Document root = object();
    addJsonObjectStringItem(root.get(), "string", "text");
    addJsonObjectIntItem(root.get(), "int", -5);
    addJsonObjectLongUintItem(root.get(), "u32", 4294967295);
    addJsonObjectLongLongUintItem(root.get(), "u64", 18446744073709551615u);
    addJsonObjectBoolItem(root.get(), "yes", 2);
    addJsonObjectBoolItem(root.get(), "no", 0);
    addJsonObjectDoubleItem(root.get(), "double", 12.345);
    cJSON* array = createJsonArray();
    addJsonArrayItem(array, createJsonObject());
    addJsonObject(root.get(), "array", array);
    EXPECT_EQ(
        printed(root), "{\n\t\"string\":\t\"text\",\n\t\"int\":\t-5,\n\t\"u32\":\t4294967295,\n"
                       "\t\"u64\":\t18446744073709551615,\n\t\"yes\":\ttrue,\n\t\"no\":\tfalse,\n"
                       "\t\"double\":\t12.3,\n\t\"array\":\t[{\n\t\t}]\n}");
}

TEST(Build, added_texts_are_copied) {
    Document root = object();
    char name[] = "name", text[] = "text";
    addJsonObjectStringItem(root.get(), name, text);
    name[0] = text[0] = 'X';
    EXPECT_STREQ(getJsonStringValueForKey(root.get(), "name"), "text");
}

TEST(Build, members_can_be_read_back_like_parsed_ones) {
    Document root = object();
    addJsonObjectIntItem(root.get(), "a", INT32_MIN);
    addJsonObjectDoubleItem(root.get(), "b", 2.75);
    addJsonObjectBoolItem(root.get(), "c", -1);
    int found = 0;
    EXPECT_EQ(getJsonIntValueForKey(root.get(), "A", &found), INT32_MIN);
    EXPECT_EQ(getJsonDoubleValueForKey(root.get(), "a"), double{INT32_MIN});
    EXPECT_EQ(getJsonDoubleValueForKey(root.get(), "b"), 2.75);
    EXPECT_EQ(getJsonIntValueForKey(root.get(), "b", &found), 2);
    EXPECT_EQ(getJsonBoolValueForKey(root.get(), "c", &found), 1);
}

TEST(Build, double_beyond_an_integer_is_cut_in_the_integer_value) {
    Document root = object();
    addJsonObjectDoubleItem(root.get(), "high", 1e300);
    addJsonObjectDoubleItem(root.get(), "low", -1e300);
    addJsonObjectDoubleItem(root.get(), "nan", std::nan(""));
    addJsonObjectDoubleItem(root.get(), "inf", std::numeric_limits<double>::infinity());
    int found = 0;
    EXPECT_EQ(getJsonIntValueForKey(root.get(), "high", &found), INT32_MAX);
    EXPECT_EQ(getJsonIntValueForKey(root.get(), "low", &found), INT32_MIN);
    EXPECT_EQ(getJsonIntValueForKey(root.get(), "nan", &found), 0);
    EXPECT_EQ(getJsonIntValueForKey(root.get(), "inf", &found), INT32_MAX);
}

TEST(Build, adding_null_is_ignored) {
    Document root = object();
    addJsonObject(root.get(), "a", nullptr);
    addJsonArrayItem(root.get(), nullptr);
    addJsonObjectStringItem(root.get(), "a", nullptr);
    EXPECT_EQ(printed(root), "{\n}");
}

// Blocks that the JSON library holds.
int held_blocks = 0;

void* hold(std::size_t size) {
    ++held_blocks;
    return std::malloc(size);
}

void release(void* block) {
    held_blocks -= block != nullptr;
    std::free(block);
}

// While it lives, the JSON library's blocks are counted.
struct CountedBlocks {
    CountedBlocks() {
        held_blocks = 0;
        cJSON_Hooks hooks{hold, release};
        cJSON_InitHooks(&hooks);
    }
    ~CountedBlocks() {
        cJSON_Hooks hooks{std::malloc, std::free};
        cJSON_InitHooks(&hooks);
    }
};

// Every way to add something to `parent`.
void add_all(cJSON* parent, const char* name) {
    const int32_t integer = 1;
    addJsonObject(parent, name, createJsonObject());
    addJsonObject(parent, name, createJsonIntArray(&integer, 1));
    addJsonObjectStringItem(parent, name, "text");
    addJsonObjectStringItem(parent, name, "\xFF");
    addJsonObjectIntItem(parent, name, 1);
    addJsonObjectLongUintItem(parent, name, 1);
    addJsonObjectLongLongUintItem(parent, name, 1);
    addJsonObjectBoolItem(parent, name, 1);
    addJsonObjectDoubleItem(parent, name, 1);
    EXPECT_EQ(attachJsonObject(parent, name), nullptr);
    EXPECT_EQ(attachJsonArray(parent, name), nullptr);
}

TEST(Build, only_an_object_or_array_takes_nodes) {
    CountedBlocks count;
    add_all(nullptr, "a");
    addJsonArrayItem(nullptr, createJsonObject());
    deleteJsonObject(nullptr);
    EXPECT_EQ(held_blocks, 0);
    for (const char* text : {"1", "\"text\"", "true", "false", "null"}) {
        Document root = parse(text);
        add_all(root.get(), "a");
        addJsonArrayItem(root.get(), createJsonObject());
        EXPECT_EQ(getJsonChild(root.get()), nullptr) << text;
        EXPECT_EQ(printed(root), text);
        root.reset();
        EXPECT_EQ(held_blocks, 0) << text;
    }
}

TEST(Build, a_member_needs_a_name) {
    CountedBlocks count;
    for (const char* text : {"{}", "[]"}) {
        Document root = parse(text);
        add_all(root.get(), nullptr);
        EXPECT_EQ(getJsonChild(root.get()), nullptr) << text;
        root.reset();
        EXPECT_EQ(held_blocks, 0) << text;
    }
}

TEST(Build, a_counter_takes_no_members) {
    Document node(cJSON_CreateLongUintNumber(7));
    add_all(node.get(), "a");
    EXPECT_EQ(getJsonChild(node.get()), nullptr);
}

TEST(Build, an_array_takes_members_as_items) {
    Document root = parse("[]");
    addJsonObjectIntItem(root.get(), "a", 1);
    EXPECT_NE(attachJsonObject(root.get(), "b"), nullptr);
    EXPECT_EQ(printed(root), "[1, {\n\t}]");
}

TEST(Build, adding_a_document_to_itself_leaves_it_as_it_was) {
    Document root = object();
    addJsonObject(root.get(), "a", root.get());
    addJsonArrayItem(root.get(), root.get());
    EXPECT_EQ(printed(root), "{\n}");
}

TEST(Build, member_that_already_has_a_name_takes_the_new_one) {
    Document root = parse(R"({"old": {"x": 1}})");
    Document other = object();
    addJsonObjectIntItem(other.get(), "built", 2);
    addJsonObject(other.get(), "new", cJSON_DetachItemFromObject(root.get(), "old"));
    addJsonObject(other.get(), "renamed", cJSON_DetachItemFromObject(other.get(), "built"));
    EXPECT_EQ(printed(other), "{\n\t\"new\":\t{\n\t\t\"x\":\t1\n\t},\n\t\"renamed\":\t2\n}");
}

TEST(Build, arrays_of_values) {
    const std::array<int32_t, 3> integers{INT32_MIN, 0, INT32_MAX};
    const std::array<double, 3> doubles{1, 2.5, -0.04};
    const std::array<const char*, 2> texts{"a", "\n"};
    EXPECT_EQ(
        printed(Document(createJsonIntArray(integers.data(), 3))), "[-2147483648, 0, 2147483647]");
    EXPECT_EQ(printed(Document(createJsonDoubleArray(doubles.data(), 3))), "[1, 2.5, -0.0]");
    EXPECT_EQ(printed(Document(createJsonStringArray(texts.data(), 2))), "[\"a\", \"\\n\"]");
}

TEST(Build, arrays_of_nothing) {
    const int32_t integer = 1;
    EXPECT_EQ(printed(Document(createJsonIntArray(&integer, 0))), "[]");
    EXPECT_EQ(createJsonIntArray(nullptr, 1), nullptr);
    EXPECT_EQ(createJsonIntArray(&integer, -1), nullptr);
    EXPECT_EQ(createJsonDoubleArray(nullptr, 1), nullptr);
    EXPECT_EQ(createJsonStringArray(nullptr, 1), nullptr);
    const char* const texts[] = {"a", nullptr};
    EXPECT_EQ(printed(Document(createJsonStringArray(texts, 0))), "[]");
    EXPECT_EQ(createJsonStringArray(texts, -1), nullptr);
    EXPECT_EQ(createJsonStringArray(texts, 2), nullptr);
}

TEST(Build, items_can_be_appended_to_an_array_of_values) {
    const int32_t integer = 1;
    Document root(createJsonIntArray(&integer, 1));
    addJsonArrayItem(root.get(), cJSON_CreateLongUintNumber(2));
    EXPECT_EQ(printed(root), "[1, 2]");
}

TEST(Remove, member_goes_and_its_neighbours_stay) {
    Document root = parse(R"({"a": 1, "b": {"c": [2]}, "d": 3})");
    removeJsonObject(root.get(), "b");
    EXPECT_EQ(getJsonObjectForKey(root.get(), "b"), nullptr);
    EXPECT_EQ(getJsonArraySize(root.get()), 2);
    addJsonObjectIntItem(root.get(), "e", 4);
    int found = 0;
    EXPECT_EQ(getJsonIntValueForKey(root.get(), "d", &found), 3);
    EXPECT_EQ(getJsonIntValueForKey(root.get(), "e", &found), 4);
}

TEST(Remove, attached_object_goes_with_what_it_holds) {
    Document root = object();
    cJSON* attached = attachJsonObject(root.get(), "only");
    addJsonObjectStringItem(attached, "text", "held");
    removeJsonObject(root.get(), "only");
    EXPECT_EQ(getJsonChild(root.get()), nullptr);
}

TEST(Remove, member_that_is_missing_changes_nothing) {
    Document root = parse(R"({"a": 1})");
    removeJsonObject(root.get(), "b");
    removeJsonObject(nullptr, "a");
    EXPECT_EQ(getJsonArraySize(root.get()), 1);
}

TEST(Copy, string_member_goes_over_under_the_same_name) {
    Document source = parse(R"({"Id": "F1", "n": 1})");
    Document destination = object();
    copyJsonStringItem(source.get(), destination.get(), "id");
    source.reset();
    EXPECT_EQ(printed(destination), "{\n\t\"id\":\t\"F1\"\n}");
}

TEST(Copy, member_that_is_missing_or_no_string_adds_nothing) {
    Document source = parse(R"({"n": 1})");
    Document destination = object();
    copyJsonStringItem(source.get(), destination.get(), "n");
    copyJsonStringItem(source.get(), destination.get(), "missing");
    copyJsonStringItem(nullptr, destination.get(), "n");
    EXPECT_EQ(printed(destination), "{\n}");
}

} // namespace
