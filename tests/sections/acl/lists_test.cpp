// The access list section as a whole: names, creating, deleting, the order of its parts.
#include "sections/acl/lists.h"

#include <cstring>

#include "sections/acl/bindings.h"
#include "tests/sections/acl/support.h"
#include "tests/support/short_of_memory.h"

namespace {

using AclSection = OnBoardWithLists;

} // namespace

TEST_F(AclSection, report_has_four_arrays_in_order) {
    Report report = report_of(vxc_acl_get);
    EXPECT_EQ(report.result, 0);
    EXPECT_EQ(report.text, R"({"acl":{"mac_acl":[],"mac_ace":[],"ipv4_acl":[],"ipv4_ace":[]}})");
    EXPECT_EQ(
        trace(),
        (Lines{
            "sal_acl_entry_countByType_get(1) = 0", "sal_acl_entry_countByType_get(1) = 0",
            "sal_acl_entry_countByType_get(2) = 0", "sal_acl_entry_countByType_get(2) = 0"}));
}

TEST_F(AclSection, report_names_the_lists_of_each_type) {
    put_list("Guests", ACL_IPV4, 0);
    put_list("Phones", ACL_MAC, 0);
    put_list("Thirty-two characters, no more..", ACL_MAC, 0);
    EXPECT_EQ(
        report_of(acl_mac_get).text,
        R"({"mac_acl":[{"name":"Phones"},{"name":"Thirty-two characters, no more.."}]})");
    EXPECT_EQ(report_of(acl_ipv4_get).text, R"({"ipv4_acl":[{"name":"Guests"}]})");
}

TEST_F(AclSection, a_name_that_cannot_be_read_is_recorded_and_left_out) {
    for (const char* name : {"A", "B", "C"})
        put_list(name, ACL_MAC, 0);
    fail("sal_acl_entry_nameByIdx_get", 41, 2);
    Report report = report_of(acl_mac_get);
    EXPECT_EQ(report.result, 0);
    EXPECT_EQ(report.text, R"({"mac_acl":[{"name":"A"},{"name":"C"}]})");
    EXPECT_EQ(recorded(), Codes{41});
}

TEST_F(AclSection, a_count_that_fails_is_recorded_and_returned) {
    put_list("A", ACL_MAC, 0);
    fail("sal_acl_entry_countByType_get", 41);
    Report report = report_of(acl_mac_get);
    EXPECT_EQ(report.result, 41);
    EXPECT_EQ(report.text, R"({"mac_acl":[]})");
    EXPECT_EQ(recorded(), Codes{41});
}

TEST_F(AclSection, each_part_that_fails_is_logged_and_the_next_one_runs) {
    const char* texts[] = {
        "acl mac get fail", "ace mac get fail", "acl ipv4 get fail", "ace ipv4 get fail"};
    for (int part = 1; part <= 4; ++part) {
        forget();
        fail("sal_acl_entry_countByType_get", 41, part);
        Report report = report_of(vxc_acl_get);
        EXPECT_EQ(report.result, 0);
        EXPECT_EQ(log(), Lines{texts[part - 1]});
        EXPECT_EQ(recorded(), Codes{41});
        EXPECT_EQ(
            report.text, R"({"acl":{"mac_acl":[],"mac_ace":[],"ipv4_acl":[],"ipv4_ace":[]}})");
    }
}

TEST_F(AclSection, the_result_is_that_of_the_log_call_about_the_ipv4_entries) {
    fail_always("sal_acl_entry_countByType_get", 41);
    fail_always("sys_log", 55);
    EXPECT_EQ(report_of(vxc_acl_get).result, 55);
    forget();
    fail("sal_acl_entry_countByType_get", 41, 3);
    fail_always("sys_log", 55);
    EXPECT_EQ(report_of(vxc_acl_get).result, 0); // told about the IPv4 lists only
}

TEST_F(AclSection, creating_a_list) {
    EXPECT_EQ(acl_set(1, ACL_IPV4, "Guests"), 0);
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_acl_entry_portBinding_get() = 0", "sal_acl_entry_countByType_get(2) = 0",
                     "sal_acl_entry_create(\"Guests\", 2) = 0"}));
}

