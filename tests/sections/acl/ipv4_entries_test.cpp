// Entries of IPv4 access lists, and the ranges of layer-4 ports that they refer to.
#include "sections/acl/ipv4_entries.h"

#include <set>

#include "driver/acl.h"
#include "tests/sections/acl/support.h"

namespace {

class AceIpv4s : public OnBoardWithEntries {
  protected:
    AceIpv4s() : OnBoardWithEntries(ACL_IPV4, ace_ipv4_set) {}

    // The range of a port at the chip, as kind:first-last.
    std::string range(const AceL4Port& port) const {
        if (!port.range_valid)
            return "none";
        sim::ChipL4Range at = device.chip.state().l4_ranges[port.range];
        return std::to_string(at.kind) + ":" + std::to_string(at.first) + "-" +
               std::to_string(at.last);
    }
    const AceIpv4& stored() { return device.acl.find("A")->entries.back().match.ipv4; }
    // Entries as the report gives them, with method 2 each.
    static std::string as_modification(const std::string& report) {
        std::string text = report.substr(report.find('['));
        text.pop_back();
        for (std::size_t at = 0; (at = text.find("{\"acl_name\"", at)) != text.npos; at += 12)
            text.replace(at, 1, "{\"method\":2,");
        return text;
    }
};

const char* const tcp_entry =
    R"("protocol":6,"type_of_service":46,"destination_ip":"192.0.2.0",)"
    R"("destination_mask":"255.255.255.0","source_ip":"198.51.100.7","icmp_code":3,)"
    R"("source_port_first":1024,"source_port_second":65535,"destination_port_first":443,)"
    R"("tcp_flag_syn":1,"tcp_flag_ack":2)";

const char* const tcp_entry_shown =
    "{10 permit protocol 6 tos 46 to C0000200/FFFFFF00 from C6336407/FFFFFFFF icmp code 3 from "
    "range 0 to port 443 flags 2/18}";

} // namespace

TEST_F(AceIpv4s, report_has_the_members_in_order) {
    start_with(tcp_entry);
    EXPECT_EQ(entry(), tcp_entry_shown);
    Report report = report_of(ace_ipv4_get);
    EXPECT_EQ(report.result, 0);
    EXPECT_EQ(
        report.text,
        R"({"ipv4_ace":[{"acl_name":"A","sequence":10,"action":1,"protocol":6,)"
        R"("destination_ip":"192.0.2.0","destination_mask":"255.255.255.0",)"
        R"("source_ip":"198.51.100.7","source_mask":"255.255.255.255","type_of_service":46,)"
        R"("icmp_type":-1,"icmp_code":3,"source_port_first":1024,"source_port_second":65535,)"
        R"("destination_port_first":443,"destination_port_second":-1,"tcp_flag_urg":0,)"
        R"("tcp_flag_ack":2,"tcp_flag_psh":0,"tcp_flag_rst":0,"tcp_flag_syn":1,)"
        R"("tcp_flag_fin":0}]})");
}

TEST_F(AceIpv4s, report_of_an_entry_that_matches_anything) {
    put_list("M", ACL_MAC, 1);
    put_list("A", ACL_IPV4, 1);
    EXPECT_EQ(
        report_of(ace_ipv4_get).text,
        R"({"ipv4_ace":[{"acl_name":"A","sequence":1,"action":1,"protocol":-1,)"
        R"("destination_ip":"","destination_mask":"","source_ip":"","source_mask":"",)"
        R"("type_of_service":-1,"icmp_type":-1,"icmp_code":-1,"source_port_first":-1,)"
        R"("source_port_second":-1,"destination_port_first":-1,"destination_port_second":-1,)"
        R"("tcp_flag_urg":0,"tcp_flag_ack":0,"tcp_flag_psh":0,"tcp_flag_rst":0,)"
        R"("tcp_flag_syn":0,"tcp_flag_fin":0}]})");
}

