// The check-in: report, retries, fallback, settings, acknowledgement.
#include "core/check_in.h"

#include "base/debug.h"
#include "base/errors.h"
#include "core/redact.h"
#include "tests/core/on_cloud.h"

namespace {

class CheckIn : public OnCloud {
  protected:
    std::int32_t stored_seqno() const { return device.cloud.seqno; }

    Json report_sent() const { return Json(cloud.requests().at(0).body); }

    Lines console_without_builders() const {
        Lines lines = core_console();
        std::erase_if(lines, [](const std::string& line) {
            return line.starts_with("api_checkin: before vxc_") &&
                   line != "api_checkin: before vxc_get pid PID";
        });
        return lines;
    }

    Lines retry_console() const {
        Lines lines = core_console();
        std::erase_if(lines, [](const std::string& line) {
            return line.find("reset the DNS") == std::string::npos &&
                   line.find("connect retry") == std::string::npos;
        });
        return lines;
    }
};

constexpr const char* acknowledgeable = R"({"system": {"cloud": {"config_seqno": 42}}})";

Lines times(int count, const Lines& lines) {
    Lines all;
    for (int i = 0; i < count; ++i)
        all.insert(all.end(), lines.begin(), lines.end());
    return all;
}

Lines operator+(Lines left, const Lines& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

// Blanks packed as they are in an unkind reply: one, and then again and again "the last byte 258
// times more" in 13 bits. What ends such a stream is left out.
std::string gzipped_blanks(std::size_t count) {
    std::string bits = "110"; // the last block, with the fixed code
    auto append = [&](const char* code) { bits += code; };
    append("01010000"); // a blank
    std::string packed("\x1f\x8b\x08\x00\x00\x00\x00\x00\x00\x03", 10);
    std::size_t at = 0;
    for (std::size_t made = 1; made < count; made += 258) {
        append("1100010100000"); // length 258, distance 1
        for (; bits.size() - at >= 8; at += 8) {
            int byte = 0;
            for (std::size_t bit = 0; bit < 8; ++bit)
                byte |= (bits[at + bit] - '0') << bit;
            packed += static_cast<char>(byte);
        }
        bits.erase(0, at);
        at = 0;
    }
    return packed;
}

} // namespace

TEST_F(CheckIn, posts_the_signed_report_to_the_checkin_host) {
    cloud.answer(reply("{}"));
    api_checkin();
    ASSERT_EQ(cloud.lines(), (Lines{"POST /cloud-switch/02:1B:2C:3D:4E:5F/checkin HTTP/1.1"}));
    Json sent = report_sent();
    EXPECT_STREQ(
        getJsonStringValueForKey(getJsonObjectForKey(sent["system"], "summary_info"), "model"),
        "Q18r5");
    EXPECT_EQ(checkin_connect_establish, 1u);
    EXPECT_EQ(attempts(), (Lines{"CLOUD=0"}));
}

TEST_F(CheckIn, console_tells_every_step_in_order) {
    cloud.answer(reply(R"({"system": {"jumbo_frames": {"size": 2000}}})"));
    debug_flag = 1;
    api_checkin();
    EXPECT_EQ(
        console_without_builders(), (Lines{
                                        "api_checkin: prepare json send data pid PID",
                                        "api_checkin: before vxc_get pid PID",
                                        "vxc_system_get finish",
                                        "Done and leave",
                                        "api_checkin: after vxc_get pid PID",
                                        "api_checkin: pid PID send data REPORT",
                                        "api_checkin: pid PID json send data finish",
                                        "CURLOPT_IPRESOLVE set to CURL_IPRESOLVE_V4",
                                        "api_checkin: api_send_buff1 finish pid PID",
                                        "checkin_retry_count set to default",
                                        "api_checkin: 0",
                                        "---------------------------------------------",
                                        R"({"system": {"jumbo_frames": {"size": 2000}}})",
                                        "vxc_set: 0 pid PID",
                                        "conf_startupConfig_save",
                                        "vxc_set: 0 pid PID",
                                        "api_checkin: 0 pid PID",
                                    }));
}

TEST_F(CheckIn, report_on_the_console_ends_with_a_blank_between_two_newlines) {
    cloud.answer(reply("{}"));
    debug_flag = 1;
    api_checkin();
    EXPECT_NE(raw_console().find("}\n \napi_checkin: pid"), std::string::npos);
    EXPECT_NE(raw_console().find("-----\n\n{}\n\nvxc_set: 0"), std::string::npos);
}

TEST_F(CheckIn, no_reply_text_ends_silently) {
    HttpAnswer empty;
    cloud.answer(empty);
    debug_flag = 1;
    api_checkin();
    EXPECT_EQ(core_console().back(), "api_checkin: 0");
    EXPECT_EQ(checkin_connect_establish, 1u);
}

TEST_F(CheckIn, reply_that_does_not_parse_changes_nothing) {
    cloud.answer(reply("{\"system\": {\"cloud\": "));
    debug_flag = 1;
    api_checkin();
    Lines shown = core_console();
    EXPECT_EQ(shown.back(), "api_checkin: 0 pid PID");
    EXPECT_EQ(std::count(shown.begin(), shown.end(), "vxc_set: 0 pid PID"), 0);
    EXPECT_EQ(setting_from_cloud, 0u);
    EXPECT_FALSE(called("cmd_conf_startupConfig_save"));
}

TEST_F(CheckIn, bad_reply_leaves_the_settings_and_the_next_checkin_works) {
    const std::string pad(1'000'000, 'x');
    const std::string replies[] = {
        "",
        "{",
        "null",
        "[]",
        "<html>",
        R"({"system": {"jumbo_frames": {"size": 2000}})",
        std::string(100'000, '['),
        R"({"system": {"jumbo_frames": {"size": 2000}}, "pad": )" + std::string(100'000, '['),
        pad,
        "{\"pad\": \"" + pad + "\"}",
    };
    for (const std::string& bad : replies) {
        SCOPED_TRACE(bad.substr(0, 60));
        forget();
        cloud.answer(reply(bad));
        api_checkin();
        for (const std::string& name : calls())
            EXPECT_FALSE(name.ends_with("_set") || name.ends_with("_save")) << name;
        EXPECT_EQ(setting_from_cloud, 0u);
        EXPECT_EQ(attempts(), (Lines{"CLOUD=0"}));
    }
    cloud.answer(reply(acknowledgeable));
    api_checkin();
    EXPECT_EQ(stored_seqno(), 42);
}

TEST_F(CheckIn, reply_that_breaks_off_is_not_applied_though_what_came_is_whole) {
    HttpAnswer cut = reply(R"({"system": {"jumbo_frames": {"size": 2000}}})");
    cut.missing = 5;
    cloud.answer(cut);
    api_checkin();
    EXPECT_EQ(attempts(), (Lines{"CLOUD=18", "FALLBACK=0", "FALLBACK=0"}));
    EXPECT_FALSE(called("sal_switch_maxFrameSize_set"));
    EXPECT_EQ(setting_from_cloud, 0u);
}

TEST_F(CheckIn, reply_of_more_than_a_mebibyte_fails_whatever_its_status) {
    const std::string start = R"({"system": {"cloud": {"config_seqno": 42}}, "pad": ")";
    auto padded = [&](std::size_t size) {
        return reply(start + std::string(size - start.size() - 2, 'x') + "\"}");
    };
    for (int status : {200, 403, 500}) {
        forget();
        HttpAnswer longer = padded(1048577);
        longer.status = status;
        cloud.answer(longer);
        fallback.answer(longer);
        fallback.answer(longer);
        api_checkin();
        EXPECT_EQ(attempts(), (Lines{"CLOUD=23", "FALLBACK=23", "FALLBACK=23"})) << status;
        EXPECT_EQ(stored_seqno(), 1);
    }
    cloud.answer(padded(1048576));
    api_checkin();
    EXPECT_EQ(stored_seqno(), 42);
}

TEST_F(CheckIn, reply_is_measured_after_it_was_unpacked) {
    HttpAnswer packed;
    packed.headers = {"Transfer-Encoding: gzip"};
    packed.chunked = true;
    packed.pieces = {gzipped_blanks(200'000'000)};
    EXPECT_LT(packed.pieces[0].size(), 1'500'000u);
    cloud.answer(packed);
    api_checkin();
    EXPECT_EQ(attempts().front(), "CLOUD=23");
}

TEST_F(CheckIn, other_failure_goes_straight_to_the_fallback_host) {
    fail_transfer(cloud, 56);
    fallback.answer(reply("{}"));
    api_checkin();
    EXPECT_EQ(attempts(), (Lines{"CLOUD=56", "FALLBACK=0"}));
}

TEST_F(CheckIn, server_error_goes_straight_to_the_fallback_host_and_its_page_is_forgotten) {
    HttpAnswer error;
    error.status = 503;
    error.body = acknowledgeable;
    cloud.answer(error);
    fail_transfer(fallback, 56, 1, true);
    api_checkin();
    EXPECT_EQ(attempts(), (Lines{"CLOUD=0", "FALLBACK=56", "FALLBACK=56"}));
    EXPECT_FALSE(called("sal_vxcloud_seqno_set"));
}

TEST_F(CheckIn, unresolved_host_is_retried_ten_times_before_the_fallback) {
    fail_transfer(cloud, 6, 1, true);
    fail_transfer(fallback, 6, 1, true);
    api_checkin();
    EXPECT_EQ(
        attempts(),
        Lines{"CLOUD=6"} + times(10, {"sleep(10) = 0", "CLOUD=6"}) + times(2, {"FALLBACK=6"}));
}

TEST_F(CheckIn, refused_connection_is_retried_five_times_before_the_fallback) {
    fail_transfer(cloud, 7, 1, true);
    fallback.answer(reply("{}"));
    api_checkin();
    EXPECT_EQ(
        attempts(),
        Lines{"CLOUD=7"} + times(5, {"sleep(10) = 0", "CLOUD=7"}) + Lines{"FALLBACK=0"});
}

TEST_F(CheckIn, alternating_failures_weigh_1_3_4_6_7_9_10) {
    for (int nth = 1; nth <= 8; ++nth)
        fail_transfer(cloud, nth % 2 ? 6 : 7, nth);
    fallback.answer(reply("{}"));
    debug_flag = 1;
    api_checkin();
    std::string unresolved = "api_checkin: reset the DNS server setting for resolve host retry ";
    EXPECT_EQ(
        retry_console(), (Lines{
                             unresolved + "1 after 10 (s)",
                             "api_checkin: connect retry 1 after 10 (s)",
                             unresolved + "4 after 10 (s)",
                             "api_checkin: connect retry 3 after 10 (s)",
                             unresolved + "7 after 10 (s)",
                             "api_checkin: connect retry 4 after 10 (s)",
                             unresolved + "10 after 10 (s)",
                         }));
    EXPECT_EQ(traced("sleep(10)").size(), 7u);
    EXPECT_EQ(attempts().back(), "FALLBACK=0");
}

TEST_F(CheckIn, retries_alternate_between_any_family_and_ipv4) {
    for (int nth = 1; nth <= 3; ++nth)
        fail_transfer(cloud, 6, nth);
    cloud.answer(reply("{}"));
    debug_flag = 1;
    api_checkin();
    Lines families;
    for (const std::string& line : core_console()) {
        if (line.starts_with("CURLOPT_IPRESOLVE"))
            families.push_back(line.substr(line.size() - 2));
        else if (line.find("start re-connect") != std::string::npos)
            families.push_back("again");
    }
    EXPECT_EQ(families, (Lines{"V4", "again", "again", "V4", "again"}));
    EXPECT_EQ(checkin_type, CHECKIN_ANY_ADDRESS);
}

TEST_F(CheckIn, ipv6_only_from_the_settings_is_overwritten_by_ipv4_only) {
    checkin_type = CHECKIN_IPV6_ONLY;
    cloud.answer(reply("{}"));
    api_checkin();
    EXPECT_EQ(checkin_type, CHECKIN_IPV4_ONLY);
}

TEST_F(CheckIn, console_of_a_retry_that_gives_up) {
    fail_transfer(cloud, 7, 1, true);
    fail_transfer(fallback, 56, 1, true);
    debug_flag = 1;
    api_checkin();
    Lines shown = core_console();
    shown.erase(
        shown.begin(),
        std::find(shown.begin(), shown.end(), "api_checkin: api_send_buff1 finish pid PID"));
    std::erase_if(shown, [](auto& line) { return line.starts_with("CURLOPT"); });
    auto retry = [](int number) {
        return Lines{
            "api_checkin: connect retry " + std::to_string(number) + " after 10 (s)",
            "api_checkin: start re-connect pid PID"};
    };
    Lines between{"api_checkin: CheckinRetry pid PID"};
    Lines expected{"api_checkin: api_send_buff1 finish pid PID"};
    for (int number = 1; number <= 5; ++number)
        expected = expected + (number > 1 ? between : Lines{}) + retry(number);
    expected = expected + Lines{
                              "api_checkin: still no connect pid PID",
                              "retry by fallback host: FALLBACK",
                              "api_checkin: api_send_buff1 finish -2",
                              "api_checkin: -2",
                          };
    EXPECT_EQ(shown, expected);
}

TEST_F(CheckIn, retry_that_ends_in_another_failure_leaves_for_the_fallback) {
    fail_transfer(cloud, 6, 1);
    fail_transfer(cloud, 56, 2);
    fallback.answer(reply("{}"));
    api_checkin();
    EXPECT_EQ(attempts(), (Lines{"CLOUD=6", "sleep(10) = 0", "CLOUD=56", "FALLBACK=0"}));
}

TEST_F(CheckIn, fallback_success_establishes_but_does_not_reset_the_retry_count) {
    fail_transfer(cloud, 7, 1, true);
    fallback.answer(reply("{}"));
    api_checkin();
    EXPECT_EQ(checkin_connect_establish, 1u);
    EXPECT_EQ(checkin_retry_count, 6u);
    EXPECT_EQ(checkin_type, CHECKIN_IPV4_ONLY);
    EXPECT_TRUE(log().empty());
}

TEST_F(CheckIn, direct_success_resets_the_retry_count) {
    checkin_retry_count = 9;
    cloud.answer(reply("{}"));
    api_checkin();
    EXPECT_EQ(checkin_retry_count, 0u);
}

TEST_F(CheckIn, fallback_is_tried_twice_and_its_second_answer_counts) {
    fail_transfer(cloud, 56);
    fail_transfer(fallback, 7);
    fallback.answer(reply(acknowledgeable));
    api_checkin();
    EXPECT_EQ(attempts(), (Lines{"CLOUD=56", "FALLBACK=7", "FALLBACK=0"}));
    EXPECT_EQ(checkin_connect_establish, 1u);
    EXPECT_EQ(stored_seqno(), 42);
}

TEST_F(CheckIn, unreachable_fallback_is_logged_and_the_connection_stays_as_it_was) {
    fail_transfer(cloud, 56);
    fail_transfer(fallback, 56, 1, true);
    api_checkin();
    EXPECT_EQ(log(), (Lines{"api_checkin: Network unreacherable"}));
    EXPECT_EQ(
        traced("sys_log"), (Lines{"sys_log(7, 21, \"api_checkin: Network unreacherable\") = 0"}));
    EXPECT_EQ(checkin_connect_establish, 0u);
}

TEST_F(CheckIn, refusal_of_the_request_changes_no_state) {
    HttpAnswer refused;
    refused.status = 403;
    cloud.answer(refused);
    checkin_retry_count = 3;
    api_checkin();
    EXPECT_EQ(attempts(), (Lines{"CLOUD=0"}));
    EXPECT_EQ(checkin_connect_establish, 0u);
    EXPECT_EQ(checkin_retry_count, 3u);
    EXPECT_TRUE(log().empty());
}

TEST_F(CheckIn, refusal_by_both_attempts_at_the_fallback_host_is_logged) {
    HttpAnswer refused;
    refused.status = 403;
    fail_transfer(cloud, 56);
    fallback.answer(refused);
    fallback.answer(refused);
    api_checkin();
    EXPECT_EQ(attempts(), (Lines{"CLOUD=56", "FALLBACK=0", "FALLBACK=0"}));
    EXPECT_EQ(log(), (Lines{"api_checkin: Network unreacherable"}));
    EXPECT_EQ(checkin_connect_establish, 0u);
}

TEST_F(CheckIn, reply_of_any_status_is_applied) {
    HttpAnswer refused = reply(acknowledgeable);
    refused.status = 403;
    cloud.answer(refused);
    api_checkin();
    EXPECT_EQ(stored_seqno(), 42);
    EXPECT_EQ(checkin_connect_establish, 0u);
}

TEST_F(CheckIn, connection_that_was_established_stays_so_whatever_fails) {
    checkin_connect_establish = 1;
    fail_transfer(cloud, 56);
    fail_transfer(fallback, 56, 1, true);
    api_checkin();
    EXPECT_EQ(checkin_connect_establish, 1u);
    HttpAnswer refused;
    refused.status = 403;
    cloud.answer(refused);
    board.faults.clear();
    api_checkin();
    EXPECT_EQ(checkin_connect_establish, 1u);
}

TEST_F(CheckIn, reset_marks_stand_until_the_report_was_sent) {
    mark_port_reset(5);
    fail_transfer(cloud, 6);
    cloud.answer(reply("{}"));
    std::uint32_t during = 0;
    board.clock.on_sleep = [&](unsigned) {
        during = gCattr.port_reset_flags[5];
        return 0u;
    };
    api_checkin();
    EXPECT_EQ(during, 1u);
    EXPECT_EQ(gCattr.port_reset_flags[5], 0u);
}

TEST_F(CheckIn, configuration_applied_without_error_is_acknowledged_in_the_next_report) {
    cloud.answer(reply(acknowledgeable));
    cloud.answer(reply("{}"));
    api_checkin();
    EXPECT_EQ(stored_seqno(), 42);
    EXPECT_EQ(setting_from_cloud, 1u);
    api_checkin();
    EXPECT_EQ(setting_from_cloud, 0u);
    Json second(cloud.requests().at(1).body);
    int found = 0;
    EXPECT_EQ(
        getJsonIntValueForKey(
            getJsonObjectForKey(second["system"], "cloud"), "config_seqno", &found),
        42);
}

TEST_F(CheckIn, error_in_an_early_section_leaves_the_sequence_number) {
    cloud.answer(
        reply(R"({"system": {"jumbo_frames": {"size": 1}, "cloud": {"config_seqno": 42}}})"));
    api_checkin();
    EXPECT_EQ(stored_seqno(), 1);
    EXPECT_EQ(recorded(), (Codes{28}));
    EXPECT_TRUE(called("cmd_conf_startupConfig_save"));
}

TEST_F(CheckIn, sequence_number_that_is_no_number_is_not_stored) {
    cloud.answer(reply(R"({"system": {"cloud": {"config_seqno": "42"}}})"));
    api_checkin();
    EXPECT_FALSE(called("sal_vxcloud_seqno_set"));
}

TEST_F(CheckIn, errors_of_the_report_do_not_hold_back_the_acknowledgement) {
    fail("sal_sys_ip_get", 77);
    cloud.answer(reply(acknowledgeable));
    api_checkin();
    EXPECT_EQ(stored_seqno(), 42);
    EXPECT_EQ(log(), (Lines{"summary info get fail"}));
}

TEST_F(CheckIn, reset_marks_of_all_ports_are_cleared_once_reported) {
    for (std::uint32_t& mark : gCattr.port_reset_flags)
        mark = 1;
    fail_transfer(cloud, 56);
    fail_transfer(fallback, 56, 1, true);
    api_checkin();
    for (std::uint32_t mark : gCattr.port_reset_flags)
        EXPECT_EQ(mark, 0u);
}

TEST_F(CheckIn, reply_that_carries_an_account_is_shown_without_it) {
    cloud.answer(reply(R"({"system": {"cloud": {"key": "newkey", "secret": "newsecret"}}})"));
    debug_flag = 1;
    api_checkin();
    EXPECT_EQ(raw_console().find("newsecret"), std::string::npos);
    EXPECT_NE(raw_console().find(R"("key": "******", "secret": "*********")"), std::string::npos);
    EXPECT_STREQ(gCattr.secret, "newsecret");
}

TEST_F(CheckIn, report_that_finds_no_memory_is_not_sent_and_keeps_the_reset_marks) {
    checkin_connect_establish = 1;
    checkin_retry_count = 4;
    mark_port_reset(5);
    board.faults.plan({sim::Edge::allocation, "", 1, true, 0, 0});
    api_checkin();
    EXPECT_TRUE(attempts().empty());
    EXPECT_EQ(checkin_connect_establish, 1u);
    EXPECT_EQ(checkin_retry_count, 4u);
    EXPECT_EQ(gCattr.port_reset_flags[5], 1u);
    EXPECT_EQ(error_count, 0u);
}

TEST(RedactAccount, hides_what_any_spelling_of_the_names_holds) {
    auto redacted = [](const char* text) {
        char* copy = redact_account(text);
        std::string result = copy;
        std::free(copy);
        return result;
    };
    EXPECT_EQ(redacted(R"({"Key" : "a\"b", "x": "key"})"), R"({"Key" : "****", "x": "key"})");
    EXPECT_EQ(redacted(R"({"s\u0065cret":"abc"})"), R"({"s\u0065cret":"***"})");
    EXPECT_EQ(redacted(R"({"secret": 5, "keys": "abc"})"), R"({"secret": 5, "keys": "abc"})");
    EXPECT_EQ(redacted("{\"key\"\f:\x01\v\"abc\"}"), "{\"key\"\f:\x01\v\"***\"}");
    EXPECT_EQ(redacted(R"({"secret": "abc)"), R"({"secret": "***)");
    EXPECT_EQ(redacted("\"secret\":\"a\\"), "\"secret\":\"**");
    EXPECT_EQ(redacted(""), "");
}

TEST(RedactAccount, an_empty_name_is_a_name_and_the_beginning_of_one_is_not_the_name) {
    auto redacted = [](const char* text) {
        char* copy = redact_account(text);
        std::string result = copy;
        std::free(copy);
        return result;
    };
    EXPECT_EQ(redacted(R"({"": 1, "key": "abc"})"), R"({"": 1, "key": "***"})");
    EXPECT_EQ(redacted(R"({"": "abc", "ke": "abc"})"), R"({"": "abc", "ke": "abc"})");
    EXPECT_EQ(redacted(R"({"key": "", "secret": "a"})"), R"({"key": "", "secret": "*"})");
    EXPECT_EQ(redacted("\"secret\":\"a\\\""), "\"secret\":\"***");
}
