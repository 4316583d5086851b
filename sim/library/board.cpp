// The board: what it finds in its root folder at power-on, and what it leaves there.
#include "sim/library/board.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <thread>

#include "sim/instruments/patience.h"
#include "sim/instruments/scenario.h"
#include "sim/library/firmware.h"
#include "sim/library/switch_settings.h"

namespace sim {

namespace {

Board* current = nullptr;

constexpr int default_ports = 28;
constexpr const char* memory_of_the_switch = "MemTotal:         262144 kB\n"
                                             "MemFree:           98304 kB\n"
                                             "MemAvailable:     131072 kB\n";
constexpr int seconds_to_go_down = 5;
constexpr std::size_t longest_log = 500; // lines

// A number out of range is refused with its place when the scenario is read.
int port_count(const std::filesystem::path& scenario) {
    if (scenario.empty())
        return default_ports;
    std::int64_t count = peek_number(scenario, "hardware", "logical_ports", default_ports);
    return count < fewest_ports || count > most_ports ? default_ports : static_cast<int>(count);
}

} // namespace

Board& board() {
    if (!current) {
        std::fputs("no board is under this process\n", stderr);
        std::abort();
    }
    return *current;
}

bool has_board() { return current != nullptr; }

Board::Board(std::filesystem::path root, const std::filesystem::path& scenario)
    : device(port_count(scenario)), root_(std::filesystem::absolute(root)) {
    for (const char* folder : {"/dev", "/etc/ssl/certs", "/proc", "/run", "/tmp", "/var/run"})
        std::filesystem::create_directories(path(folder));
    if (!std::filesystem::exists(path("/proc/meminfo")))
        std::ofstream(path("/proc/meminfo")) << memory_of_the_switch;
    load(scenario);
    current = this;
}

Board::~Board() {
    patience().restore();
    current = nullptr;
}

void Board::take_scenario(const std::filesystem::path& scenario) {
    read_fields(scenario, [&](Fields& f) {
        f.object("hardware", [&](Fields& inner) { device.hardware(inner); });
        f.object("config", [&](Fields& inner) { device.config(inner); });
        f.object("cloud", device.cloud);
    });
    clock.set_ahead(device.clock_ahead_s);
}

// An account that a scenario gives is meant for this switch, in whichever form it is written.
void Board::bind_account(const std::filesystem::path& scenario) {
    const std::string suffix = mac_suffix(device.system.mac);
    const std::pair<const char*, std::string&> account[] = {
        {"key", device.cloud.key}, {"secret", device.cloud.secret}};
    for (auto [name, credential] : account) {
        if (credential.empty() || credential.ends_with(suffix))
            continue;
        if (credential.size() + suffix.size() > longest_credential)
            throw ScenarioError(
                scenario.string() + ": the " + name + " is too long to be stored with the MAC");
        credential += suffix;
        remarks.push_back(
            std::string("the ") + name + " of the scenario does not end in this switch's MAC: " +
            "stored with " + suffix + " behind it, as the platform keeps it");
    }
}

void Board::load(const std::filesystem::path& scenario) {
    if (!scenario.empty())
        take_scenario(scenario);
    if (std::filesystem::exists(cloud_settings()))
        read_fields(cloud_settings(), [&](Fields& f) { device.cloud.fields(f); });
    else
        bind_account(scenario);
    Flash flash(root_);
    if (!flash.leave_factory(device.system.firmware_version, device.firmware.second_version))
        throw ScenarioError(root_.string() + ": no room for the firmware images");
    device.system.firmware_version = flash.booted_version();
    bool warm = std::filesystem::exists(running_config());
    auto config = warm ? running_config() : startup_config();
    if (std::filesystem::exists(config))
        read_fields(config, [&](Fields& f) {
            f.object("config", [&](Fields& inner) { device.config(inner); });
            if (warm)
                f.object("running", [&](Fields& inner) { device.running(inner, clock); });
        });
    std::filesystem::remove(running_config());
}

std::string Board::console() const {
    std::ifstream in(path("/dev/console"), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void Board::add_log(const std::string& line) {
    log.push_back(line);
    if (log.size() > longest_log)
        log.erase(log.begin());
}

bool Board::save_startup_config() {
    std::lock_guard guard(lock);
    return write_atomically(startup_config(), write_fields([&](Fields& f) {
                                f.object("config", [&](Fields& inner) { device.config(inner); });
                            }));
}

void Board::forget_startup_config() {
    std::lock_guard guard(lock);
    std::filesystem::remove(startup_config());
}

bool Board::save_cloud() {
    std::lock_guard guard(lock);
    return write_atomically(
        cloud_settings(), write_fields([&](Fields& f) { device.cloud.fields(f); }));
}

void Board::reboot() {
    if (reboots++ == 0 && start_agent_again)
        std::thread([this] { go_down(); }).detach();
}

// Between two platform calls, so that none is cut in two.
void Board::go_down() {
    clock.sleep(seconds_to_go_down);
    std::lock_guard guard(lock);
    start_agent_again();
}

bool Board::restart_agent() {
    auto running = [&](Fields& f) {
        f.object("config", [&](Fields& inner) { device.config(inner); });
        f.object("running", [&](Fields& inner) { device.running(inner, clock); });
    };
    if (!write_atomically(running_config(), write_fields(running)))
        return false;
    ++agent_restarts;
    restart_ordered_ = true;
    return true;
}

// Whoever finds the order takes it: two threads may come out of their calls at once.
void Board::carry_out_orders() {
    if (restart_ordered_.exchange(false) && start_agent_again)
        start_agent_again();
}

} // namespace sim
