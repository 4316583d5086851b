// An order to upgrade comes with a check-in; the image's host misbehaves.
#include "base/state.h"
#include "sim/library/firmware.h"
#include "sim/library/firmware_image.h"
#include "tests/hostile/network/scene.h"
#include "tests/hostile/network/tables.h"

namespace {

constexpr const char* image_path = "/firmware/v2.bix";

// What the trace says of a call: its result.
std::string result_of(const Lines& trace, const std::string& call) {
    for (const std::string& line : trace)
        if (line.starts_with(call + "("))
            return line.substr(line.rfind("= ") + 2);
    return "";
}

class FirmwareRow {
  public:
    FirmwareRow(const LabProcess& lab, const Misbehaviour& what) : scene_(lab), what_(what) {}

    Row measure() {
        scene_.forget_switch();
        scene_.start_agent(true);
        const std::string host = scene_.lab.checkin_host(1);
        const std::string url = "https://" + (what_.concerns_name() ? Scene::named(host) : host);
        scene_.spoil(what_, {"checkin", scene_.lab.checkin_port(1), url, 2, true});
        scene_.queue("settings", order(url + image_path));
        const std::string before = sim::Flash(scene_.board.root()).read(1);
        const std::vector<double> begun = scene_.begin_checkins({.turns = 2, .checkins = 2});
        scene_.mend();
        const nlohmann::json report = scene_.report();
        const bool written = sim::Flash(scene_.board.root()).read(1) != before;
        return {
            what_.name,
            result_of(scene_.trace(), "sal_fwImage_download"),
            written ? "written" : "as it was",
            scene_.board.reboots ? "yes" : "",
            report["system"]["firmware"]["flags"].dump(),
            report["system"]["cloud"]["config_seqno"] == 1 ? "" : "yes",
            scene_.file_is_left() ? "left" : "gone",
            show_seconds(begun.at(1) - begun.at(0))};
    }

  private:
    static nlohmann::json order(const std::string& url) {
        return {{"system", {{"firmware", {{"upgrade_partition", 2}, {"upgrade_url", url}}}}}};
    }

    Scene scene_;
    const Misbehaviour& what_;
};

} // namespace

Table measure_firmware() {
    Table table{
        "Firmware",
        {"misbehaviour", "download", "partition", "restart", "flags", "acknowledged",
         "temporary file", "next check-in after"},
        {}};
    const LabProcess lab;
    lab.ask("PUT", image_path, sim::make_image("2.0.0", std::string(4096, 'x')));
    for (const Misbehaviour& what : all_misbehaviours())
        table.rows.push_back(FirmwareRow(lab, what).measure());
    return table;
}
