// Printing documents.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "support.h"

namespace {

std::string number(double value) {
    Document root(createJsonObject());
    addJsonObjectDoubleItem(root.get(), "n", value);
    return printed(getJsonChild(root.get()));
}

// The four rules for a double, as they are told.
std::string expected_number(double d, int i) {
    char text[400];
    if (std::fabs(i - d) <= DBL_EPSILON && d >= INT32_MIN && d <= INT32_MAX)
        std::snprintf(text, sizeof text, "%d", i);
    else if (std::fabs(std::floor(d) - d) <= DBL_EPSILON && std::fabs(d) < 1e60)
        std::snprintf(text, sizeof text, "%.0f", d);
    else if (std::fabs(d) < 1e-6 || std::fabs(d) > 1e9)
        std::snprintf(text, sizeof text, "%e", d);
    else
        std::snprintf(text, sizeof text, "%.1f", d);
    return text;
}

std::string stock(const cJSON* root) {
    Text text(cJSON_Print(root));
    return text.get();
}

TEST(Number, whole_double_has_no_decimals) {
    EXPECT_EQ(number(3.0), "3");
    EXPECT_EQ(number(0.0), "0");
    EXPECT_EQ(number(-0.0), "0");
    EXPECT_EQ(number(-7), "-7");
}

TEST(Number, fraction_has_one_decimal) {
    EXPECT_EQ(number(2.5), "2.5");
    EXPECT_EQ(number(2.71828), "2.7");
    EXPECT_EQ(number(12.345), "12.3");
    EXPECT_EQ(number(0.96), "1.0");
    EXPECT_EQ(number(-0.04), "-0.0");
    EXPECT_EQ(number(0.25), "0.2");
    EXPECT_EQ(number(0.35), "0.3");
    EXPECT_EQ(number(999999999.5), "999999999.5");
    EXPECT_EQ(number(1e-6), "0.0");
}

TEST(Number, large_fraction_is_in_exponent_form) {
    EXPECT_EQ(number(1e10 + 0.5), "1.000000e+10");
    EXPECT_EQ(number(-1e9 - 0.5), "-1.000000e+09");
}

TEST(Number, small_fraction_is_in_exponent_form) {
    EXPECT_EQ(number(1e-7), "1.000000e-07");
    EXPECT_EQ(number(-1e-7), "-1.000000e-07");
    EXPECT_EQ(number(DBL_EPSILON), "0");
    EXPECT_EQ(number(3e-16), "3.000000e-16");
}

TEST(Number, whole_double_beyond_32_bits_is_printed_in_full) {
    EXPECT_EQ(number(2147483648.0), "2147483648");
    EXPECT_EQ(number(-2147483649.0), "-2147483649");
    EXPECT_EQ(number(9007199254740991.0), "9007199254740991");
    EXPECT_EQ(number(-9007199254740991.0), "-9007199254740991");
    EXPECT_EQ(number(1e18), "1000000000000000000");
    EXPECT_EQ(number(1e19), "10000000000000000000");
    EXPECT_EQ(
        number(std::ldexp(1, 190)), "1569275433846670190958947355801916604025588861116008628224");
}

TEST(Number, whole_double_from_1e60_on_is_in_exponent_form) {
    EXPECT_EQ(number(1e60), "1.000000e+60");
    EXPECT_EQ(number(-1.5e300), "-1.500000e+300");
    EXPECT_EQ(number(DBL_MAX), "1.797693e+308");
}

TEST(Number, every_form_stands_in_its_place) {
    EXPECT_EQ(
        printed(parse("[7, 10000000000.5, 1e-7, 1e59, 0.5, -2.5, 1e18]")),
        "[7, 1.000000e+10, 1.000000e-07, "
        "99999999999999997168788049560464200849936328366177157906432"
        ", 0.5, -2.5, 1000000000000000000]");
}

TEST(Number, what_is_no_finite_number_is_null) {
    EXPECT_EQ(number(std::nan("")), "null");
    EXPECT_EQ(number(std::numeric_limits<double>::infinity()), "null");
    EXPECT_EQ(number(-std::numeric_limits<double>::infinity()), "null");
    EXPECT_EQ(printed(parse("[1e999]")), "[null]");
}

TEST(Number, rules_hold_for_doubles_of_every_size) {
    std::mt19937_64 random(20240611);
    std::uniform_real_distribution<double> mantissa(-10, 10), exponent(-20, 70);
    for (int round = 0; round < 20000; ++round) {
        double value = mantissa(random) * std::pow(10, exponent(random));
        for (double d : {value, std::round(value), value / 1e20}) {
            Document root(createJsonObject());
            addJsonObjectDoubleItem(root.get(), "n", d);
            cJSON* node = getJsonChild(root.get());
            EXPECT_EQ(printed(node), expected_number(d, node->valueint)) << d;
        }
    }
}

std::string c_library_tenths(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.1f", value);
    return text;
}

// Powers come from the switch in tenths of a watt, voltages and the like would in the same way.
TEST(Number, every_count_of_tenths_prints_as_the_c_library_rounds) {
    std::mt19937 random(3);
    for (int32_t count = 1; count < 100000; ++count) {
        for (int32_t tenths : {count, -count, static_cast<int32_t>(random())}) {
            double value = tenths / 10.0;
            if (tenths % 10 == 0 || std::fabs(value) > 1e9)
                continue;
            ASSERT_EQ(number(value), c_library_tenths(value)) << tenths;
        }
    }
}

// Next to where the tenth changes, where the smallest part of a double decides, and on the very
// middle, which is a quarter or three.
TEST(Number, fractions_round_as_in_the_c_library) {
    std::mt19937_64 random(4);
    std::uniform_real_distribution<double> exponent(-20, 30);
    for (int round = 0; round < 40000; ++round) {
        double size = std::exp2(exponent(random)) * (round % 2 ? 1 : -1);
        double middle = std::trunc(size) + static_cast<double>(random() % 20) / 20;
        double quarter = std::trunc(size) + static_cast<double>(random() % 8) / 8;
        for (double value :
             {size, middle, quarter, std::nextafter(middle, -1e9), std::nextafter(middle, 1e9),
              std::nextafter(quarter, -1e9), std::nextafter(quarter, 1e9)}) {
            bool whole = std::fabs(std::round(value) - value) <= DBL_EPSILON;
            if (whole || std::fabs(value) < 1e-6 || std::fabs(value) > 1e9)
                continue;
            ASSERT_EQ(number(value), c_library_tenths(value)) << std::hexfloat << value;
        }
    }
}

TEST(Number, rules_hold_around_their_limits) {
    for (double limit :
         {0.0, 1.0, 1e-6, 1e9, 1e60, 2147483647.0, -2147483648.0, 9e18, 1e15, 0.05}) {
        for (double d :
             {limit, std::nextafter(limit, -1e300), std::nextafter(limit, 1e300), limit + 0.5,
              limit - 0.5, -limit}) {
            Document root(createJsonObject());
            addJsonObjectDoubleItem(root.get(), "n", d);
            cJSON* node = getJsonChild(root.get());
            EXPECT_EQ(printed(node), expected_number(d, node->valueint)) << d;
        }
    }
}

TEST(Counter, unsigned_32_bit_maximum_prints_in_full) {
    Document root(createJsonObject());
    addJsonObjectLongUintItem(root.get(), "rx", 4294967295);
    EXPECT_EQ(printed(root), "{\n\t\"rx\":\t4294967295\n}");
}

TEST(Counter, unsigned_64_bit_maximum_prints_in_full) {
    Document root(createJsonObject());
    addJsonObjectLongLongUintItem(root.get(), "rx", 18446744073709551615u);
    EXPECT_EQ(printed(root), "{\n\t\"rx\":\t18446744073709551615\n}");
}

TEST(Layout, empty_containers) {
    EXPECT_EQ(printed(parse("{}")), "{\n}");
    EXPECT_EQ(printed(parse("[]")), "[]");
    EXPECT_EQ(printed(parse(R"({"a":{},"b":[]})")), "{\n\t\"a\":\t{\n\t},\n\t\"b\":\t[]\n}");
}

TEST(Layout, same_as_the_librarys_own) {
    for (const char* text :
         {"{}", "[]", "null", "true", "false", "12", "\"\"", "[[],[]]", "[{},{}]", "[[[{}]]]",
          R"({"a":[{"b":[1,[2,{"c":{}}]]},{"d":"\u0001\b\f\n\r\t\"\\\/é€😀"}],"":{"":""}})"}) {
        Document root = parse(text);
        ASSERT_TRUE(root) << text;
        EXPECT_EQ(printed(root), stock(root.get())) << text;
    }
}

