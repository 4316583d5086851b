// Addresses and device names that the cloud may send.
#include <gtest/gtest.h>

#include <string>

#include "base/errors.h"
#include "base/validators.h"
#include "tests/support/on_board.h"

namespace {

class Ipv4 : public OnBoard {};

TEST_F(Ipv4, AcceptsAnAddress) {
    for (const char* text : {"192.168.1.254", "0.0.0.0", "255.255.255.255"})
        EXPECT_EQ(ipv4_addr_validate(text), 0) << text;
    EXPECT_EQ(error_count, 0u);
}

TEST_F(Ipv4, RefusesALastPartAbove255) {
    EXPECT_EQ(ipv4_addr_validate("192.168.1.256"), -1);
    EXPECT_EQ(error_count, 0u);
}

TEST_F(Ipv4, RefusesAFirstPartAbove255) {
    EXPECT_EQ(ipv4_addr_validate("300.1.1.1"), -1);
    EXPECT_EQ(error_count, 0u);
}

TEST_F(Ipv4, RefusesAPartThatIsNoNumber) {
    for (const char* text :
         {"a.1.1.1", "1.1.b.1", "1.1.1.c", "1.1.1.", "1.1.1.1.1", "1.1.1.-1",
          "1.1.1.99999999999999999999", " 1.1.1.1", "1.1.1.1 "})
        EXPECT_EQ(ipv4_addr_validate(text), -1) << text;
    EXPECT_EQ(error_count, 0u);
}

TEST_F(Ipv4, RefusesABadPartBeforeItLooksForTheNext) {
    EXPECT_EQ(ipv4_addr_validate("300.1"), -1);
    EXPECT_EQ(error_count, 0u);
}

TEST_F(Ipv4, TooFewPartsIsTheTokenizersErrorAndIsRecorded) {
    uint32_t count = 0;
    for (const char* text : {"", "1", "1.2", "1.2.3", "1..2.3", ".1.2.3"}) {
        int code = ipv4_addr_validate(text);
        EXPECT_GT(code, 0) << text;
        ASSERT_EQ(error_count, ++count) << text;
        EXPECT_EQ(error_flags[count - 1], static_cast<uint32_t>(code)) << text;
    }
}

TEST_F(Ipv4, TheTokenizersOwnCodeIsPassedOn) {
    fail("sys_util_getnext", 77, 2);
    EXPECT_EQ(ipv4_addr_validate("1.2.3.4"), 77);
    EXPECT_EQ(recorded(), Codes{77});
}

TEST_F(Ipv4, AConversionThatFailsIsARefusalAndNotRecorded) {
    fail("sys_util_str2ul_ret", 77, 4);
    EXPECT_EQ(ipv4_addr_validate("1.2.3.4"), -1);
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(Ipv4, TakesThreePartsAndConvertsTheRemainder) {
    ipv4_addr_validate("1.2.3.4");
    const Lines expected{
        "sys_util_getnext", "sys_util_str2ul_ret", "sys_util_getnext",    "sys_util_str2ul_ret",
        "sys_util_getnext", "sys_util_str2ul_ret", "sys_util_str2ul_ret",
    };
    EXPECT_EQ(calls(), expected);
}

TEST_F(Ipv4, MissingTextIs498AndNotRecorded) {
    EXPECT_EQ(ipv4_addr_validate(nullptr), 498);
    EXPECT_EQ(error_count, 0u);
}

TEST_F(Ipv4, TextMayBeOfAnyLength) {
    std::string digits(100000, '1');
    EXPECT_GT(ipv4_addr_validate(digits.c_str()), 0);
    EXPECT_EQ(ipv4_addr_validate((digits + ".1.1.1").c_str()), -1);
    EXPECT_EQ(ipv4_addr_validate(("1.1.1." + digits).c_str()), -1);
}

TEST(SystemName, AcceptsLettersDigitsAndHyphens) {
    for (const char* name : {"Switch-1", "a", "Z", "a1", "a-b--c9"})
        EXPECT_EQ(systemName_validate(name), 0) << name;
}

TEST(SystemName, MissingNameIs498) { EXPECT_EQ(systemName_validate(nullptr), 498); }

TEST(SystemName, EmptyNameIsRefused) { EXPECT_EQ(systemName_validate(""), 19); }

TEST(SystemName, NameThatBeginsWithADigitOrHyphenIsRefused) {
    EXPECT_EQ(systemName_validate("1Switch"), 19);
    EXPECT_EQ(systemName_validate("-Switch"), 19);
}

TEST(SystemName, NameThatEndsWithAHyphenIsRefused) {
    EXPECT_EQ(systemName_validate("Switch-"), 19);
    EXPECT_EQ(systemName_validate("a-"), 19);
}

TEST(SystemName, OtherCharactersAreRefused) {
    for (const char* name :
         {"Switch_1", "Switch 1", " a", "a ", "a.b", "a\n", "Sw\xc3\xa9", "\xe9"})
        EXPECT_EQ(systemName_validate(name), 19) << name;
}

TEST(SystemName, HasNoLimitOfLength) {
    EXPECT_EQ(systemName_validate(std::string(100000, 'a').c_str()), 0);
}

} // namespace