TEST_F(AclSection, creating_a_list_that_exists_does_nothing_and_records_nothing) {
    put_list("Guests", ACL_IPV4, 0);
    EXPECT_EQ(acl_set(1, ACL_IPV4, "Guests"), -1);
    EXPECT_EQ(writes(), Lines{});
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_EQ(set(R"({"ipv4_acl":[{"name":"Guests","method":1}]})"), 0);
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(AclSection, a_name_is_compared_in_all_its_letters) {
    put_list("Guests", ACL_IPV4, 0);
    EXPECT_EQ(_acl_name_check(ACL_IPV4, "Guests"), -1);
    EXPECT_EQ(_acl_name_check(ACL_IPV4, "Guest"), 0);
    EXPECT_EQ(_acl_name_check(ACL_IPV4, "Guests2"), 0);
    EXPECT_EQ(_acl_name_check(ACL_IPV4, "guests"), 0);
    EXPECT_EQ(_acl_name_check(ACL_MAC, "Guests"), 0);
}

TEST_F(AclSection, a_name_of_the_other_type_is_refused_by_the_platform) {
    put_list("Guests", ACL_IPV4, 0);
    EXPECT_EQ(acl_set(1, ACL_MAC, "Guests"), sim::code_exists);
    EXPECT_EQ(recorded(), Codes{sim::code_exists});
}

TEST_F(AclSection, a_list_is_created_although_the_names_cannot_be_compared) {
    put_list("Guests", ACL_IPV4, 0);
    fail("sal_acl_entry_nameByIdx_get", 41);
    EXPECT_EQ(_acl_name_check(ACL_IPV4, "Guests"), 0);
    EXPECT_EQ(recorded(), Codes{41});
    forget();
    fail("sal_acl_entry_countByType_get", 42);
    EXPECT_EQ(acl_set(1, ACL_IPV4, "New"), 0);
    EXPECT_EQ(recorded(), Codes{42});
    EXPECT_NE(device.acl.find("New"), nullptr);
}

TEST_F(AclSection, names_that_the_platform_refuses_are_recorded) {
    set(R"({"mac_acl":[{"name":"","method":1},{"name":"123456789012345678901234567890123",
            "method":1},{"name":"tab\t","method":1}]})");
    EXPECT_EQ(recorded(), (Codes{sim::code_bad_text, sim::code_too_long, sim::code_bad_text}));
}

TEST_F(AclSection, a_full_table_takes_no_list) {
    device.acl.list_capacity = 1;
    put_list("One", ACL_MAC, 0);
    EXPECT_EQ(acl_set(1, ACL_MAC, "Two"), sim::code_table_full);
    EXPECT_EQ(acl_set(1, ACL_IPV4, "Two"), 0);
}

TEST_F(AclSection, deleting_unbinds_the_type_from_every_port_and_deletes_the_named_list) {
    put_list("A", ACL_MAC);
    put_list("B", ACL_MAC);
    put_list("C", ACL_IPV4);
    bind(ACL_MAC, "A", 2);
    bind(ACL_MAC, "B", 4);
    bind(ACL_MAC, "B", 27);
    bind(ACL_IPV4, "C", 4);
    EXPECT_EQ(acl_set(0, ACL_MAC, "A"), 0);
    EXPECT_EQ(
        writes(),
        (Lines{"sal_acl_entry_unbind(1, {2,4,27}) = 0", "sal_acl_entry_del(\"A\", 1) = 0"}));
    EXPECT_EQ(device.acl.find("A"), nullptr);
    EXPECT_EQ(bound(ACL_MAC, 4), "");
    EXPECT_EQ(bound(ACL_IPV4, 4), "C");
}

TEST_F(AclSection, deleting_a_list_that_no_port_uses_unbinds_from_no_port) {
    put_list("A", ACL_MAC);
    EXPECT_EQ(acl_set(0, ACL_MAC, "A"), 0);
    EXPECT_EQ(
        writes(), (Lines{"sal_acl_entry_unbind(1, {}) = 0", "sal_acl_entry_del(\"A\", 1) = 0"}));
}

TEST_F(AclSection, deleting_a_list_that_is_not_there_is_recorded) {
    EXPECT_EQ(acl_set(0, ACL_MAC, "A"), sim::code_not_found);
    EXPECT_EQ(recorded(), Codes{sim::code_not_found});
}

TEST_F(AclSection, every_call_of_a_deletion_ends_it_when_it_fails) {
    auto runs = fail_each_call(
        [](sim::Board& fresh) {
            put_list(fresh, "A", ACL_MAC);
            bind(fresh, ACL_MAC, "A", 2);
            bind(fresh, ACL_MAC, "A", 3);
        },
        [](cJSON*) { return acl_set(0, ACL_MAC, "A"); });
    EXPECT_EQ(runs.size(), 5u);
    expect_outcomes(
        runs, {
                  {"sal_acl_entry_portBinding_get", {77, {77}, true}},
                  {"sal_acl_entry_typeByName_get", {77, {77}, true}},
                  {"sal_acl_entry_unbind", {77, {77}, true}},
                  {"sal_acl_entry_del", {77, {77}, true}},
              });
}