TEST_F(AceIpv4s, every_call_of_a_report_and_its_prescribed_outcome) {
    auto runs = fail_each_call(
        [](sim::Board& fresh) {
            put_list(fresh, "A", ACL_IPV4, 2);
            put_list(fresh, "B", ACL_IPV4, 1);
            Json items(R"([{"acl_name":"A","sequence":3,"method":1,"action":1,
                            "source_ip":"192.0.2.1","source_port_first":1,
                            "source_port_second":2}])");
            ace_ipv4_set(items);
        },
        [](cJSON* document) { return ace_ipv4_get(document); });
    EXPECT_EQ(runs.size(), 1u + 2 + 2 + 4 + 2 + 1);
    expect_outcomes(
        runs, {
                  {"sal_acl_entry_countByType_get", {77, {77}, true}},
                  {"sal_acl_entry_nameByIdx_get#1", {0, {77}, false}},
                  {"sal_acl_entry_nameByIdx_get#2", {0, {77}, true}}, // nothing is left
                  {"sal_ace_entry_count_get", {77, {77}, true}},
                  {"sal_ace_entry_byIdx_get", {0, {77}, false}},
                  {"sal_ace_entry_byIdx_get#4", {0, {77}, true}}, // the last one
                  {"sys_util_ip2Str", {0, {77}, false}},
                  {"sal_acl_l4port_range_get", {0, {77}, false}},
              });
}

TEST_F(AceIpv4s, an_entry_whose_range_cannot_be_read_is_left_out_as_a_whole) {
    start_with(tcp_entry);
    create("", 11);
    fail("sal_acl_l4port_range_get", 41);
    Report report = report_of(ace_ipv4_get);
    EXPECT_EQ(report.result, 0);
    EXPECT_EQ(report.text.find("\"sequence\":10"), std::string::npos);
    EXPECT_NE(report.text.find("\"sequence\":11"), std::string::npos);
}

TEST_F(AceIpv4s, values_of_a_new_entry) {
    const EntryCase cases[] = {
        {"", "{10 permit}"},
        {R"("protocol":-1)", "{10 permit}"},
        {R"("protocol":0)", "{10 permit protocol 0}"},
        {R"("protocol":255)", "{10 permit protocol 255}"},
        {R"("protocol":262)", "{10 permit protocol 6}"}, // eight bits of it
        {R"("type_of_service":0)", "{10 permit tos 0}"},
        {R"("type_of_service":63)", "{10 permit tos 63}"},
        {R"("type_of_service":-1)", "{10 permit}"},
        {R"("type_of_service":64)", nullptr},
        {R"("type_of_service":-2)", nullptr},
        {R"("destination_ip":"")", "{10 permit}"},
        {R"("destination_ip":"","destination_mask":"no mask")", "{10 permit}"},
        {R"("source_mask":"255.0.0.0")", "{10 permit}"},
        {R"("source_ip":"192.0.2.1")", "{10 permit from C0000201/FFFFFFFF}"},
        {R"("source_ip":"192.0.2.1","source_mask":"")", "{10 permit from C0000201/FFFFFFFF}"},
        {R"("destination_ip":"192.0.2.1","destination_mask":"255.0.255.0")",
         "{10 permit to C0000201/FF00FF00}"},
        {R"("protocol":1,"icmp_type":0)", "{10 permit protocol 1 icmp type 0}"},
        {R"("protocol":1,"icmp_type":255)", "{10 permit protocol 1 icmp type 255}"},
        {R"("protocol":1,"icmp_type":-1)", "{10 permit protocol 1}"},
        {R"("protocol":1,"icmp_type":256)", nullptr},
        {R"("protocol":1,"icmp_type":-2)", nullptr},
        {R"("protocol":6,"icmp_type":256)", "{10 permit protocol 6}"}, // not read
        {R"("icmp_type":8)", "{10 permit}"},
        {R"("icmp_code":8)", "{10 permit icmp code 8}"}, // read for every protocol
        {R"("protocol":17,"icmp_code":255)", "{10 permit protocol 17 icmp code 255}"},
        {R"("icmp_code":-1)", "{10 permit}"},
        {R"("icmp_code":256)", nullptr},
        {R"("source_port_first":-1)", "{10 permit}"},
        {R"("source_port_first":-1,"source_port_second":9)", "{10 permit}"},
        {R"("source_port_second":99999)", "{10 permit}"},
        {R"("source_port_first":0)", "{10 permit from port 0}"},
        {R"("source_port_first":65535)", "{10 permit from port 65535}"},
        {R"("source_port_first":65536)", nullptr},
        {R"("source_port_first":-2)", nullptr},
        {R"("source_port_first":80,"source_port_second":-1)", "{10 permit from port 80}"},
        {R"("source_port_first":80,"source_port_second":80)", "{10 permit from range 0}"},
        {R"("source_port_first":80,"source_port_second":65535)", "{10 permit from range 0}"},
        {R"("source_port_first":80,"source_port_second":79)", nullptr},
        {R"("source_port_first":80,"source_port_second":65536)", nullptr},
        {R"("source_port_first":80,"source_port_second":-2)", nullptr},
        {R"("destination_port_first":53)", "{10 permit to port 53}"},
        {R"("destination_port_first":65536)", nullptr},
        {R"("source_port_first":1,"source_port_second":2,"destination_port_first":3,
            "destination_port_second":4)",
         "{10 permit from range 0 to range 1}"},
        {R"("source_port_first":1,"source_port_second":2,"destination_port_first":1,
            "destination_port_second":2)",
         "{10 permit from range 0 to range 0}"},
        {R"("protocol":6,"tcp_flag_urg":1,"tcp_flag_ack":1,"tcp_flag_psh":1,"tcp_flag_rst":1,
            "tcp_flag_syn":1,"tcp_flag_fin":1)",
         "{10 permit protocol 6 flags 63/63}"},
        {R"("protocol":6,"tcp_flag_urg":2)", "{10 permit protocol 6 flags 0/32}"},
        {R"("protocol":6,"tcp_flag_ack":2,"tcp_flag_psh":1)", "{10 permit protocol 6 flags 8/24}"},
        {R"("protocol":6,"tcp_flag_rst":1,"tcp_flag_syn":2)", "{10 permit protocol 6 flags 4/6}"},
        {R"("protocol":6,"tcp_flag_syn":0,"tcp_flag_fin":3)", "{10 permit protocol 6}"},
        {R"("protocol":17,"tcp_flag_syn":1)", "{10 permit protocol 17}"},
        {R"("tcp_flag_syn":1)", "{10 permit}"},
    };
    for (const EntryCase& it : cases) {
        sim::Chip fresh(device.logical_ports());
        device.chip.change([&](sim::ChipState& chip) { chip = fresh.state(); });
        device.acl.lists.clear();
        put_list("A", ACL_IPV4, 0);
        forget();
        EXPECT_EQ(create(it.members), 0) << it.members;
        EXPECT_EQ(entry(), it.entry ? it.entry : "none") << it.members;
        EXPECT_EQ(recorded(), it.entry ? Codes{} : Codes{19}) << it.members;
    }
}

