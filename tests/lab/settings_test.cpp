// Settings from the queue to the switch and back as an acknowledged number.
#include "lab_fixture.h"

namespace lab_test {

namespace {

class Settings : public Lab {
  protected:
    std::int64_t queue(const std::string& document) {
        return admin("POST", of_switch("/settings"), document, 201)["config_seqno"];
    }
    std::string state(std::size_t index) {
        return admin_get(of_switch("/settings"))[index]["state"];
    }
    void configure(const Json& policy) { admin("PUT", "/config", policy.dump()); }
};

std::int64_t seqno_in(const Json& reply) { return reply["system"]["cloud"]["config_seqno"]; }

TEST_F(Settings, are_delivered_with_a_number_and_acknowledged_by_it) {
    const std::int64_t seqno = queue(R"({"qos":{"x":1},"system":{"jumbo_frames":{"size":9000}}})");
    EXPECT_GT(seqno, 1);
    EXPECT_EQ(state(0), "pending");
    const Json expected = {
        {"qos", {{"x", 1}}},
        {"system", {{"jumbo_frames", {{"size", 9000}}}, {"cloud", {{"config_seqno", seqno}}}}}};
    EXPECT_EQ(report_seqno(1), expected);
    EXPECT_EQ(state(0), "delivered");
    EXPECT_EQ(report_seqno(seqno), Json::object());
    EXPECT_EQ(state(0), "acknowledged");
    EXPECT_EQ(events("settings-acknowledged")[0]["config_seqno"], seqno);
}

TEST_F(Settings, keep_their_members_in_order_and_their_other_cloud_settings) {
    queue(R"({"system":{"cloud":{"checkin_interval":60},"stp":{}},"acl":[]})");
    Checkin checkin;
    EXPECT_EQ(
        check_in(checkin).body,
        R"({"system":{"cloud":{"checkin_interval":60,"config_seqno":2},"stp":{}},"acl":[]})");
}

TEST_F(Settings, come_again_until_the_number_is_reported) {
    const std::int64_t seqno = queue(R"({"lldp":{}})");
    for (int try_number = 1; try_number <= 3; try_number++)
        EXPECT_EQ(seqno_in(report_seqno(1)), seqno);
    EXPECT_EQ(admin_get(of_switch("/settings"))[0]["tries"], 3);
    EXPECT_EQ(report_seqno(seqno), Json::object());
}

TEST_F(Settings, are_not_repeated_before_the_pause_is_over) {
    configure({{"redeliver_seconds", 3600}});
    queue(R"({"lldp":{}})");
    EXPECT_EQ(seqno_in(report_seqno(1)), 2);
    EXPECT_EQ(report_seqno(1), Json::object());
    configure({{"redeliver_seconds", 0}});
    EXPECT_EQ(seqno_in(report_seqno(1)), 2);
}

TEST_F(Settings, are_given_up_after_the_last_try_and_the_next_ones_follow) {
    configure({{"redeliver_tries", 2}});
    queue(R"({"lldp":{}})");
    queue(R"({"qos":{}})");
    EXPECT_EQ(seqno_in(report_seqno(1)), 2);
    EXPECT_EQ(seqno_in(report_seqno(1)), 2);
    EXPECT_EQ(seqno_in(report_seqno(1)), 3);
    EXPECT_EQ(state(0), "refused");
    EXPECT_EQ(events("settings-refused")[0]["config_seqno"], 2);
}

TEST_F(Settings, without_a_limit_are_never_given_up) {
    configure({{"redeliver_tries", 0}});
    queue(R"({"lldp":{}})");
    for (int try_number = 1; try_number <= 15; try_number++)
        EXPECT_EQ(seqno_in(report_seqno(1)), 2);
}

TEST_F(Settings, are_delivered_in_the_order_of_their_numbers_one_at_a_time) {
    queue(R"({"lldp":{}})");
    queue(R"({"qos":{}})");
    EXPECT_TRUE(report_seqno(1).contains("lldp"));
    const Json second = report_seqno(2);
    EXPECT_TRUE(second.contains("qos"));
    EXPECT_FALSE(second.contains("lldp"));
    EXPECT_EQ(seqno_in(second), 3);
    EXPECT_EQ(report_seqno(3), Json::object());
}

TEST_F(Settings, get_a_higher_number_when_the_switch_is_already_beyond) {
    queue(R"({"lldp":{}})");
    queue(R"({"qos":{}})");
    EXPECT_EQ(seqno_in(report_seqno(40)), 41);
    EXPECT_EQ(seqno_in(report_seqno(41)), 42);
    EXPECT_EQ(report_seqno(42), Json::object());
    EXPECT_EQ(queue(R"({"lldp":{}})"), 43);
}

TEST_F(Settings, already_delivered_follow_a_switch_that_went_beyond_them) {
    queue(R"({"lldp":{}})");
    EXPECT_EQ(seqno_in(report_seqno(1)), 2);
    EXPECT_EQ(seqno_in(report_seqno(7)), 8);
    EXPECT_EQ(report_seqno(8), Json::object());
    EXPECT_EQ(state(0), "acknowledged");
}

TEST_F(Settings, can_be_withdrawn) {
    queue(R"({"lldp":{}})");
    admin("DELETE", of_switch("/settings/2"));
    EXPECT_EQ(report_seqno(1), Json::object());
    admin("DELETE", of_switch("/settings/2"), "", 404);
}

TEST_F(Settings, of_one_switch_do_not_go_to_another) {
    admin("PUT", "/switches/000000000001", R"({"key":"k","secret":"s"})", 201);
    admin("POST", "/switches/000000000001/settings", R"({"lldp":{}})", 201);
    EXPECT_EQ(report_seqno(1), Json::object());
}

TEST_F(Settings, that_no_switch_could_take_are_refused_with_the_reason) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "not JSON"},
        {"{", "not JSON"},
        {"[1]", "is a JSON object"},
        {"{}", "no section"},
        {R"({"system":1})", "\"system\" must be an object"},
        {R"({"System":{}})", "\"system\" in lower case"},
        {R"({"system":{"cloud":[]}})", "\"cloud\" must be an object"},
        {R"({"system":{"Cloud":{}}})", "\"cloud\" in lower case"},
        {R"({"system":{"cloud":{"config_seqno":9}}})", "is given by the lab"},
        {R"({"system":{"cloud":{"Config_Seqno":9}}})", "is given by the lab"},
    };
    for (const auto& [document, reason] : cases) {
        const Json answer = admin("POST", of_switch("/settings"), document, 400);
        EXPECT_NE(std::string(answer["error"]).find(reason), std::string::npos)
            << document << " -> " << answer;
    }
    const std::string deep = R"({"acl":)" + std::string(5000, '[') + std::string(5000, ']') + "}";
    EXPECT_EQ(
        admin("POST", of_switch("/settings"), deep, 400)["error"],
        "the document is nested too deeply");
    EXPECT_TRUE(admin_get(of_switch("/settings")).empty());
}

TEST_F(Settings, a_report_without_a_usable_number_acknowledges_nothing) {
    queue(R"({"lldp":{}})");
    for (const char* body :
         {"{}", R"({"system":{}})", R"({"system":[]})",
          R"({"system":{"cloud":{"config_seqno":"2"}}})",
          R"({"system":{"cloud":{"config_seqno":2.5}}})",
          R"({"system":{"cloud":{"config_seqno":-2}}})"}) {
        Checkin checkin;
        checkin.body = body;
        EXPECT_EQ(seqno_in(Json::parse(check_in(checkin).body)), 2) << body;
    }
}

} // namespace

} // namespace lab_test
