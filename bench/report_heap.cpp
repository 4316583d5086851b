// What a report holds of the heap while it is made, on switches of growing size: the most at once,
// against the length of its text. The limit is for the switch's own processor, whose nodes are
// smaller; what a 64-bit one needs more is shown, too.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bench/counted_heap.h"
#include "bench/sized_switch.h"
#include "core/dispatch.h"
#include "json/json_print.h"

namespace {

constexpr double limit = sizeof(void*) == 4 ? 4 : 5.5;

struct Size {
    int ports, addresses;
};
const Size sizes[] = {{28, 0},    {28, 256},  {28, 1024}, {28, 4096},
                      {52, 4096}, {96, 4096}, {96, 8192}, {96, 16384}};

char* report() {
    cJSON* document = createJsonObject();
    vxc_get(document);
    char* text = printJson(document);
    deleteJsonObject(document);
    return text;
}

// Heap by byte of the text.
double measure(const Size& size) {
    bench::SizedSwitch sized(size.ports, size.addresses);
    std::free(report()); // what is made once in a process's life
    bench::start_counting_heap();
    char* text = report();
    const std::size_t most = bench::stop_counting_heap();
    const std::size_t length = std::strlen(text);
    std::free(text);
    const double ratio = static_cast<double>(most) / static_cast<double>(length);
    std::printf("%8d %10d %10zu %10zu %8.2f\n", size.ports, size.addresses, length, most, ratio);
    return ratio;
}

} // namespace

int main() {
    std::printf("%8s %10s %10s %10s %8s\n", "ports", "addresses", "text", "heap", "ratio");
    bool within = true;
    for (const Size& size : sizes)
        within &= measure(size) <= limit;
    std::printf("limit %.1f with pointers of %zu bytes\n", limit, sizeof(void*));
    return within ? EXIT_SUCCESS : EXIT_FAILURE;
}
