// One signed request, from its arguments to the bytes on the wire and back to a result.
#include "transport/api_client.h"

#include <curl/curl.h>

#include <algorithm>
#include <cstdlib>
#include <regex>

#include "hex.h"
#include "on_wire.h"
#include "sim/edges/transfers.h"
#include "tests/support/environment.h"

namespace {

class ApiCall : public OnWire {
  protected:
    // The console line that stands where a request was refused; nothing went out.
    std::string refusal(const Call& request) {
        forget();
        with_debug([&] { EXPECT_EQ(call(request), API_REJECTED); });
        EXPECT_TRUE(cloud.requests().empty());
        EXPECT_FALSE(called("transfer"));
        Lines lines = console();
        return lines.size() == 2 ? lines[1] : "unexpected number of lines";
    }

    std::int32_t result_of(HttpAnswer answer) {
        cloud.answer(std::move(answer));
        return call();
    }
    std::int32_t result_of_status(int status) {
        HttpAnswer answer;
        answer.status = status;
        return result_of(answer);
    }

    // What libcurl said to each transfer.
    Codes transfer_results() const {
        Codes codes;
        for (const std::string& line : trace())
            if (line.starts_with("transfer("))
                codes.push_back(std::stoi(line.substr(line.rfind("= ") + 2)));
        return codes;
    }

    // The console with what differs from run to run made the same.
    Lines plain_console() {
        Lines lines = console();
        for (std::string& line : lines) {
            line = std::regex_replace(line, std::regex(cloud.host()), "HOST");
            line = std::regex_replace(line, std::regex("nonce=[0-9a-f]{32}"), "nonce=NONCE");
            line = std::regex_replace(line, std::regex("Signature: [0-9a-f]{64}"), "Signature: S");
        }
        return lines;
    }

    // The same without the transfer's statistics.
    Lines plain_console_without_statistics() {
        Lines lines = plain_console();
        std::erase_if(lines, [](const std::string& line) { return line.starts_with("CURLINFO_"); });
        return lines;
    }

    std::string url(const std::string& path) { return "http://" + cloud.host() + path; }
};

} // namespace

TEST_F(ApiCall, path_without_a_leading_slash_is_rejected_before_any_network_activity) {
    EXPECT_EQ(refusal({.path = "p"}), "path must start with '/' (p)");
    EXPECT_EQ(refusal({.path = ""}), "path must start with '/' ()");
}

TEST_F(ApiCall, protocol_in_upper_case_is_rejected) {
    EXPECT_EQ(refusal({.protocol = "HTTPS"}), "invalid proto: HTTPS");
    EXPECT_EQ(refusal({.protocol = "ftp"}), "invalid proto: ftp");
    EXPECT_EQ(refusal({.protocol = ""}), "invalid proto: ");
}

TEST_F(ApiCall, method_other_than_get_and_post_is_rejected) {
    EXPECT_EQ(refusal({.method = "PUT"}), "invalid method: PUT");
    EXPECT_EQ(refusal({.method = "post"}), "invalid method: post");
}

TEST_F(ApiCall, path_is_tested_before_protocol_and_protocol_before_method) {
    EXPECT_EQ(
        refusal({.protocol = "x", .path = "p", .method = "y"}), "path must start with '/' (p)");
    EXPECT_EQ(refusal({.protocol = "x", .method = "y"}), "invalid proto: x");
}

TEST_F(ApiCall, rejected_request_leaves_the_reply_file_alone) {
    put_file("/tmp/reply", "content");
    api_reply reply = {REPLY_TO_FILE, {"/tmp/reply"}, 0};
    EXPECT_EQ(call({.path = "p"}, &reply), API_REJECTED);
    EXPECT_EQ(file("/tmp/reply"), "content");
}

TEST_F(ApiCall, headers_stand_in_their_order) {
    cloud.answer({});
    EXPECT_EQ(call({.path = "/a/b?c=d", .extra = "X-Extra: 1"}), API_OK);
    ASSERT_EQ(cloud.requests().size(), 1u);
    HttpRequest request = cloud.requests()[0];
    EXPECT_EQ(request.line(), "POST /a/b?c=d HTTP/1.1");
    EXPECT_EQ(request.header("Host"), cloud.host());
    EXPECT_EQ(request.body, "{}");
    ASSERT_GE(request.head.size(), 5u);
    Lines own(request.head.end() - 5, request.head.end());
    EXPECT_EQ(own[0], "Content-Length: 2");
    EXPECT_EQ(own[1], "Content-Type: application/json");
    EXPECT_TRUE(std::regex_match(
        own[2], std::regex("Authorization: key=thekey,timestamp=1795000000,nonce=[0-9a-f]{32}")));
    EXPECT_TRUE(std::regex_match(own[3], std::regex("Signature: [0-9a-f]{64}")));
    EXPECT_EQ(own[4], "X-Extra: 1");
}

