// The voice VLAN section: settings, switching off, and the table of telephone vendors.
#include "sections/voice_vlan.h"

#include <algorithm>
#include <map>

#include "sim/instruments/codes.h"
#include "tests/support/on_board.h"
#include "tests/support/short_of_memory.h"

namespace {

class VoiceVlan : public OnBoard {
  protected:
    static void
    put_vendor(sim::Board& board, std::size_t index, std::uint8_t first, const char* description) {
        sim::VoiceOui& place = board.device.voice_vlan.ouis[index];
        place.address[0] = first;
        place.address[1] = 0x1B;
        place.address[2] = 0xFF;
        place.description = description;
        place.in_use = true;
    }
    void put_vendor(std::size_t index, std::uint8_t first, const char* description) {
        put_vendor(board, index, first, description);
    }
    static void on(sim::Board& board) {
        board.device.voice_vlan.vid = 20;
        board.device.voice_vlan.mode = 1;
    }
    void on() { on(board); }

    int set(const std::string& voice) {
        Json document(R"({"voice":)" + voice + "}");
        return vxc_voice_vlan_set(document);
    }
    int edit(const std::string& edits) { return set(R"({"oui":)" + edits + "}"); }

    // What was done to the vendor table, reads left out.
    Lines table_writes() const {
        Lines lines = trace();
        std::erase_if(lines, [](const std::string& line) {
            return !line.starts_with("sal_vlan_voiceVlanOui_set") &&
                   !line.starts_with("sal_vlan_voiceVlanOui_add");
        });
        return lines;
    }
    long table_reads() const {
        Lines names = calls();
        return std::count(names.begin(), names.end(), "sal_vlan_voiceVlanOui_get");
    }
};

const char* const off_report = R"({"vlan":{"voice":{"mode":0,"vlan_id":4095,)"
                               R"("802.1p_remark":false,"remark_cos":6,"aging_time":1440,)"
                               R"("oui":[]}}})";

// What each step of a run must lead to when it fails.
struct Outcome {
    int result;
    Codes errors;
};

void expect_outcomes(
    const std::vector<FailedRun>& runs, const std::map<std::string, Outcome>& outcomes) {
    for (const FailedRun& run : runs) {
        auto outcome = outcomes.find(run.call);
        ASSERT_NE(outcome, outcomes.end()) << run.call;
        EXPECT_EQ(run.result, outcome->second.result) << run.call << " " << run.nth;
        EXPECT_EQ(run.errors, outcome->second.errors) << run.call << " " << run.nth;
    }
}

} // namespace

TEST_F(VoiceVlan, report_has_the_settings_and_an_empty_table) {
    Report report = report_of(vxc_voice_vlan_get);
    EXPECT_EQ(report.result, 0);
    EXPECT_EQ(report.text, off_report);
    Lines first = calls();
    first.resize(5);
    EXPECT_EQ(
        first,
        (Lines{
            "sal_vlan_voiceVlanState_get", "sal_vlan_voiceVid_get", "sal_vlan_voiceVlanQos_get",
            "sal_vlan_voiceVlanAging_get", "sal_vlan_voiceVlan1pRemarkEnable_get"}));
    EXPECT_EQ(table_reads(), 16);
}

TEST_F(VoiceVlan, report_lists_only_places_in_use_so_ids_have_gaps) {
    put_vendor(0, 0x00, "One");
    put_vendor(3, 0x11, "Gone");
    device.voice_vlan.ouis[3].in_use = false;
    put_vendor(15, 0xAB, "Thirty-two characters, no more..");
    std::string text = report_of(vxc_voice_vlan_get).text;
    EXPECT_EQ(
        text.substr(text.find("\"oui\"")),
        R"("oui":[{"id":0,"address":"00:1B:FF","description":"One"},)"
        R"({"id":15,"address":"AB:1B:FF","description":"Thirty-two characters, no more.."}]}}})");
}

