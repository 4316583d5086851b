// Prints the tables of docs/networks.md as they are measured; those that are named, or all.
#include <cstdio>
#include <cstring>

#include "tests/hostile/network/tables.h"

namespace {

struct Measurement {
    const char* name;
    Table (*measure)();
};

constexpr Measurement measurements[] = {
    {"checkin", measure_checkins},
    {"time", measure_time},
    {"keeper", measure_keeper},
    {"firmware", measure_firmware},
};

} // namespace

int main(int argc, char** argv) {
    for (const Measurement& one : measurements)
        if (argc < 2 || std::strcmp(argv[1], one.name) == 0)
            std::printf("%s\n", show_table(one.measure()).c_str());
}
