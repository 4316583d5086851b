// Entries of MAC access lists.
#include "sections/acl/mac_entries.h"

#include "tests/sections/acl/support.h"

namespace {

class AceMacs : public OnBoardWithEntries {
  protected:
    AceMacs() : OnBoardWithEntries(ACL_MAC, ace_mac_set) {}
};

const char* const full_entry =
    R"("destination_mac":"02:00:00:00:00:01","destination_mask":"FF:FF:FF:00:00:00",)"
    R"("source_mac":"02:00:00:00:00:02","vlan_id":20,"ethertype":"0800","priority":5)";

const char* const full_entry_shown =
    "{10 permit to 02:00:00:00:00:01/FF:FF:FF:00:00:00 from 02:00:00:00:00:02/FF:FF:FF:FF:FF:FF "
    "vlan 20 ethertype 0800 priority 5/7}";

} // namespace

TEST_F(AceMacs, report_has_the_members_in_order) {
    start_with(full_entry);
    Report report = report_of(ace_mac_get);
    EXPECT_EQ(report.result, 0);
    EXPECT_EQ(
        report.text,
        R"({"mac_ace":[{"acl_name":"A","sequence":10,"action":1,)"
        R"("destination_mac":"02:00:00:00:00:01","destination_mask":"FF:FF:FF:00:00:00",)"
        R"("source_mac":"02:00:00:00:00:02","source_mask":"FF:FF:FF:FF:FF:FF",)"
        R"("vlan_id":20,"priority":5,"ethertype":"0800"}]})");
}

TEST_F(AceMacs, report_of_an_entry_that_matches_anything) {
    put_list("A", ACL_MAC, 0);
    apply(R"("sequence":3,"method":1,"action":0)");
    EXPECT_EQ(
        report_of(ace_mac_get).text,
        R"({"mac_ace":[{"acl_name":"A","sequence":3,"action":0,)"
        R"("destination_mac":"","destination_mask":"","source_mac":"","source_mask":"",)"
        R"("vlan_id":-1,"priority":-1,"ethertype":""}]})");
}

TEST_F(AceMacs, report_has_the_entries_of_every_mac_list_and_of_no_other) {
    put_list("A", ACL_MAC, 2);
    put_list("I", ACL_IPV4, 2);
    put_list("Empty", ACL_MAC, 0);
    put_list("B", ACL_MAC, 1);
    device.acl.lists[0].entries[0].action = 7; // any other than 0 permits
    Json document(report_of(ace_mac_get).text);
    Lines seen;
    for (cJSON* item = getJsonChild(document["mac_ace"]); item; item = getJsonNext(item)) {
        int found;
        seen.push_back(
            getJsonStringValueForKey(item, "acl_name") +
            std::to_string(getJsonIntValueForKey(item, "sequence", &found)) + "/" +
            std::to_string(getJsonIntValueForKey(item, "action", &found)));
    }
    EXPECT_EQ(seen, (Lines{"A1/1", "A2/1", "B1/1"}));
}

TEST_F(AceMacs, every_call_of_a_report_and_its_prescribed_outcome) {
    auto runs = fail_each_call(
        [](sim::Board& fresh) {
            put_list(fresh, "A", ACL_MAC, 2);
            put_list(fresh, "B", ACL_MAC, 1);
            AceMac& mac = fresh.device.acl.lists[0].entries[0].match.mac;
            mac.source_mac_valid = mac.destination_mac_valid = 1;
        },
        [](cJSON* document) { return ace_mac_get(document); });
    EXPECT_EQ(runs.size(), 1u + 2 + 2 + 3 + 4);
    expect_outcomes(
        runs, {
                  {"sal_acl_entry_countByType_get", {77, {77}, true}},
                  {"sal_acl_entry_nameByIdx_get#1", {0, {77}, false}},
                  {"sal_acl_entry_nameByIdx_get#2", {0, {77}, true}}, // nothing is left
                  {"sal_ace_entry_count_get", {77, {77}, true}},
                  {"sal_ace_entry_byIdx_get#1", {0, {77}, false}},
                  {"sal_ace_entry_byIdx_get#2", {0, {77}, false}},
                  {"sal_ace_entry_byIdx_get#3", {0, {77}, true}}, // the last one
                  {"sys_util_mac2Str", {0, {77}, false}},
              });
}

TEST_F(AceMacs, an_entry_whose_address_has_no_text_is_left_out_as_a_whole) {
    start_with(full_entry);
    apply(R"("sequence":11,"method":1,"action":0)");
    fail("sys_util_mac2Str", 41, 3);
    Report report = report_of(ace_mac_get);
    EXPECT_EQ(report.result, 0);
    EXPECT_EQ(report.text.find("\"sequence\":10"), std::string::npos);
    EXPECT_NE(report.text.find("\"sequence\":11"), std::string::npos);
}

