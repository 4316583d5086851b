// The admin interface, the time and the firmware images.
#include <ctime>
#include <future>
#include <regex>

#include "lab_fixture.h"

namespace lab_test {

namespace {

using Admin = Lab;

TEST_F(Admin, registers_changes_lists_and_forgets_switches) {
    const std::string path = "/switches/0011223344aa";
    admin("PUT", path, R"({"key":"k","secret":"s"})", 201);
    admin("PUT", "/switches/00:11:22:33:44:AA", R"({"key":"k2","secret":"s2"})", 200);
    const Json list = admin_get("/switches");
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0]["mac"], "00:11:22:33:44:AA");
    EXPECT_EQ(list[0]["key"], "k2");
    EXPECT_FALSE(list[0].contains("secret"));
    EXPECT_TRUE(list[0]["last_seen"].is_null());
    admin("DELETE", path);
    admin("GET", path, "", 404);
    EXPECT_EQ(admin_get("/switches").size(), 1u);
}

TEST_F(Admin, shows_the_last_refusal_until_a_try_is_accepted) {
    admin("PUT", "/switches/0011223344aa", R"({"key":"k","secret":"s"})", 201);
    EXPECT_FALSE(admin_get(of_switch("")).contains("refusal"));
    for (const char* secret : {"wrong", "lab-secret"}) {
        Checkin checkin;
        checkin.secret = secret;
        checkin.key = secret == std::string("wrong") ? "lab-key" : "no-key";
        EXPECT_EQ(check_in(checkin).status, 403);
    }
    const Json shown = admin_get(of_switch(""));
    EXPECT_EQ(shown["refusal"]["code"], "key");
    EXPECT_EQ(
        shown["refusal"]["reason"], std::string("the key \"no-key\" is not the key of ") + mac);
    EXPECT_EQ(shown["refusal"]["time"], events("rejected")[1]["time"]);
    const Json list = admin_get("/switches");
    EXPECT_FALSE(list[0].contains("refusal"));
    EXPECT_EQ(list[1], shown);
    report_seqno(1);
    EXPECT_FALSE(admin_get(of_switch("")).contains("refusal"));
    EXPECT_FALSE(admin_get("/switches")[1].contains("refusal"));
}

TEST_F(Admin, refuses_bad_switches) {
    for (const char* body :
         {"", "[]", R"({"key":"k"})", R"({"secret":"s"})", R"({"key":1,"secret":"s"})",
          R"({"key":"","secret":"s"})", R"({"key":"a b","secret":"s"})",
          R"({"key":"k","secret":"s","mac":"x"})"})
        admin("PUT", "/switches/001122334455", body, 400);
    const Json too_long = {{"key", "k"}, {"secret", std::string(116, 's')}};
    admin("PUT", "/switches/001122334455", too_long.dump(), 400);
    admin("PUT", "/switches/00112233445", R"({"key":"k","secret":"s"})", 400);
    admin("PUT", "/switches/00-11-22-33-44-55", R"({"key":"k","secret":"s"})", 400);
    EXPECT_EQ(admin_get("/switches").size(), 1u);
}

TEST_F(Admin, knows_nothing_of_unregistered_switches) {
    for (const char* rest : {"", "/report", "/reports", "/settings", "/actions"})
        admin("GET", std::string("/switches/00:00:00:00:00:01") + rest, "", 404);
    admin("POST", "/switches/00:00:00:00:00:01/settings", R"({"lldp":{}})", 404);
    admin("POST", "/switches/00:00:00:00:00:01/actions", R"({"action":"reboot"})", 404);
}

TEST_F(Admin, tells_unknown_paths_from_wrong_methods) {
    admin("GET", "/nothing", "", 404);
    admin("GET", "/page/nothing", "", 404);
    admin("GET", "/switches/x/y/z", "", 404);
    admin("POST", "/switches", "{}", 405);
    admin("DELETE", "/events", "", 405);
}

TEST_F(Admin, refuses_bad_actions) {
    for (const char* body : {"", "[]", "{}", R"({"action":1})", R"({"port":"1"})"})
        admin("POST", of_switch("/actions"), body, 400);
    EXPECT_TRUE(admin_get(of_switch("/actions")).empty());
}

TEST_F(Admin, keeps_the_latest_reports) {
    admin("GET", of_switch("/report"), "", 404);
    for (int i = 1; i <= 55; i++) {
        Checkin checkin;
        checkin.body = Json{{"n", i}}.dump();
        ASSERT_EQ(check_in(checkin).status, 200);
    }
    EXPECT_EQ(admin_get(of_switch("/report"))["n"], 55);
    const Json list = admin_get(of_switch("/reports"));
    ASSERT_EQ(list.size(), 50u);
    EXPECT_EQ(list[0]["bytes"], 8);
    EXPECT_EQ(
        admin_get(of_switch("/reports/" + std::to_string(std::int64_t(list[49]["id"]))))["n"], 6);
    admin("GET", of_switch("/reports/0"), "", 404);
    admin("GET", of_switch("/reports/x"), "", 400);
    EXPECT_EQ(admin_get(of_switch(""))["reports"], 55);
}

