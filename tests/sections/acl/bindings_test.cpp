// Access lists at ports: off while their entries change and back again, and by settings of a port.
#include "sections/acl/bindings.h"

#include <cstring>
#include <fstream>

#include "tests/sections/acl/support.h"

namespace {

class AclBindings : public OnBoardWithLists {
  protected:
    static void list_at_ports_3_and_5(sim::Board& fresh) {
        put_list(fresh, "A", ACL_MAC);
        bind(fresh, ACL_MAC, "A", 3);
        bind(fresh, ACL_MAC, "A", 5);
    }
    std::string remembered(int port, std::uint32_t type) const {
        return bind_recover_names[port].name[type];
    }
};

} // namespace

TEST_F(AclBindings, a_list_at_ports_3_and_5_is_taken_off_once_and_put_back_port_by_port) {
    list_at_ports_3_and_5(board);
    set(R"({"mac_ace":[{"acl_name":"A","sequence":1,"method":0},
                       {"acl_name":"A","sequence":7,"method":1,"action":0}]})");
    EXPECT_EQ(
        writes(), (Lines{
                      "sal_acl_entry_unbind(1, {3,5}) = 0",
                      "sal_ace_entry_del(\"A\", 1) = 0",
                      "sal_ace_entry_create(\"A\", {7 deny}) = 0",
                      "sal_acl_entry_bind(\"A\", 1, {3}) = 0",
                      "sal_acl_entry_bind(\"A\", 1, {5}) = 0",
                  }));
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_EQ(acl_recover_bind, 0u);
    EXPECT_EQ(remembered(3, ACL_MAC), "");
    EXPECT_EQ(bind_recover_names[3].type, 0u);
}