TEST_F(AceIpv4s, an_address_that_does_not_parse_ends_its_item_with_the_parsers_code) {
    put_list("A", ACL_IPV4, 0);
    for (const char* members :
         {R"("destination_ip":"192.0.2")", R"("source_ip":"192.0.2.256")",
          R"("source_ip":"192.0.2.1","source_mask":"/24")"}) {
        forget();
        EXPECT_EQ(create(members), 0);
        EXPECT_EQ(recorded(), Codes{sim::code_bad_text}) << members;
        EXPECT_EQ(writes(), Lines{}) << members;
    }
}

TEST_F(AceIpv4s, the_kind_of_a_range_is_1_for_tcp_and_2_for_all_else) {
    start_with(R"("protocol":6,"source_port_first":1,"source_port_second":9)");
    EXPECT_EQ(range(stored().source_port), "1:1-9");
    for (const char* protocol : {R"("protocol":17,)", R"("protocol":-1,)", ""}) {
        start_with(std::string(protocol) + R"("source_port_first":1,"source_port_second":9)");
        EXPECT_EQ(range(stored().source_port), "2:1-9") << protocol;
    }
}

TEST_F(AceIpv4s, a_range_goes_to_the_driver_before_the_list_is_touched) {
    put_list("A", ACL_IPV4, 1);
    bind(ACL_IPV4, "A", 3);
    create(R"("source_port_first":1,"source_port_second":9)");
    Lines all = trace();
    ASSERT_GE(all.size(), 3u);
    EXPECT_TRUE(all[0].starts_with("_ace_number_check(2)"));
    EXPECT_TRUE(all[1].starts_with("ioctl(328")) << all[1];
    EXPECT_TRUE(all[2].starts_with("sal_acl_entry_portBinding_get"));
    EXPECT_EQ(bound(ACL_IPV4, 3), "A");
}