TEST_F(Admin, wakes_who_waits_for_an_event) {
    const Json before = admin_get("/events?after=999999999");
    EXPECT_LT(before["last"], 999999999);
    auto waiting = std::async(std::launch::async, [&] {
        return admin_get(
            std::string("/events?timeout=30&kind=checkin&mac=aabbccddeeff&after=") +
            std::to_string(std::int64_t(before["last"])));
    });
    report_seqno(1);
    const Json found = waiting.get();
    ASSERT_EQ(found["events"].size(), 1u);
    EXPECT_EQ(found["last"], found["events"][0]["id"]);
    EXPECT_TRUE(admin_get("/events?mac=000000000001")["events"].empty());
    for (const char* query : {"after=x", "after=-1", "timeout=soon", "timeout=-1", "mac=me"})
        admin("GET", std::string("/events?") + query, "", 400);
}

TEST_F(Admin, shows_and_sets_the_policy) {
    const Json set = admin("PUT", "/config", R"({"redeliver_seconds":0.5,"redeliver_tries":4})");
    EXPECT_EQ(set["redeliver_seconds"], 0.5);
    EXPECT_EQ(admin_get("/config"), set);
    EXPECT_EQ(set["window"], 300);
    for (const char* body :
         {"", "7", R"({"windows":1})", R"({"window":"1"})", R"({"window":-1})", R"({"window":1.5})",
          R"({"poll_seconds":1e30})"})
        admin("PUT", "/config", body, 400);
    EXPECT_EQ(admin_get("/config"), set);
}

TEST_F(Admin, tells_its_ports) { EXPECT_EQ(admin_get("/ports"), ports_); }

std::int64_t told_time(const Answer& answer) {
    const std::string text = Json::parse(answer.body)["time"];
    EXPECT_TRUE(std::regex_match(text, std::regex("\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ")));
    std::tm parts{};
    strptime(text.c_str(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    return timegm(&parts);
}

TEST_F(Admin, the_time_is_told_on_the_plain_port_and_on_every_checkin_port) {
    for (const Peer& peer :
         {plain_listener(), Peer{checkin_listener(0).port, ""}, Peer{checkin_listener(1).port, ""}})
        EXPECT_NEAR(static_cast<double>(told_time(get(peer, "/time")) - std::time(nullptr)), 0, 5);
    admin("PUT", "/config", R"({"clock_offset":86400})");
    EXPECT_NEAR(
        static_cast<double>(told_time(get(plain_listener(), "/time")) - std::time(nullptr)), 86400,
        5);
    EXPECT_EQ(request(plain_listener(), "POST", "/time", "{}").status, 405);
    EXPECT_EQ(get(plain_listener(), "/clock").status, 404);
}

TEST_F(Admin, firmware_images_are_served_sound_and_damaged) {
    std::string image(100000, 'x');
    image[5] = '\0';
    image[6] = '\xff';
    admin("PUT", "/firmware/v2.bix", image, 201);
    EXPECT_EQ(admin_get("/firmware")[0]["bytes"], 100000);
    EXPECT_EQ(get(plain_listener(), "/firmware/v2.bix").body, image);
    const std::string damaged = get(plain_listener(), "/firmware/corrupt/v2.bix").body;
    ASSERT_EQ(damaged.size(), image.size());
    EXPECT_EQ(std::ranges::mismatch(damaged, image).in1 - damaged.begin(), 50000);
    EXPECT_EQ(damaged.substr(50001), image.substr(50001));
    admin("DELETE", "/firmware/v2.bix");
    EXPECT_EQ(get(plain_listener(), "/firmware/v2.bix").status, 404);
}

TEST_F(Admin, no_file_outside_the_firmware_folder_is_reached) {
    for (const char* name : {"..%2flab.db", "../lab.db", ".hidden", "a%20b", ""}) {
        const Answer put = request(admin_listener(), "PUT", std::string("/firmware/") + name, "x");
        EXPECT_TRUE(put.status == 400 || put.status == 404) << name;
        EXPECT_EQ(get(plain_listener(), std::string("/firmware/") + name).status, 404) << name;
    }
}

TEST_F(Admin, events_stay_on_a_line_whatever_is_sent) {
    talk(keeper_listener(), "GET /%0a%00%7fline HTTP/1.1\r\n\r\n");
    const std::string text = events("rejected")[0]["text"];
    EXPECT_EQ(text.find_first_of(std::string("\n\0\x7f", 3)), std::string::npos);
}

} // namespace

} // namespace lab_test
