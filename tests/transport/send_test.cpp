// The send helpers on the wire.
#include "transport/send.h"

#include <cstdlib>

#include "hex.h"
#include "on_wire.h"
#include "shrinking_file.h"

namespace {

class Send : public OnWire {
  protected:
    std::int32_t send_file(
        const char* request_file, const char* reply_file = nullptr, const char* extra = nullptr) {
        return api_send_file(
            "http", cloud.host().c_str(), "/upload", "text/plain", request_file, reply_file, extra,
            "thekey", "thesecret");
    }

    // What the console says about a file that cannot be sent; nothing goes out.
    Lines refusal(const char* request_file) {
        with_debug([&] { EXPECT_EQ(send_file(request_file), API_REJECTED); });
        EXPECT_FALSE(called("transfer"));
        return console();
    }
};

constexpr const char* announced =
    "sending /tmp/request via API, path: /upload, content-type: text/plain reply: (null)";

} // namespace

TEST_F(Send, buffer_is_posted_as_json_and_its_reply_handed_over) {
    cloud.answer({.body = "{\"reply\":1}"});
    char* reply = nullptr;
    EXPECT_EQ(
        api_send_buff1(
            "http", cloud.host().c_str(), "/checkin", &reply, "{\"a\":2}", "thekey", "thesecret"),
        API_OK);
    ASSERT_NE(reply, nullptr);
    EXPECT_STREQ(reply, "{\"reply\":1}");
    std::free(reply);
    HttpRequest request = cloud.requests().at(0);
    EXPECT_EQ(request.line(), "POST /checkin HTTP/1.1");
    EXPECT_EQ(request.header("Content-Type"), "application/json");
    EXPECT_EQ(request.header("Content-Length"), "7");
    EXPECT_EQ(request.body, "{\"a\":2}");
    EXPECT_TRUE(request.head.back().starts_with("Signature: ")) << "an extra header was added";
}

TEST_F(Send, empty_reply_stores_null_through_the_out_pointer) {
    char untouched[] = "x";
    cloud.answer({});
    char* reply = untouched;
    EXPECT_EQ(api_send_buff1("http", cloud.host().c_str(), "/p", &reply, "{}", "k", "s"), API_OK);
    EXPECT_EQ(reply, nullptr);
    reply = untouched;
    EXPECT_EQ(api_send_buff1("x", "h", "/p", &reply, "{}", "k", "s"), API_REJECTED);
    EXPECT_EQ(reply, nullptr);
}

TEST_F(Send, error_reply_is_handed_over_with_its_code) {
    HttpAnswer refused;
    refused.status = 403;
    refused.body = "why";
    cloud.answer(refused);
    char* reply = nullptr;
    EXPECT_EQ(
        api_send_buff1("http", cloud.host().c_str(), "/p", &reply, "{}", "k", "s"), API_REJECTED);
    EXPECT_STREQ(reply, "why");
    std::free(reply);
}

TEST_F(Send, reply_is_discarded_without_an_out_pointer) {
    for (int i = 0; i < 3; ++i)
        cloud.answer({.body = "reply"});
    std::string host = cloud.host();
    with_debug([&] {
        EXPECT_EQ(api_send_buff1("http", host.c_str(), "/p", nullptr, "{}", "k", "s"), API_OK);
        EXPECT_EQ(api_send_buff("http", host.c_str(), "/p", "{}", "k", "s"), API_OK);
        EXPECT_EQ(api_get_buff("http", host.c_str(), "/p", nullptr, "k", "s"), API_OK);
    });
    int types = 0;
    for (const std::string& line : console())
        types += line.find("reply_type: 0 ()") != std::string::npos;
    EXPECT_EQ(types, 3);
    EXPECT_EQ(cloud.lines(), (Lines{"POST /p HTTP/1.1", "POST /p HTTP/1.1", "GET /p HTTP/1.1"}));
}

TEST_F(Send, get_has_no_body) {
    cloud.answer({.body = "answer"});
    char* reply = nullptr;
    EXPECT_EQ(api_get_buff("http", cloud.host().c_str(), "/p", &reply, "k", "s"), API_OK);
    EXPECT_STREQ(reply, "answer");
    std::free(reply);
    EXPECT_EQ(cloud.requests().at(0).header("Content-Type"), "application/json");
    EXPECT_EQ(cloud.requests().at(0).header("Content-Length"), "0");
    EXPECT_EQ(cloud.requests().at(0).body, "");
}

