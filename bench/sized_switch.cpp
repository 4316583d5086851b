// Made by a scenario, in a folder that goes with the switch.
#include "bench/sized_switch.h"

#include <cstdlib>
#include <fstream>
#include <string>

namespace bench {

namespace {

constexpr int ports_that_learn_nothing = 10; // fibre and groups

sim::MacAddress address(int number, int port) {
    sim::MacAddress learned;
    learned.mac[0] = 2;
    learned.mac[4] = static_cast<std::uint8_t>(number >> 8);
    learned.mac[5] = static_cast<std::uint8_t>(number);
    sim::set_bit(learned.ports, port, true);
    return learned;
}

} // namespace

SizedSwitch::SizedSwitch(int ports, int addresses) {
    std::string pattern = std::filesystem::temp_directory_path() / "vx_bench_XXXXXX";
    root_ = mkdtemp(pattern.data());
    std::filesystem::path scenario = root_ / "scenario.json";
    std::ofstream(scenario) << R"({"hardware":{"logical_ports":)" << ports << "}}";
    board_ = std::make_unique<sim::Board>(root_, scenario);
    board_->device.chip.change([](sim::ChipState& chip) {
        for (std::size_t p = 0; p < chip.ports.size(); ++p)
            chip.ports[p].plugged = p % 2 == 0;
    });
    auto& learned = board_->device.macs.learned;
    learned.clear();
    for (int i = 0; i < addresses; ++i)
        learned.push_back(address(i, i % (ports - ports_that_learn_nothing)));
}

SizedSwitch::~SizedSwitch() {
    board_.reset();
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
}

} // namespace bench
