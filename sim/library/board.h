// The board around the agent's process: its root folder, its clocks, the switch on it, and the two
// levers that make it a test bench, trace and fault plan. One board at a time is under the process.
#pragma once

#include <atomic>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "sim/instruments/clock.h"
#include "sim/instruments/faults.h"
#include "sim/instruments/trace.h"
#include "sim/library/switch.h"

namespace sim {

class Board {
  public:
    // Takes what the root folder holds from an earlier run: cloud settings, startup configuration.
    // Otherwise the switch is the scenario's, or the default one when `scenario` is empty. Throws
    // ScenarioError.
    explicit Board(std::filesystem::path root, const std::filesystem::path& scenario = {});
    ~Board();
    Board(const Board&) = delete;
    Board& operator=(const Board&) = delete;

    // Where the agent's absolute `path` lies on the workstation.
    std::filesystem::path path(const std::string& path) const { return root_.string() + path; }
    const std::filesystem::path& root() const { return root_; }

    // What the debug console has shown, and the lines of the system log, of which only the last
    // few hundred stay, as on a switch.
    std::string console() const;
    std::vector<std::string> log;
    void add_log(const std::string& line);

    // What whoever runs the switch should know of a scenario that was taken with a change.
    std::vector<std::string> remarks;
    // Gets a line for every check-in that fails; empty where nobody is to be told.
    std::function<void(const std::string&)> tell;
    // Gets a line of JSON for every transfer that has ended, from the thread that made it.
    std::function<void(const std::string&)> tell_transfer;

    Clock clock;
    Trace trace;
    Faults faults;
    Switch device;
    std::recursive_mutex lock; // held in every platform call

    // False, with the file as it was, when the board's disk does not take it.
    [[nodiscard]] bool save_startup_config();
    void forget_startup_config();
    [[nodiscard]] bool save_cloud();

    // Power-on again: the selected firmware is started, the startup configuration is loaded, time
    // running starts at 0, the agent's process starts afresh. The switch takes some seconds to go
    // down, in which the agent goes on. What a test within one process gets is the count alone.
    void reboot();
    // The agent's process starts afresh on a switch that goes on running as it is. False, and no
    // restart, when the disk does not take what the switch would lose by it.
    [[nodiscard]] bool restart_agent();

    // Carries out what restart_agent() ordered, once the call that ordered it is traced.
    void carry_out_orders();

    std::atomic<int> reboots = 0;
    std::atomic<int> agent_restarts = 0;
    std::function<void()> start_agent_again; // set where the process may be replaced

  private:
    void load(const std::filesystem::path& scenario);
    void take_scenario(const std::filesystem::path& scenario);
    void bind_account(const std::filesystem::path& scenario);
    void go_down();
    std::filesystem::path startup_config() const { return path("/etc/startup-config.json"); }
    std::filesystem::path running_config() const { return path("/run/running-config.json"); }
    std::filesystem::path cloud_settings() const { return path("/etc/cloud.json"); }

    std::filesystem::path root_;
    std::atomic<bool> restart_ordered_ = false;
};

Board& board(); // aborts when there is none
bool has_board();

} // namespace sim
