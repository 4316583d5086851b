// Port lists: bitmap to text and back.
#include "base/port_list.h"

#include <array>
#include <cstring>
#include <fstream>
#include <initializer_list>
#include <memory>
#include <string>

#include "platform/types.h"
#include "tests/support/on_board.h"

namespace {

using Words = std::array<uint32_t, PORT_BITMAP_WORDS>;

Words words_of(std::initializer_list<int> bits) {
    Words words{};
    for (int bit : bits)
        words[static_cast<std::size_t>(bit / 32)] |= 1u << bit % 32;
    return words;
}

Words words_where(bool (*chosen)(int bit)) {
    Words words{};
    for (int bit = 0; bit < 96; ++bit)
        if (chosen(bit))
            words[static_cast<std::size_t>(bit / 32)] |= 1u << bit % 32;
    return words;
}

// A switch with so many logical ports; 11 is the smallest there is.
class PortListText : public testing::Test {
  protected:
    std::string list(int ports, const Words& words, const std::string& before = "") {
        TempFolder folder;
        std::string scenario = folder.path() / "switch.json";
        std::ofstream(scenario) << R"({"hardware": {"logical_ports": )" << ports << "}}";
        sim::Board board(folder.path(), scenario);
        // Its size is exact, so that a sanitizer sees the first byte too many.
        std::unique_ptr<char[]> text(new char[before.size() + PORT_LIST_SIZE]);
        std::strcpy(text.get(), before.c_str());
        EXPECT_EQ(Bitmap2numstr(words.data(), text.get()), 0);
        return text.get();
    }
};

TEST_F(PortListText, of_no_port_is_empty) { EXPECT_EQ(list(28, {}), ""); }

TEST_F(PortListText, of_port_1_alone) { EXPECT_EQ(list(28, words_of({0})), "1"); }

TEST_F(PortListText, of_ports_1_and_2_is_a_run) { EXPECT_EQ(list(28, words_of({0, 1})), "1-2"); }

TEST_F(PortListText, of_single_ports_and_a_run) {
    EXPECT_EQ(list(28, words_of({0, 2, 3, 4, 7})), "1,3-5,8");
}

TEST_F(PortListText, of_all_ports_is_one_run) {
    EXPECT_EQ(list(11, words_of({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10})), "1-11");
}

TEST_F(PortListText, of_the_last_port_alone) { EXPECT_EQ(list(11, words_of({10})), "11"); }

TEST_F(PortListText, closes_a_run_that_ends_on_the_last_port) {
    EXPECT_EQ(list(11, words_of({0, 9, 10})), "1,10-11");
}

TEST_F(PortListText, leaves_out_ports_that_the_switch_does_not_have) {
    EXPECT_EQ(list(11, words_of({9, 10, 11, 40})), "10-11");
}

TEST_F(PortListText, crosses_the_words_of_the_bitmap) {
    EXPECT_EQ(list(96, words_of({30, 31, 32, 33, 63, 64, 95})), "31-34,64-65,96");
}

TEST_F(PortListText, is_appended_without_a_separator_of_its_own) {
    EXPECT_EQ(list(28, words_of({1, 3}), "Ports "), "Ports 2,4");
}

TEST_F(PortListText, leaves_the_text_when_there_is_nothing_to_append) {
    EXPECT_EQ(list(28, {}, "none"), "none");
}

TEST_F(PortListText, of_every_other_of_96_ports_fits) {
    std::string text = list(96, words_where([](int bit) { return bit % 2 == 0; }));
    EXPECT_EQ(text.size(), 138u);
    EXPECT_TRUE(text.starts_with("1,3,5,7,9,11,"));
    EXPECT_TRUE(text.ends_with(",93,95"));
}

TEST_F(PortListText, the_longest_list_fits) {
    std::string text = list(96, words_where([](int bit) { return bit % 3 != 2; }));
    EXPECT_LT(text.size(), static_cast<std::size_t>(PORT_LIST_SIZE));
    EXPECT_TRUE(text.starts_with("1-2,4-5,"));
    EXPECT_TRUE(text.ends_with(",94-95"));
}

struct Parsed {
    int result;
    Words words;
    bool operator==(const Parsed&) const = default;
};

Parsed parse(const char* text, Words words = {}) {
    int result = Numstr2bitmap(text, words.data());
    return {result, words};
}

std::ostream& operator<<(std::ostream& out, const Parsed& parsed) {
    out << parsed.result << std::hex;
    for (uint32_t word : parsed.words)
        out << ' ' << word;
    return out;
}

TEST(PortListBitmap, of_a_range) { EXPECT_EQ(parse("3-5"), (Parsed{0, words_of({2, 3, 4})})); }

TEST(PortListBitmap, of_ports_and_ranges) {
    EXPECT_EQ(parse("1,3-5,8"), (Parsed{0, words_of({0, 2, 3, 4, 7})}));
}

TEST(PortListBitmap, of_an_empty_text_is_empty) { EXPECT_EQ(parse(""), (Parsed{0, {}})); }

TEST(PortListBitmap, empty_fields_are_skipped) {
    EXPECT_EQ(parse(",,2,,4-5,"), (Parsed{0, words_of({1, 3, 4})}));
}

TEST(PortListBitmap, is_added_to_what_is_there) {
    EXPECT_EQ(parse("2", words_of({9})), (Parsed{0, words_of({1, 9})}));
}

TEST(PortListBitmap, crosses_the_words) {
    EXPECT_EQ(parse("31-34,96"), (Parsed{0, words_of({30, 31, 32, 33, 95})}));
}

TEST(PortListBitmap, knows_no_highest_port) {
    std::array<uint32_t, 8> words{};
    EXPECT_EQ(Numstr2bitmap("100,255-256", words.data()), 0);
    EXPECT_EQ(words[3], 1u << 3);
    EXPECT_EQ(words[7], 3u << 30);
}

TEST(PortListBitmap, leading_zeroes_do_not_count) {
    EXPECT_EQ(parse("007-0009"), (Parsed{0, words_of({6, 7, 8})}));
}

TEST(PortListBitmap, refuses_a_falling_range_but_keeps_its_first_port) {
    EXPECT_EQ(parse("5-3"), (Parsed{-1, words_of({4})}));
}

TEST(PortListBitmap, refuses_a_range_of_one_port) {
    EXPECT_EQ(parse("3-3"), (Parsed{-1, words_of({2})}));
}

TEST(PortListBitmap, refuses_a_range_without_its_end) {
    EXPECT_EQ(parse("3-"), (Parsed{-1, words_of({2})}));
    EXPECT_EQ(parse("3-0"), (Parsed{-1, words_of({2})}));
}

TEST(PortListBitmap, refuses_port_0) {
    EXPECT_EQ(parse("0"), (Parsed{-1, {}}));
    EXPECT_EQ(parse("-5"), (Parsed{-1, {}}));
    EXPECT_EQ(parse("-"), (Parsed{-1, {}}));
}

TEST(PortListBitmap, refuses_two_dashes_in_a_field) {
    EXPECT_EQ(parse("1-2-3"), (Parsed{-1, {}}));
    EXPECT_EQ(parse("1--3"), (Parsed{-1, {}}));
}

TEST(PortListBitmap, refuses_any_other_character_before_it_sets_anything) {
    for (const char* text : {"1;2", "1, 2", "1,x", "+1", "1\n", "1,2\xff"})
        EXPECT_EQ(parse(text), (Parsed{-1, {}})) << text;
}

TEST(PortListBitmap, keeps_what_came_before_the_fault) {
    EXPECT_EQ(parse("1,2,0,4"), (Parsed{-1, words_of({0, 1})}));
}

} // namespace
