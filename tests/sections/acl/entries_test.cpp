// Creating, modifying and deleting entries of access lists: what both kinds of list have in common.
#include "sections/acl/entries.h"

#include "sections/acl/ipv4_entries.h"
#include "sections/acl/mac_entries.h"
#include "tests/sections/acl/support.h"

namespace {

struct Kind {
    const char* name;
    std::uint32_t type;
    int (*setter)(const cJSON*);
    const char* parser;  // of addresses
    const char* address; // a member that needs it
};

void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }

const Kind kinds[] = {
    {"mac", ACL_MAC, ace_mac_set, "sys_util_str2Mac", R"("source_mac":"02:00:00:00:00:01")"},
    {"ipv4", ACL_IPV4, ace_ipv4_set, "sys_util_str2Ip", R"("source_ip":"192.0.2.1")"},
};

class AceFrame : public OnBoardWithEntries, public testing::WithParamInterface<Kind> {
  protected:
    AceFrame() : OnBoardWithEntries(GetParam().type, GetParam().setter) {}

    // A call of the trace; "T" stands for the type of list.
    static std::string call(std::string text) {
        for (std::size_t at = 0; (at = text.find('T', at)) != text.npos;)
            text.replace(at, 1, std::to_string(GetParam().type));
        return text + " = 0";
    }

    std::vector<FailedRun> fail_each_call_of(int entries, const std::string& item) {
        return fail_each_call(
            [&](sim::Board& fresh) {
                put_list(fresh, "A", type_, entries);
                bind(fresh, type_, "A", 3);
            },
            [&](cJSON*) { return apply(item); });
    }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Kinds, AceFrame, testing::ValuesIn(kinds), [](const auto& kind) {
    return std::string(kind.param.name);
});

TEST_P(AceFrame, an_item_without_name_sequence_or_method_is_19_and_skipped) {
    put_list("A", type_, 0);
    EXPECT_EQ(
        apply_all(R"([{"sequence":1,"method":1,"action":1},{"acl_name":7,"sequence":1,"method":1},
                      {"acl_name":"A","method":1,"action":1},{"acl_name":"A","sequence":1},null,
                      "x",{"acl_name":"A","sequence":5,"method":1,"action":1}])"),
        0);
    EXPECT_EQ(recorded(), Codes(6, 19));
    EXPECT_EQ(entries("A"), Lines{"{5 permit}"});
}

TEST_P(AceFrame, another_method_is_ignored) {
    put_list("A", type_, 0);
    for (const char* method : {"3", "-1", "2147483647"})
        EXPECT_EQ(apply(R"("sequence":1,"method":)" + std::string(method)), 0);
    EXPECT_EQ(trace(), Lines{});
    EXPECT_EQ(recorded(), Codes{});
}

TEST_P(AceFrame, settings_that_are_no_array_change_nothing) {
    put_list("A", type_, 1);
    for (const char* items : {"[]", "{}", "null", "7", R"("x")"})
        EXPECT_EQ(apply_all(items), 0);
    EXPECT_EQ(setter_(nullptr), 0);
    EXPECT_EQ(trace(), Lines{});
}

TEST_P(AceFrame, a_new_entry_needs_an_action) {
    put_list("A", type_, 0);
    EXPECT_EQ(apply(R"("sequence":10,"method":1)"), 0);
    EXPECT_EQ(recorded(), Codes{19});
    EXPECT_EQ(calls(), Lines{"_ace_number_check"});
}

TEST_P(AceFrame, a_failed_creation_is_recorded_and_the_next_item_follows) {
    put_list("A", type_, 1);
    EXPECT_EQ(
        apply_all(R"([{"acl_name":"A","sequence":1,"method":1,"action":1},
                      {"acl_name":"None","sequence":1,"method":1,"action":1},
                      {"acl_name":"A","sequence":2,"method":1,"action":1}])"),
        0);
    EXPECT_EQ(recorded(), (Codes{sim::code_exists, sim::code_not_found}));
    EXPECT_EQ(entries("A"), (Lines{"{1 permit}", "{2 permit}"}));
}