TEST_F(AclBindings, a_list_left_without_entries_stays_off) {
    list_at_ports_3_and_5(board);
    set(R"({"mac_ace":[{"acl_name":"A","sequence":1,"method":0}]})");
    EXPECT_EQ(bound(ACL_MAC, 3), "");
    EXPECT_EQ(bound(ACL_MAC, 5), "");
    EXPECT_FALSE(called("sal_acl_entry_bind"));
    EXPECT_EQ(remembered(5, ACL_MAC), "");
    EXPECT_EQ(acl_recover_bind, 0u);
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(AclBindings, lists_of_the_other_type_stay_where_they_are) {
    list_at_ports_3_and_5(board);
    put_list("I", ACL_IPV4);
    bind(ACL_IPV4, "I", 3);
    EXPECT_EQ(_acl_unbind(ACL_MAC, "A"), 0);
    EXPECT_EQ(bound(ACL_IPV4, 3), "I");
    EXPECT_EQ(remembered(3, ACL_MAC), "A");
    EXPECT_EQ(remembered(3, ACL_IPV4), "");
    EXPECT_EQ(bind_recover_names[3].type, unsigned{ACL_MAC});
    EXPECT_EQ(_acl_rebind(ACL_IPV4), 0); // nothing of that type to put back
    EXPECT_EQ(bound(ACL_MAC, 3), "");
    EXPECT_EQ(acl_recover_bind, 0u);
}

TEST_F(AclBindings, both_types_are_put_back_at_one_port) {
    list_at_ports_3_and_5(board);
    put_list("I", ACL_IPV4);
    bind(ACL_IPV4, "I", 3);
    set(R"({"mac_ace":[{"acl_name":"A","sequence":1,"method":2,"action":0}],
            "ipv4_ace":[{"acl_name":"I","sequence":1,"method":2,"action":0}]})");
    EXPECT_EQ(bound(ACL_MAC, 3), "A");
    EXPECT_EQ(bound(ACL_MAC, 5), "A");
    EXPECT_EQ(bound(ACL_IPV4, 3), "I");
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(AclBindings, a_list_that_no_port_uses_is_not_unbound) {
    list_at_ports_3_and_5(board);
    put_list("B", ACL_MAC);
    EXPECT_EQ(_acl_unbind(ACL_MAC, "B"), 0);
    EXPECT_EQ(acl_recover_bind, 0u);
    EXPECT_EQ(writes(), Lines{});
    EXPECT_EQ(_acl_rebind(ACL_MAC), 0);
    EXPECT_EQ(writes(), Lines{});
}

TEST_F(AclBindings, while_another_list_is_off_a_list_without_ports_is_unbound_from_none) {
    list_at_ports_3_and_5(board);
    put_list("B", ACL_MAC);
    _acl_unbind(ACL_MAC, "A");
    forget();
    EXPECT_EQ(_acl_unbind(ACL_MAC, "B"), 0);
    EXPECT_EQ(writes(), Lines{"sal_acl_entry_unbind(1, {}) = 0"});
}

TEST_F(AclBindings, while_a_list_of_the_other_type_is_off_one_without_ports_is_unbound_from_none) {
    list_at_ports_3_and_5(board);
    put_list("I", ACL_IPV4);
    _acl_unbind(ACL_MAC, "A");
    forget();
    EXPECT_EQ(_acl_unbind(ACL_IPV4, "A"), 0); // the name is remembered, but of the other type
    EXPECT_EQ(writes(), Lines{"sal_acl_entry_unbind(2, {}) = 0"});
}

TEST_F(AclBindings, a_name_that_is_remembered_without_the_flag_is_taken_off_again) {
    list_at_ports_3_and_5(board);
    _acl_unbind(ACL_MAC, "A");
    fail_always("sal_acl_entry_bind", 41);
    _acl_rebind(ACL_MAC); // keeps the names and clears the flag
    bind(ACL_MAC, "A", 5);
    forget();
    EXPECT_EQ(_acl_unbind(ACL_MAC, "A"), 0);
    EXPECT_EQ(writes(), Lines{"sal_acl_entry_unbind(1, {5}) = 0"});
}

TEST_F(AclBindings, each_type_is_put_back_as_itself_where_a_port_lost_both) {
    list_at_ports_3_and_5(board);
    put_list("I", ACL_IPV4);
    bind(ACL_IPV4, "I", 3);
    _acl_unbind(ACL_MAC, "A");
    _acl_unbind(ACL_IPV4, "I"); // the record of port 3 now says IPv4
    forget();
    EXPECT_EQ(_acl_rebind(ACL_MAC), 0);
    EXPECT_EQ(
        writes(),
        (Lines{"sal_acl_entry_bind(\"A\", 1, {3}) = 0", "sal_acl_entry_bind(\"A\", 1, {5}) = 0"}));
    EXPECT_EQ(bind_recover_names[3].type, 0u);
    acl_recover_bind = 1; // as a section leaves it that ended early
    forget();
    EXPECT_EQ(_acl_rebind(ACL_IPV4), 0);
    EXPECT_EQ(writes(), Lines{"sal_acl_entry_bind(\"I\", 2, {3}) = 0"});
}

TEST_F(AclBindings, lists_whose_name_begins_with_the_given_one_are_taken_off_as_well) {
    put_list("Lab", ACL_MAC);
    put_list("Laboratory", ACL_MAC);
    put_list("La", ACL_MAC);
    bind(ACL_MAC, "Lab", 0);
    bind(ACL_MAC, "Laboratory", 1);
    bind(ACL_MAC, "La", 2);
    EXPECT_EQ(_acl_unbind(ACL_MAC, "Lab"), 0);
    EXPECT_EQ(writes(), Lines{"sal_acl_entry_unbind(1, {0-1}) = 0"});
    EXPECT_EQ(remembered(1, ACL_MAC), "Laboratory");
}

TEST_F(AclBindings, once_a_longer_name_is_remembered_the_shorter_list_stays_at_its_ports) {
    put_list("Lab", ACL_MAC);
    put_list("Laboratory", ACL_MAC);
    bind(ACL_MAC, "Lab", 0);
    bind(ACL_MAC, "Laboratory", 1);
    _acl_unbind(ACL_MAC, "Laboratory");
    forget();
    EXPECT_EQ(_acl_unbind(ACL_MAC, "Lab"), 0);
    EXPECT_EQ(trace(), Lines{});
    EXPECT_EQ(bound(ACL_MAC, 0), "Lab");
}

TEST_F(AclBindings, every_call_of_unbinding_and_its_prescribed_outcome) {
    auto runs =
        fail_each_call(list_at_ports_3_and_5, [](cJSON*) { return _acl_unbind(ACL_MAC, "A"); });
    EXPECT_EQ(runs.size(), 4u);
    expect_outcomes(
        runs, {
                  {"sal_acl_entry_portBinding_get", {77, {77}, true}},
                  {"sal_acl_entry_typeByName_get", {0, {77}, false}},
                  {"sal_acl_entry_unbind", {77, {77}, true}},
              });
}

TEST_F(AclBindings, a_port_whose_list_cannot_be_looked_up_is_skipped) {
    list_at_ports_3_and_5(board);
    fail("sal_acl_entry_typeByName_get", 41);
    EXPECT_EQ(_acl_unbind(ACL_MAC, "A"), 0);
    EXPECT_EQ(writes(), Lines{"sal_acl_entry_unbind(1, {5}) = 0"});
    EXPECT_EQ(remembered(3, ACL_MAC), "");
}

TEST_F(AclBindings, every_call_of_rebinding_and_its_prescribed_outcome) {
    auto runs = fail_each_call(
        [](sim::Board& fresh) {
            list_at_ports_3_and_5(fresh);
            _acl_unbind(ACL_MAC, "A");
        },
        [](cJSON*) { return _acl_rebind(ACL_MAC); });
    EXPECT_EQ(runs.size(), 4u);
    expect_outcomes(
        runs, {
                  {"sal_ace_entry_count_get", {77, {77}, true}},
                  {"sal_acl_entry_bind#1", {0, {77}, false}},
                  {"sal_acl_entry_bind#2", {0, {77}, true}},
              });
}

TEST_F(AclBindings, a_count_that_fails_leaves_the_flag_and_the_names) {
    list_at_ports_3_and_5(board);
    _acl_unbind(ACL_MAC, "A");
    fail("sal_ace_entry_count_get", 41, 2);
    EXPECT_EQ(_acl_rebind(ACL_MAC), 41);
    EXPECT_EQ(acl_recover_bind, 1u);
    EXPECT_EQ(remembered(3, ACL_MAC), "");
    EXPECT_EQ(remembered(5, ACL_MAC), "A");
    EXPECT_EQ(bound(ACL_MAC, 3), "A");
}

TEST_F(AclBindings, a_failed_bind_keeps_its_name_and_clears_the_flag_all_the_same) {
    list_at_ports_3_and_5(board);
    _acl_unbind(ACL_MAC, "A");
    fail("sal_acl_entry_bind", 41);
    EXPECT_EQ(_acl_rebind(ACL_MAC), 0);
    EXPECT_EQ(recorded(), Codes{41});
    EXPECT_EQ(remembered(3, ACL_MAC), "A");
    EXPECT_EQ(bound(ACL_MAC, 5), "A");
    EXPECT_EQ(acl_recover_bind, 0u);
}

TEST_F(AclBindings, a_section_that_ended_early_leaves_its_lists_off) {
    list_at_ports_3_and_5(board);
    set(R"({"mac_ace":[{"acl_name":"A","sequence":9,"method":0}]})");
    EXPECT_EQ(recorded(), Codes{sim::code_not_found});
    EXPECT_EQ(bound(ACL_MAC, 3), "");
    EXPECT_EQ(remembered(3, ACL_MAC), "A");
    EXPECT_EQ(acl_recover_bind, 1u);
    forget();
    set(R"({"mac_ace":[{"acl_name":"A","sequence":2,"method":1,"action":1}]})");
    EXPECT_EQ(bound(ACL_MAC, 3), ""); // forgotten, though the flag was still set
    EXPECT_EQ(acl_recover_bind, 0u);
}

TEST_F(AclBindings, binding_both_types_to_a_port) {
    put_list("M", ACL_MAC);
    put_list("I", ACL_IPV4);
    EXPECT_EQ(vxc_acl_port_bind(3, "M", ACL_IPV4, "I"), 0);
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_acl_entry_portBinding_get() = 0",
                     "sal_ace_entry_count_get(\"M\", 1) = 0",
                     "sal_acl_entry_bind(\"M\", 1, {3}) = 0",
                     "sal_ace_entry_count_get(\"I\", 2) = 0",
                     "sal_acl_entry_bind(\"I\", 2, {3}) = 0",
                 }));
    EXPECT_EQ(bound(ACL_MAC, 3), "M");
    EXPECT_EQ(bound(ACL_IPV4, 3), "I");
}

