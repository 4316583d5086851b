// Capture of replies, without a transfer.
#include "transport/reply.h"

#include <sys/stat.h>

#include <cstdlib>

#include "base/debug.h"
#include "tests/support/on_board.h"

namespace {

class Reply : public OnBoard {
  protected:
    static std::size_t take(std::string chunk, api_reply* reply) {
        return api_write_cb(chunk.data(), 1, chunk.size(), reply);
    }
};

} // namespace

TEST_F(Reply, three_chunks_in_memory_make_one_terminated_text) {
    api_reply reply = {REPLY_IN_MEMORY, {nullptr}, 0};
    EXPECT_EQ(take(std::string(10, 'a'), &reply), 10u);
    EXPECT_EQ(reply.length, 11u);
    EXPECT_EQ(take(std::string(20, 'b'), &reply), 20u);
    EXPECT_EQ(take(std::string(5, 'c'), &reply), 5u);
    EXPECT_EQ(reply.length, 36u);
    EXPECT_EQ(
        std::string(reply.text), std::string(10, 'a') + std::string(20, 'b') + std::string(5, 'c'));
    std::free(reply.text);
}

TEST_F(Reply, size_and_count_are_multiplied) {
    api_reply reply = {REPLY_IN_MEMORY, {nullptr}, 0};
    char data[] = "abcdef";
    EXPECT_EQ(api_write_cb(data, 2, 3, &reply), 6u);
    EXPECT_STREQ(reply.text, "abcdef");
    std::free(reply.text);
}

TEST_F(Reply, discarding_types_take_everything_and_keep_nothing) {
    for (std::uint32_t type : {0u, 3u, 4000000000u}) {
        api_reply reply = {type, {nullptr}, 0};
        EXPECT_EQ(take("some text", &reply), 9u);
        EXPECT_EQ(reply.text, nullptr);
        EXPECT_EQ(reply.length, 0u);
    }
}

TEST_F(Reply, no_descriptor_takes_everything_and_says_so) {
    debug_flag = 1;
    EXPECT_EQ(take("some text", nullptr), 9u);
    EXPECT_EQ(raw_console(), "reply ignored\n");
}

TEST_F(Reply, file_grows_chunk_by_chunk) {
    put_file("/tmp/reply", "before ");
    api_reply reply = {REPLY_TO_FILE, {"/tmp/reply"}, 0};
    EXPECT_EQ(take("one ", &reply), 4u);
    EXPECT_EQ(take("two", &reply), 3u);
    EXPECT_EQ(file("/tmp/reply"), "before one two");
}

TEST_F(Reply, file_that_cannot_be_opened_loses_the_chunk_and_goes_on) {
    api_reply reply = {REPLY_TO_FILE, {"/no/such/folder/reply"}, 0};
    EXPECT_EQ(take("lost", &reply), 4u);
    board.faults.plan({sim::Edge::file, "/tmp/reply", 1, false, 1, 0});
    reply.path = "/tmp/reply";
    EXPECT_EQ(take("lost", &reply), 4u);
    EXPECT_EQ(file("/tmp/reply"), "");
}

TEST_F(Reply, out_of_memory_ends_the_transfer_and_leaves_an_empty_descriptor) {
    for (int chunks_before : {0, 1, 5}) {
        api_reply reply = {REPLY_IN_MEMORY, {nullptr}, 0};
        for (int i = 0; i < chunks_before; ++i)
            EXPECT_EQ(take("first", &reply), 5u);
        board.faults.plan({sim::Edge::allocation, "", 1, false, 1, 0});
        EXPECT_EQ(take("second", &reply), 0u);
        EXPECT_EQ(reply.text, nullptr);
        EXPECT_EQ(reply.length, 0u);
        board.faults.clear();
    }
    debug_flag = 1;
    api_reply reply = {REPLY_IN_MEMORY, {nullptr}, 0};
    board.faults.plan({sim::Edge::allocation, "", 1, false, 1, 0});
    EXPECT_EQ(take("only", &reply), 0u);
    EXPECT_EQ(raw_console(), "cannot allocate buffer for output\n");
}

TEST_F(Reply, text_beyond_its_limit_ends_the_transfer_as_a_want_of_memory_does) {
    debug_flag = 1;
    api_reply reply = {REPLY_IN_MEMORY, {nullptr}, 0, 10};
    EXPECT_EQ(take("12345", &reply), 5u);
    EXPECT_EQ(take("67890", &reply), 5u);
    EXPECT_STREQ(reply.text, "1234567890");
    EXPECT_EQ(take("x", &reply), 0u);
    EXPECT_EQ(reply.text, nullptr);
    EXPECT_EQ(reply.length, 0u);
    EXPECT_EQ(raw_console(), "cannot allocate buffer for output\n");
    EXPECT_EQ(take("12345678901", &reply), 0u);
    EXPECT_EQ(reply.text, nullptr);
}

TEST_F(Reply, text_may_have_a_mebibyte_where_nothing_else_is_said) {
    api_reply reply = {REPLY_IN_MEMORY, {nullptr}, 0};
    EXPECT_EQ(take(std::string(1048576, 'x'), &reply), 1048576u);
    EXPECT_EQ(take("x", &reply), 0u);
}

TEST_F(Reply, file_exists_in_any_form) {
    debug_flag = 1;
    put_file("/tmp/here", "");
    EXPECT_EQ(file_exists("/tmp/here"), 1);
    EXPECT_EQ(file_exists("/tmp"), 1);
    EXPECT_EQ(file_exists("/tmp/gone"), 0);
    EXPECT_EQ(raw_console(), "/tmp/here: 1\n\n/tmp: 1\n\n/tmp/gone: 0\n\n");
}

TEST_F(Reply, truncation_empties_or_creates_with_mode_0644) {
    put_file("/tmp/full", "content");
    EXPECT_EQ(file_trunc_to_zero("/tmp/full"), 0);
    EXPECT_EQ(file("/tmp/full"), "");
    mode_t before = umask(0);
    EXPECT_EQ(file_trunc_to_zero("/tmp/new"), 0);
    umask(before);
    auto permissions = std::filesystem::status(board.path("/tmp/new")).permissions();
    EXPECT_EQ(permissions, std::filesystem::perms(0644));
}

TEST_F(Reply, truncation_reports_success_where_it_is_not_possible) {
    debug_flag = 1;
    EXPECT_EQ(file_trunc_to_zero("/no/such/folder/file"), 0);
    EXPECT_EQ(raw_console(), "fpath = /no/such/folder/file\n\n");
}