TEST_F(ApiCall, signature_covers_authorization_path_and_body) {
    cloud.answer({});
    EXPECT_EQ(call({.path = "/a/b"}), API_OK);
    HttpRequest request = cloud.requests().at(0);
    EXPECT_EQ(
        request.header("Signature"),
        independent_hmac("thesecret", request.header("Authorization") + "/a/b" + "{}"));
}

TEST_F(ApiCall, get_may_have_a_null_body_and_signs_authorization_and_path) {
    cloud.answer({.body = "reply"});
    api_reply reply = {REPLY_IN_MEMORY, {nullptr}, 0};
    EXPECT_EQ(call({.method = "GET", .body = nullptr, .length = 0}, &reply), API_OK);
    EXPECT_STREQ(reply.text, "reply");
    std::free(reply.text);
    HttpRequest request = cloud.requests().at(0);
    EXPECT_EQ(request.line(), "GET /p HTTP/1.1");
    EXPECT_EQ(request.header("Content-Length"), "0");
    EXPECT_EQ(request.body, "");
    EXPECT_EQ(
        request.header("Signature"),
        independent_hmac("thesecret", request.header("Authorization") + "/p"));
}

TEST_F(ApiCall, every_request_has_a_nonce_of_its_own) {
    cloud.answer({});
    cloud.answer({});
    EXPECT_EQ(call(), API_OK);
    EXPECT_EQ(call(), API_OK);
    EXPECT_NE(
        cloud.requests().at(0).header("Authorization"),
        cloud.requests().at(1).header("Authorization"));
}

TEST_F(ApiCall, request_takes_47_random_numbers_and_seeds_nothing) {
    srandom(77);
    for (int i = 0; i < 47; ++i)
        random();
    long next = random();
    srandom(77);
    cloud.answer({});
    EXPECT_EQ(call(), API_OK);
    EXPECT_EQ(random(), next);
}

TEST_F(ApiCall, only_status_200_is_success) {
    EXPECT_EQ(result_of_status(200), API_OK);
    for (int status : {201, 204, 206, 301, 400, 401, 403, 404, 499, 600})
        EXPECT_EQ(result_of_status(status), API_REJECTED) << status;
    for (int status : {500, 503, 599})
        EXPECT_EQ(result_of_status(status), API_FAILED) << status;
    EXPECT_EQ(checkin_retry_count, 0u);
}

TEST_F(ApiCall, status_200_with_an_empty_body_is_success) {
    cloud.answer({});
    api_reply reply = {REPLY_IN_MEMORY, {nullptr}, 0};
    EXPECT_EQ(call({}, &reply), API_OK);
    EXPECT_EQ(reply.text, nullptr);
    EXPECT_EQ(reply.length, 0u);
}

TEST_F(ApiCall, chunked_reply_is_one_text) {
    cloud.answer({.chunked = true, .pieces = {"{\"a\"", ": 1", "}"}});
    api_reply reply = {REPLY_IN_MEMORY, {nullptr}, 0};
    EXPECT_EQ(call({}, &reply), API_OK);
    EXPECT_STREQ(reply.text, "{\"a\": 1}");
    EXPECT_EQ(reply.length, 9u);
    std::free(reply.text);
}

TEST_F(ApiCall, connection_closed_within_the_body_is_a_failed_transfer) {
    EXPECT_EQ(result_of({.body = "half", .missing = 4}), API_FAILED);
    EXPECT_EQ(result_of({.chunked = true, .pieces = {"half"}, .missing = 4}), API_FAILED);
    EXPECT_EQ(checkin_retry_count, 0u);
}

TEST_F(ApiCall, reply_that_does_not_fit_into_memory_ends_the_transfer) {
    cloud.answer({.body = "text"});
    api_reply reply = {REPLY_IN_MEMORY, {nullptr}, 0};
    EXPECT_EQ(call({}, &reply), API_OK);
    std::free(reply.text);
    std::uint64_t allocations = board.faults.count(sim::Edge::allocation);
    ASSERT_GE(allocations, 1u);
    forget();
    cloud.answer({.body = "text"});
    reply = {REPLY_IN_MEMORY, {nullptr}, 0};
    board.faults.plan({sim::Edge::allocation, "", allocations, false, 1, 0});
    EXPECT_EQ(call({}, &reply), API_FAILED);
    EXPECT_EQ(reply.text, nullptr);
}

