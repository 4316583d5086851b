// The tables of docs/networks.md, held against what is measured.
#include <gtest/gtest.h>

#include "tests/hostile/network/tables.h"

namespace {

void expect_as_on_the_page(const Table& measured) {
    const Table page = read_table(NETWORKS_PAGE, measured.heading);
    EXPECT_EQ(page.columns, measured.columns);
    ASSERT_EQ(page.rows.size(), measured.rows.size());
    for (std::size_t i = 0; i < page.rows.size(); ++i)
        EXPECT_EQ(show_row(page.rows[i]), show_row(measured.rows[i]));
}

} // namespace

TEST(BadNetwork, check_ins_are_as_the_page_says) { expect_as_on_the_page(measure_checkins()); }
TEST(BadNetwork, time_requests_are_as_the_page_says) { expect_as_on_the_page(measure_time()); }
TEST(BadNetwork, keeper_requests_are_as_the_page_says) { expect_as_on_the_page(measure_keeper()); }
TEST(BadNetwork, firmware_downloads_are_as_the_page_says) {
    expect_as_on_the_page(measure_firmware());
}
