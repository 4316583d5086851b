// One report, or one settings document parsed and applied, for a profiler to count; after another
// one, in which is made what is made once in a process's life.
//
//     once report PORTS ADDRESSES
//     once apply SETTINGS_FILE
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

#include "bench/sized_switch.h"
#include "core/dispatch.h"
#include "json/json_print.h"

namespace {

void report() {
    cJSON* document = createJsonObject();
    vxc_get(document);
    char* text = printJson(document);
    deleteJsonObject(document);
    std::free(text);
}

std::string document;

void apply() {
    cJSON* settings = parseJsonString(document.c_str());
    vxc_set(settings);
    deleteJsonObject(settings);
}

} // namespace

// The profiler counts what happens within.
extern "C" [[gnu::noinline]] void counted(void (*work)()) { work(); }

namespace {

void run(int ports, int addresses, void (*work)()) {
    bench::SizedSwitch sized(ports, addresses);
    work();
    counted(work);
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 4 && std::strcmp(argv[1], "report") == 0) {
        run(std::atoi(argv[2]), std::atoi(argv[3]), report);
    } else if (argc == 3 && std::strcmp(argv[1], "apply") == 0) {
        std::ifstream file(argv[2]);
        document.assign(std::istreambuf_iterator<char>(file), {});
        run(12, 0, apply);
    } else {
        std::fputs("usage: once report PORTS ADDRESSES | once apply SETTINGS_FILE\n", stderr);
        return EXIT_FAILURE;
    }
}
