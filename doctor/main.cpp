// Why is this switch not on the cloud? A check-up of everything that a check-in depends on.
#include <curl/curl.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "doctor/checkup.h"
#include "doctor/show.h"
#include "version/version.h"

namespace {

const char usage[] = "usage: vx_cloud_doctor [--json | --explain | --version | --help]\n"
                     "  looks at everything that a check-in depends on, and changes nothing;\n"
                     "  exits with 0 if no line is wrong, with 1 if one is\n"
                     "  --json      the lines as one JSON array\n"
                     "  --explain   every line that there can be, as Markdown\n";

// What an option prints by itself; null for one that is none or asks for the check-up.
void (*printer_of(const char* option))() {
    if (strcmp(option, "--explain") == 0)
        return print_explanation;
    if (strcmp(option, "--version") == 0)
        return [] { puts("vx_cloud_doctor " VX_VERSION); };
    if (strcmp(option, "--help") == 0)
        return [] { fputs(usage, stdout); };
    return nullptr;
}

int run(void (*show)(const Line& line)) { return run_checkup(show) ? EXIT_FAILURE : EXIT_SUCCESS; }

} // namespace

int main(int argc, char** argv) {
    const char* option = argc > 1 ? argv[1] : "";
    if (auto print = argc == 2 ? printer_of(option) : nullptr) {
        print();
        return EXIT_SUCCESS;
    }
    bool json = argc == 2 && strcmp(option, "--json") == 0;
    if (argc > 1 && !json) {
        fputs(usage, stderr);
        return 2;
    }
    signal(SIGPIPE, SIG_IGN);
    curl_global_init(CURL_GLOBAL_DEFAULT);
    int status = run(json ? collect_line : show_line);
    if (json)
        print_collected();
    return status;
}
