// The error list.
#include "base/errors.h"

#include <algorithm>
#include <atomic>
#include <thread>

#include "tests/support/on_board.h"

namespace {

class ErrorList : public OnBoard {};

// Records `count` codes from `first` on, together with another thread.
void record_at_once(std::atomic<int>& ready, int first, int count) {
    ++ready;
    while (ready < 2) {}
    for (int code = first; code < first + count; ++code)
        record_error(code);
}

} // namespace

TEST_F(ErrorList, codes_stand_in_their_order_and_are_returned) {
    EXPECT_EQ(record_error(7), 7);
    EXPECT_EQ(record_error(-1), -1);
    EXPECT_EQ(recorded(), (Codes{7, -1}));
}

TEST_F(ErrorList, code_for_which_there_is_no_place_is_dropped) {
    for (int code = 1; code <= ERROR_LIST_SIZE; ++code)
        record_error(code);
    EXPECT_EQ(record_error(5000), 5000);
    EXPECT_EQ(error_count, 1024u);
    EXPECT_EQ(error_flags[0], 1u);
    EXPECT_EQ(error_flags[1023], 1024u);
}

TEST_F(ErrorList, handlers_that_fail_at_once_get_a_place_each) {
    constexpr int each = 400;
    for (int round = 0; round < 300; ++round) {
        clear_errors();
        std::atomic<int> ready = 0;
        std::thread other([&] { record_at_once(ready, 1000, each); });
        record_at_once(ready, 1, each);
        other.join();
        Codes codes = recorded();
        ASSERT_EQ(codes.size(), 2u * each) << round;
        std::sort(codes.begin(), codes.end());
        ASSERT_EQ(std::unique(codes.begin(), codes.end()), codes.end()) << round;
    }
}