TEST_F(ApiCall, head_of_more_than_64_kib_ends_the_transfer) {
    auto with_head_of = [](std::size_t size) {
        HttpAnswer answer;
        answer.headers = {"X: " + std::string(30'000, 'x'), "X: " + std::string(30'000, 'x')};
        const std::string rest = "HTTP/1.1 200 Canned\r\nConnection: close\r\n"
                                 "Content-Length: 0\r\nX: \r\n\r\n";
        answer.headers.push_back("X: " + std::string(size - 2 * 30'005 - rest.size(), 'x'));
        return answer;
    };
    cloud.answer(with_head_of(65537));
    EXPECT_EQ(call(), API_FAILED);
    cloud.answer(with_head_of(65536));
    EXPECT_EQ(call(), API_OK);
    EXPECT_EQ(transfer_results(), (Codes{CURLE_WRITE_ERROR, CURLE_OK}));
}

TEST_F(ApiCall, preliminary_replies_without_an_end_end_the_transfer) {
    HttpAnswer answer;
    for (int i = 0; i < 4000; ++i)
        answer.headers.insert(answer.headers.end(), {"", "HTTP/1.1 100 Continue"});
    answer.status = 100;
    cloud.answer(answer);
    EXPECT_EQ(call(), API_FAILED);
    EXPECT_EQ(transfer_results(), (Codes{CURLE_WRITE_ERROR}));
}

TEST_F(ApiCall, slow_cloud_runs_into_the_whole_transfers_time_out) {
    checkin_timeout = 1;
    EXPECT_EQ(result_of({.silent = true}), API_FAILED);
    EXPECT_EQ(checkin_retry_count, 0u);
}

TEST_F(ApiCall, reply_file_is_emptied_before_the_request) {
    put_file("/tmp/reply", "a longer reply from before");
    cloud.answer({.body = "new"});
    api_reply reply = {REPLY_TO_FILE, {"/tmp/reply"}, 0};
    EXPECT_EQ(call({}, &reply), API_OK);
    EXPECT_EQ(file("/tmp/reply"), "new");
}

TEST_F(ApiCall, reply_file_that_did_not_exist_is_made_by_the_reply_alone) {
    cloud.answer({});
    api_reply reply = {REPLY_TO_FILE, {"/tmp/reply"}, 0};
    EXPECT_EQ(call({}, &reply), API_OK);
    EXPECT_FALSE(std::filesystem::exists(board.path("/tmp/reply")));
}

TEST_F(ApiCall, unresolved_host_reloads_the_resolver_and_counts) {
    fail_transfer(url("/p"), CURLE_COULDNT_RESOLVE_HOST);
    checkin_retry_count = 4;
    EXPECT_EQ(call(), API_NO_HOST);
    EXPECT_EQ(checkin_retry_count, 5u);
    EXPECT_EQ(trace(), (Lines{"transfer(\"" + url("/p") + "\") = 6", "__res_init() = 0"}));
}

TEST_F(ApiCall, host_without_a_listener_counts_and_leaves_the_resolver) {
    std::string nobody;
    {
        HttpStub gone;
        nobody = gone.host();
    }
    EXPECT_EQ(call({.host = nobody}), API_NO_CONNECT);
    EXPECT_EQ(checkin_retry_count, 1u);
    EXPECT_FALSE(called("__res_init"));
}

TEST_F(ApiCall, other_libcurl_errors_do_not_count) {
    fail_transfer(url("/p"), CURLE_GOT_NOTHING);
    EXPECT_EQ(call(), API_FAILED);
    EXPECT_EQ(checkin_retry_count, 0u);
    EXPECT_EQ(cloud.requests().size(), 0u);
}

TEST_F(ApiCall, tls_verification_failure_sets_the_clock_and_still_fails) {
    fail_transfer(url("/p"), CURLE_PEER_FAILED_VERIFICATION);
    cloud.answer_path("/time", {.body = R"({"time": "2026-11-16T05:30:00Z"})"});
    EXPECT_EQ(call(), API_FAILED);
    EXPECT_EQ(cloud.lines(), Lines{"GET /time HTTP/1.1"});
    EXPECT_TRUE(called("clock_settime"));
    EXPECT_EQ(checkin_retry_count, 0u);
}

TEST_F(ApiCall, tls_verification_failure_with_an_unreachable_time_host_asks_twice_and_fails) {
    std::string time_url = "http://" + cloud.host() + "/time";
    fail_transfer(url("/p"), CURLE_PEER_FAILED_VERIFICATION);
    board.faults.plan({sim::Edge::transfer, time_url, 1, true, CURLE_COULDNT_CONNECT, 0});
    time_t before = board.clock.calendar();
    EXPECT_EQ(call(), API_FAILED);
    std::string attempt = "transfer(\"" + time_url + "\") = 7";
    EXPECT_EQ(trace(), (Lines{"transfer(\"" + url("/p") + "\") = 60", attempt, attempt}));
    EXPECT_EQ(board.clock.calendar(), before);
    EXPECT_EQ(checkin_retry_count, 0u);
}

TEST_F(ApiCall, header_lines_and_url_are_cut_while_the_signature_covers_the_full_path) {
    cloud.answer({});
    std::string path = "/" + std::string(400, 'x');
    EXPECT_EQ(call({.path = path, .type = std::string(300, 't'), .extra = nullptr}), API_OK);
    HttpRequest request = cloud.requests().at(0);
    std::string cut = ("http://" + cloud.host() + path).substr(0, 255);
    EXPECT_EQ(request.line(), "POST " + cut.substr(cut.find("/x")) + " HTTP/1.1");
    EXPECT_EQ(request.header("Content-Type"), std::string(255 - 14, 't'));
    EXPECT_EQ(
        request.header("Signature"),
        independent_hmac("thesecret", request.header("Authorization") + path + "{}"));
}

TEST_F(ApiCall, authorization_is_signed_as_it_is_sent_also_when_it_is_cut) {
    cloud.answer({});
    EXPECT_EQ(call({.key = std::string(400, 'k')}), API_OK);
    HttpRequest request = cloud.requests().at(0);
    EXPECT_EQ(request.header("Authorization"), "key=" + std::string(255 - 19, 'k'));
    EXPECT_EQ(
        request.header("Signature"),
        independent_hmac("thesecret", request.header("Authorization") + "/p{}"));
}

TEST_F(ApiCall, upload_ends_at_the_bodys_terminator_whatever_length_was_given) {
    checkin_timeout = 1;
    cloud.answer({});
    EXPECT_EQ(call({.body = "12345", .length = 8}), API_FAILED);
    ASSERT_TRUE(cloud.wait_for(1));
    EXPECT_EQ(cloud.requests().at(0).header("Content-Length"), "8");
    EXPECT_EQ(cloud.requests().at(0).body, "12345");
}

TEST_F(ApiCall, console_tells_the_whole_call_in_order) {
    cloud.answer({.body = "reply"});
    std::string verbose = with_debug([&] { EXPECT_EQ(call({.extra = "X-Extra: 1"}), API_OK); });
    EXPECT_EQ(
        plain_console_without_statistics(),
        (Lines{
            "sending body (len=2) via API method: POST proto: http host: HOST path: /p "
            "content-type: application/json reply_type: 0 ()",
            "connection attempt 0",
            "curl_slist_append(): Content-Length: 2",
            "curl_slist_append(): Content-Type: application/json",
            "curl_slist_append(): Authorization: key=thekey,timestamp=1795000000,nonce=NONCE",
            "hashing: auth 'key=thekey,timestamp=1795000000,nonce=NONCE' (len=70)",
            "hashing: path '/p' (len=2)",
            "hashing: body (len=2)",
            "curl_slist_append(): Signature: S",
            "curl_slist_append(): X-Extra: 1",
            "url: http://HOST/p",
            "CURLOPT_TIMEOUT: 20",
            "CURLOPT_CONNECTTIMEOUT: 20",
            "sending HTTP request..",
            "curl returned HTTP status: 200",
        }));
    EXPECT_NE(verbose.find("POST /p HTTP/1.1"), std::string::npos);
    EXPECT_EQ(raw_console().find("thesecret"), std::string::npos);
    EXPECT_EQ(verbose.find("thesecret"), std::string::npos);
}

TEST_F(ApiCall, statistics_stand_between_the_transfer_and_its_result) {
    cloud.answer({});
    with_debug([&] { call(); });
    Lines lines = console();
    auto first = std::find(lines.begin(), lines.end(), "sending HTTP request..") + 1;
    ASSERT_LT(first, lines.end());
    EXPECT_TRUE(first->starts_with("CURLINFO_EFFECTIVE_URL "));
    EXPECT_EQ(lines.back(), "curl returned HTTP status: 200");
    EXPECT_TRUE(lines[lines.size() - 2].starts_with("CURLINFO_LOCAL_PORT "));
}

TEST_F(ApiCall, console_names_the_reply_file_and_its_preparation) {
    put_file("/tmp/reply", "old");
    cloud.answer({});
    api_reply reply = {REPLY_TO_FILE, {"/tmp/reply"}, 0};
    with_debug([&] { EXPECT_EQ(call({}, &reply), API_OK); });
    Lines lines = plain_console();
    ASSERT_GE(lines.size(), 4u);
    lines.resize(4);
    EXPECT_EQ(
        lines, (Lines{
                   "sending body (len=2) via API method: POST proto: http host: HOST path: /p "
                   "content-type: application/json reply_type: 1 (/tmp/reply)",
                   "/tmp/reply: 1",
                   "fpath = /tmp/reply",
                   "connection attempt 0",
               }));
}

TEST_F(ApiCall, console_tells_how_a_request_ended) {
    auto end_of = [&](int code, std::size_t count) {
        forget();
        fail_transfer(url("/p"), code);
        with_debug([&] { call(); });
        Lines lines = console();
        return Lines(lines.end() - static_cast<std::ptrdiff_t>(count), lines.end());
    };
    EXPECT_EQ(
        end_of(CURLE_COULDNT_RESOLVE_HOST, 2),
        (Lines{"curl error (6): ", "CURLE_COULDNT_RESOLVE_HOST checkin_retry_count + 1"}));
    EXPECT_EQ(
        end_of(CURLE_COULDNT_CONNECT, 2),
        (Lines{"curl error (7): ", "CURLE_COULDNT_CONNECT checkin_retry_count + 1"}));
    EXPECT_EQ(end_of(CURLE_GOT_NOTHING, 1), Lines{"curl error (52): "});

    forget();
    HttpAnswer unavailable;
    unavailable.status = 503;
    cloud.answer(unavailable);
    with_debug([&] { EXPECT_EQ(call(), API_FAILED); });
    Lines lines = console();
    EXPECT_EQ(
        Lines(lines.end() - 2, lines.end()),
        (Lines{"curl returned HTTP status: 503", "curl call error"}));
}

TEST_F(ApiCall, console_shows_libcurls_own_words_for_an_error) {
    std::string nobody;
    {
        HttpStub gone;
        nobody = gone.host();
    }
    with_debug([&] { EXPECT_EQ(call({.host = nobody}), API_NO_CONNECT); });
    Lines lines = console();
    EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
        return line.starts_with("curl error (7): Failed to connect");
    }));
}