TEST_F(AclBindings, another_list_of_the_type_gives_way_first) {
    put_list("M", ACL_MAC);
    put_list("N", ACL_MAC);
    bind(ACL_MAC, "N", 31 - 4);
    EXPECT_EQ(vxc_acl_port_bind(27, "M", ACL_IPV4, nullptr), 0);
    EXPECT_EQ(
        writes(),
        (Lines{"sal_acl_entry_unbind(1, {27}) = 0", "sal_acl_entry_bind(\"M\", 1, {27}) = 0"}));
}

TEST_F(AclBindings, an_empty_text_takes_the_list_off_even_where_there_is_none) {
    put_list("I", ACL_IPV4);
    bind(ACL_IPV4, "I", 3);
    EXPECT_EQ(vxc_acl_port_bind(3, "", ACL_IPV4, ""), 0);
    EXPECT_EQ(
        writes(), (Lines{"sal_acl_entry_unbind(1, {3}) = 0", "sal_acl_entry_unbind(2, {3}) = 0"}));
    EXPECT_EQ(bound(ACL_IPV4, 3), "");
}

TEST_F(AclBindings, a_name_that_is_bound_already_changes_nothing) {
    put_list("M", ACL_MAC);
    put_list("I", ACL_IPV4);
    bind(ACL_MAC, "M", 3);
    bind(ACL_IPV4, "I", 3);
    EXPECT_EQ(vxc_acl_port_bind(3, "M", ACL_IPV4, "I"), 0);
    EXPECT_EQ(calls(), Lines{"sal_acl_entry_portBinding_get"});
}

