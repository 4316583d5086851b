// What outlives the program, and the program itself.
#include <csignal>
#include <fstream>
#include <stdexcept>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

#include "lab/options.h"
#include "lab_fixture.h"

namespace lab_test {

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

using Restart = Lab;

TEST_F(Restart, keeps_accounts_reports_settings_actions_nonces_and_the_authority) {
    Checkin checkin;
    checkin.body = R"({"n":1})";
    EXPECT_EQ(check_in(checkin).status, 200);
    admin("POST", of_switch("/settings"), R"({"lldp":{}})", 201);
    admin("POST", of_switch("/actions"), R"({"action":"reboot"})", 201);
    const fs::path authority = *fs::directory_iterator(folder_.path() / "ca/trust");
    stop();
    EXPECT_FALSE(fs::exists(folder_.path() / "ports.json"));
    options_.accounts.clear();
    start();
    EXPECT_EQ(*fs::directory_iterator(folder_.path() / "ca/trust"), authority);
    EXPECT_EQ(admin_get(of_switch("/report"))["n"], 1);
    EXPECT_EQ(check_in(checkin).status, 403);
    EXPECT_TRUE(report_seqno(1).contains("lldp"));
    EXPECT_EQ(
        get(keeper_listener(), std::string("/router/listen/") + mac).body,
        R"({"action":"reboot"})");
    EXPECT_EQ(counter("checkin"), 2);
}

TEST_F(Restart, two_labs_do_not_share_a_port) {
    lab::Options options = options_;
    options.data = folder_.path() / "second";
    options.admin_port = ports_["admin"];
    lab::Cloud second(options);
    EXPECT_THROW(second.start(), std::runtime_error);
}

TEST_F(Restart, the_authority_folder_holds_the_hashed_certificate_alone) {
    std::size_t files = 0;
    for (const auto& entry : fs::directory_iterator(folder_.path() / "ca/trust")) {
        files++;
        EXPECT_EQ(entry.path().extension(), ".0");
        EXPECT_EQ(entry.path().stem().string().size(), 8u);
    }
    EXPECT_EQ(files, 1u);
    EXPECT_EQ(
        fs::status(folder_.path() / "ca/authority.key").permissions(),
        fs::perms::owner_read | fs::perms::owner_write);
}

// The program, started as a user starts it.
class Program : public testing::Test {
  protected:
    pid_t run(const std::vector<std::string>& arguments) {
        std::vector<std::string> words = {LAB_CLOUD_PROGRAM};
        words.insert(words.end(), arguments.begin(), arguments.end());
        std::vector<char*> pointers;
        for (std::string& word : words)
            pointers.push_back(word.data());
        pointers.push_back(nullptr);
        const pid_t pid = fork();
        if (pid == 0) {
            const std::string output = (folder_.path() / "output").string();
            if (!freopen(output.c_str(), "w", stdout) || !freopen("/dev/null", "w", stderr))
                _exit(126);
            execv(pointers[0], pointers.data());
            _exit(127);
        }
        return pid;
    }

