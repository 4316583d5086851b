// The driver's half; see driver_half.h.
#include "judge/driver_half.h"

#include <dlfcn.h>

#include "driver/acl.h"
#include "driver/cablediag.h"
#include "driver/request.h"
#include "judge/bench.h"
#include "judge/driver_names.h"
#include "judge/guarded.h"
#include "judge/parameter.h"
#include "platform/system.h"

namespace judge {

namespace {

// A library that is a file of its own is asked by its own handle; one that is linked in, by none.
void* library_handle() {
    Dl_info library = {};
    Dl_info judge = {};
    if (!dladdr(reinterpret_cast<void*>(sal_sys_macAddr_get), &library) ||
        !dladdr(reinterpret_cast<void*>(glue_util_ioctl), &judge) ||
        library.dli_fbase == judge.dli_fbase)
        return nullptr;
    return dlopen(library.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
}

// A driver's record that is read: the command, the words that say which, and its size.
struct Record {
    const char* name;
    std::uint32_t command;
    std::uint32_t words[4];
    std::size_t size;
};

constexpr std::size_t words_size = sizeof(ChipWords);

const Record records[] = {
    {"rsd_port_enable_get", 3521, {0, 0, 0, 0}, words_size},
    {"rsd_port_linkStatus_get", 3522, {0, 0, 0, 0}, words_size},
    {"rsd_port_allLinkStatus_get", 3523, {0, 0, 0, 0}, words_size + sizeof(PortBitmap)},
    {"rsd_port_speedDuplex_get", 3528, {0, 0, 0, 0}, words_size},
    {"rsd_switch_maxFrameSize_get", 4161, {0, 0, 0, 0}, words_size},
    {"rsd_switch_portMaxFrameSize_get", 4162, {0, 0, 0, 0}, words_size},
    {"rsd_trunk_mode_get", 4417, {0, 0, 0, 0}, words_size},
    {"rsd_trunk_activeMember_get", 4418, {0, 0, 0, 0}, words_size + sizeof(PortBitmap)},
    {"rsd_trunk_portRole_get", 4419, {0, 0, 0, 0}, words_size},
    {"rsd_cablediag_copper_get", 449, {0, 0, 0, 0}, sizeof(CableRecord)},
};

// Far from the driver's commands, and from those that the system takes for every device.
constexpr std::uint32_t unknown_commands[] = {0, 0x7FFFFFFF, 0xFFFF0001, 0xFFFFFFFF};

int request(const char* name, std::uint32_t command, Guarded& record) {
    bench->enter(
        "ioctl(" + std::to_string(command) + ")" + (*name ? std::string(" of ") + name : ""));
    int code = glue_util_ioctl(command, record.data());
    bench->leave();
    bench->note_result(code);
    return code;
}

bool no_device() {
    Guarded record(4096, 0);
    if (request("rsd_port_enable_get", 3521, record) != REQUEST_NO_DEVICE)
        return false;
    bench->remark("there is no /dev/ski: the driver is not judged");
    return true;
}

} // namespace

void judge_names() {
    void* library = library_handle();
    for (const char* name : driver_names) {
        void* found = dlsym(RTLD_DEFAULT, name);
        bench->enter(std::string("dlsym(") + name + ")");
        bench->leave();
        bench->holds(found, reason::not_found, "the agent's executable exports it", "not found");
        void* own = library ? dlsym(library, name) : nullptr;
        bench->holds(
            !own || own == found, reason::disagrees,
            "the library finds the agent's function, and has none of that name itself",
            "the library has one of its own");
    }
    if (library)
        dlclose(library);
}

void judge_records() {
    if (no_device())
        return;
    for (const Record& row : records) {
        Guarded record(row.size);
        std::memcpy(record.data(), row.words, sizeof row.words);
        request(row.name, row.command, record);
        bench->holds(
            record.overrun() == 0, reason::overrun,
            "the driver's record has " + std::to_string(row.size) + " bytes",
            std::to_string(record.overrun()) + " bytes outside it were written");
    }
}

void judge_unknown_commands() {
    if (no_device())
        return;
    for (std::uint32_t command : unknown_commands) {
        Guarded record(4096);
        bench->refuses(request("", command, record), "/dev/ski refuses unknown commands");
        bench->holds(
            record.untouched(), reason::touched, "a refused command leaves its record",
            "it was written");
    }
}

} // namespace judge