TEST_F(VoiceVlan, report_adds_nothing_when_a_setting_cannot_be_read) {
    auto runs = fail_each_call([](sim::Board&) {}, vxc_voice_vlan_get);
    ASSERT_EQ(runs.size(), 5u + 16u);
    for (std::size_t i = 0; i < runs.size(); ++i) {
        EXPECT_EQ(runs[i].result, 77) << runs[i].call;
        EXPECT_EQ(runs[i].errors, Codes{77}) << runs[i].call;
        EXPECT_EQ(runs[i].calls_after, Lines{}) << runs[i].call;
        EXPECT_EQ(runs[i].report, i < 5 ? "{}" : off_report) << runs[i].call;
    }
}

TEST_F(VoiceVlan, report_keeps_the_vendors_before_a_place_that_cannot_be_read) {
    put_vendor(0, 0x00, "One");
    put_vendor(5, 0x05, "Five");
    fail("sal_vlan_voiceVlanOui_get", 12, 6);
    Report report = report_of(vxc_voice_vlan_get);
    EXPECT_EQ(report.result, 12);
    EXPECT_NE(report.text.find("One"), std::string::npos);
    EXPECT_EQ(report.text.find("Five"), std::string::npos);
    EXPECT_EQ(recorded(), Codes{12});
}

TEST_F(VoiceVlan, switching_on_sets_the_id_before_the_mode) {
    EXPECT_EQ(
        set(R"({"mode":2,"vlan_id":30,"802.1p_remark":true,"remark_cos":5,"aging_time":60})"), 0);
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_vlan_voiceVlanQos_get() = 0",
                     "sal_vlan_voiceVid_set(30) = 0",
                     "sal_vlan_voiceVlanState_set(2) = 0",
                     "sal_vlan_voiceVlan1pRemarkEnable_set(1) = 0",
                     "sal_vlan_voiceVlanQos_set(6, 46, 5) = 0",
                     "sal_vlan_voiceVlanAging_set(60) = 0",
                 }));
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(VoiceVlan, absent_mode_and_id_are_the_current_ones_and_are_written_again) {
    on();
    EXPECT_EQ(set("{}"), 0);
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_vlan_voiceVlanQos_get() = 0", "sal_vlan_voiceVlanState_get() = 0",
                     "sal_vlan_voiceVid_get() = 0", "sal_vlan_voiceVid_set(20) = 0",
                     "sal_vlan_voiceVlanState_set(1) = 0"}));
}

TEST_F(VoiceVlan, mode_3_switches_off_at_every_port_and_ignores_the_details) {
    on();
    device.voice_vlan.ports[27].enable = true;
    EXPECT_EQ(
        set(R"({"mode":3,"vlan_id":30,"802.1p_remark":true,"remark_cos":5,"aging_time":60})"), 0);
    Lines expected{"sal_vlan_voiceVlanQos_get() = 0"};
    for (int port = 0; port < 28; ++port)
        expected.push_back("sal_vlan_portVoiceVlanEnable_set(" + std::to_string(port) + ", 0) = 0");
    expected.push_back("sal_vlan_voiceVlanState_set(0) = 0");
    expected.push_back("sal_vlan_voiceVid_set(4095) = 0");
    EXPECT_EQ(trace(), expected);
    EXPECT_EQ(report_of(vxc_voice_vlan_get).text, off_report);
    EXPECT_FALSE(device.voice_vlan.ports[27].enable);
}

TEST_F(VoiceVlan, modes_beyond_1_and_2_are_off) {
    for (const char* mode : {"0", "-1", "3", "2147483647", "\"1\"", "null"}) {
        on();
        EXPECT_EQ(set(std::string(R"({"mode":)") + mode + "}"), 0);
        EXPECT_EQ(device.voice_vlan.mode, 0) << mode;
        EXPECT_EQ(device.voice_vlan.vid, 4095) << mode;
    }
}