TEST(Layout, part_of_a_document_prints_without_its_siblings) {
    Document root = parse(R"({"a":[1,2],"b":{"c":3}})");
    for (cJSON* node = getJsonChild(root.get()); node; node = getJsonNext(node))
        EXPECT_EQ(printed(node), stock(node));
}

TEST(Layout, raw_text_is_printed_as_it_is) {
    Document root(createJsonArray());
    addJsonArrayItem(root.get(), cJSON_CreateRaw("{ raw }"));
    EXPECT_EQ(printed(root), stock(root.get()));
}

TEST(Layout, nameless_member_prints_like_the_librarys) {
    Document root(createJsonObject());
    addJsonArrayItem(root.get(), cJSON_CreateTrue());
    EXPECT_EQ(printed(root), stock(root.get()));
}

TEST(Layout, node_of_no_type_cannot_be_printed) {
    cJSON nothing = {};
    EXPECT_EQ(printJson(&nothing), nullptr);
    EXPECT_EQ(printJson(nullptr), nullptr);
}

std::string random_text(std::mt19937& random) {
    std::string text(random() % 40, ' ');
    bool any_byte = random() % 3 == 0;
    for (char& letter : text)
        letter = static_cast<char>(any_byte ? random() % 255 + 1 : random() % 95 + 32);
    return text;
}