TEST_P(AceFrame, every_call_of_a_creation_and_its_prescribed_outcome) {
    auto runs = fail_each_call_of(
        1, R"("sequence":2,"method":1,"action":1,)" + std::string(GetParam().address));
    EXPECT_EQ(runs.size(), 8u);
    // A check that fails otherwise than for want of room does not stop an IPv4 entry.
    Outcome check = type_ == ACL_MAC ? Outcome{0, {77}, true} : Outcome{0, {}, false};
    expect_outcomes(
        runs, {
                  {"_ace_number_check", check},
                  {GetParam().parser, {0, {77}, true}},
                  {"sal_acl_entry_portBinding_get", {0, {77, 10}, false}}, // it is bound still
                  {"sal_acl_entry_typeByName_get", {0, {77, 10}, false}},
                  {"sal_acl_entry_unbind", {0, {77, 10, 10}, false}}, // nor bound twice
                  {"sal_ace_entry_create", {0, {77}, false}},
                  {"sal_ace_entry_count_get", {77, {77}, true}},
                  {"sal_acl_entry_bind", {0, {77}, true}},
              });
}

TEST_P(AceFrame, modifying_finds_unbinds_deletes_and_creates) {
    put_list("A", type_, 3);
    bind(type_, "A", 3);
    EXPECT_EQ(apply(R"("sequence":2,"method":2,"action":0)"), 0);
    EXPECT_EQ(
        trace(), (Lines{
                     call("sal_ace_entry_count_get(\"A\", T)"),
                     call("sal_ace_entry_byIdx_get(\"A\", T, 0)"),
                     call("sal_ace_entry_byIdx_get(\"A\", T, 1)"),
                     "sal_acl_entry_portBinding_get() = 0",
                     "sal_acl_entry_typeByName_get(\"A\") = 0",
                     call("sal_acl_entry_unbind(T, {3})"),
                     "sal_ace_entry_del(\"A\", 2) = 0",
                     "sal_ace_entry_create(\"A\", {2 deny}) = 0",
                     call("sal_ace_entry_count_get(\"A\", T)"),
                     call("sal_acl_entry_bind(\"A\", T, {3})"),
                 }));
}

TEST_P(AceFrame, modifying_an_entry_that_is_not_there_is_19_and_the_next_item_follows) {
    put_list("A", type_, 2);
    EXPECT_EQ(
        apply_all(R"([{"acl_name":"A","sequence":9,"method":2,"action":0},
                      {"acl_name":"A","sequence":2,"method":2,"action":0}])"),
        0);
    EXPECT_EQ(recorded(), Codes{19});
    EXPECT_EQ(entries("A"), (Lines{"{1 permit}", "{2 deny}"}));
}

TEST_P(AceFrame, a_19_of_the_platform_ends_the_section_as_its_other_codes_do) {
    put_list("A", type_, 2);
    fail("sal_ace_entry_count_get", 19);
    EXPECT_EQ(
        apply_all(R"([{"acl_name":"A","sequence":1,"method":2,"action":0},
                      {"acl_name":"A","sequence":2,"method":2,"action":0}])"),
        19);
    EXPECT_EQ(recorded(), Codes{19});
    EXPECT_EQ(entries("A"), (Lines{"{1 permit}", "{2 permit}"}));
}

TEST_P(AceFrame, an_entry_that_cannot_be_read_while_searching_is_recorded_and_passed_over) {
    put_list("A", type_, 2);
    fail("sal_ace_entry_byIdx_get", 41);
    EXPECT_EQ(apply(R"("sequence":2,"method":2,"action":0)"), 0);
    EXPECT_EQ(recorded(), Codes{41});
    EXPECT_EQ(entries("A"), (Lines{"{1 permit}", "{2 deny}"}));
}