TEST_F(VoiceVlan, a_port_that_cannot_be_switched_off_does_not_stop_the_switching_off) {
    on();
    fail_always("sal_vlan_portVoiceVlanEnable_set", 9);
    EXPECT_EQ(set(R"({"mode":0})"), 0);
    EXPECT_EQ(recorded(), Codes(28, 9));
    EXPECT_EQ(device.voice_vlan.mode, 0);
    EXPECT_EQ(device.voice_vlan.vid, 4095);
}

TEST_F(VoiceVlan, vendors_are_edited_while_the_voice_vlan_is_off) {
    EXPECT_EQ(
        set(R"({"mode":0,"oui":[{"method":1,"address":"00:11:22:33:44:55","description":"A"}]})"),
        0);
    EXPECT_EQ(
        table_writes(), Lines{"sal_vlan_voiceVlanOui_add(00:11:22/FF:FF:FF used, \"A\") = 0"});
}

TEST_F(VoiceVlan, a_null_argument_and_a_missing_voice_object_read_the_qos_and_change_nothing) {
    EXPECT_EQ(vxc_voice_vlan_set(nullptr), 0);
    Json empty("{}");
    EXPECT_EQ(vxc_voice_vlan_set(empty), 0);
    EXPECT_EQ(calls(), (Lines{"sal_vlan_voiceVlanQos_get", "sal_vlan_voiceVlanQos_get"}));
    fail("sal_vlan_voiceVlanQos_get", 9);
    EXPECT_EQ(vxc_voice_vlan_set(nullptr), 9);
    EXPECT_EQ(recorded(), Codes{9});
}

TEST_F(VoiceVlan, every_call_of_switching_on_ends_it_when_it_fails) {
    auto runs = fail_each_call(
        [](sim::Board& fresh) { on(fresh); },
        [&](cJSON*) { return set(R"({"802.1p_remark":true,"remark_cos":5,"aging_time":60})"); });
    EXPECT_EQ(runs.size(), 8u);
    for (const FailedRun& run : runs) {
        EXPECT_EQ(run.result, 77) << run.call;
        EXPECT_EQ(run.errors, Codes{77}) << run.call;
        EXPECT_EQ(run.calls_after, Lines{}) << run.call;
    }
}

TEST_F(VoiceVlan, every_call_of_switching_off_and_its_prescribed_outcome) {
    auto runs = fail_each_call(
        [](sim::Board& fresh) { on(fresh); }, [&](cJSON*) { return set(R"({"mode":0})"); });
    EXPECT_EQ(runs.size(), 1u + 1u + 28u + 2u);
    expect_outcomes(
        runs, {
                  {"sal_vlan_voiceVlanQos_get", {77, {77}}},
                  {"sal_vlan_voiceVid_get", {77, {77}}},
                  {"sal_vlan_portVoiceVlanEnable_set", {0, {77}}},
                  {"sal_vlan_voiceVlanState_set", {77, {77}}},
                  {"sal_vlan_voiceVid_set", {77, {77}}},
              });
}

TEST_F(VoiceVlan, every_call_of_a_vendor_edit_is_recorded_and_leaves_the_result_alone) {
    on();
    struct Case {
        const char* edit;
        std::size_t calls;
    };
    for (const Case& it : {
             Case{R"([{"method":1,"address":"02:11:22:33:44:55","description":"A"}])", 19},
             Case{R"([{"method":2,"id":4,"address":"02:11:22:33:44:55","description":"A"}])", 19},
             Case{R"([{"method":0,"id":4}])", 2},
         }) {
        auto runs = fail_each_call(
            [](sim::Board& fresh) {
                on(fresh);
                put_vendor(fresh, 4, 0x44, "Four");
            },
            [&](cJSON*) { return edit(it.edit); });
        constexpr std::size_t before = 5; // the settings are written first
        ASSERT_EQ(runs.size(), before + it.calls) << it.edit;
        for (std::size_t i = before; i < runs.size(); ++i) {
            EXPECT_EQ(runs[i].result, 0) << it.edit << runs[i].call;
            EXPECT_EQ(runs[i].errors, Codes{77}) << it.edit << runs[i].call;
            EXPECT_EQ(runs[i].calls_after, Lines{}) << it.edit << runs[i].call;
        }
    }
}