TEST_F(AceIpv4s, a_driver_that_takes_no_range_ends_the_item_with_its_code) {
    put_list("A", ACL_IPV4, 0);
    board.faults.plan({sim::Edge::ioctl, "328", 1, false, 41, 0});
    EXPECT_EQ(create(R"("source_port_first":1,"source_port_second":9)"), 0);
    EXPECT_EQ(recorded(), Codes{41});
    EXPECT_EQ(entry(), "none");
    forget();
    device.driver_loaded = false;
    EXPECT_EQ(create(R"("source_port_first":1,"source_port_second":9)"), 0);
    EXPECT_EQ(recorded(), Codes{501});
}

TEST_F(AceIpv4s, only_minus_1_of_the_check_for_room_refuses_a_new_entry) {
    put_list("A", ACL_IPV4, 0);
    device.acl.entry_capacity = 0;
    EXPECT_EQ(create(""), 0);
    EXPECT_EQ(recorded(), Codes{-1});
    EXPECT_EQ(calls(), Lines{"_ace_number_check"});
    device.acl.entry_capacity = 9;
    forget();
    fail("_ace_number_check", 41);
    EXPECT_EQ(create(""), 0);
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_EQ(entry(), "{10 permit}");
}

TEST_F(AceIpv4s, modifying_replaces_only_what_is_named) {
    const EntryCase cases[] = {
        {"", tcp_entry_shown},
        {R"("action":0,"type_of_service":-1,"destination_ip":"","source_ip":"","icmp_code":-1,
            "source_port_first":-1,"destination_port_first":-1,"tcp_flag_syn":0,"tcp_flag_ack":0)",
         "{10 deny protocol 6}"},
        {R"("type_of_service":1,"icmp_code":9)",
         "{10 permit protocol 6 tos 1 to C0000200/FFFFFF00 from C6336407/FFFFFFFF icmp code 9 from "
         "range 0 to port 443 flags 2/18}"},
        {R"("destination_ip":"192.0.2.9","source_mask":"255.0.0.0")", // the other mask stays
         "{10 permit protocol 6 tos 46 to C0000209/FFFFFF00 from C6336407/FF000000 icmp code 3 "
         "from range 0 to port 443 flags 2/18}"},
        {R"("source_port_first":5,"destination_port_second":500)", // a second without a first
         "{10 permit protocol 6 tos 46 to C0000200/FFFFFF00 from C6336407/FFFFFFFF icmp code 3 "
         "from port 5 to port 443 flags 2/18}"},
        {R"("tcp_flag_ack":1,"tcp_flag_fin":2)", // the flag that is not named stays
         "{10 permit protocol 6 tos 46 to C0000200/FFFFFF00 from C6336407/FFFFFFFF icmp code 3 "
         "from range 0 to port 443 flags 18/19}"},
        {R"("tcp_flag_ack":7,"tcp_flag_syn":-1)",
         "{10 permit protocol 6 tos 46 to C0000200/FFFFFF00 from C6336407/FFFFFFFF icmp code 3 "
         "from range 0 to port 443}"},
        {R"("icmp_type":5)", tcp_entry_shown}, // not read while the protocol is TCP
        {R"("protocol":1,"icmp_type":5,"tcp_flag_syn":0)",
         "{10 permit protocol 1 tos 46 to C0000200/FFFFFF00 from C6336407/FFFFFFFF icmp type 5 "
         "icmp code 3 from range 1 to port 443 flags 2/18}"},
        {R"("type_of_service":64)", nullptr},
        {R"("icmp_code":256)", nullptr},
        {R"("source_port_first":70000)", nullptr},
        {R"("destination_port_first":9,"destination_port_second":8)", nullptr},
    };
    for (const EntryCase& it : cases) {
        sim::Chip fresh(device.logical_ports());
        device.chip.change([&](sim::ChipState& chip) { chip = fresh.state(); });
        start_with(tcp_entry);
        EXPECT_EQ(modify(it.members), 0) << it.members;
        EXPECT_EQ(entry(), it.entry ? it.entry : tcp_entry_shown) << it.members;
        EXPECT_EQ(recorded(), it.entry ? Codes{} : Codes{19}) << it.members;
    }
}