Document random_document(std::mt19937& random, int depth) {
    unsigned kind = random() % (depth > 0 ? 9u : 5u);
    if (kind == 0)
        return Document(cJSON_CreateBool(random() % 2));
    if (kind == 1)
        return Document(cJSON_CreateNull());
    if (kind == 2)
        return Document(cJSON_CreateNumber(static_cast<int32_t>(random()) >> random() % 32));
    if (kind <= 4)
        return Document(cJSON_CreateString(random_text(random).c_str()));
    Document root(kind % 2 ? createJsonArray() : createJsonObject());
    for (unsigned count = random() % 7; count > 0; --count) {
        Document item = random_document(random, depth - 1);
        if (kind % 2)
            addJsonArrayItem(root.get(), item.release());
        else
            addJsonObject(root.get(), random_text(random).c_str(), item.release());
    }
    return root;
}

TEST(Layout, random_documents_print_like_the_librarys) {
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        Document root = random_document(random, 7);
        ASSERT_EQ(printed(root), stock(root.get())) << "round " << round;
    }
}

TEST(String, every_byte_is_escaped_like_the_librarys) {
    for (int letter = 1; letter < 256; ++letter) {
        for (size_t before = 0; before < 10; ++before) {
            std::string text = std::string(before, 'x') + static_cast<char>(letter) + "yz";
            Document root(cJSON_CreateString(text.c_str()));
            ASSERT_EQ(printed(root), stock(root.get())) << letter << " after " << before;
        }
    }
}

TEST(String, a_letter_is_escaped_wherever_it_stands) {
    for (std::size_t length = 1; length <= 40; ++length) {
        for (std::size_t place = 0; place < length; ++place) {
            for (char letter : {'"', '\\', '\n', '\x1F', '\xC3'}) {
                std::string text(length, 'x');
                text[place] = letter;
                if (letter == '\xC3')
                    text.insert(place + 1, "\xA4");
                Document root(createJsonObject());
                addJsonObjectStringItem(root.get(), text.c_str(), text.c_str());
                ASSERT_EQ(printed(root), stock(root.get())) << length << " " << place;
            }
        }
    }
}

TEST(String, names_of_every_length_are_printed_whole) {
    for (std::size_t length : {0, 1, 3, 4, 7, 8, 9, 262142, 262143, 262144, 600000}) {
        std::string name(length, 'n');
        Document root(createJsonObject());
        addJsonObjectLongLongUintItem(root.get(), name.c_str(), 5);
        EXPECT_EQ(printed(root), "{\n\t\"" + name + "\":\t5\n}") << length;
    }
}

TEST(String, a_member_that_is_given_another_name_is_printed_with_that) {
    Document root(createJsonObject());
    addJsonObjectIntItem(root.get(), "first", 1);
    cJSON* member = cJSON_DetachItemFromObject(root.get(), "first");
    cJSON_AddItemToObject(root.get(), "the second", member);
    EXPECT_EQ(printed(root), "{\n\t\"the second\":\t1\n}");
}

TEST(Size, text_of_twenty_megabytes) {
    std::string text(20u << 20, 'a');
    for (size_t i = 0; i < text.size(); i += 1000)
        text[i] = '\n';
    Document root(createJsonObject());
    addJsonObjectStringItem(root.get(), "text", text.c_str());
    std::string result = printed(root);
    EXPECT_EQ(
        result.size(),
        text.size() + (text.size() + 999) / 1000 + strlen("{\n\t\"text\":\t\"\"\n}"));
    Document again = parse(result);
    EXPECT_EQ(getJsonStringValueForKey(again.get(), "text"), text);
}

TEST(Size, deepest_document_that_parses) {
    std::string text = std::string(1000, '[') + std::string(1000, ']');
    EXPECT_EQ(printed(parse(text)), text);
    std::string objects;
    for (int i = 0; i < 999; ++i)
        objects += "{\"a\":";
    objects += "1" + std::string(999, '}');
    Document root = parse(objects);
    ASSERT_TRUE(root);
    EXPECT_EQ(printed(root), stock(root.get()));
}

TEST(Size, depth_needs_no_stack) {
    constexpr int depth = 200000;
    std::vector<cJSON> levels(depth, cJSON{});
    for (int i = 0; i < depth; ++i) {
        levels[i].type = cJSON_Array;
        levels[i].child = i + 1 < depth ? &levels[i + 1] : nullptr;
    }
    EXPECT_EQ(printed(levels.data()), std::string(depth, '[') + std::string(depth, ']'));
}

} // namespace
