// Looking for the driver functions by name, and asking the device node what it must refuse.
#include "judge/driver_half.h"

#include <dlfcn.h>

#include <cstring>

#include "driver/request.h"
#include "judge/bench.h"
#include "judge/driver_names.h"
#include "judge/driver_reads.h"
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
    for (const DriverRead& read : driver_reads) {
        Guarded record(read.size);
        std::memset(record.data(), 0, sizeof(ChipWords)); // port 0, index 0
        request(read.name, read.command, record);
        bench->holds(
            record.overrun() == 0, reason::overrun,
            "the driver's record has " + std::to_string(read.size) + " bytes",
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
