// What the request layer adds to a bare open, ioctl and close of a device node, for records of
// every size. Both sides use the null device, which refuses the request; the layer's path is turned
// to it at link time. Fails when the null device does not refuse, and above the limit.
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "bench/turns.h"
#include "driver/acl.h"
#include "driver/dai.h"
#include "driver/l2.h"
#include "driver/lldp.h"
#include "driver/mcast.h"
#include "driver/stp.h"
#include "driver/vlan.h"

extern "C" {
int __real_open(const char* path, int flags, ...);

int __wrap_open(const char* path, int flags, ...) {
    return __real_open(std::strcmp(path, "/dev/ski") == 0 ? "/dev/null" : path, flags);
}

int sys_logic_port_num_ret(void) { return 28; }
}

namespace {

constexpr double limit = 1.02;
constexpr int requests = 200; // of a round
constexpr std::uint32_t words = 16;

int bare_request(std::uint32_t command, void* record) {
    const int device = open("/dev/ski", O_RDWR);
    if (device < 0)
        return 501;
    const int result = ioctl(device, command, record);
    close(device);
    return result;
}

AclEntry ace;
ChipVlan vlan;
L2MacBatch batch;
LldpLocalEntry local;
LldpRemoteEntry remote;
McastGroup group;
McastInfo info;
McastRouter router;
McastSourceFilter filter;
StpPortInfo port_info;

// An operation for each size of a record.
struct Request {
    const char* name;
    std::size_t size;
    std::uint32_t command;
    int (*make)();
};

const Request operations[] = {
    {"a word", words, 515, [] { return dai_port_trust_set(3, 1); }},
    {"a port's state, read", words + sizeof port_info, 1,
     [] { return stp_portInfo_get(3, &port_info); }},
    {"a group, written", words + sizeof group, 1,
     [] { return mcast_basic_static_groupEntry_set(&group); }},
    {"a router, read", words + sizeof router, 1, [] { return mcast_router_get(1, &router); }},
    {"a VLAN, written", words + sizeof vlan, 1, [] { return rsd_vlan_adminEntry_set(1, &vlan); }},
    {"multicast counters, read", words + sizeof info, 1, [] { return mcast_igmp_info_get(&info); }},
    {"a source filter, written", words + sizeof filter, 1,
     [] { return mcast_igmpv3_static_filter_group_set(&filter); }},
    {"an access list's entry, written", sizeof(AclRecord), 1,
     [] { return rsd_acl_ace_entry_create("list", &ace); }},
    {"a batch of addresses, read", words + sizeof batch, 1,
     [] { return rsd_l2_macEntry_batch_get(0, &batch); }},
    {"what a neighbour is told, read", words + sizeof local, 1,
     [] { return lldp_portLocalEntryInfo_get(3, &local); }},
    {"a neighbour, read", words + sizeof remote, 1,
     [] { return lldp_portRemoteEntryInfo_get(3, 0, &remote); }},
};

void must_refuse(int result) {
    if (result == -1 && errno == ENOTTY)
        return;
    std::fprintf(stderr, "the null device did not refuse a request: %d\n", result);
    std::exit(EXIT_FAILURE);
}

double seconds_layered(const Request& operation) {
    return bench::time_of([&] {
        for (int i = 0; i < requests; ++i)
            must_refuse(operation.make());
    });
}

double seconds_bare(const Request& operation) {
    static std::array<std::uint32_t, 512> record;
    return bench::time_of([&] {
        for (int i = 0; i < requests; ++i)
            must_refuse(bare_request(operation.command, record.data()));
    });
}

} // namespace

int main() {
    double worst = 0;
    for (const Request& operation : operations) {
        auto times = bench::take_turns(
            {[&] { return std::vector{seconds_layered(operation)}; },
             [&] { return std::vector{seconds_bare(operation)}; }},
            {.repetitions = 21, .rounds = 10, .row = 2});
        std::string name = std::to_string(operation.size) + " bytes: " + operation.name;
        worst = std::max(worst, bench::print_ratio(name, times[0][0], times[1][0]));
    }
    std::printf("greatest ratio %.3f (limit %.2f)\n", worst, limit);
    return worst <= limit ? EXIT_SUCCESS : EXIT_FAILURE;
}
