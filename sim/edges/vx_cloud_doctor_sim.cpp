// The doctor on a simulated switch: the board that an agent may be running on is put under it, and
// left as it is.
//
//     vx_cloud_doctor_sim --root DIR [--scenario FILE] [--fault FAULT]... [OPTION OF THE DOCTOR]
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "sim/library/board.h"
#include "version/version.h"

extern "C" int __real_main(int argc, char** argv);

namespace {

constexpr const char* usage =
    "usage: vx_cloud_doctor_sim --root DIR [--scenario FILE] [--fault FAULT]... [--json | "
    "--explain]\n"
    "  --root DIR, --scenario FILE, --fault FAULT   as for vx_cloud_sim\n"
    "  --json, --explain                            as for vx_cloud_doctor\n"
    "  --version\n"
    "  --help\n";

struct Settings {
    std::string root;
    std::string scenario;
    std::vector<sim::Fault> faults;
    std::vector<char*> rest; // for the doctor
};

// What is no option of the board's is the doctor's.
Settings parse(int argc, char** argv) {
    Settings settings;
    settings.rest.push_back(argv[0]);
    for (int i = 1; i < argc; ++i) {
        const std::string_view option = argv[i];
        const bool takes_value =
            option == "--root" || option == "--scenario" || option == "--fault";
        if (takes_value && i + 1 == argc)
            throw std::invalid_argument(usage);
        if (option == "--root")
            settings.root = argv[++i];
        else if (option == "--scenario")
            settings.scenario = argv[++i];
        else if (option == "--fault")
            settings.faults.push_back(sim::parse_fault(argv[++i]));
        else
            settings.rest.push_back(argv[i]);
    }
    settings.rest.push_back(nullptr);
    if (settings.root.empty())
        throw std::invalid_argument(usage);
    return settings;
}

} // namespace

extern "C" int __wrap_main(int argc, char** argv) {
    const std::string_view option = argc == 2 ? argv[1] : "";
    if (option == "--version" || option == "--help") {
        std::fputs(option == "--help" ? usage : "vx_cloud_doctor_sim " VX_VERSION "\n", stdout);
        return EXIT_SUCCESS;
    }
    try {
        Settings settings = parse(argc, argv);
        sim::Board board(settings.root, settings.scenario);
        board.clock.pace(1);
        for (const sim::Fault& fault : settings.faults)
            board.faults.plan(fault);
        return __real_main(static_cast<int>(settings.rest.size()) - 1, settings.rest.data());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vx_cloud_doctor_sim: %s\n", error.what());
        return 2;
    }
}
