// How sections read settings.
#include "sections/section.h"

#include "tests/support/on_board.h"

namespace {

TEST(Setting, a_missing_one_is_left_alone) {
    Json settings("{}");
    int number = 7;
    bool flag = true;
    EXPECT_FALSE(read_int(settings, "size", &number));
    EXPECT_FALSE(read_bool(settings, "enable", &flag));
    EXPECT_FALSE(read_int(nullptr, "size", &number));
    EXPECT_FALSE(read_bool(nullptr, "enable", &flag));
    EXPECT_EQ(number, 7);
    EXPECT_TRUE(flag);
}

TEST(Setting, a_text_is_the_number_0) {
    Json settings(R"({"number": -5, "text": "5"})");
    int number = 7;
    EXPECT_TRUE(read_int(settings, "number", &number));
    EXPECT_EQ(number, -5);
    EXPECT_TRUE(read_int(settings, "text", &number));
    EXPECT_EQ(number, 0);
}

TEST(Setting, whatever_is_not_false_is_true) {
    Json settings(R"({"true": true, "number": 0, "text": "", "null": null, "list": []})");
    for (const char* key : {"true", "number", "text", "null", "list"}) {
        bool flag = false;
        EXPECT_TRUE(read_bool(settings, key, &flag)) << key;
        EXPECT_TRUE(flag) << key;
    }
    bool flag = true;
    EXPECT_TRUE(read_bool(Json(R"({"flag": false})"), "flag", &flag));
    EXPECT_FALSE(flag);
}

TEST(Setting, is_applied_only_where_it_is_there) {
    Json settings(R"({"number": 5, "flag": true})");
    auto refuse = [](int value) { return 100 + value; };
    EXPECT_EQ(apply_int(settings, "number", refuse), 105);
    EXPECT_EQ(apply_bool(settings, "flag", refuse), 101);
    EXPECT_EQ(apply_int(settings, "missing", refuse), 0);
    EXPECT_EQ(apply_bool(settings, "missing", refuse), 0);
}

} // namespace
