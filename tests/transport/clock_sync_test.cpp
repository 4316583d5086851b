// The clock from the cloud's time API.
#include "transport/clock_sync.h"

#include <curl/curl.h>

#include <cstdlib>

#include "on_wire.h"
#include "sim/edges/transfers.h"
#include "tests/support/environment.h"

namespace {

class ClockSync : public OnWire {
  protected:
    ~ClockSync() override { set_zone("UTC"); }

    static void set_zone(const char* zone) {
        setenv("TZ", zone, 1);
        tzset();
    }

    void answer_time(const std::string& body) { cloud.answer_path("/time", {.body = body}); }

    // The clock was left alone after that many requests for the time.
    void expect_untouched_after(std::size_t requests) {
        sync_clock();
        EXPECT_EQ(cloud.requests().size(), requests);
        EXPECT_FALSE(called("clock_settime"));
    }

    std::string time_url() { return "http://" + cloud.host() + "/time"; }
};

constexpr const char* good = R"({"time": "2026-11-16T05:30:00Z"})";
constexpr time_t good_utc = 1794807000;

} // namespace

TEST_F(ClockSync, time_text_sets_the_clock_to_that_moment_as_local_time) {
    set_zone("UTC");
    answer_time(good);
    sync_clock();
    EXPECT_EQ(trace().back(), "clock_settime(" + std::to_string(good_utc) + ") = 0");
    EXPECT_EQ(board.clock.calendar(), good_utc);

    set_zone("XYZ-2"); // two hours ahead of UTC
    answer_time(good);
    sync_clock();
    EXPECT_EQ(board.clock.calendar(), good_utc - 7200);
}

TEST_F(ClockSync, asks_the_fallback_host_once_plainly_and_without_signature) {
    answer_time(good);
    sync_clock();
    ASSERT_EQ(cloud.lines(), Lines{"GET /time HTTP/1.1"});
    HttpRequest request = cloud.requests()[0];
    EXPECT_EQ(request.header("Authorization"), "");
    EXPECT_EQ(request.header("Signature"), "");
    EXPECT_EQ(request.header("Content-Type"), "");
}

TEST_F(ClockSync, proxy_of_the_environment_is_not_asked) {
    Environment proxies({"http_proxy", "all_proxy", "ALL_PROXY"}, "http://127.0.0.1:9");
    answer_time(good);
    sync_clock();
    EXPECT_EQ(cloud.requests().size(), 1u);
}

TEST_F(ClockSync, summer_time_is_not_taken_into_account) {
    set_zone("ABC-1DEF,M3.5.0,M10.5.0/3");
    EXPECT_EQ(parse_time_reply(R"({"time": "2026-07-01T12:00:00Z"})"), 1782903600);
    EXPECT_EQ(parse_time_reply(R"({"time": "2026-12-01T12:00:00Z"})"), 1796122800);
}

TEST_F(ClockSync, patience_with_the_time_host_is_short) {
    answer_time(good);
    sync_clock();
    EXPECT_EQ(sim::transfer_option(time_url(), CURLOPT_TIMEOUT), 20);
    EXPECT_EQ(sim::transfer_option(time_url(), CURLOPT_CONNECTTIMEOUT), 10);
}

TEST_F(ClockSync, longest_host_is_asked_under_its_whole_name) {
    std::string host(HOST_SIZE - 1, 'h');
    std::strcpy(fallback_host, host.c_str());
    std::string url = "http://" + host + "/time";
    board.faults.plan({sim::Edge::transfer, url, 1, true, CURLE_COULDNT_RESOLVE_HOST, 0});
    sync_clock();
    std::string attempt = "transfer(\"" + url + "\") = 6";
    EXPECT_EQ(trace(), (Lines{attempt, attempt}));
}

TEST_F(ClockSync, reply_of_more_than_64_kib_is_no_time) {
    const std::string start = R"({"time": "2026-11-16T05:30:00Z", "pad": ")";
    auto padded = [&](std::size_t size) {
        return start + std::string(size - start.size() - 2, 'x') + "\"}";
    };
    answer_time(padded(65537));
    answer_time(padded(65537));
    expect_untouched_after(2);
    answer_time(padded(65536));
    sync_clock();
    EXPECT_TRUE(called("clock_settime"));
}

