// Sets of ports and of VLANs, bit by bit.
#include "base/port_set.h"

#include <gtest/gtest.h>

#include <climits>
#include <initializer_list>
#include <vector>

namespace {

PortBitmap set_of(std::initializer_list<int> ports) {
    PortBitmap set = {};
    for (int port : ports)
        add_port(&set, port);
    return set;
}

std::vector<int> ports_of(const PortBitmap& set) {
    std::vector<int> ports;
    for_each_port(set, [&ports](int port) {
        ports.push_back(port);
        return 0;
    });
    return ports;
}

TEST(PortSet, a_port_is_a_bit_of_its_word) {
    PortBitmap set = set_of({0, 33, 95});
    EXPECT_EQ(set.words[0], 0x1u);
    EXPECT_EQ(set.words[1], 0x2u);
    EXPECT_EQ(set.words[2], 0x80000000u);
}

TEST(PortSet, has_what_was_added_and_nothing_else) {
    PortBitmap set = set_of({0, 31, 32, 64, 95});
    for (int port : {0, 31, 32, 64, 95})
        EXPECT_TRUE(has_port(set, port)) << port;
    for (int port : {1, 30, 33, 63, 65, 94})
        EXPECT_FALSE(has_port(set, port)) << port;
}

TEST(PortSet, has_no_port_for_which_it_has_no_room) {
    for (int port : {-1, -32, INT_MIN, 96, 97, INT_MAX}) {
        PortBitmap set = {{~0u, ~0u, ~0u}};
        EXPECT_FALSE(has_port(set, port)) << port;
        EXPECT_TRUE(is_empty(only_port(port))) << port;
    }
}

TEST(PortSet, is_empty_when_no_word_has_a_bit) {
    EXPECT_TRUE(is_empty({}));
    for (int port : {0, 32, 64})
        EXPECT_FALSE(is_empty(only_port(port))) << port;
}

TEST(PortSet, an_intersection_and_a_difference_go_over_every_word) {
    PortBitmap a = set_of({1, 2, 40, 41, 80, 81});
    PortBitmap b = set_of({2, 3, 41, 42, 81, 82});
    EXPECT_EQ(ports_of(intersection(a, b)), (std::vector{2, 41, 81}));
    EXPECT_EQ(ports_of(symmetric_difference(a, b)), (std::vector{1, 3, 40, 42, 80, 82}));
}

TEST(PortSet, is_walked_in_order_until_a_step_fails) {
    PortBitmap set = set_of({95, 64, 63, 7, 0});
    EXPECT_EQ(ports_of(set), (std::vector{0, 7, 63, 64, 95}));
    std::vector<int> seen;
    int code = for_each_port(set, [&seen](int port) {
        seen.push_back(port);
        return port == 63 ? 19 : 0;
    });
    EXPECT_EQ(code, 19);
    EXPECT_EQ(seen, (std::vector{0, 7, 63}));
}

TEST(Bits, reach_over_any_number_of_words) {
    uint32_t vlans[128] = {};
    set_bit(vlans, 4094);
    EXPECT_EQ(vlans[127], 0x40000000u);
    EXPECT_TRUE(has_bit(vlans, 4094));
    EXPECT_FALSE(has_bit(vlans, 4095));
    EXPECT_FALSE(has_bit(vlans, 4093));
}

} // namespace