TEST_F(VoiceVlan, edits_return_the_code_that_they_record) {
    Json add(R"({"address":"no MAC","description":"A"})");
    EXPECT_EQ(oui_add(add), sim::code_bad_text);
    Json update(R"({"id":16})");
    EXPECT_EQ(oui_update(update), sim::code_bad_value);
    EXPECT_EQ(oui_delete(update), sim::code_bad_value);
    Json bad_name(R"({"address":"00:11:22:33:44:55","description":"tab\t"})");
    EXPECT_EQ(oui_add(bad_name), sim::code_bad_text);
    EXPECT_EQ(recorded(), (Codes{5, 3, 3, 5}));
}

TEST_F(VoiceVlan, adding_an_oui_that_the_table_has_changes_nothing_and_succeeds) {
    on();
    put_vendor(7, 0x02, "Seven");
    EXPECT_EQ(
        edit(R"([{"method":1,"address":"02:1b:ff:99:99:99","description":"Other name"}])"), 0);
    EXPECT_EQ(table_writes(), Lines{});
    EXPECT_EQ(table_reads(), 8); // up to the one that has it
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(VoiceVlan, an_oui_differs_by_any_of_its_bytes) {
    put_vendor(7, 0x02, "Seven");
    for (const char* address : {"03:1B:FF:00:00:00", "02:1C:FF:00:00:00", "02:1B:FE:00:00:00"}) {
        forget();
        edit(R"([{"method":1,"address":")" + std::string(address) + R"(","description":"New"}])");
        EXPECT_EQ(table_writes().size(), 1u) << address;
    }
}

TEST_F(VoiceVlan, an_oui_of_a_free_place_is_no_duplicate) {
    on();
    put_vendor(7, 0x02, "Seven");
    device.voice_vlan.ouis[7].in_use = false;
    edit(R"([{"method":1,"address":"02:1B:FF:00:00:00","description":"New"}])");
    EXPECT_EQ(
        table_writes(), Lines{"sal_vlan_voiceVlanOui_add(02:1B:FF/FF:FF:FF used, \"New\") = 0"});
    EXPECT_TRUE(device.voice_vlan.ouis[0].in_use); // the first free place
}

TEST_F(VoiceVlan, adding_needs_address_and_description) {
    on();
    edit(R"([{"method":1,"address":"02:1B:FF:00:00:00"},{"method":1,"description":"New"},
             {"method":1,"address":7,"description":"New"}])");
    EXPECT_EQ(table_reads(), 0);
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(VoiceVlan, a_description_is_cut_to_32_characters) {
    on();
    edit(R"([{"method":1,"address":"02:1B:FF:00:00:00",
              "description":"0123456789012345678901234567890123456789"}])");
    EXPECT_EQ(device.voice_vlan.ouis[0].description, "01234567890123456789012345678901");
}

TEST_F(VoiceVlan, a_full_table_takes_no_more) {
    on();
    for (std::uint8_t i = 0; i < 16; ++i)
        put_vendor(i, i, "Vendor");
    EXPECT_EQ(edit(R"([{"method":1,"address":"EE:1B:FF:00:00:00","description":"New"}])"), 0);
    EXPECT_EQ(recorded(), Codes{sim::code_table_full});
}

