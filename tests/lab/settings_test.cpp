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
    const std::int64_t seqno =
        queue(R"({"qos":{"enable":true},"system":{"jumbo_frames":{"size":9000}}})");
    EXPECT_GT(seqno, 1);
    EXPECT_EQ(state(0), "pending");
    const Json expected = {
        {"qos", {{"enable", true}}},
        {"system", {{"jumbo_frames", {{"size", 9000}}}, {"cloud", {{"config_seqno", seqno}}}}}};
    EXPECT_EQ(report_seqno(1), expected);
    EXPECT_EQ(state(0), "delivered");
    EXPECT_EQ(report_seqno(seqno), Json::object());
    EXPECT_EQ(state(0), "acknowledged");
    EXPECT_EQ(events("settings-acknowledged")[0]["config_seqno"], seqno);
}

TEST_F(Settings, keep_their_members_in_order_and_their_other_cloud_settings) {
    queue(R"({"system":{"cloud":{"checkin_interval":60},"stp":{}},"acl":{}})");
    Checkin checkin;
    EXPECT_EQ(
        check_in(checkin).body,
        R"({"system":{"cloud":{"checkin_interval":60,"config_seqno":2},"stp":{}},"acl":{}})");
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
    for (const auto& [document, reason] : cases)
        admin("POST", of_switch("/settings?anyway=1"), document, 400);
    const std::string deep = R"({"acl":)" + std::string(5000, '[') + std::string(5000, ']') + "}";
    EXPECT_EQ(
        admin("POST", of_switch("/settings"), deep, 400)["error"],
        "the document is nested too deeply");
    EXPECT_TRUE(admin_get(of_switch("/settings")).empty());
}

// What is refused, where, and how the reason begins.
struct Unfit {
    const char* document;
    const char* error;
};

constexpr Unfit unfit[] = {
    {R"({"nonsense":1})", "the document: there should be no \"nonsense\""},
    {R"({"system":{"ports":[{"id":"1"},{"id":"2","enabled":true}]}})",
     "/system/ports/1: there should be no \"enabled\""},
    {R"({"system":{"ports":[{"enable":true}]}})", "/system/ports/0: it lacks \"id\""},
    {R"({"system":{"ports":[{"id":"trunk1","rate_limit":{}}]}})",
     "/system/ports/0: there should be no \"rate_limit\""},
    {R"({"system":{"ports":[{"id":"trunk9"}]}})",
     "/system/ports/0/id: the text is not of the right form; right is"},
    {R"({"system":{"jumbo_frames":{"size":20000}}})",
     R"(/system/jumbo_frames/size: the number is too large; right is )"
     R"({"maximum":9216,"minimum":1522,"type":"integer"}: Largest frame, bytes. (?anyway=1)"},
    {R"({"system":{"jumbo_frames":{"size":1521}}})",
     "/system/jumbo_frames/size: the number is too small"},
    {R"({"system":{"jumbo_frames":{"size":"9000"}}})",
     "/system/jumbo_frames/size: the value is of another type"},
    {R"({"system":{"jumbo_frames":9000}})", "/system/jumbo_frames: the value is of another type"},
    {R"({"system":{"stp":{"priority":4097}}})",
     "/system/stp/priority: the number is not a multiple"},
    {R"({"system":{"cloud":{"key":"alone"}}})",
     "/system/cloud: what is there goes only with \"secret\""},
    {R"({"vlan":{"voice":{"mode":3}}})",
     "/vlan/voice/mode: the value is none of those that are known; right is {\"enum\":[0,1,2]}"},
    {R"({"system":{"ports":[{"id":"1","rate_limit":{"tx_limit_kbps":15}}]}})",
     "/system/ports/0/rate_limit/tx_limit_kbps: the value is none of those that are known; right "
     "is {\"anyOf\":[{\"const\":0}"},
    {R"({"system":{"link_aggregation":[{"id":1,"mode":2}]}})",
     "/system/link_aggregation/0: it lacks \"members\""},
    {R"({"vlan":{"voice":{"oui":[{"method":1,"id":15}]}}})",
     "/vlan/voice/oui/0: it lacks \"address\""},
    {R"({"system":{"snmp":{"communities":[{"name":"","action":2}]}}})",
     "/system/snmp/communities/0/name: the text is too short"},
    {R"({"system":{"port_mirror":[{"id":1},{"id":2},{"id":3},{"id":4},{"id":1}]}})",
     "/system/port_mirror: the list is too long"},
    {R"({"acl":{"mac_ace":[{"acl_name":"a","sequence":1,"method":2,"vlan_id":)"
     R"(18446744073709551615}]}})",
     "/acl/mac_ace/0/vlan_id: the value is none of those that are known"},
};

TEST_F(Settings, that_are_not_as_they_should_be_are_refused_with_place_and_reason) {
    for (const Unfit& wrong : unfit) {
        const Json answer = admin("POST", of_switch("/settings"), wrong.document, 400);
        EXPECT_TRUE(std::string(answer["error"]).starts_with(wrong.error)) << answer;
    }
    EXPECT_TRUE(admin_get(of_switch("/settings")).empty());
    EXPECT_EQ(counter("settings-queued"), 0);
}

TEST_F(Settings, that_are_not_as_they_should_be_are_queued_for_whoever_wants_it) {
    admin("POST", of_switch("/settings?anyway=0"), R"({"nonsense":1})", 400);
    const Json answer = admin("POST", of_switch("/settings?anyway=1"), R"({"nonsense":1})", 201);
    EXPECT_EQ(answer["config_seqno"], 2);
    EXPECT_EQ(report_seqno(1)["nonsense"], 1);
}

std::string list_vlans(int count) {
    std::string list = "1";
    for (int i = 1; i < count; i++)
        list += "," + std::to_string(1000 + i % 3000);
    return list;
}

TEST_F(Settings, may_have_the_longest_list_of_vlans_and_one_that_is_far_too_long) {
    const auto port = [](const std::string& vlans) {
        return R"({"system":{"ports":[{"id":"1","tagged_vlans":")" + vlans + R"("}]}})";
    };
    queue(port(list_vlans(4094)));
    queue(port(list_vlans(800000)));
    const Json answer = admin("POST", of_switch("/settings"), port(list_vlans(800000) + ","), 400);
    EXPECT_TRUE(std::string(answer["error"]).starts_with("/system/ports/0/tagged_vlans: the text"));
}

TEST_F(Settings, that_are_nothing_but_faults_are_refused_for_the_first) {
    std::string faults = R"({"qos":{"cos":[1)";
    for (int i = 0; i < 100'000; i++)
        faults += ",1";
    const Json answer = admin("POST", of_switch("/settings"), faults + "]}}", 400);
    EXPECT_TRUE(std::string(answer["error"]).starts_with("/qos/cos/0: the value is of another"));
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