TEST_F(AceMacs, creating_checks_for_room_unbinds_and_creates) {
    put_list("A", ACL_MAC, 1);
    bind(ACL_MAC, "A", 3);
    EXPECT_EQ(create(full_entry), 0);
    EXPECT_EQ(
        calls(),
        (Lines{
            "_ace_number_check", "sys_util_str2Mac", "sys_util_str2Mac", "sys_util_str2Mac",
            "sal_acl_entry_portBinding_get", "sal_acl_entry_typeByName_get", "sal_acl_entry_unbind",
            "sal_ace_entry_create", "sal_ace_entry_count_get", "sal_acl_entry_bind"}));
    EXPECT_EQ(entry(), full_entry_shown);
}

TEST_F(AceMacs, values_of_a_new_entry) {
    const EntryCase cases[] = {
        {"", "{10 permit}"},
        {R"("vlan_id":-1)", "{10 permit}"},
        {R"("vlan_id":1)", "{10 permit vlan 1}"},
        {R"("vlan_id":4094)", "{10 permit vlan 4094}"},
        {R"("vlan_id":0)", nullptr},
        {R"("vlan_id":4095)", nullptr},
        {R"("vlan_id":-2)", nullptr},
        {R"("ethertype":"")", "{10 permit}"},
        {R"("ethertype":"0600")", "{10 permit ethertype 0600}"},
        {R"("ethertype":"600")", "{10 permit ethertype 0600}"},
        {R"("ethertype":"FFFF")", "{10 permit ethertype FFFF}"},
        {R"("ethertype":"0x86dd")", "{10 permit ethertype 86DD}"},
        {R"("ethertype":"0X86DD")", "{10 permit ethertype 86DD}"},
        {R"("ethertype":"8x0600")", nullptr},
        {R"("ethertype":"0y0600")", nullptr},
        {R"("ethertype":"05FF")", nullptr},
        {R"("ethertype":"10000")", nullptr},
        {R"("ethertype":"1FFFFFFFF")", nullptr},
        {R"("ethertype":"0x")", nullptr},
        {R"("ethertype":"-800")", nullptr},
        {R"("ethertype":"0800 ")", nullptr},
        {R"("ethertype":"IPv4")", nullptr},
        {R"("ethertype":2048)", "{10 permit}"}, // no text
        {R"("priority":-1)", "{10 permit}"},
        {R"("priority":0)", "{10 permit priority 0/7}"},
        {R"("priority":7)", "{10 permit priority 7/7}"},
        {R"("priority":8)", nullptr},
        {R"("priority":-2)", nullptr},
        {R"("destination_mac":"")", "{10 permit}"},
        {R"("destination_mac":"","destination_mask":"no mask")", "{10 permit}"},
        {R"("destination_mask":"FF:00:00:00:00:00")", "{10 permit}"},
        {R"("source_mac":"02:0a:00:00:00:01")",
         "{10 permit from 02:0A:00:00:00:01/FF:FF:FF:FF:FF:FF}"},
        {R"("source_mac":"02:0A:00:00:00:01","source_mask":"")",
         "{10 permit from 02:0A:00:00:00:01/FF:FF:FF:FF:FF:FF}"},
        {R"("destination_mac":"02-0A-00-00-00-01","destination_mask":"FF:00:00:00:00:00")",
         "{10 permit to 02:0A:00:00:00:01/FF:00:00:00:00:00}"},
        {R"("action":0)", "{10 permit}"}, // the first of two counts
    };
    put_list("A", ACL_MAC, 0);
    for (const EntryCase& it : cases) {
        device.acl.lists[0].entries.clear();
        copy_lists_to_chip(board);
        forget();
        EXPECT_EQ(create(it.members), 0) << it.members;
        EXPECT_EQ(entry(), it.entry ? it.entry : "none") << it.members;
        EXPECT_EQ(recorded(), it.entry ? Codes{} : Codes{19}) << it.members;
        EXPECT_EQ(called("sal_ace_entry_create"), it.entry != nullptr) << it.members;
    }
}

TEST_F(AceMacs, an_address_that_does_not_parse_ends_its_item_with_the_parsers_code) {
    put_list("A", ACL_MAC, 1);
    bind(ACL_MAC, "A", 3);
    for (const char* members :
         {R"("destination_mac":"02:00")", R"("source_mac":"02:00:00:00:00:0G")",
          R"("source_mac":"02:00:00:00:00:01","source_mask":"24")"}) {
        forget();
        EXPECT_EQ(create(members), 0);
        EXPECT_EQ(recorded(), Codes{sim::code_bad_text}) << members;
        EXPECT_EQ(writes(), Lines{}) << members; // and its list stays at its ports
    }
}