TEST_F(ApiCall, address_family_is_limited_by_the_checkin_type) {
    auto family_lines = [&](std::int32_t type) {
        forget();
        checkin_type = type;
        cloud.answer({});
        with_debug([&] { call(); });
        Lines lines = console();
        std::erase_if(lines, [](const std::string& line) {
            return line.find("IPRESOLVE") == std::string::npos;
        });
        return lines;
    };
    EXPECT_EQ(family_lines(CHECKIN_ANY_ADDRESS), Lines{});
    EXPECT_EQ(family_lines(CHECKIN_IPV4_ONLY), Lines{"CURLOPT_IPRESOLVE set to CURL_IPRESOLVE_V4"});
    EXPECT_EQ(cloud.requests().size(), 2u);
    EXPECT_EQ(family_lines(CHECKIN_IPV6_ONLY), Lines{"CURLOPT_IPRESOLVE set to CURL_IPRESOLVE_V6"});
    EXPECT_EQ(cloud.requests().size(), 2u) << "an IPv4 address was used for IPv6 only";
}

TEST_F(ApiCall, nothing_is_written_without_the_debug_flag) {
    ErrorOutput output;
    cloud.answer({.body = "reply"});
    EXPECT_EQ(call(), API_OK);
    fail_transfer(url("/p"), CURLE_PEER_FAILED_VERIFICATION);
    EXPECT_EQ(call(), API_FAILED);
    EXPECT_EQ(call({.path = "p"}), API_REJECTED);
    EXPECT_EQ(output.text(), "");
    EXPECT_EQ(raw_console(), "");
}