TEST_F(VoiceVlan, updating_entry_4_to_the_oui_of_entry_9_changes_nothing) {
    on();
    put_vendor(4, 0x04, "Four");
    put_vendor(9, 0x09, "Nine");
    edit(R"([{"method":2,"id":4,"address":"09:1B:FF:00:00:00","description":"New"}])");
    EXPECT_EQ(table_writes(), Lines{});
    EXPECT_EQ(device.voice_vlan.ouis[4].description, "Four");
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(VoiceVlan, updating_entry_4_to_its_own_oui_writes_the_new_description) {
    on();
    put_vendor(4, 0x04, "Four");
    edit(R"([{"method":2,"id":4,"address":"04:1B:FF:00:00:00","description":"New"}])");
    EXPECT_EQ(
        table_writes(), Lines{"sal_vlan_voiceVlanOui_set(4, 04:1B:FF/FF:FF:FF used, \"New\") = 0"});
    EXPECT_EQ(table_reads(), 16); // its own, and every other one
}

TEST_F(VoiceVlan, an_update_keeps_what_it_does_not_name) {
    on();
    put_vendor(4, 0x04, "Four");
    edit(R"([{"method":2,"id":4,"description":"New"},
             {"method":2,"id":4,"address":"05:1B:FF:00:00:00"},{"method":2}])");
    EXPECT_EQ(
        table_writes(), (Lines{
                            "sal_vlan_voiceVlanOui_set(4, 04:1B:FF/FF:FF:FF used, \"New\") = 0",
                            "sal_vlan_voiceVlanOui_set(4, 05:1B:FF/FF:FF:FF used, \"New\") = 0"}));
}

TEST_F(VoiceVlan, an_update_takes_a_free_place_into_use) {
    on();
    edit(R"([{"method":2,"id":11,"address":"05:1B:FF:00:00:00","description":"New"}])");
    EXPECT_TRUE(device.voice_vlan.ouis[11].in_use);
}

TEST_F(VoiceVlan, deleting_frees_the_place_and_keeps_the_rest_of_it) {
    on();
    put_vendor(4, 0x04, "Four");
    edit(R"([{"method":0,"id":4},{"method":0}])");
    EXPECT_EQ(
        table_writes(),
        Lines{"sal_vlan_voiceVlanOui_set(4, 04:1B:FF/FF:FF:FF free, \"Four\") = 0"});
}

TEST_F(VoiceVlan, elements_without_a_known_method_are_skipped) {
    on();
    put_vendor(4, 0x04, "Four");
    edit(R"([{"id":4},{"method":3,"id":4},{"method":-1,"id":4},7,"x",null,[]])");
    EXPECT_EQ(table_reads(), 0);
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(VoiceVlan, edits_run_in_array_order_and_a_failed_one_does_not_stop_the_next) {
    on();
    put_vendor(0, 0x01, "One");
    EXPECT_EQ(
        edit(R"([{"method":0,"id":0},{"method":1,"address":"?","description":"x"},
                       {"method":1,"address":"01:1B:FF:00:00:00","description":"Again"}])"),
        0);
    EXPECT_EQ(recorded(), Codes{sim::code_bad_text});
    EXPECT_EQ(device.voice_vlan.ouis[0].description, "Again");
}

TEST_F(VoiceVlan, a_report_fed_back_changes_nothing) {
    on();
    put_vendor(4, 0x04, "Four");
    std::string before = report_of(vxc_voice_vlan_get).text;
    Json document(before);
    EXPECT_EQ(vxc_voice_vlan_set(document["vlan"]), 0);
    EXPECT_EQ(report_of(vxc_voice_vlan_get).text, before);
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(VoiceVlan, everything_is_in_the_startup_configuration) {
    on();
    put_vendor(4, 0x04, "Four");
    device.voice_vlan.ports[3] = {true, 1};
    std::string before = report_of(vxc_voice_vlan_get).text;
    EXPECT_TRUE(board.save_startup_config());
    sim::Board again(folder.path());
    EXPECT_EQ(report_of(vxc_voice_vlan_get).text, before);
    EXPECT_TRUE(again.device.voice_vlan.ports[3].enable);
    EXPECT_EQ(again.device.voice_vlan.ports[3].cos_mode, 1);
}

TEST_F(VoiceVlan, a_failing_allocation_costs_a_report_one_member_and_the_next_report_nothing) {
    put_vendor(4, 0x04, "Four");
    put_vendor(9, 0x09, "Nine");
    EXPECT_GT(starve(board, vxc_voice_vlan_get), 10u);
}
