// The judge of platform libraries on the simulated switch. The board is put together in the process
// that makes the calls, before the judge's own main runs:
//
//     platform_judge_sim --root DIR [--scenario FILE] [options of platform_judge]
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "sim/library/board.h"
#include "version/version.h"

extern "C" int __real_main(int argc, char** argv);

namespace {

constexpr const char* usage =
    "usage: platform_judge_sim --root DIR [--scenario FILE] [OPTION OF platform_judge]...\n"
    "  --root DIR, --scenario FILE   as for vx_cloud_sim\n"
    "\n";

// How the process that watches tells the one that it starts.
constexpr const char* root_variable = "PLATFORM_JUDGE_SIM_ROOT";
constexpr const char* scenario_variable = "PLATFORM_JUDGE_SIM_SCENARIO";

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// Takes "--root DIR" out of the arguments, and leaves DIR in the environment.
void take_out(std::vector<char*>& arguments, const char* option, const char* name) {
    for (std::size_t i = 1; i + 1 < arguments.size(); ++i)
        if (std::strcmp(arguments[i], option) == 0) {
            setenv(name, arguments[i + 1], 1);
            auto at = arguments.begin() + static_cast<std::ptrdiff_t>(i);
            arguments.erase(at, at + 2);
            return;
        }
}

bool is_worker(const std::vector<char*>& arguments) {
    for (const char* argument : arguments)
        if (std::strncmp(argument, "--worker=", 9) == 0)
            return true;
    return false;
}

int run(std::vector<char*>& arguments) {
    int count = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);
    return __real_main(count, arguments.data());
}

} // namespace

extern "C" int __wrap_main(int argc, char** argv) {
    const std::string_view option = argc == 2 ? argv[1] : "";
    if (option == "--version") {
        std::puts("platform_judge_sim " VX_VERSION);
        return EXIT_SUCCESS;
    }
    if (option == "--help")
        std::fputs(usage, stdout); // and then the judge's own
    std::vector<char*> arguments(argv, argv + argc);
    take_out(arguments, "--root", root_variable);
    take_out(arguments, "--scenario", scenario_variable);
    if (!is_worker(arguments))
        return run(arguments);
    try {
        sim::Board board(variable(root_variable), variable(scenario_variable));
        return run(arguments);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "platform_judge_sim: %s\n", error.what());
        return 2;
    }
}