TEST_F(ApiCall, https_without_a_trusted_certificate_is_not_spoken_in_the_clear) {
    EXPECT_EQ(call({.protocol = "https"}), API_FAILED);
    EXPECT_TRUE(cloud.requests().empty());
}

TEST_F(ApiCall, only_the_folder_of_certificates_is_trusted) {
    std::string verbose = with_debug([&] { call({.protocol = "https"}); });
    EXPECT_NE(verbose.find("CAfile: none"), std::string::npos) << verbose;
    EXPECT_NE(verbose.find("CApath: " + board.path("/etc/ssl/certs/").string()), std::string::npos);
}

TEST_F(ApiCall, proxy_of_the_environment_is_not_asked) {
    Environment proxies({"http_proxy", "all_proxy", "ALL_PROXY"}, "http://127.0.0.1:9");
    cloud.answer({});
    EXPECT_EQ(call(), API_OK);
}

TEST_F(ApiCall, redirection_is_not_followed) {
    HttpAnswer moved;
    moved.status = 302;
    moved.headers = {"Location: " + url("/elsewhere")};
    EXPECT_EQ(result_of(moved), API_REJECTED);
    EXPECT_EQ(cloud.lines(), Lines{"POST /p HTTP/1.1"});
}

TEST_F(ApiCall, time_outs_are_the_ones_that_are_set) {
    checkin_timeout = 77;
    checkin_connect_timeout = 33;
    EXPECT_EQ(result_of({}), API_OK);
    EXPECT_EQ(sim::transfer_option(url("/p"), CURLOPT_TIMEOUT), 77);
    EXPECT_EQ(sim::transfer_option(url("/p"), CURLOPT_CONNECTTIMEOUT), 33);
    EXPECT_EQ(sim::transfer_option(url("/p"), CURLOPT_TCP_KEEPALIVE), 1);
    EXPECT_EQ(sim::transfer_option(url("/p"), CURLOPT_NOSIGNAL), 1);
}

