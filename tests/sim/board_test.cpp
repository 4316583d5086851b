// The simulated board itself: scenarios, persistence, clocks, trace and fault plan.
#include <fstream>
#include <limits>

#include "platform/log.h"
#include "platform/system.h"
#include "platform/vxcloud.h"
#include "sim/edges/shell.h"
#include "sim/instruments/codes.h"
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
        ASSERT_TRUE(board.restart_agent());
    }
    sim::Board board(folder.path());
    EXPECT_EQ(board.device.system.name, "Unsaved");
    EXPECT_EQ(board.clock.running(), 40);
}

TEST(Board, a_full_disk_loses_nothing_that_was_stored_and_the_call_tells) {
    TempFolder folder;
    const auto full = [&](const std::string& file) {
        std::filesystem::create_symlink("/dev/full", folder.path() / (file + ".new"));
    };
    {
        sim::Board board(folder.path());
        EXPECT_EQ(sal_sys_systemName_set("Kept"), 0);
        EXPECT_EQ(cmd_conf_startupConfig_save(), 0);
        EXPECT_EQ(sal_vxcloud_seqno_set(41), 0);
        full("etc/startup-config.json");
        EXPECT_EQ(sal_sys_systemName_set("Lost"), 0);
        EXPECT_EQ(cmd_conf_startupConfig_save(), sim::code_failed);
        full("etc/cloud.json");
        EXPECT_EQ(sal_vxcloud_seqno_set(42), sim::code_failed);
        EXPECT_EQ(board.device.cloud.seqno, 41);
        full("etc/cloud.json");
        EXPECT_EQ(sal_vxcloud_checkin_host_set("cloud.example.org"), sim::code_failed);
        full("run/running-config.json");
        EXPECT_EQ(sal_vxcloud_kill(), sim::code_failed);
        EXPECT_EQ(board.agent_restarts, 0);
    }
    sim::Board board(folder.path());
    EXPECT_EQ(board.device.system.name, "Kept");
    EXPECT_EQ(board.device.cloud.seqno, 41);
    EXPECT_EQ(board.device.cloud.checkin_host, "localhost:8443");
}

TEST(Board, an_order_to_restart_is_carried_out_once) {
    TempFolder folder;
    sim::Board board(folder.path());
    int starts = 0;
    board.start_agent_again = [&] {
        if (++starts < 3)
            board.carry_out_orders(); // another thread's, at the same moment
    };
    EXPECT_EQ(sal_vxcloud_kill(), 0);
    EXPECT_EQ(starts, 1);
}

TEST(Board, the_log_keeps_its_last_lines) {
    TempFolder folder;
    sim::Board board(folder.path());
    for (int line = 0; line < 1000; ++line)
        sys_log(7, 21, std::to_string(line).c_str());
    EXPECT_EQ(board.log.size(), 500u);
    EXPECT_EQ(board.log.back(), "999");
}

TEST(Scenario, a_plain_account_is_bound_to_the_switch_with_a_remark) {
    TempFolder folder;
    auto file = folder.path() / "scenario.json";
    std::ofstream(file) << R"({"hardware": {"system": {"mac": "02:00:00:00:00:0A"}},
        "cloud": {"key": "plain", "secret": "bound02000000000a"}})";
    {
        sim::Board board(folder.path() / "board", file);
        EXPECT_EQ(board.device.cloud.key, "plain02000000000a");
        EXPECT_EQ(board.device.cloud.secret, "bound02000000000a");
        EXPECT_EQ(
            board.remarks,
            Lines{"the key of the scenario does not end in this switch's MAC: stored "
                  "with 02000000000a behind it, as the platform keeps it"});
        EXPECT_EQ(sal_vxcloud_key_set("of another switch"), 0);
    }
    sim::Board again(folder.path() / "board", file);
    EXPECT_EQ(again.device.cloud.key, "of another switch");
    EXPECT_EQ(again.remarks, Lines{});
    TempFolder other;
    EXPECT_TRUE(refusal(other.path(), R"({"cloud": {"key": ")" + std::string(116, 'k') + "\"}}")
                    .ends_with("the key is too long to be stored with the MAC"));
}

TEST(Scenario, sets_a_wrong_clock_which_an_agents_restart_leaves_and_a_reboot_brings_back) {
    TempFolder folder;
    auto file = folder.path() / "scenario.json";
    std::ofstream(file) << R"({"hardware": {"clock_ahead_seconds": -86400}})";
    constexpr std::time_t right = 1795000000;
    {
        sim::Board board(folder.path() / "board", file);
        EXPECT_EQ(board.clock.calendar(), right - 86400);
        EXPECT_TRUE(board.clock.set_calendar({right + 5, 0}));
        ASSERT_TRUE(board.restart_agent());
    }
    {
        sim::Board board(folder.path() / "board", file);
        EXPECT_EQ(board.clock.calendar(), right + 5);
    }
    sim::Board board(folder.path() / "board", file);
    EXPECT_EQ(board.clock.calendar(), right - 86400);
}

// Far dates are told to a switch only whose time has room for them.
TEST(Clock, refuses_the_dates_that_linux_refuses) {
    constexpr bool far = sizeof(std::time_t) > 4;
    constexpr auto forever = std::numeric_limits<std::time_t>::max();
    constexpr auto last = static_cast<std::time_t>(far ? 8000000000 : INT32_MAX);
    constexpr auto too_far = static_cast<std::time_t>(far ? 9000000000 : 0);
    sim::Clock clock;
    clock.sleep(100);
    const std::time_t before = clock.calendar();
    std::vector<std::timespec> refused = {
        {-1, 0}, {99, 0}, {1000000000, 1000000000}, {1000000000, -1}};
    if (far)
        refused.insert(refused.end(), {{too_far, 0}, {forever, 0}});
    for (std::timespec date : refused)
        EXPECT_FALSE(clock.set_calendar(date)) << date.tv_sec << " " << date.tv_nsec;
    EXPECT_EQ(clock.calendar(), before);
    EXPECT_TRUE(clock.set_calendar({100, 0}));
    EXPECT_EQ(clock.calendar(), 100);
    EXPECT_TRUE(clock.set_calendar({last, 999999999}));
    EXPECT_EQ(clock.calendar(), last);
}

TEST(Trace, nothing_is_kept_until_somebody_asks) {
    TempFolder folder;
    sim::Board board(folder.path());
    sal_vxcloud_seqno_set(1);
    EXPECT_EQ(board.trace.lines(), Lines{});
    board.trace.write_to(folder.path() / "trace.log");
    sal_vxcloud_seqno_set(2);
    EXPECT_EQ(board.trace.lines(), Lines{});
    board.trace.keep();
    sal_vxcloud_seqno_set(3);
    EXPECT_EQ(board.trace.lines(), Lines{"sal_vxcloud_seqno_set(3) = 0"});
    std::ifstream in(folder.path() / "trace.log");
    EXPECT_EQ(
        std::string(std::istreambuf_iterator<char>(in), {}),
        "sal_vxcloud_seqno_set(2) = 0\nsal_vxcloud_seqno_set(3) = 0\n");
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
    EXPECT_FALSE(fault.power_off);
    EXPECT_TRUE(sim::parse_fault("platform#120=off").power_off);
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