TEST_F(AceMacs, any_result_of_the_check_for_room_but_0_refuses_a_new_entry) {
    put_list("A", ACL_MAC, 0);
    device.acl.entry_capacity = 0;
    EXPECT_EQ(create(""), 0);
    EXPECT_EQ(recorded(), Codes{-1});
    EXPECT_EQ(calls(), Lines{"_ace_number_check"});
    device.acl.entry_capacity = 9;
    forget();
    fail("_ace_number_check", 41);
    EXPECT_EQ(create(""), 0);
    EXPECT_EQ(recorded(), Codes{41});
    EXPECT_EQ(entry(), "none");
}

TEST_F(AceMacs, a_mac_entry_does_not_get_into_an_ipv4_list) {
    put_list("A", ACL_IPV4, 0);
    create(full_entry);
    EXPECT_EQ(recorded(), Codes{sim::code_bad_value});
    EXPECT_EQ(entry(), "none");
}

TEST_F(AceMacs, modifying_replaces_only_what_is_named) {
    const EntryCase cases[] = {
        {"", full_entry_shown},
        {R"("action":0,"vlan_id":-1,"ethertype":"","priority":-1,"destination_mac":"",
            "source_mac":"")",
         "{10 deny}"},
        {R"("vlan_id":30)",
         "{10 permit to 02:00:00:00:00:01/FF:FF:FF:00:00:00 from "
         "02:00:00:00:00:02/FF:FF:FF:FF:FF:FF vlan 30 ethertype 0800 priority 5/7}"},
        {R"("vlan_id":-1,"ethertype":"","priority":-1,"source_mac":"",
            "destination_mac":"02:00:00:00:00:09")",
         "{10 permit to 02:00:00:00:00:09/FF:FF:FF:00:00:00}"}, // the mask stays
        {R"("vlan_id":-1,"ethertype":"","priority":-1,"source_mac":"",
            "destination_mask":"FF:00:00:00:00:00")",
         "{10 permit to 02:00:00:00:00:01/FF:00:00:00:00:00}"},
        {R"("vlan_id":-1,"ethertype":"","priority":-1,"source_mac":"","destination_mask":"")",
         "{10 permit to 02:00:00:00:00:01/FF:FF:FF:FF:FF:FF}"},
        {R"("vlan_id":4095)", nullptr},
        {R"("ethertype":"05FF")", nullptr},
        {R"("priority":8)", nullptr},
    };
    put_list("A", ACL_MAC, 0);
    for (const EntryCase& it : cases) {
        device.acl.lists[0].entries.clear();
        copy_lists_to_chip(board);
        create(full_entry);
        forget();
        EXPECT_EQ(modify(it.members), 0) << it.members;
        EXPECT_EQ(entry(), it.entry ? it.entry : full_entry_shown) << it.members;
        EXPECT_EQ(recorded(), it.entry ? Codes{} : Codes{19}) << it.members;
        EXPECT_EQ(called("sal_ace_entry_del"), it.entry != nullptr) << it.members;
    }
}

TEST_F(AceMacs, a_mask_modified_where_there_is_no_address_is_not_looked_at) {
    start_with("");
    EXPECT_EQ(modify(R"("source_mask":"no mask","destination_mask":"FF:00:00:00:00:00")"), 0);
    EXPECT_EQ(entry(), "{10 permit}");
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(AceMacs, an_address_that_is_taken_away_takes_its_mask_along) {
    start_with(full_entry);
    EXPECT_EQ(modify(R"("destination_mac":"","source_mac":"")"), 0);
    const AceMac& mac = device.acl.lists[0].entries[0].match.mac;
    for (const auto& bytes :
         {mac.destination_mac, mac.destination_mask, mac.source_mac, mac.source_mask})
        EXPECT_EQ(std::string(bytes, bytes + MAC_ADDRESS_SIZE), std::string(6, '\0'));
}

TEST_F(AceMacs, entries_are_kept_in_the_startup_configuration) {
    start_with(full_entry);
    bind(ACL_MAC, "A", 3);
    EXPECT_TRUE(board.save_startup_config());
    sim::Board again(folder.path());
    ASSERT_EQ(again.device.acl.lists.size(), 1u);
    EXPECT_EQ(sim::show_ace(again.device.acl.lists[0].entries[0]), full_entry_shown);
    EXPECT_EQ(again.device.acl.bound[3][ACL_MAC], "A");
}