TEST_F(ApiCall, time_out_that_libcurl_refuses_is_the_default_one) {
    for (std::int32_t refused : {-1, INT32_MIN, INT32_MAX, INT32_MAX / 1000 + 1}) {
        checkin_timeout = checkin_connect_timeout = refused;
        EXPECT_EQ(result_of({}), API_OK);
        EXPECT_EQ(sim::transfer_option(url("/p"), CURLOPT_TIMEOUT), 120) << refused;
        EXPECT_EQ(sim::transfer_option(url("/p"), CURLOPT_CONNECTTIMEOUT), 120) << refused;
    }
    checkin_timeout = INT32_MAX / 1000 - 1;
    EXPECT_EQ(result_of({}), API_OK);
    EXPECT_EQ(sim::transfer_option(url("/p"), CURLOPT_TIMEOUT), INT32_MAX / 1000 - 1);
}

TEST_F(ApiCall, key_that_would_become_several_header_lines_is_not_sent) {
    for (const char* key :
         {"one\r\nX-Admin: 1", "one\ntwo", "one\rtwo", "\t", "\x01", "\x1f", "\x7f", "key\n"}) {
        forget();
        EXPECT_EQ(call({.key = key}), API_FAILED) << key;
        EXPECT_FALSE(called("transfer")) << key;
    }
    EXPECT_EQ(call({.extra = "X-Extra: 1\r\nX-Admin: 1"}), API_FAILED);
    EXPECT_TRUE(cloud.requests().empty());
    cloud.answer({});
    EXPECT_EQ(call({.key = " !~"}), API_OK);
    EXPECT_TRUE(cloud.requests().at(0).header("Authorization").starts_with("key= !~,timestamp="));
}

TEST_F(ApiCall, signature_covers_as_much_of_the_body_as_the_length_says) {
    checkin_timeout = 1;
    cloud.answer({});
    call({.body = "12345", .length = 3});
    ASSERT_TRUE(cloud.wait_for(1));
    HttpRequest request = cloud.requests().at(0);
    EXPECT_EQ(
        request.header("Signature"),
        independent_hmac("thesecret", request.header("Authorization") + "/p123"));
}

// On a switch whose clock does.
TEST_F(ApiCall, timestamp_outlives_32_bits) {
    constexpr auto far =
        static_cast<std::time_t>(sizeof(std::time_t) > 4 ? 4'500'000'000 : INT32_MAX);
    board.clock.set_calendar({far, 0});
    EXPECT_EQ(result_of({}), API_OK);
    EXPECT_NE(
        cloud.requests()
            .at(0)
            .header("Authorization")
            .find(",timestamp=" + std::to_string(far) + ","),
        std::string::npos);
}
