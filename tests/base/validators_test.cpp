// Addresses and device names that the cloud may send.
#include <gtest/gtest.h>

#include <string>

#include "base/errors.h"
#include "base/validators.h"
#include "tests/support/on_board.h"

namespace {

class Ipv4 : public OnBoard {};

TEST_F(Ipv4, accepts_an_address) {
    for (const char* text : {"192.168.1.254", "0.0.0.0", "255.255.255.255"})
        EXPECT_EQ(ipv4_addr_validate(text), 0) << text;
    EXPECT_EQ(error_count, 0u);
}

TEST_F(Ipv4, refuses_a_last_part_above_255) {
    EXPECT_EQ(ipv4_addr_validate("192.168.1.256"), -1);
    EXPECT_EQ(error_count, 0u);
}

TEST_F(Ipv4, refuses_a_first_part_above_255) {
    EXPECT_EQ(ipv4_addr_validate("300.1.1.1"), -1);
    EXPECT_EQ(error_count, 0u);
}

TEST_F(Ipv4, refuses_a_part_that_is_no_number) {
    for (const char* text :
         {"a.1.1.1", "1.1.b.1", "1.1.1.c", "1.1.1.", "1.1.1.1.1", "1.1.1.-1",
          "1.1.1.99999999999999999999", " 1.1.1.1", "1.1.1.1 "})
        EXPECT_EQ(ipv4_addr_validate(text), -1) << text;
    EXPECT_EQ(error_count, 0u);
}

TEST_F(Ipv4, refuses_a_bad_part_before_it_looks_for_the_next) {
    EXPECT_EQ(ipv4_addr_validate("300.1"), -1);
    EXPECT_EQ(error_count, 0u);
}

TEST_F(Ipv4, too_few_parts_is_the_tokenizers_error_and_is_recorded) {
    uint32_t count = 0;
    for (const char* text : {"", "1", "1.2", "1.2.3", "1..2.3", ".1.2.3"}) {
        int code = ipv4_addr_validate(text);
        EXPECT_GT(code, 0) << text;
        ASSERT_EQ(error_count, ++count) << text;
        EXPECT_EQ(error_flags[count - 1], static_cast<uint32_t>(code)) << text;
    }
}

TEST_F(Ipv4, the_tokenizers_own_code_is_passed_on) {
    fail("sys_util_getnext", 77, 2);
    EXPECT_EQ(ipv4_addr_validate("1.2.3.4"), 77);
    EXPECT_EQ(recorded(), Codes{77});
}

TEST_F(Ipv4, a_conversion_that_fails_is_a_refusal_and_not_recorded) {
    fail("sys_util_str2ul_ret", 77, 4);
    EXPECT_EQ(ipv4_addr_validate("1.2.3.4"), -1);
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(Ipv4, takes_three_parts_and_converts_the_remainder) {
    ipv4_addr_validate("1.2.3.4");
    const Lines expected{
        "sys_util_getnext", "sys_util_str2ul_ret", "sys_util_getnext",    "sys_util_str2ul_ret",
        "sys_util_getnext", "sys_util_str2ul_ret", "sys_util_str2ul_ret",
    };
    EXPECT_EQ(calls(), expected);
}

TEST_F(Ipv4, missing_text_is_498_and_not_recorded) {
    EXPECT_EQ(ipv4_addr_validate(nullptr), 498);
    EXPECT_EQ(error_count, 0u);
}

TEST_F(Ipv4, text_may_be_of_any_length) {
    std::string digits(100000, '1');
    EXPECT_GT(ipv4_addr_validate(digits.c_str()), 0);
    EXPECT_EQ(ipv4_addr_validate((digits + ".1.1.1").c_str()), -1);
    EXPECT_EQ(ipv4_addr_validate(("1.1.1." + digits).c_str()), -1);
}

TEST(SystemName, accepts_letters_digits_and_hyphens) {
    for (const char* name : {"Switch-1", "a", "Z", "a1", "a-b--c9"})
        EXPECT_EQ(systemName_validate(name), 0) << name;
}

TEST(SystemName, missing_name_is_498) { EXPECT_EQ(systemName_validate(nullptr), 498); }

TEST(SystemName, empty_name_is_refused) { EXPECT_EQ(systemName_validate(""), 19); }

TEST(SystemName, name_that_begins_with_a_digit_or_hyphen_is_refused) {
    EXPECT_EQ(systemName_validate("1Switch"), 19);
    EXPECT_EQ(systemName_validate("-Switch"), 19);
}

TEST(SystemName, name_that_ends_with_a_hyphen_is_refused) {
    EXPECT_EQ(systemName_validate("Switch-"), 19);
    EXPECT_EQ(systemName_validate("a-"), 19);
}

TEST(SystemName, other_characters_are_refused) {
    for (const char* name :
         {"Switch_1", "Switch 1", " a", "a ", "a.b", "a\n", "Sw\xc3\xa9", "\xe9"})
        EXPECT_EQ(systemName_validate(name), 19) << name;
}

TEST(SystemName, has_no_limit_of_length) {
    EXPECT_EQ(systemName_validate(std::string(100000, 'a').c_str()), 0);
}

} // namespace