TEST_F(AceIpv4s, the_protocol_of_the_stored_entry_counts_where_none_is_named) {
    start_with(R"("protocol":1)");
    modify(R"("icmp_type":8,"tcp_flag_syn":1)");
    EXPECT_EQ(entry(), "{10 permit protocol 1 icmp type 8}");
    start_with(R"("protocol":6)");
    modify(R"("icmp_type":8,"tcp_flag_syn":1)");
    EXPECT_EQ(entry(), "{10 permit protocol 6 flags 2/2}");
}

TEST_F(AceIpv4s, a_range_that_stays_is_written_again_when_the_protocol_leaves_tcp) {
    start_with(R"("protocol":6,"source_port_first":1,"source_port_second":9)");
    modify(R"("protocol":17)");
    EXPECT_EQ(range(stored().source_port), "2:1-9");
    EXPECT_EQ(recorded(), Codes{});
    forget();
    modify(R"("protocol":47)"); // neither is TCP
    EXPECT_FALSE(called("sal_acl_l4port_range_get"));
    EXPECT_EQ(range(stored().source_port), "2:1-9");
    modify(R"("protocol":6)");
    EXPECT_EQ(range(stored().source_port), "1:1-9");
}

TEST_F(AceIpv4s, a_range_that_cannot_be_written_again_leaves_the_entry_as_it_was) {
    start_with(R"("protocol":6,"source_port_first":1,"source_port_second":9)");
    fail("sal_acl_l4port_range_get", 41);
    EXPECT_EQ(modify(R"("protocol":17)"), 0);
    EXPECT_EQ(recorded(), Codes{41});
    EXPECT_EQ(entry(), "{10 permit protocol 6 from range 0}");
    EXPECT_EQ(range(stored().source_port), "1:1-9");
}

TEST_F(AceIpv4s, when_the_old_entry_is_created_again_its_ranges_still_stand) {
    start_with(tcp_entry);
    fail("sal_ace_entry_create", 41);
    EXPECT_EQ(modify(R"("source_port_first":7,"source_port_second":8)"), 0);
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_EQ(entry(), tcp_entry_shown);
    EXPECT_EQ(range(stored().source_port), "1:1024-65535");
}

TEST_F(AceIpv4s, a_report_fed_back_as_modifications_changes_nothing) {
    const char* entries_to_try[] = {
        tcp_entry,
        "",
        R"("protocol":1,"icmp_type":8,"icmp_code":0)",
        R"("protocol":17,"source_port_first":0,"source_port_second":0,
           "destination_port_first":67,"destination_port_second":68)",
        R"("protocol":0,"source_ip":"0.0.0.0","source_mask":"0.0.0.0","type_of_service":0)",
        R"("protocol":6,"destination_port_first":0,"tcp_flag_fin":2)",
    };
    put_list("A", ACL_IPV4, 0);
    for (int i = 0; i < 6; ++i)
        create(entries_to_try[i], 10 + i);
    bind(ACL_IPV4, "A", 3);
    ASSERT_EQ(recorded(), Codes{});
    std::string before = report_of(ace_ipv4_get).text;
    Lines stored_before = entries("A");
    auto ranges_before = device.chip.state().acl_ranges();
    for (int round = 0; round < 3; ++round) {
        Json items(as_modification(before));
        EXPECT_EQ(ace_ipv4_set(items), 0);
        EXPECT_EQ(report_of(ace_ipv4_get).text, before);
        EXPECT_EQ(entries("A"), stored_before);
        EXPECT_EQ(device.chip.state().acl_ranges(), ranges_before);
        EXPECT_EQ(bound(ACL_IPV4, 3), "A");
        EXPECT_EQ(recorded(), Codes{});
    }
}

