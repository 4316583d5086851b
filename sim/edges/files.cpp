// Files of the agent: an absolute path of the switch lies below the board's root folder, and two
// devices among them are the board's own.
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "sim/edges/device.h"
#include "sim/library/board.h"

extern "C" {
int __real_open(const char* path, int flags, ...);
int __real_open64(const char* path, int flags, ...);
FILE* __real_fopen(const char* path, const char* mode);
FILE* __real_fopen64(const char* path, const char* mode);
int __real_stat(const char* path, void* status);
int __real_stat64(const char* path, void* status);
[[gnu::weak]] int
__real___stat64_time64(const char* path, void* status); // of 32-bit libraries only
int __real_unlink(const char* path);
DIR* __real_opendir(const char* path);
int __real_statvfs(const char* path, void* status);
int __real_statvfs64(const char* path, void* status);
}

namespace sim {

namespace {

constexpr const char* chip_device = "/dev/ski";
constexpr const char* console_device = "/dev/console";

bool open_fails(const char* path) {
    if (!board().faults.hit(Edge::file, path))
        return false;
    errno = EIO;
    return true;
}

// The console is a device: what is written comes after what it showed before.
int open_console(int flags) {
    return __real_open(
        board().path(console_device).c_str(), flags | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
}

int open_on_board(decltype(__real_open)& open, const char* path, int flags, mode_t mode) {
    if (open_fails(path))
        return -1;
    if (std::strcmp(path, chip_device) == 0)
        return open_chip();
    if (std::strcmp(path, console_device) == 0)
        return open_console(flags);
    return open(board().path(path).c_str(), flags | O_CLOEXEC, mode);
}

FILE* fopen_on_board(decltype(__real_fopen)& fopen, const char* path, const char* mode) {
    return open_fails(path) ? nullptr : fopen(board().path(path).c_str(), mode);
}

} // namespace

} // namespace sim

using sim::board;

extern "C" {

int __wrap_open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    mode_t mode = (flags & O_CREAT) != 0 ? static_cast<mode_t>(va_arg(arguments, unsigned)) : 0;
    va_end(arguments);
    return sim::open_on_board(__real_open, path, flags, mode);
}
int __wrap_open64(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    mode_t mode = (flags & O_CREAT) != 0 ? static_cast<mode_t>(va_arg(arguments, unsigned)) : 0;
    va_end(arguments);
    return sim::open_on_board(__real_open64, path, flags, mode);
}
int __wrap___open_2(const char* path, int flags) {
    return sim::open_on_board(__real_open, path, flags, 0);
}
int __wrap___open64_2(const char* path, int flags) {
    return sim::open_on_board(__real_open64, path, flags, 0);
}

FILE* __wrap_fopen(const char* path, const char* mode) {
    return sim::fopen_on_board(__real_fopen, path, mode);
}
FILE* __wrap_fopen64(const char* path, const char* mode) {
    return sim::fopen_on_board(__real_fopen64, path, mode);
}

// Each name fills a record of its own size, which is between its caller and the C library.
int __wrap_stat(const char* path, void* status) {
    return __real_stat(board().path(path).c_str(), status);
}
int __wrap_stat64(const char* path, void* status) {
    return __real_stat64(board().path(path).c_str(), status);
}
int __wrap___stat64_time64(const char* path, void* status) {
    return __real___stat64_time64(board().path(path).c_str(), status);
}

DIR* __wrap_opendir(const char* path) {
    return sim::open_fails(path) ? nullptr : __real_opendir(board().path(path).c_str());
}

int __wrap_statvfs(const char* path, void* status) {
    return sim::open_fails(path) ? -1 : __real_statvfs(board().path(path).c_str(), status);
}
int __wrap_statvfs64(const char* path, void* status) {
    return sim::open_fails(path) ? -1 : __real_statvfs64(board().path(path).c_str(), status);
}

int __wrap_unlink(const char* path) { return __real_unlink(board().path(path).c_str()); }
}
