// Keeps each request that reaches "/dev/ski", byte by byte, and answers as a test told it to.
#include "tests/driver/device.h"

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <filesystem>
#include <iterator>

#include <fcntl.h>

namespace {
thread_local Device this_threads_device;
thread_local int descriptor_in_use = -1;

void note(const char* event) {
    if (!device().quiet)
        device().events.emplace_back(event);
}
} // namespace

Device& device() { return this_threads_device; }

int open_descriptors() {
    using std::filesystem::directory_iterator;
    return static_cast<int>(
        std::distance(directory_iterator("/proc/self/fd"), directory_iterator()));
}

// The linker takes these in place of the C library's.
extern "C" {
int __real_open(const char* path, int flags, ...);
int __real_ioctl(int descriptor, unsigned long request, ...);
int __real_close(int descriptor);

int __wrap_open(const char* path, int flags, ...) {
    va_list more;
    va_start(more, flags);
    const int mode = (flags & O_CREAT) != 0 ? va_arg(more, int) : 0;
    va_end(more);
    if (std::strcmp(path, "/dev/ski") != 0)
        return __real_open(path, flags, mode);
    note("open");
    device().open_flags = flags;
    if (device().missing) {
        errno = ENOENT;
        return -1;
    }
    return descriptor_in_use = __real_open("/dev/null", flags);
}

int __wrap_open64(const char* path, int flags, ...) {
    va_list more;
    va_start(more, flags);
    const int mode = (flags & O_CREAT) != 0 ? va_arg(more, int) : 0;
    va_end(more);
    return __wrap_open(path, flags, mode);
}

int __wrap___open_2(const char* path, int flags) { return __wrap_open(path, flags); }

int __wrap_ioctl(int descriptor, unsigned long request, ...) {
    va_list more;
    va_start(more, request);
    void* record = va_arg(more, void*);
    va_end(more);
    if (descriptor != descriptor_in_use)
        return __real_ioctl(descriptor, request, record);
    note("ioctl");
    device().command = static_cast<std::uint32_t>(request);
    return device().answer ? device().answer(device().command, record) : 0;
}

int __wrap_close(int descriptor) {
    if (descriptor == descriptor_in_use && descriptor >= 0) {
        note("close");
        descriptor_in_use = -1;
    }
    return __real_close(descriptor);
}
}
