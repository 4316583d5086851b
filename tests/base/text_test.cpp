// Texts of any length.
#include <cstdarg>
#include <string>

#include "base/text.h"
#include "tests/support/on_board.h"

namespace {

class FormattedText : public OnBoard {
  protected:
    __attribute__((format(printf, 2, 3))) OwnedText format(const char* format, ...) {
        va_list arguments;
        va_start(arguments, format);
        OwnedText text(format_text(format, arguments));
        va_end(arguments);
        return text;
    }
};

TEST_F(FormattedText, is_as_long_as_it_has_to_be) {
    for (std::size_t length : {0U, 1U, 127U, 128U, 70'000U}) {
        std::string long_text(length, 'x');
        EXPECT_EQ(format("%s-%d", long_text.c_str(), 7).get(), long_text + "-7");
    }
}

TEST_F(FormattedText, is_null_where_memory_is_short) {
    board.faults.plan({sim::Edge::allocation, "", 1, false, 1, 0});
    EXPECT_EQ(format("%d", 7), nullptr);
    EXPECT_STREQ(format("%d", 7).get(), "7");
}

} // namespace
