// What the lab takes for a check-in, and each reason for which it does not.
#include <algorithm>

#include "lab_fixture.h"

namespace lab_test {

namespace {

struct Spoiling {
    const char* name;
    const char* code;
    void (*spoil)(Checkin&);
};

void PrintTo(const Spoiling& spoiling, std::ostream* out) { *out << spoiling.name; }

void drop_line(Checkin& checkin, const std::string& name) {
    checkin.rearrange = [name](std::vector<std::string>& lines) {
        std::erase_if(lines, [&](const std::string& line) { return line.starts_with(name + ":"); });
    };
}

// Lines 2 to 5 are those of the contract.
void swap_lines(Checkin& checkin, std::size_t first, std::size_t second) {
    checkin.rearrange = [=](std::vector<std::string>& lines) {
        std::swap(lines[first], lines[second]);
    };
}

void repeat_line(Checkin& checkin, std::size_t index) {
    checkin.rearrange = [=](std::vector<std::string>& lines) {
        const std::string line = lines[index];
        lines.push_back(line);
    };
}

void add_line(Checkin& checkin, const std::string& line) {
    checkin.rearrange = [=](std::vector<std::string>& lines) { lines.push_back(line); };
}

const Spoiling spoilings[] = {
    {"get", "method", [](Checkin& c) { c.method = "GET"; }},
    {"put", "method", [](Checkin& c) { c.method = "PUT"; }},
    {"other_path", "path", [](Checkin& c) { c.path = "/cloud-switch/AA:BB:CC:DD:EE:FF/check"; }},
    {"path_with_query", "path",
     [](Checkin& c) { c.path = "/cloud-switch/AA:BB:CC:DD:EE:FF/checkin?"; }},
    {"lower_case_mac", "path",
     [](Checkin& c) { c.path = "/cloud-switch/aa:bb:cc:dd:ee:ff/checkin"; }},
    {"encoded_mac", "path",
     [](Checkin& c) { c.path = "/cloud-switch/AA%3ABB:CC:DD:EE:FF/checkin"; }},
    {"no_content_length", "header-missing", [](Checkin& c) { drop_line(c, "Content-Length"); }},
    {"no_content_type", "header-missing", [](Checkin& c) { drop_line(c, "Content-Type"); }},
    {"no_authorization", "header-missing", [](Checkin& c) { drop_line(c, "Authorization"); }},
    {"no_signature", "header-missing", [](Checkin& c) { drop_line(c, "Signature"); }},
    {"two_content_lengths", "header-duplicate", [](Checkin& c) { repeat_line(c, 2); }},
    {"two_content_types", "header-duplicate", [](Checkin& c) { repeat_line(c, 3); }},
    {"two_authorizations", "header-duplicate", [](Checkin& c) { repeat_line(c, 4); }},
    {"two_signatures", "header-duplicate", [](Checkin& c) { repeat_line(c, 5); }},
    {"type_before_length", "header-order", [](Checkin& c) { swap_lines(c, 2, 3); }},
    {"authorization_before_type", "header-order", [](Checkin& c) { swap_lines(c, 3, 4); }},
    {"signature_before_authorization", "header-order", [](Checkin& c) { swap_lines(c, 4, 5); }},
    {"length_no_number", "content-length", [](Checkin& c) { c.content_length = "two"; }},
    {"length_signed", "content-length", [](Checkin& c) { c.content_length = "+2"; }},
    {"form_type", "content-type",
     [](Checkin& c) { c.content_type = "application/x-www-form-urlencoded"; }},
    {"multipart_type", "content-type",
     [](Checkin& c) { c.content_type = "multipart/form-data; boundary=b"; }},
    {"chunked", "encoding", [](Checkin& c) { add_line(c, "Transfer-Encoding: gzip"); }},
    {"compressed", "encoding", [](Checkin& c) { add_line(c, "Content-Encoding: identity"); }},
    {"authorization_other_scheme", "authorization",
     [](Checkin& c) { c.authorization = "Basic bGFiOmxhYg=="; }},
    {"authorization_without_nonce", "authorization",
     [](Checkin& c) { c.authorization = "key=lab-key,timestamp=1"; }},
    {"authorization_other_order", "authorization",
     [](Checkin& c) { c.authorization = "timestamp=1,key=lab-key,nonce=" + c.nonce; }},
    {"timestamp_no_number", "authorization",
     [](Checkin& c) { c.authorization = "key=lab-key,timestamp=now,nonce=" + c.nonce; }},
    {"nonce_upper_case", "authorization", [](Checkin& c) { c.nonce = std::string(32, 'A'); }},
    {"nonce_short", "authorization", [](Checkin& c) { c.nonce = std::string(31, 'a'); }},
    {"unknown_switch", "unknown-switch", [](Checkin& c) { c.mac = "00:00:00:00:00:01"; }},
    {"other_key", "key", [](Checkin& c) { c.key = "other-key"; }},
    {"late", "timestamp", [](Checkin& c) { c.timestamp -= 310; }},
    {"early", "timestamp", [](Checkin& c) { c.timestamp += 310; }},
    {"at_the_epoch", "timestamp", [](Checkin& c) { c.timestamp = 0; }},
    {"other_secret", "signature", [](Checkin& c) { c.secret = "other-secret"; }},
    {"signature_upper_case", "signature", [](Checkin& c) { c.signature = std::string(64, 'A'); }},
    {"signature_short", "signature", [](Checkin& c) { c.signature = std::string(63, 'a'); }},
    {"altered_body", "signature",
     [](Checkin& c) {
         c.body = R"({"a":1})";
         c.sent_body = R"({"a":2})";
     }},
    {"body_beyond_length", "signature",
     [](Checkin& c) {
         c.body = R"({"a":1}  )";
         c.content_length = "7";
     }},
    {"body_no_json", "body", [](Checkin& c) { c.body = "report"; }},
    {"body_array", "body", [](Checkin& c) { c.body = "[]"; }},
    {"body_empty", "body", [](Checkin& c) { c.body = ""; }},
    {"folded_header", "malformed", [](Checkin& c) { add_line(c, "X-Folded: one\r\n two: three"); }},
};

class Rejection : public Lab, public testing::WithParamInterface<Spoiling> {};

TEST_P(Rejection, is_answered_logged_and_counted) {
    Checkin checkin;
    GetParam().spoil(checkin);
    const Answer answer = check_in(checkin);
    const std::string code = GetParam().code;
    EXPECT_EQ(answer.status, 403);
    EXPECT_TRUE(answer.body.starts_with(code + ": ")) << answer.body;
    const Json rejected = events("rejected");
    ASSERT_EQ(rejected.size(), 1u);
    EXPECT_EQ(rejected[0]["code"], code);
    EXPECT_NE(std::string(rejected[0]["text"]).find(": " + code + ": "), std::string::npos);
    EXPECT_EQ(counter("rejected"), 1);
    EXPECT_EQ(counter("rejected." + code), 1);
    EXPECT_EQ(counter("checkin"), 0);
    EXPECT_EQ(admin_get(of_switch(""))["reports"], 0);
}

INSTANTIATE_TEST_SUITE_P(
    Each, Rejection, testing::ValuesIn(spoilings),
    [](const testing::TestParamInfo<Spoiling>& one) { return one.param.name; });

using Checkins = Lab;

TEST_F(Checkins, a_connection_that_closes_without_a_request_is_told) {
    { const IdleConnection silent(keeper_listener().port); }
    const Json plain = events("no-request")[0];
    EXPECT_EQ(plain["listener"], "keeper");
    EXPECT_EQ(plain["port"], keeper_listener().port);
    talk(checkin_listener(), "", true);
    const Json tls = nth_event("no-request", 2);
    EXPECT_EQ(tls["listener"], "checkin");
    EXPECT_NE(std::string(tls["text"]).find("another name in the certificate"), std::string::npos);
}

TEST_F(Checkins, a_good_one_is_accepted_and_its_report_kept) {
    Checkin checkin;
    checkin.body = "{\n\t\"system\":\t{\n\t\t\"cloud\":\t{\n\t\t\t\"config_seqno\":\t7\n\t\t}\n\t},"
                   "\n\t\"lldp\":\t{\n\t}\n}";
    const Answer answer = check_in(checkin);
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.body, "{}");
    EXPECT_EQ(get(admin_listener(), of_switch("/report")).body, checkin.body);
    EXPECT_EQ(admin_get(of_switch(""))["reported_seqno"], 7);
    const Json event = events("checkin")[0];
    EXPECT_EQ(event["mac"], mac);
    EXPECT_EQ(event["bytes"], checkin.body.size());
    EXPECT_EQ(event["sections"], Json::parse(R"(["lldp","system"])"));
}

TEST_F(Checkins, header_names_ignore_case_and_other_headers_may_stand_anywhere) {
    Checkin checkin;
    checkin.rearrange = [](std::vector<std::string>& lines) {
        lines[4].replace(0, 13, "authorization");
        lines.insert(lines.begin() + 3, "X-Extra: 1");
        lines.emplace_back("X-Last: 2");
    };
    EXPECT_EQ(check_in(checkin).status, 200);
}

TEST_F(Checkins, a_key_may_hold_a_comma_and_a_secret_may_be_long) {
    const std::string key = "a,nonce=b,timestamp=c", secret(100, 's');
    admin("PUT", of_switch(""), Json{{"key", key}, {"secret", secret}}.dump());
    Checkin checkin;
    checkin.key = key;
    checkin.secret = secret;
    EXPECT_EQ(check_in(checkin).status, 200);
}

TEST_F(Checkins, a_body_shorter_than_its_length_is_refused) {
    Checkin checkin;
    checkin.content_length = "20";
    const Answer answer = talk(checkin_listener(), checkin.text(), true);
    EXPECT_EQ(counter("rejected.content-length"), 1) << answer.body;
}

TEST_F(Checkins, garbage_instead_of_a_request_is_refused) {
    EXPECT_EQ(talk(checkin_listener(), "what is this\r\n\r\n").status, 403);
    EXPECT_EQ(counter("rejected.malformed"), 1);
}

TEST_F(Checkins, over_plain_http_is_refused) {
    const Answer answer = talk({ports_["https"][0], ""}, Checkin().text());
    EXPECT_EQ(answer.status, 403);
    EXPECT_EQ(counter("rejected.scheme"), 1);
}

TEST_F(Checkins, a_repeated_request_is_refused) {
    const Checkin checkin;
    EXPECT_EQ(check_in(checkin).status, 200);
    EXPECT_EQ(check_in(checkin).status, 403);
    EXPECT_EQ(counter("rejected.nonce"), 1);
}

TEST_F(Checkins, a_restarted_switch_may_repeat_its_nonces) {
    Checkin checkin;
    checkin.timestamp -= 60;
    EXPECT_EQ(check_in(checkin).status, 200);
    checkin.timestamp += 60;
    EXPECT_EQ(check_in(checkin).status, 200);
}

TEST_F(Checkins, two_switches_of_one_account_may_use_a_nonce_in_the_same_second) {
    Checkin checkin;
    EXPECT_EQ(check_in(checkin).status, 200);
    checkin.mac = "AA:BB:CC:DD:EE:00";
    admin("PUT", "/switches/" + checkin.mac, R"({"key":"lab-key","secret":"lab-secret"})", 201);
    EXPECT_EQ(check_in(checkin).status, 200);
    EXPECT_EQ(check_in(checkin).status, 403);
}

TEST_F(Checkins, a_refused_request_does_not_use_up_its_nonce) {
    Checkin checkin;
    checkin.secret = "wrong";
    EXPECT_EQ(check_in(checkin).status, 403);
    checkin.secret = "lab-secret";
    EXPECT_EQ(check_in(checkin).status, 200);
}

TEST_F(Checkins, the_window_can_be_moved_widened_and_dropped) {
    Checkin checkin;
    checkin.timestamp += 5000;
    EXPECT_EQ(check_in(checkin).status, 403);
    admin("PUT", "/config", R"({"clock_offset":5000})");
    EXPECT_EQ(check_in(checkin).status, 200);
    admin("PUT", "/config", R"({"clock_offset":0,"window":5200})");
    EXPECT_EQ(check_in(checkin).status, 403); // the same request once more
    checkin.timestamp += 100;
    EXPECT_EQ(check_in(checkin).status, 200);
    admin("PUT", "/config", R"({"window":0})");
    checkin.timestamp = 0;
    EXPECT_EQ(check_in(checkin).status, 200);
    EXPECT_EQ(check_in(checkin).status, 403);
}

TEST_F(Checkins, the_second_listener_is_the_same_cloud) {
    EXPECT_EQ(talk(checkin_listener(1), Checkin().text()).status, 200);
    EXPECT_EQ(admin_get(of_switch(""))["reports"], 1);
}

} // namespace

} // namespace lab_test
