// The simulated board itself: scenarios, persistence, clocks, trace and fault plan.
#include <fstream>

#include "platform/system.h"
#include "platform/vxcloud.h"
#include "sim/edges/shell.h"
#include "sim/instruments/scenario.h"
#include "tests/support/on_board.h"

namespace {

std::string refusal(const std::filesystem::path& root, const std::string& scenario) {
    auto file = root / "bad.json";
    std::ofstream(file) << scenario;
    try {
        sim::Board refused(root / "board", file);
    } catch (const sim::ScenarioError& error) {
        return std::string(error.what()).substr(file.string().size() + 1);
    }
    return "";
}

} // namespace

TEST(Scenario, errors_name_line_and_reason) {
    TempFolder folder;
    EXPECT_EQ(
        refusal(folder.path(), "{\n \"hardware\": {\n  \"logical_ports\": 5\n }\n}"),
        "3: \"logical_ports\" must be a whole number from 11 to 96");
    for (const char* count : {"-5", "97", "2000000000", "4294967324"})
        EXPECT_EQ(
            refusal(
                folder.path(), "{\"hardware\": {\n\"logical_ports\": " + std::string(count) + "}}"),
            "2: \"logical_ports\" must be a whole number from 11 to 96");
    EXPECT_EQ(
        refusal(folder.path(), "{\"config\": {\n\"system\": {\n\n\"nmae\": \"x\"}}}"),
        "4: \"nmae\" is not known here");
    EXPECT_EQ(
        refusal(folder.path(), "{\"config\": {\"system\":\n {\"gateway\": \"1.2.3\"}}}"),
        "2: gateway is not an IPv4 address: \"1.2.3\"");
    EXPECT_TRUE(refusal(folder.path(), "{\n\"config\": \n}").starts_with("3: "));
    EXPECT_EQ(refusal(folder.path(), "[]"), "1: an object is expected here");
}

TEST(Board, cloud_settings_survive_at_once_and_the_rest_only_when_saved) {
    TempFolder folder;
    {
        sim::Board board(folder.path());
        EXPECT_EQ(sal_vxcloud_seqno_set(41), 0);
        EXPECT_EQ(sal_sys_systemName_set("Unsaved"), 0);
    }
    {
        sim::Board board(folder.path());
        int32_t number = 0;
        EXPECT_EQ(sal_vxcloud_seqno_get(&number), 0);
        EXPECT_EQ(number, 41);
        EXPECT_EQ(board.device.system.name, "Switch");
        EXPECT_EQ(sal_sys_systemName_set("Saved"), 0);
        EXPECT_EQ(cmd_conf_startupConfig_save(), 0);
    }
    sim::Board board(folder.path());
    EXPECT_EQ(board.device.system.name, "Saved");
}

TEST(Board, restart_of_the_agent_alone_keeps_the_running_switch) {
    TempFolder folder;
    {
        sim::Board board(folder.path());
        sal_sys_systemName_set("Unsaved");
        board.clock.sleep(40);
        board.restart_agent();
    }
    sim::Board board(folder.path());
    EXPECT_EQ(board.device.system.name, "Unsaved");
    EXPECT_EQ(board.clock.running(), 40);
}

TEST_F(OnBoard, trace_shows_arguments_and_results_and_faults_replace_them) {
    fail("sal_sys_systemName_set", 9, 2);
    sal_sys_systemName_set("One");
    sal_sys_systemName_set("Two");
    EXPECT_EQ(
        trace(),
        (Lines{"sal_sys_systemName_set(\"One\") = 0", "sal_sys_systemName_set(\"Two\") = 9"}));
    EXPECT_EQ(device.system.name, "One");
}

TEST(Faults, are_written_as_text) {
    sim::Fault fault = sim::parse_fault("platform:sal_port_speed_set#2+=7");
    EXPECT_EQ(fault.name, "sal_port_speed_set");
    EXPECT_EQ(fault.nth, 2u);
    EXPECT_TRUE(fault.for_good);
    EXPECT_EQ(fault.code, 7);
    EXPECT_THROW(sim::parse_fault("wire"), std::invalid_argument);
    EXPECT_THROW(sim::parse_fault("file#x"), std::invalid_argument);
}

TEST(Shell, takes_a_line_apart_as_a_shell_does) {
    sim::Command command;
    ASSERT_TRUE(sim::parse_command("handler -f reboot 1> /dev/null 2> /dev/null &", command));
    EXPECT_EQ(command.words, (Lines{"handler", "-f", "reboot"}));
    EXPECT_EQ(command.output, "");
    sim::Command quoted;
    ASSERT_TRUE(sim::parse_command("ping -c 4 'a b; rm x'\\''y' > /tmp/out", quoted));
    EXPECT_EQ(quoted.words, (Lines{"ping", "-c", "4", "a b; rm x'y"}));
    EXPECT_EQ(quoted.output, "/tmp/out");
    sim::Command hostile;
    EXPECT_FALSE(sim::parse_command("ping -c 4 a;reboot > /tmp/out", hostile));
}
