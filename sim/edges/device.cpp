// The chip's device node. A request opens and closes it, some hundred times a check-in, so its
// descriptors are the board's own numbers, above those of any real file: no call of the workstation
// is made for one.
#include "sim/edges/device.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <mutex>
#include <string>
#include <vector>

#include "sim/library/board.h"
#include "sim/library/call.h"

extern "C" {
int __real_close(int descriptor);
int __real_ioctl(int descriptor, unsigned long request, ...);
}

namespace sim {

namespace {

constexpr int first_descriptor = 1 << 30; // no process may have so many files

class Descriptors {
  public:
    int open() {
        std::lock_guard guard(mutex_);
        std::size_t place = 0;
        while (place < open_.size() && open_[place])
            ++place;
        if (place == open_.size())
            open_.push_back(false);
        open_[place] = true;
        return first_descriptor + static_cast<int>(place);
    }
    bool is_open(int descriptor) {
        std::lock_guard guard(mutex_);
        return is_open_locked(descriptor);
    }
    bool close(int descriptor) {
        std::lock_guard guard(mutex_);
        if (!is_open_locked(descriptor))
            return false;
        open_[static_cast<std::size_t>(descriptor - first_descriptor)] = false;
        return true;
    }

    std::size_t count() {
        std::lock_guard guard(mutex_);
        return static_cast<std::size_t>(std::count(open_.begin(), open_.end(), true));
    }

  private:
    bool is_open_locked(int descriptor) const {
        return is_chip(descriptor) &&
               static_cast<std::size_t>(descriptor - first_descriptor) < open_.size() &&
               open_[static_cast<std::size_t>(descriptor - first_descriptor)];
    }

    std::mutex mutex_;
    std::vector<bool> open_;
};

Descriptors& descriptors() {
    static Descriptors all;
    return all;
}

int refuse(int reason) {
    errno = reason;
    return -1;
}

int request_of_chip(std::uint32_t command, void* record) {
    if (!record)
        return refuse(EFAULT);
    if (auto fault = board().faults.hit(Edge::ioctl, std::to_string(command)))
        return *fault;
    return board().device.chip.request(command, record);
}

// The agent's own requests are in the trace with the first four words of their records.
int traced_request(std::uint32_t command, void* record) {
    std::uint32_t words[4] = {};
    if (record)
        std::memcpy(words, record, sizeof words);
    int result = request_of_chip(command, record);
    if (!InsideLibrary::active())
        board().trace.add_call("ioctl", result, command, words[0], words[1], words[2], words[3]);
    return result;
}

} // namespace

int open_chip() { return board().device.driver_loaded ? descriptors().open() : refuse(ENOENT); }

bool is_chip(int descriptor) { return descriptor >= first_descriptor; }

int close_chip(int descriptor) { return descriptors().close(descriptor) ? 0 : refuse(EBADF); }

std::size_t open_chip_descriptors() { return descriptors().count(); }

} // namespace sim

extern "C" {

int __wrap_close(int descriptor) {
    return sim::is_chip(descriptor) ? sim::close_chip(descriptor) : __real_close(descriptor);
}

int __wrap_ioctl(int descriptor, unsigned long request, ...) {
    va_list arguments;
    va_start(arguments, request);
    void* record = va_arg(arguments, void*);
    va_end(arguments);
    if (!sim::is_chip(descriptor))
        return __real_ioctl(descriptor, request, record);
    if (!sim::descriptors().is_open(descriptor))
        return sim::refuse(EBADF);
    return sim::traced_request(static_cast<std::uint32_t>(request), record);
}
int __wrap___ioctl_time64(int descriptor, unsigned long request, void* record) {
    return __wrap_ioctl(descriptor, request, record);
}
}
