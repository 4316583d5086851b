// Where the kinds of ports begin, and how the cloud names them.
#include "base/ports.h"

#include <climits>
#include <string>

#include "base/port_id.h"
#include "base/port_set.h"
#include "tests/support/on_board.h"
#include "tests/support/sized_board.h"

namespace {

class Ports : public OnBoard {}; // 18 copper ports, 2 fibre ports, 8 groups

TEST_F(Ports, are_the_numbers_below_their_count) {
    for (int port : {0, 1, 27})
        EXPECT_TRUE(is_port(port)) << port;
    for (int port : {-1, 28, INT_MIN, INT_MAX})
        EXPECT_FALSE(is_port(port)) << port;
}

TEST_F(Ports, end_with_the_fibre_ports_and_the_groups) {
    EXPECT_EQ(first_fibre_port(), 18);
    EXPECT_EQ(first_group_port(), 20);
    EXPECT_FALSE(is_group(19));
    EXPECT_TRUE(is_group(20));
    EXPECT_TRUE(is_group(27));
    EXPECT_EQ(group_port(0), 20);
    EXPECT_EQ(group_port(7), 27);
}

TEST_F(Ports, a_group_beyond_the_ends_of_an_int_wraps) {
    EXPECT_EQ(group_port(INT_MAX), INT_MIN + 19);
    EXPECT_EQ(group_port(INT_MIN), INT_MIN + 20);
}

TEST_F(Ports, the_first_24_have_poe) {
    EXPECT_TRUE(has_poe(0));
    EXPECT_TRUE(has_poe(23));
    EXPECT_FALSE(has_poe(24));
}

TEST_F(Ports, all_of_them_are_a_set) {
    PortBitmap ports = all_ports();
    EXPECT_EQ(ports.words[0], 0x0FFFFFFFu);
    EXPECT_EQ(ports.words[1], 0u);
    EXPECT_EQ(ports.words[2], 0u);
}

TEST(PortsOfAnotherSwitch, move_with_their_count) {
    SizedBoard board(96);
    EXPECT_EQ(first_fibre_port(), 86);
    EXPECT_EQ(first_group_port(), 88);
    EXPECT_TRUE(is_port(95));
    EXPECT_FALSE(is_port(96));
    PortBitmap ports = all_ports();
    for (uint32_t word : ports.words)
        EXPECT_EQ(word, ~0u);
}

class PortId : public OnBoard {
  protected:
    static std::string id(int port) {
        char text[PORT_ID_SIZE];
        format_port_id(port, text);
        return text;
    }

    // -99 for an id that is none.
    static int port(const char* id) {
        int number = -99;
        parse_port_id(id, &number);
        return number;
    }
};

TEST_F(PortId, names_each_kind) {
    EXPECT_EQ(id(0), "1");
    EXPECT_EQ(id(17), "18");
    EXPECT_EQ(id(18), "F1");
    EXPECT_EQ(id(19), "F2");
    EXPECT_EQ(id(20), "trunk1");
    EXPECT_EQ(id(27), "trunk8");
}

TEST_F(PortId, is_found_again) {
    for (int number = 0; number < 28; ++number)
        EXPECT_EQ(port(id(number).c_str()), number);
}

TEST_F(PortId, that_the_switch_does_not_have_is_a_number_all_the_same) {
    EXPECT_EQ(port("0"), -1);
    EXPECT_EQ(port("trunk9"), 28);
    EXPECT_EQ(port("trunk0"), 19);
    EXPECT_EQ(port("F0"), 17);
    EXPECT_EQ(port("-3"), -4);
}

TEST_F(PortId, a_group_is_looked_for_before_a_fibre_port) {
    EXPECT_EQ(port("trunk2F"), 21);
    EXPECT_EQ(port("F1trunk"), -99); // holds "trunk", and does not begin with it
    EXPECT_EQ(port("trunF1"), -99);
}

TEST_F(PortId, without_a_number_is_none) {
    for (const char* text : {"", "x", "F", "Fx", "trunk", "trunkx", "3F", "3trunk"})
        EXPECT_EQ(port(text), -99) << text;
}

TEST_F(PortId, beyond_the_ends_of_an_int_is_none) {
    EXPECT_EQ(port("2147483647"), 2147483646);
    EXPECT_EQ(port("-2147483647"), INT_MIN);
    EXPECT_EQ(port("-2147483648"), -99);
    EXPECT_EQ(port("F2147483630"), 2147483647);
    for (const char* text :
         {"2147483648", "F2147483631", "trunk2147483647", "99999999999999999999"})
        EXPECT_EQ(port(text), -99) << text;
}

TEST_F(PortId, of_a_copper_port_has_no_other_form) {
    int number = -99;
    EXPECT_TRUE(parse_copper_port_id("18", &number));
    EXPECT_EQ(number, 17);
    EXPECT_FALSE(parse_copper_port_id("F1", &number));
    EXPECT_FALSE(parse_copper_port_id("trunk1", &number));
    EXPECT_EQ(number, 17);
}

} // namespace