TEST_F(Send, file_is_posted_and_its_reply_replaces_the_reply_file) {
    put_file("/tmp/request", "line one\nline two\n");
    put_file("/tmp/reply", "from last time, and longer");
    cloud.answer({.body = "taken"});
    EXPECT_EQ(send_file("/tmp/request", "/tmp/reply", "X-Kind: log"), API_OK);
    HttpRequest request = cloud.requests().at(0);
    EXPECT_EQ(request.line(), "POST /upload HTTP/1.1");
    EXPECT_EQ(request.header("Content-Type"), "text/plain");
    EXPECT_EQ(request.header("X-Kind"), "log");
    EXPECT_EQ(request.body, "line one\nline two\n");
    EXPECT_EQ(file("/tmp/reply"), "taken");
}

TEST_F(Send, empty_request_file_is_posted_with_length_0) {
    put_file("/tmp/request", "");
    cloud.answer({});
    EXPECT_EQ(send_file("/tmp/request"), API_OK);
    EXPECT_EQ(cloud.requests().at(0).line(), "POST /upload HTTP/1.1");
    EXPECT_EQ(cloud.requests().at(0).header("Content-Length"), "0");
}

TEST_F(Send, reply_file_that_cannot_be_opened_does_not_fail_the_request) {
    put_file("/tmp/request", "text");
    cloud.answer({.body = "lost"});
    EXPECT_EQ(send_file("/tmp/request", "/no/such/folder/reply"), API_OK);
}

TEST_F(Send, console_announces_file_and_buffer) {
    put_file("/tmp/request", "12345");
    cloud.answer({});
    with_debug([&] { EXPECT_EQ(send_file("/tmp/request"), API_OK); });
    Lines lines = console();
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ(lines[0], announced);
    EXPECT_EQ(lines[1], "allocate buffer for 6 bytes");
    EXPECT_TRUE(lines[2].starts_with("sending body (len=5) via API method: POST "));
}

TEST_F(Send, request_file_that_shrinks_is_sent_as_far_as_it_goes) {
    put_file("/tmp/request", "12345");
    ShrinkingFile shrinking(board.path("/tmp/request"), 3);
    cloud.answer({});
    with_debug([&] { EXPECT_EQ(send_file("/tmp/request"), API_OK); });
    EXPECT_EQ(console().at(1), "allocate buffer for 9 bytes");
    HttpRequest request = cloud.requests().at(0);
    EXPECT_EQ(request.header("Content-Length"), "5");
    EXPECT_EQ(request.body, "12345");
    EXPECT_EQ(
        request.header("Signature"),
        independent_hmac("thesecret", request.header("Authorization") + "/upload12345"));
}

TEST_F(Send, missing_request_file_is_refused) {
    EXPECT_EQ(
        refusal("/tmp/request"),
        (Lines{announced, "cannot run stat() on file '/tmp/request': No such file or directory"}));
}

TEST_F(Send, request_file_that_cannot_be_opened_is_refused) {
    put_file("/tmp/request", "12345");
    board.faults.plan({sim::Edge::file, "/tmp/request", 1, false, 1, 0});
    EXPECT_EQ(
        refusal("/tmp/request"),
        (Lines{announced, "allocate buffer for 6 bytes", "cannot open API request file"}));
}

TEST_F(Send, directory_is_refused_as_unreadable) {
    std::filesystem::create_directories(board.path("/tmp/request"));
    put_file("/tmp/request/file", "");
    Lines lines = refusal("/tmp/request");
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[2], "error while reading API request file");
}

TEST_F(Send, request_file_without_memory_for_it_is_refused) {
    put_file("/tmp/request", "12345");
    board.faults.plan({sim::Edge::allocation, "", 1, false, 1, 0});
    EXPECT_EQ(send_file("/tmp/request"), API_REJECTED);
    EXPECT_FALSE(called("transfer"));
}

TEST_F(Send, request_file_longer_than_a_length_can_say_is_refused) {
    put_file("/tmp/request", "");
    std::filesystem::resize_file(board.path("/tmp/request"), std::uintmax_t(INT32_MAX) + 1);
    EXPECT_EQ(
        refusal("/tmp/request"), (Lines{
                                     announced, "allocate buffer for 2147483649 bytes",
                                     "cannot allocate buffer to read API request file"}));
}