    int exit_code(pid_t pid) {
        int status = 0;
        waitpid(pid, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    Json wait_for_ports(const fs::path& data) {
        for (int i = 0; i < 1000 && !fs::exists(data / "ports.json"); i++)
            std::this_thread::sleep_for(10ms);
        std::ifstream file(data / "ports.json");
        return Json::parse(file, nullptr, false);
    }

    std::string output() {
        std::ifstream file(folder_.path() / "output");
        return std::string(std::istreambuf_iterator<char>(file), {});
    }

    TempFolder folder_;
};

TEST_F(Program, starts_checks_in_and_stops_cleanly_with_a_poll_waiting) {
    const fs::path data = folder_.path() / "data";
    for (const int signal : {SIGTERM, SIGINT}) {
        const pid_t pid = run(
            {"--data", data.string(), "--account", std::string(mac) + ",lab-key,lab-secret",
             "--keeper-port", "0", "--keeper-port", "0"});
        const Json ports = wait_for_ports(data);
        ASSERT_TRUE(ports.is_object());
        EXPECT_EQ(ports["pid"], pid);
        EXPECT_EQ(ports["keeper"].size(), 2u);
        const Peer listener{ports["https"][0], ports["ca_dir"]};
        EXPECT_EQ(talk(listener, Checkin().text()).status, 200);
        const IdleConnection poll(
            ports["keeper"][0],
            std::string("GET /router/listen/") + mac + " HTTP/1.1\r\nHost: lab\r\n\r\n");
        const Peer admin{ports["admin"], ""};
        get(admin, "/events?kind=poll&timeout=10");
        kill(pid, signal);
        EXPECT_EQ(exit_code(pid), 0);
        EXPECT_FALSE(fs::exists(data / "ports.json"));
        EXPECT_NE(output().find("lab cloud ready: https 127.0.0.1:"), std::string::npos);
        EXPECT_NE(
            output().find("AA:BB:CC:DD:EE:FF checked in: signature verified, 2 bytes"),
            std::string::npos);
    }
}

TEST_F(Program, refuses_a_command_line_it_does_not_understand) {
    EXPECT_EQ(exit_code(run({})), 2);
    EXPECT_EQ(exit_code(run({"--data"})), 2);
    EXPECT_EQ(exit_code(run({"--help"})), 0);
}

TEST(Options, are_read_from_the_command_line) {
    const auto options = lab::parse_options(
        {"--data",
         "/d",
         "--https-port",
         "1",
         "--https-port",
         "2",
         "--http-port",
         "3",
         "--keeper-port",
         "4",
         "--admin-port",
         "5",
         "--account",
         "aabbccddeeff,k,s,t",
         "--window",
         "6",
         "--clock-offset",
         "-7",
         "--redeliver-seconds",
         "0.5",
         "--redeliver-tries",
         "8",
         "--poll-seconds",
         "9",
         "--quiet"});
    EXPECT_EQ(options.data, "/d");
    EXPECT_EQ(options.https_ports, (std::vector<int>{1, 2}));
    EXPECT_EQ(options.http_port, 3);
    EXPECT_EQ(options.keeper_ports, std::vector<int>{4});
    EXPECT_EQ(options.admin_port, 5);
    ASSERT_EQ(options.accounts.size(), 1u);
    EXPECT_EQ(options.accounts[0].first, mac);
    EXPECT_EQ(options.accounts[0].second.key, "k");
    EXPECT_EQ(options.accounts[0].second.secret, "s,t");
    EXPECT_EQ(options.policy.window, 6);
    EXPECT_EQ(options.policy.clock_offset, -7);
    EXPECT_EQ(options.policy.redeliver_seconds, 0.5);
    EXPECT_EQ(options.policy.redeliver_tries, 8);
    EXPECT_EQ(options.policy.poll_seconds, 9);
    EXPECT_TRUE(options.quiet);
}

TEST(Options, have_defaults) {
    const auto options = lab::parse_options({"--data", "d"});
    EXPECT_EQ(options.https_ports, std::vector<int>{0});
    EXPECT_EQ(options.keeper_ports, std::vector<int>{0});
    EXPECT_EQ(options.policy.window, 300);
    EXPECT_FALSE(options.quiet);
}

TEST(Options, that_make_no_sense_are_refused) {
    const std::vector<std::string> cases[] = {
        {},
        {"--data"},
        {"--colour", "red"},
        {"--data", "d", "--https-port", "65536"},
        {"--data", "d", "--https-port", "http"},
        {"--data", "d", "--account", "aabbccddeeff,k"},
        {"--data", "d", "--account", "aabbccddeeff,,s"},
        {"--data", "d", "--account", "me,k,s"},
        {"--data", "d", "--window", "-1"},
        {"--data", "d", "--poll-seconds", "nan"},
    };
    for (const auto& arguments : cases)
        EXPECT_THROW(lab::parse_options(arguments), std::invalid_argument);
}

} // namespace

} // namespace lab_test