TEST_P(AceFrame, every_call_of_a_modification_and_its_prescribed_outcome) {
    auto runs =
        fail_each_call_of(1, R"("sequence":1,"method":2,)" + std::string(GetParam().address));
    EXPECT_EQ(runs.size(), 10u);
    expect_outcomes(
        runs, {
                  {"sal_ace_entry_count_get", {77, {77}, true}}, // of the search, of the rebind
                  {"sal_ace_entry_byIdx_get", {0, {77, 19}, true}},
                  {GetParam().parser, {0, {77}, true}},
                  {"sal_acl_entry_portBinding_get", {10, {77, 10}, false}}, // it is bound still
                  {"sal_acl_entry_typeByName_get", {10, {77, 10}, false}},
                  {"sal_acl_entry_unbind", {10, {77, 10}, false}},
                  {"sal_ace_entry_del", {77, {77}, true}},
                  {"sal_ace_entry_create", {0, {}, false}}, // the old one is created again
                  {"sal_acl_entry_bind", {0, {77}, true}},
              });
}

TEST_P(AceFrame, a_modification_that_the_platform_refuses_leaves_the_old_entry_unrecorded) {
    start_with(GetParam().address);
    std::string before = entry();
    EXPECT_EQ(modify(R"("action":9)"), 0);
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_EQ(entry(), before);
    EXPECT_EQ(writes().size(), 3u);
    EXPECT_EQ(writes().back(), "sal_ace_entry_create(\"A\", " + before + ") = 0");
}

TEST_P(AceFrame, when_the_old_entry_cannot_be_created_again_the_section_ends) {
    put_list("A", type_, 2);
    bind(type_, "A", 3);
    fail("sal_ace_entry_create", 42, 2);
    EXPECT_EQ(
        apply_all(R"([{"acl_name":"A","sequence":1,"method":2,"action":9},
                      {"acl_name":"A","sequence":2,"method":0}])"),
        42);
    EXPECT_EQ(recorded(), Codes{42});
    EXPECT_EQ(entries("A"), Lines{"{2 permit}"});
    EXPECT_EQ(bound(type_, 3), ""); // the lists are not put back
}

TEST_P(AceFrame, modifying_an_entry_of_a_list_that_is_not_there_ends_the_section) {
    put_list("A", type_ == ACL_MAC ? ACL_IPV4 : ACL_MAC, 1);
    EXPECT_EQ(modify("", 1), sim::code_not_found);
    EXPECT_EQ(recorded(), Codes{sim::code_not_found});
}

TEST_P(AceFrame, deleting_unbinds_and_deletes) {
    put_list("A", type_, 2);
    bind(type_, "A", 3);
    EXPECT_EQ(apply(R"("sequence":1,"method":0)"), 0);
    EXPECT_EQ(
        writes(), (Lines{
                      call("sal_acl_entry_unbind(T, {3})"), "sal_ace_entry_del(\"A\", 1) = 0",
                      call("sal_acl_entry_bind(\"A\", T, {3})")}));
}

TEST_P(AceFrame, every_call_of_a_deletion_and_its_prescribed_outcome) {
    auto runs = fail_each_call_of(2, R"("sequence":1,"method":0)");
    EXPECT_EQ(runs.size(), 6u);
    expect_outcomes(
        runs, {
                  {"sal_acl_entry_portBinding_get", {10, {77, 10}, false}},
                  {"sal_acl_entry_typeByName_get", {10, {77, 10}, false}},
                  {"sal_acl_entry_unbind", {10, {77, 10}, false}},
                  {"sal_ace_entry_del", {77, {77}, true}},
                  {"sal_ace_entry_count_get", {77, {77}, true}},
                  {"sal_acl_entry_bind", {0, {77}, true}},
              });
}

TEST_P(AceFrame, a_failed_deletion_ends_the_section_before_the_next_item) {
    put_list("A", type_, 2);
    EXPECT_EQ(
        apply_all(R"([{"acl_name":"A","sequence":9,"method":0},
                      {"acl_name":"A","sequence":1,"method":0}])"),
        sim::code_not_found);
    EXPECT_EQ(recorded(), Codes{sim::code_not_found});
    EXPECT_EQ(entries("A").size(), 2u);
}
