// Texts from outside: whatever bytes come in, a document is UTF-8.
#include <gtest/gtest.h>

#include <cstdint>
#include <string_view>
#include <unordered_set>

#include "json/utf8.h"
#include "support.h"

namespace {

const std::string replacement = "\xEF\xBF\xBD";

std::string encode(std::uint32_t letter) {
    auto byte = [](std::uint32_t value) { return static_cast<char>(value); };
    auto later = [&](int shift) { return byte(0x80 | (letter >> shift & 0x3F)); };
    if (letter < 0x80)
        return {byte(letter)};
    if (letter < 0x800)
        return {byte(0xC0 | letter >> 6), later(0)};
    if (letter < 0x10000)
        return {byte(0xE0 | letter >> 12), later(6), later(0)};
    return {byte(0xF0 | letter >> 18), later(12), later(6), later(0)};
}

bool is_letter(std::uint32_t value) {
    return value > 0 && value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF);
}

// The bytes of a letter or of its beginning, as one number.
std::uint32_t packed(std::string_view bytes) {
    std::uint32_t number = 0;
    for (char byte : bytes)
        number = number << 8 | static_cast<unsigned char>(byte);
    return number;
}

// Every letter there is, and every beginning of one.
struct Letters {
    std::unordered_set<std::uint32_t> whole, cut;

    Letters() {
        for (std::uint32_t value = 1; value <= 0x10FFFF; ++value) {
            if (!is_letter(value))
                continue;
            std::uint32_t letter = packed(encode(value));
            whole.insert(letter);
            while (letter >>= 8)
                cut.insert(letter);
        }
    }
};

// A text repaired by the list of all letters: the longest beginning of a letter is one replacement.
std::string repaired_by_list(std::string_view text) {
    static const Letters letters;
    std::string result;
    while (!text.empty()) {
        std::size_t length = 1, whole = 0;
        for (std::size_t taken = 1; taken <= 4 && taken <= text.size(); ++taken) {
            std::uint32_t start = packed(text.substr(0, taken));
            if (letters.whole.contains(start))
                whole = taken;
            if (letters.cut.contains(start))
                length = taken;
        }
        result += whole ? text.substr(0, whole) : replacement;
        text.remove_prefix(whole ? whole : length);
    }
    return result;
}

// As a text of a document.
std::string reported(const std::string& text) {
    Document root(createJsonObject());
    addJsonObjectStringItem(root.get(), "text", text.c_str());
    const char* stored = getJsonStringValueForKey(root.get(), "text");
    return stored ? stored : "(null)";
}

TEST(Utf8, every_letter_stays_as_it_is) {
    std::string text;
    for (std::uint32_t value = 1; value <= 0x10FFFF; ++value) {
        if (!is_letter(value))
            continue;
        std::string letter = encode(value);
        ASSERT_TRUE(is_utf8(letter.data(), letter.size())) << value;
        text += letter;
    }
    EXPECT_TRUE(reported(text) == text);
}

TEST(Utf8, what_is_no_letter_is_replaced) {
    EXPECT_EQ(reported("\xFF"), replacement);
    EXPECT_EQ(reported("caf\xE9 au lait"), "caf" + replacement + " au lait");
    EXPECT_EQ(reported("\x80\xBF"), replacement + replacement);
    EXPECT_EQ(reported("\xC0\xAF"), replacement + replacement); // overlong /
    EXPECT_EQ(reported("\xE0\x80\xAF"), replacement + replacement + replacement);
    EXPECT_EQ(reported("\xED\xA0\x80"), replacement + replacement + replacement); // a surrogate
    EXPECT_EQ(reported("\xF4\x90\x80\x80").size(), 4 * replacement.size());       // beyond the last
    EXPECT_EQ(reported("\xF5").size(), replacement.size());
}

TEST(Utf8, a_letter_that_is_cut_is_one_replacement) {
    EXPECT_EQ(reported("\xE2\x82"), replacement);
    EXPECT_EQ(reported("\xF0\x9F\x98"), replacement);
    EXPECT_EQ(reported("a\xE2\x82z\xC3"), "a" + replacement + "z" + replacement);
    EXPECT_EQ(reported("\xF0\x9F\xE2\x82\xAC"), replacement + "\xE2\x82\xAC");
}

// At every distance from the eight bytes that are looked at in one go.
TEST(Utf8, one_byte_is_found_anywhere_in_a_text) {
    for (std::size_t length = 1; length < 40; ++length) {
        for (std::size_t place = 0; place < length; ++place) {
            std::string text(length, 'a');
            text[place] = '\xA0';
            std::string expected = text;
            expected.replace(place, 1, replacement);
            ASSERT_EQ(reported(text), expected) << place << " of " << length;
        }
    }
}

// The bytes next to every limit of the encoding.
TEST(Utf8, one_byte_of_any_value_is_found_among_letters_and_among_digits) {
    for (int byte = 0x80; byte <= 0xFF; ++byte) {
        for (std::size_t at = 0; at < 24; ++at) {
            for (char other : {'a', '1'}) {
                std::string text(24, other);
                text[at] = static_cast<char>(byte);
                EXPECT_FALSE(is_utf8(text.data(), text.size())) << byte << " at " << at;
            }
        }
    }
}

TEST(Utf8, every_sequence_of_four_bytes_is_repaired_as_the_list_of_letters_says) {
    const std::string bytes = "a\x80\x8F\x90\x9F\xA0\xBF\xC1\xC2\xDF\xE0\xE1\xEC\xED\xEE\xEF"
                              "\xF0\xF1\xF3\xF4\xF5\xFF";
    std::string text(4, ' ');
    std::size_t count = 1;
    for (std::size_t i = 0; i < text.size(); ++i)
        count *= bytes.size();
    char repaired[4 * REPLACEMENT_SIZE + 1];
    for (std::size_t number = 0; number < count; ++number) {
        std::size_t rest = number;
        for (char& letter : text) {
            letter = bytes[rest % bytes.size()];
            rest /= bytes.size();
        }
        repair_utf8(text.c_str(), repaired);
        ASSERT_EQ(repaired, repaired_by_list(text));
        ASSERT_EQ(is_utf8(text.data(), text.size()), repaired == text);
    }
}

TEST(Utf8, every_pair_of_bytes_is_repaired_as_the_list_of_letters_says) {
    for (int first = 1; first < 256; ++first) {
        for (int second = 1; second < 256; ++second) {
            std::string text{static_cast<char>(first), static_cast<char>(second)};
            ASSERT_EQ(reported(text), repaired_by_list(text)) << first << ' ' << second;
        }
    }
}

TEST(Utf8, texts_of_arrays_and_copies_are_repaired_too) {
    const char* const texts[] = {"good", "\xC3\xA9", "bad\xC3"};
    EXPECT_EQ(
        printed(Document(createJsonStringArray(texts, 3))),
        "[\"good\", \"\xC3\xA9\", \"bad" + replacement + "\"]");
    Document source = parse("{\"text\": \"\xFE\"}");
    Document copy(createJsonObject());
    copyJsonStringItem(source.get(), copy.get(), "text");
    EXPECT_EQ(getJsonStringValueForKey(copy.get(), "text"), replacement);
}

} // namespace