TEST_F(AclBindings, an_empty_list_is_not_bound_and_the_bound_one_stays) {
    put_list("M", ACL_MAC);
    put_list("Empty", ACL_MAC, 0);
    put_list("I", ACL_IPV4);
    bind(ACL_MAC, "M", 3);
    EXPECT_EQ(vxc_acl_port_bind(3, "Empty", ACL_IPV4, "I"), 0);
    EXPECT_EQ(bound(ACL_MAC, 3), "M");
    EXPECT_EQ(bound(ACL_IPV4, 3), "I");
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(AclBindings, absent_names_leave_the_port_as_it_is) {
    put_list("M", ACL_MAC);
    bind(ACL_MAC, "M", 3);
    EXPECT_EQ(vxc_acl_port_bind(3, nullptr, ACL_IPV4, nullptr), 0);
    EXPECT_EQ(bound(ACL_MAC, 3), "M");
}

TEST_F(AclBindings, a_list_that_is_not_there_or_of_the_other_type_ends_it) {
    put_list("I", ACL_IPV4);
    EXPECT_EQ(vxc_acl_port_bind(3, "None", ACL_IPV4, "I"), sim::code_not_found);
    EXPECT_EQ(vxc_acl_port_bind(3, "I", ACL_IPV4, "I"), sim::code_not_found);
    EXPECT_EQ(bound(ACL_IPV4, 3), "");
    EXPECT_EQ(recorded(), Codes(2, sim::code_not_found));
}

TEST_F(AclBindings, every_call_of_a_port_binding_ends_it_when_it_fails) {
    auto runs = fail_each_call(
        [](sim::Board& fresh) {
            for (std::uint32_t type : {ACL_MAC, ACL_IPV4}) {
                put_list(fresh, "Old" + std::to_string(type), type);
                put_list(fresh, "New" + std::to_string(type), type);
                bind(fresh, type, "Old" + std::to_string(type), 3);
            }
        },
        [](cJSON*) { return vxc_acl_port_bind(3, "New1", ACL_IPV4, "New2"); });
    EXPECT_EQ(runs.size(), 7u);
    expect_outcomes(
        runs, {
                  {"sal_acl_entry_portBinding_get", {77, {77}, true}},
                  {"sal_ace_entry_count_get", {77, {77}, true}},
                  {"sal_acl_entry_unbind", {77, {77}, true}},
                  {"sal_acl_entry_bind", {77, {77}, true}},
              });
}

TEST_F(AclBindings, a_port_that_does_not_exist_is_refused) {
    put_list("M", ACL_MAC);
    for (int port : {-1, 28, 95, 96, 1000000, -2147483647}) {
        forget();
        EXPECT_EQ(vxc_acl_port_bind(port, "M", ACL_IPV4, ""), 19);
        EXPECT_EQ(recorded(), Codes{19});
        EXPECT_EQ(writes(), Lines{});
    }
}

TEST_F(AclBindings, a_name_longer_than_a_name_field_is_the_platforms_to_refuse) {
    std::string name(33, 'x');
    put_list(name.substr(0, 32), ACL_MAC);
    EXPECT_EQ(vxc_acl_port_bind(3, name.c_str(), ACL_IPV4, nullptr), sim::code_not_found);
    EXPECT_EQ(bound(ACL_MAC, 3), "");
}

TEST_F(AclBindings, the_names_of_a_report_bound_again_change_nothing) {
    put_list("M", ACL_MAC);
    put_list("I", ACL_IPV4);
    bind(ACL_MAC, "M", 3);
    bind(ACL_IPV4, "I", 4);
    for (int port = 0; port < 28; ++port) {
        std::string mac = bound(ACL_MAC, port);
        std::string ipv4 = bound(ACL_IPV4, port);
        EXPECT_EQ(vxc_acl_port_bind(port, mac.c_str(), ACL_IPV4, ipv4.c_str()), 0);
        EXPECT_EQ(bound(ACL_MAC, port), mac);
        EXPECT_EQ(bound(ACL_IPV4, port), ipv4);
    }
    EXPECT_EQ(recorded(), Codes{});
}

TEST(AclBindingOfALargeSwitch, ports_up_to_the_96th_are_bound) {
    TempFolder folder;
    auto scenario = folder.path() / "large.json";
    std::ofstream(scenario) << R"({"hardware": {"logical_ports": 96}})";
    sim::Board board(folder.path() / "board", scenario);
    reset_agent();
    board.device.acl.lists.push_back({"M", ACL_MAC, {Ace{}}});
    board.device.acl.lists[0].entries[0].sequence = 1;
    board.device.acl.lists[0].entries[0].type = ACL_MAC;
    copy_lists_to_chip(board);
    EXPECT_EQ(vxc_acl_port_bind(95, "M", ACL_IPV4, nullptr), 0);
    EXPECT_EQ(board.device.acl.bound[95][ACL_MAC], "M");
    EXPECT_EQ(_acl_unbind(ACL_MAC, "M"), 0);
    EXPECT_EQ(board.device.acl.bound[95][ACL_MAC], "");
    EXPECT_EQ(_acl_rebind(ACL_MAC), 0);
    EXPECT_EQ(board.device.acl.bound[95][ACL_MAC], "M");
}

// --- The platform's side of it.

TEST_F(AclBindings, the_platform_refuses_what_would_break_a_binding) {
    list_at_ports_3_and_5(board);
    put_list("Empty", ACL_MAC, 0);
    AclPortBinding binding{};
    binding.type = ACL_MAC;
    std::strcpy(binding.name[ACL_MAC], "Empty");
    EXPECT_EQ(sal_acl_entry_bind(&binding, {{1, 0, 0}}), sim::code_empty);
    std::strcpy(binding.name[ACL_MAC], "A");
    EXPECT_EQ(sal_acl_entry_bind(&binding, {{1 << 3, 0, 0}}), sim::code_busy);
    EXPECT_EQ(sal_acl_entry_bind(&binding, {{1u << 28, 0, 0}}), sim::code_no_port);
    EXPECT_EQ(sal_acl_entry_del("A", ACL_MAC), sim::code_busy);
    EXPECT_EQ(sal_ace_entry_del("A", 1), sim::code_busy);
    Ace ace{};
    ace.sequence = 2;
    ace.type = ACL_MAC;
    EXPECT_EQ(sal_ace_entry_create("A", &ace), sim::code_busy);
    ace.type = ACL_IPV4;
    EXPECT_EQ(sal_ace_entry_create("Empty", &ace), sim::code_bad_value);
}
