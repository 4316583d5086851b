// What the request layer adds to a bare open, ioctl and close of a device node. Both sides use the
// null device, which refuses the request; the layer's path is turned to it at link time.
#include <cerrno>
#include <chrono>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include <algorithm>
#include <vector>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "driver/dai.h"
#include "driver/port.h"

extern "C" {
int __real_open(const char* path, int flags, ...);

int __wrap_open(const char* path, int flags, ...) {
    return __real_open(std::strcmp(path, "/dev/ski") == 0 ? "/dev/null" : path, flags);
}

int sys_logic_port_num_ret(void) { return 28; }
}

namespace {

using Clock = std::chrono::steady_clock;

int bare_request(std::uint32_t command, void* record) {
    const int device = open("/dev/ski", O_RDWR);
    if (device < 0)
        return 501;
    const int result = ioctl(device, command, record);
    close(device);
    return result;
}

int bare() {
    std::uint32_t record[4] = {0, 3, 0, 1};
    return bare_request(515, record);
}

int layered() { return dai_port_trust_set(3, 1); }

// Nanoseconds a request over `requests` of them.
double time_of(int (*request)(), int requests) {
    const auto begin = Clock::now();
    int refused = 0;
    for (int i = 0; i < requests; ++i)
        refused += request() == -1;
    const std::chrono::duration<double, std::nano> spent = Clock::now() - begin;
    if (refused != requests)
        std::fprintf(stderr, "the null device took a request\n");
    return spent.count() / requests;
}

double median(std::vector<double> values) {
    std::ranges::nth_element(values, values.begin() + values.size() / 2);
    return values[values.size() / 2];
}

} // namespace

// Short rounds of both take turns, in changing order, and each pair gives a ratio: a change of the
// machine's pace meets both sides of a pair or spoils that pair alone.
int main() {
    constexpr int rounds = 4001;
    constexpr int requests = 100;
    std::vector<double> bare_times, layered_times, ratios;
    for (int round = 0; round < rounds; ++round) {
        double bare_time = 0, layered_time = 0;
        if (round % 2 == 0)
            bare_time = time_of(bare, requests);
        layered_time = time_of(layered, requests);
        if (round % 2 != 0)
            bare_time = time_of(bare, requests);
        bare_times.push_back(bare_time);
        layered_times.push_back(layered_time);
        ratios.push_back(layered_time / bare_time);
    }
    const double ratio = median(ratios);
    std::printf("bare request    %8.1f ns\n", median(bare_times));
    std::printf("through driver  %8.1f ns\n", median(layered_times));
    std::printf("ratio           %8.3f (limit 1.05)\n", ratio);
    return ratio <= 1.05 ? 0 : 1;
}