TEST_F(ClockSync, unreachable_time_host_is_asked_exactly_twice) {
    board.faults.plan({sim::Edge::transfer, time_url(), 1, true, CURLE_COULDNT_CONNECT, 0});
    with_debug([&] { expect_untouched_after(0); });
    std::string attempt = "transfer(\"" + time_url() + "\") = 7";
    EXPECT_EQ(trace(), (Lines{attempt, attempt}));
    EXPECT_EQ(raw_console(), "curl error (7) \ncurl error (7) \n");
    EXPECT_EQ(checkin_retry_count, 0u);
}

TEST_F(ClockSync, second_attempt_succeeds_after_a_failing_first) {
    HttpAnswer unavailable;
    unavailable.status = 503;
    cloud.answer_path("/time", unavailable);
    answer_time(good);
    sync_clock();
    EXPECT_EQ(cloud.requests().size(), 2u);
    EXPECT_TRUE(called("clock_settime"));
}

TEST_F(ClockSync, http_errors_count_as_no_time_whatever_their_body) {
    HttpAnswer refused;
    refused.status = 404;
    refused.body = good;
    cloud.answer_path("/time", refused);
    cloud.answer_path("/time", refused);
    expect_untouched_after(2);
}

TEST_F(ClockSync, empty_reply_is_no_time) {
    answer_time("");
    answer_time("");
    with_debug([&] { expect_untouched_after(2); });
    EXPECT_EQ(raw_console(), "empty reply from time API ?!\nempty reply from time API ?!\n");
}

TEST_F(ClockSync, reply_without_a_time_is_no_time) {
    for (const char* body :
         {"not json", "{}", "[]", R"({"time": 5})", R"({"time": null})", R"({"time": ""})",
          R"({"time": "2026"})", R"({"time": "2026-11-16T05:30"})",
          R"({"time": "x-11-16T05:30:00Z"})", R"({"time": "2026-11-16T05:30:4294967296Z"})",
          R"({"time": "2026-11-16T05:-3:00Z"})", R"({"time": "- - T"})"})
        EXPECT_EQ(parse_time_reply(body), -1) << body;
    answer_time("{}");
    answer_time("{}");
    expect_untouched_after(2);
}

TEST_F(ClockSync, delimiters_may_repeat_and_blanks_end_a_piece_too) {
    set_zone("UTC");
    for (const char* body :
         {R"({"time": "2026-11-16T05:30:00Z"})", R"({"time": "2026 11 16 05 30 00 "})",
          R"({"time": "-- 2026--11-T16T::05::30:Z00"})",
          R"({"time": "2026-11-16T05:30:00Z and more"})", R"({"TIME": "2026-11-16T05:30:00Z"})"})
        EXPECT_EQ(parse_time_reply(body), good_utc) << body;
}

TEST_F(ClockSync, senseless_numbers_never_harm) {
    parse_time_reply(
        R"({"time": "4294967295-4294967295-4294967295T4294967295:4294967295:4294967295Z"})");
    parse_time_reply(
        R"({"time": "2147483648-2147483648-2147483648T2147483648:2147483648:2147483648Z"})");
    parse_time_reply(R"({"time": "0-0-0T0:0:0Z"})");
    set_zone("UTC");
    EXPECT_EQ(parse_time_reply(R"({"time": "2026-11-16T05:30:60Z"})"), good_utc + 60);
}

TEST_F(ClockSync, console_tells_the_reply_and_each_piece_as_it_was_read) {
    answer_time(good);
    with_debug([] { sync_clock(); });
    EXPECT_EQ(
        raw_console(), "json (33 bytes):\n{\"time\": \"2026-11-16T05:30:00Z\"}\n"
                       "time:\n2026-11-16T05:30:00Z\n"
                       "tm_year:\n2026\ntm_mon:\n11\ntm_mday:\n16\n"
                       "tm_hour:\n5\ntm_min:\n30\ntm_sec:\n0\n");
}

TEST_F(ClockSync, each_failed_allocation_is_survived) {
    auto allocations = [&] {
        answer_time(good);
        board.faults.clear();
        sync_clock();
        return board.faults.count(sim::Edge::allocation);
    };
    std::uint64_t count = allocations();
    ASSERT_GE(count, 3u);
    for (std::uint64_t nth = 1; nth <= count; ++nth) {
        forget();
        board.faults.plan({sim::Edge::allocation, "", nth, false, 1, 0});
        answer_time(good);
        answer_time(good);
        sync_clock();
        EXPECT_TRUE(called("clock_settime")) << nth;
        cloud.forget_answers();
    }
}
