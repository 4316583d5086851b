// Scenario files of the simulated switch, which people write by hand: each is taken, or refused by
// file, line and reason; and what was taken is written so that it is taken again.
#include <string>

#include "sim/instruments/scenario.h"
#include "tests/fuzz/support/fresh_board.h"

namespace {

void take(sim::Switch& device, const std::filesystem::path& file) {
    sim::read_fields(file, [&](sim::Fields& f) {
        f.object("hardware", [&](sim::Fields& inner) { device.hardware(inner); });
        f.object("config", [&](sim::Fields& inner) { device.config(inner); });
        f.object("cloud", device.cloud);
    });
}

std::string config_of(sim::Switch& device) {
    return sim::write_fields([&](sim::Fields& f) {
        f.object("config", [&](sim::Fields& inner) { device.config(inner); });
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Run run;
    const std::filesystem::path file = run.board.path("/tmp/vx_cloud_post");
    put_file(run.board, "/tmp/vx_cloud_post", data, size);
    try {
        take(run.board.device, file);
    } catch (const sim::ScenarioError& refusal) {
        const std::string reason = refusal.what();
        require(reason.starts_with(file.native() + ":"));
        return 0;
    }
    if (!one_in(50, data, size))
        return 0;
    const std::string config = config_of(run.board.device);
    put_file(
        run.board, "/tmp/vx_cloud_post", reinterpret_cast<const std::uint8_t*>(config.data()),
        config.size());
    sim::Switch again(run.board.device.logical_ports());
    take(again, file);
    require(config_of(again) == config);
    return 0;
}
