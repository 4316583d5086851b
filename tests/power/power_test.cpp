// Power cuts: the switch is killed at each platform call that a reply causes, and started again
// with what its disk holds.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>

#include "base/state.h"
#include "core/check_in.h"
#include "sim/instruments/scenario.h"
#include "sim/library/firmware.h"
#include "sim/library/firmware_image.h"
#include "tests/support/http_stub.h"
#include "tests/support/on_board.h"
#include "tests/support/temp_folder.h"

namespace {

namespace fs = std::filesystem;
using Document = nlohmann::json;

constexpr int number = 42; // of the settings that are on their way when the power goes

// One platform call in so many is cut off; VX_FULL asks for each.
std::uint64_t stride(std::uint64_t usual) { return std::getenv("VX_FULL") ? 1 : usual; }

std::string read_file(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

Document read_json(const fs::path& path) { return Document::parse(read_file(path)); }

// A document for the twelve ports of the small switch that changes something of every kind of
// store.
Document settings(int vlan) {
    return Document::parse(
        R"({
      "acl": {"mac_acl": [{"name": "M", "method": 1}]},
      "qos": {"enable": true, "scheduling_method": 1, "trust_mode": 1},
      "lldp": {"settings": {"enable": true, "transmission_interval": 60}},
      "system": {
        "jumbo_frames": {"size": 9000},
        "cloud": {"checkin_interval": 600, "fallback_host": "localhost:1",
                  "checkin_host": "localhost:2", "connkeeper_host": "localhost:3",
                  "key": "newkey", "secret": "newsecret", "config_seqno": 42},
        "summary_info": {"device_name": "After"},
        "dark_mode": true,
        "ports": [{"id": "1", "enable": true, "isolation": true, "poe": {"priority": 2},
                   "untagged_vlans": ")" +
        std::to_string(vlan) + R"(", "link_speed_mode": 2, "flow_control": true}],
        "stp": {"enable": true, "force_version": 2, "priority": 4096},
        "device_access": {"gui": true, "telnet": false, "ssh": true}}})");
}

// A switch whose process is started and ended as its power is.
class PowerCut : public testing::Test {
  protected:
    PowerCut() {
        std::ofstream(scenario) << R"({"hardware": {"logical_ports": 12}})";
        calls = static_cast<std::uint64_t*>(mmap(
            nullptr, sizeof *calls, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    }
    ~PowerCut() override { munmap(calls, sizeof *calls); }

    // The switch with that disk is powered on, checks in once and gets `reply`. At its `cut`-th
    // platform call the power goes; 0: it does not. Returns whether it went; `calls` is how many
    // there were.
    bool check_in(const fs::path& disk, const std::string& reply, std::uint64_t cut = 0) {
        HttpAnswer answer;
        answer.body = reply;
        cloud.answer(answer);
        pid_t process = fork();
        if (process == 0)
            run_switch(disk, cut);
        int status = 0;
        waitpid(process, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status) ? WTERMSIG(status) == SIGKILL : WEXITSTATUS(status) == 0);
        return WIFSIGNALED(status);
    }

    [[noreturn]] void run_switch(const fs::path& disk, std::uint64_t cut) {
        alarm(60);
        sim::Board board(disk, scenario);
        reset_agent();
        proto = "http";
        std::strcpy(macstr, "021b2c3d4e5f");
        std::strcpy(macaddrstr, "02:1B:2C:3D:4E:5F");
        std::strcpy(Checkinstr, "/cloud-switch/02:1B:2C:3D:4E:5F/checkin");
        std::strcpy(CheckinHost, cloud.host().c_str());
        if (cut)
            board.faults.plan({sim::Edge::platform, "", cut, false, 1, 0, true});
        api_checkin();
        *calls = board.faults.count(sim::Edge::platform);
        _exit(0);
    }

    fs::path copy_of(const fs::path& disk) {
        fs::path copy = folder.path() / "copy";
        fs::remove_all(copy);
        fs::copy(disk, copy, fs::copy_options::recursive);
        return copy;
    }

    // From the first platform call that `reply` causes, to the last.
    std::uint64_t first_call(const fs::path& disk) {
        check_in(copy_of(disk), "{}");
        return *calls + 1;
    }

    static Document config(const fs::path& disk) {
        return read_json(disk / "etc/startup-config.json");
    }
    static Document cloud_settings(const fs::path& disk) {
        return read_json(disk / "etc/cloud.json");
    }

    TempFolder folder;
    fs::path scenario = folder.path() / "scenario.json";
    HttpStub cloud;
    std::uint64_t* calls;
};

} // namespace

TEST_F(PowerCut, settings_are_the_old_or_the_new_ones_and_the_next_check_in_repairs_the_rest) {
    fs::path before = folder.path() / "before", after = folder.path() / "after";
    Document old = settings(1);
    old["system"]["cloud"] = {{"key", "oldkey"}, {"secret", "oldsecret"}, {"config_seqno", 41}};
    old["system"]["summary_info"]["device_name"] = "Before";
    check_in(before, old.dump());
    const std::string reply = settings(2).dump();
    const std::uint64_t first = first_call(before);
    fs::copy(before, after, fs::copy_options::recursive);
    check_in(after, reply);
    const std::uint64_t last = *calls;
    ASSERT_EQ(cloud_settings(after)["seqno"], number);
    ASSERT_NE(config(before), config(after));
    ASSERT_GT(last, first + 40);

    for (std::uint64_t cut = first; cut <= last; cut += stride(5)) {
        SCOPED_TRACE("cut at platform call " + std::to_string(cut - first + 1));
        const fs::path disk = copy_of(before);
        ASSERT_TRUE(check_in(disk, reply, cut));
        const Document kept = config(disk), stored = cloud_settings(disk);
        EXPECT_TRUE(kept == config(before) || kept == config(after));
        for (const auto& [name, value] : stored.items())
            EXPECT_TRUE(
                value == cloud_settings(before)[name] || value == cloud_settings(after)[name])
                << name;
        if (stored["seqno"] == number) {
            EXPECT_EQ(kept, config(after));
            EXPECT_EQ(stored, cloud_settings(after));
        }
        EXPECT_FALSE(check_in(disk, reply));
        EXPECT_EQ(config(disk), config(after));
        EXPECT_EQ(cloud_settings(disk), cloud_settings(after));
    }
}

TEST_F(PowerCut, a_firmware_upgrade_leaves_a_switch_that_starts_and_is_upgraded_in_the_end) {
    const fs::path before = folder.path() / "before";
    const std::string reply = R"({"system": {"cloud": {"config_seqno": 42}, "firmware":
        {"upgrade_partition": 2, "upgrade_url": "/images/new", "active_partition": 2}}})";
    check_in(before, "{}");
    const std::string image = sim::make_image("1.1.0", "the new firmware");
    ASSERT_TRUE(sim::write_atomically(before / "images/new", image));
    const std::string old[] = {sim::Flash(before).read(0), sim::Flash(before).read(1)};
    const std::uint64_t first = first_call(before);
    check_in(copy_of(before), reply);
    const std::uint64_t last = *calls;
    ASSERT_GT(last, first + 5);

    for (std::uint64_t cut = first; cut <= last; ++cut) {
        SCOPED_TRACE("cut at platform call " + std::to_string(cut - first + 1));
        const fs::path disk = copy_of(before);
        ASSERT_TRUE(check_in(disk, reply, cut));
        const sim::Flash flash(disk);
        EXPECT_EQ(flash.read(0), old[0]);
        EXPECT_TRUE(flash.read(1) == old[1] || flash.read(1) == image);
        EXPECT_EQ(sim::check_image(flash.read(flash.selected())), 0);
        EXPECT_NE(flash.booted_version(), "");
        if (fs::exists(disk / "etc/cloud.json") && cloud_settings(disk)["seqno"] == number)
            EXPECT_EQ(flash.read(1), image);
        EXPECT_FALSE(check_in(disk, reply));
        EXPECT_EQ(flash.read(1), image);
        EXPECT_EQ(flash.booted_version(), "1.1.0");
        EXPECT_EQ(cloud_settings(disk)["seqno"], number);
    }
}