TEST_F(AceIpv4s, an_entry_that_changed_its_protocol_fed_back_changes_nothing) {
    start_with(tcp_entry);
    modify(R"("protocol":1,"icmp_type":3)");
    modify(R"("protocol":17)"); // type and flags stay, though they match nothing any more
    std::string before = report_of(ace_ipv4_get).text;
    Lines stored_before = entries("A");
    Json items(as_modification(before));
    EXPECT_EQ(ace_ipv4_set(items), 0);
    EXPECT_EQ(report_of(ace_ipv4_get).text, before);
    EXPECT_EQ(entries("A"), stored_before);
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(AceIpv4s, entries_and_their_ranges_are_kept_in_the_startup_configuration) {
    put_list("A", ACL_IPV4, 0);
    create(R"("protocol":6,"source_port_first":5,"source_port_second":6)", 9);
    create(tcp_entry);
    apply(R"("sequence":9,"method":0)"); // so that the place of the range is another one
    std::string before = report_of(ace_ipv4_get).text;
    EXPECT_TRUE(board.save_startup_config());
    sim::Board again(folder.path());
    EXPECT_EQ(report_of(ace_ipv4_get).text, before);
    EXPECT_EQ(again.device.chip.state().l4_ranges[0].users, 1u);
}

// --- Ranges at the driver.

TEST_F(AceIpv4s, equal_ranges_are_one) {
    put_list("A", ACL_IPV4, 0);
    for (int i = 1; i <= 5; ++i)
        create(R"("source_port_first":1,"source_port_second":9)", i);
    EXPECT_EQ(device.chip.state().l4_ranges[0].users, 5u);
    EXPECT_EQ(device.chip.state().l4_ranges[1].kind, 0u);
}

TEST_F(AceIpv4s, ranges_never_run_out_while_entries_come_and_go) {
    put_list("A", ACL_IPV4, 1);
    for (int i = 0; i < 200; ++i) {
        std::string ports = R"("source_port_first":)" + std::to_string(i) +
                            R"(,"source_port_second":999,"destination_port_first":)" +
                            std::to_string(i) + R"(,"destination_port_second":998)";
        if (i % 3 == 0)
            modify(ports, 1);
        else
            create(ports, 2);
        EXPECT_EQ(range(stored().source_port), "2:" + std::to_string(i) + "-999");
        EXPECT_EQ(range(stored().destination_port), "2:" + std::to_string(i) + "-998");
        if (i % 3 != 0)
            apply(R"("sequence":2,"method":0)");
        ASSERT_EQ(recorded(), Codes{}) << i;
    }
}

TEST_F(AceIpv4s, a_range_in_use_never_gives_way) {
    put_list("A", ACL_IPV4, 0);
    for (int i = 1; i <= sim::chip_l4_ranges; ++i)
        create(R"("source_port_second":999,"source_port_first":)" + std::to_string(i), i);
    ASSERT_EQ(recorded(), Codes{});
    create(R"("source_port_first":500,"source_port_second":999)", 99);
    EXPECT_EQ(recorded(), Codes{sim::code_table_full});
    std::set<int> places;
    for (const Ace& ace : device.acl.find("A")->entries)
        places.insert(ace.match.ipv4.source_port.range);
    EXPECT_EQ(places.size(), std::size_t{sim::chip_l4_ranges});
    forget();
    apply(R"("sequence":3,"method":0)");
    create(R"("source_port_first":500,"source_port_second":999)", 99);
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(AceIpv4s, the_two_ranges_of_a_new_entry_do_not_take_each_others_place) {
    put_list("A", ACL_IPV4, 0);
    for (int i = 1; i < sim::chip_l4_ranges; ++i)
        create(R"("source_port_second":999,"source_port_first":)" + std::to_string(i), i);
    ASSERT_EQ(recorded(), Codes{});
    create(
        R"("source_port_first":1,"source_port_second":500,"destination_port_first":1,
              "destination_port_second":501)",
        99);
    EXPECT_EQ(recorded(), Codes{sim::code_table_full});
}

TEST_F(AceIpv4s, deleting_a_list_gives_up_the_ranges_of_its_entries) {
    put_list("A", ACL_IPV4, 0);
    create(tcp_entry);
    EXPECT_EQ(device.chip.state().l4_ranges[0].users, 1u);
    EXPECT_EQ(rsd_acl_l4port_range_del(0), sim::code_busy);
    EXPECT_EQ(sal_acl_entry_del("A", ACL_IPV4), 0);
    EXPECT_EQ(device.chip.state().l4_ranges[0].users, 0u);
    EXPECT_EQ(rsd_acl_l4port_range_del(0), 0);
    EXPECT_EQ(rsd_acl_l4port_range_del(0), sim::code_not_found);
}