TEST_F(AclSection, every_call_of_a_creation_and_its_prescribed_outcome) {
    auto runs = fail_each_call(
        [](sim::Board& fresh) { put_list(fresh, "A", ACL_MAC); },
        [](cJSON*) { return acl_set(1, ACL_MAC, "B"); });
    EXPECT_EQ(runs.size(), 4u);
    expect_outcomes(
        runs, {
                  {"sal_acl_entry_portBinding_get", {77, {77}, true}},
                  {"sal_acl_entry_countByType_get", {0, {77}, false}},
                  {"sal_acl_entry_nameByIdx_get", {0, {77}, false}},
                  {"sal_acl_entry_create", {77, {77}, true}},
              });
}

TEST_F(AclSection, another_method_reads_the_bindings_and_does_nothing) {
    put_list("A", ACL_MAC);
    EXPECT_EQ(acl_set(2, ACL_MAC, "A"), 0);
    EXPECT_EQ(acl_set(-1, ACL_MAC, "B"), 0);
    EXPECT_EQ(calls(), (Lines{"sal_acl_entry_portBinding_get", "sal_acl_entry_portBinding_get"}));
}

TEST_F(AclSection, items_without_name_or_method_are_skipped_unrecorded) {
    EXPECT_EQ(set(R"({"mac_acl":[{"name":"A"},{"method":1},{"name":7,"method":1},null,5,[]]})"), 0);
    EXPECT_EQ(trace(), Lines{});
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(AclSection, parts_are_applied_in_their_order_whatever_that_of_the_document) {
    set(R"({"ipv4_ace":[{"acl_name":"I","sequence":2,"method":1,"action":0}],
            "ipv4_acl":[{"name":"I","method":1}],
            "mac_ace":[{"acl_name":"M","sequence":1,"method":1,"action":1}],
            "mac_acl":[{"name":"M","method":1}]})");
    EXPECT_EQ(
        writes(), (Lines{
                      "sal_acl_entry_create(\"M\", 1) = 0",
                      "sal_ace_entry_create(\"M\", {1 permit}) = 0",
                      "sal_acl_entry_create(\"I\", 2) = 0",
                      "sal_ace_entry_create(\"I\", {2 deny}) = 0",
                  }));
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(AclSection, an_apply_always_returns_0_and_goes_on_after_each_failure) {
    EXPECT_EQ(
        set(R"({"mac_acl":[{"name":"A","method":0},{"name":"B","method":1}],
                "mac_ace":[{"acl_name":"none","sequence":1,"method":0}],
                "ipv4_acl":[{"name":"C","method":1}],
                "ipv4_ace":[{"acl_name":"none","sequence":1,"method":2}]})"),
        0);
    EXPECT_EQ(recorded(), Codes(3, sim::code_not_found));
    EXPECT_NE(device.acl.find("B"), nullptr);
    EXPECT_NE(device.acl.find("C"), nullptr);
    EXPECT_EQ(set("{}"), 0);
    EXPECT_EQ(vxc_acl_set(nullptr), 0);
}

TEST_F(AclSection, what_was_remembered_in_an_earlier_apply_is_forgotten) {
    put_list("A", ACL_MAC);
    std::strcpy(bind_recover_names[3].name[ACL_MAC], "A");
    acl_recover_bind = 1;
    set("{}");
    EXPECT_EQ(bind_recover_names[3].name[ACL_MAC][0], '\0');
    EXPECT_EQ(acl_recover_bind, 1u); // the flag is not
    EXPECT_EQ(bound(ACL_MAC, 3), "");
}

TEST_F(AclSection, lists_fed_back_without_a_method_change_nothing) {
    put_list("A", ACL_MAC);
    put_list("B", ACL_IPV4);
    bind(ACL_MAC, "A", 3);
    std::string before = report_of(vxc_acl_get).text;
    Json document(before);
    EXPECT_EQ(vxc_acl_set(document["acl"]), 0);
    EXPECT_EQ(report_of(vxc_acl_get).text, before);
    EXPECT_EQ(bound(ACL_MAC, 3), "A");
    EXPECT_EQ(writes(), Lines{});
}

TEST_F(AclSection, a_failing_allocation_costs_a_report_one_member_and_the_next_report_nothing) {
    for (std::uint32_t type : {ACL_MAC, ACL_IPV4})
        put_list("List" + std::to_string(type), type, 2);
    EXPECT_GT(starve(board, vxc_acl_get), 50u);
}
