// The edges of the agent, taken over at link time: every call that would touch the workstation goes
// to the board's root folder, chip, clocks and shell instead. cmake/Edges.cmake lists them.
#include <curl/curl.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <map>
#include <set>

#include "sim/edges/shell.h"
#include "sim/library/board.h"
#include "sim/library/call.h"

extern "C" {
int __real_open(const char* path, int flags, ...);
FILE* __real_fopen(const char* path, const char* mode);
int __real_stat(const char* path, struct stat* status);
int __real_unlink(const char* path);
int __real_close(int descriptor);
int __real_ioctl(int descriptor, unsigned long request, ...);
CURLcode __real_curl_easy_setopt(CURL* transfer, CURLoption option, ...);
CURLcode __real_curl_easy_perform(CURL* transfer);
CURLMcode __real_curl_multi_add_handle(CURLM* multi, CURL* transfer);
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

// Open descriptors of the chip's device node.
class ChipDescriptors {
  public:
    int open() {
        int descriptor = __real_open("/dev/null", O_RDWR | O_CLOEXEC);
        std::lock_guard guard(mutex_);
        open_.insert(descriptor);
        return descriptor;
    }
    bool owns(int descriptor) {
        std::lock_guard guard(mutex_);
        return open_.contains(descriptor);
    }
    void forget(int descriptor) {
        std::lock_guard guard(mutex_);
        open_.erase(descriptor);
    }

  private:
    std::mutex mutex_;
    std::set<int> open_;
};

ChipDescriptors& chip_descriptors() {
    static ChipDescriptors descriptors;
    return descriptors;
}

// The console is a device: what is written comes after what it showed before.
int open_on_board(const char* path, int flags, mode_t mode) {
    if (open_fails(path))
        return -1;
    if (std::strcmp(path, chip_device) == 0)
        return board().device.driver_loaded ? chip_descriptors().open() : (errno = ENOENT, -1);
    if (std::strcmp(path, console_device) == 0)
        return __real_open(
            board().path(path).c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    return __real_open(board().path(path).c_str(), flags | O_CLOEXEC, mode);
}

FILE* fopen_on_board(const char* path, const char* mode) {
    return open_fails(path) ? nullptr : __real_fopen(board().path(path).c_str(), mode);
}

int request_of_chip(std::uint32_t command, void* record) {
    if (auto fault = board().faults.hit(Edge::ioctl, std::to_string(command)))
        return *fault;
    return board().device.chip.request(command, record);
}

// The agent's own requests are in the trace with the first four words of their records.
int traced_request(std::uint32_t command, void* record) {
    std::uint32_t words[4];
    std::memcpy(words, record, sizeof words);
    int result = request_of_chip(command, record);
    if (!InsideLibrary::active())
        board().trace.add(
            show_call("ioctl", command, words[0], words[1], words[2], words[3]) + " = " +
            std::to_string(result));
    return result;
}

// Where each transfer goes, for trace and fault plan.
class TransferUrls {
  public:
    void note(CURL* transfer, const char* url) {
        std::lock_guard guard(mutex_);
        urls_[transfer] = url ? url : "";
    }
    std::string of(CURL* transfer) {
        std::lock_guard guard(mutex_);
        return urls_[transfer];
    }

  private:
    std::mutex mutex_;
    std::map<CURL*, std::string> urls_;
};

TransferUrls& transfer_urls() {
    static TransferUrls urls;
    return urls;
}

CURLcode traced_transfer(CURL* transfer) {
    std::string url = transfer_urls().of(transfer);
    auto fault = board().faults.hit(Edge::transfer, url);
    CURLcode result = fault ? static_cast<CURLcode>(*fault) : __real_curl_easy_perform(transfer);
    board().trace.add(show_call("transfer", url.c_str()) + " = " + std::to_string(result));
    return result;
}

// A transfer that goes on beside others; how it ends is not known yet.
CURLMcode traced_listen(CURLM* multi, CURL* transfer) {
    std::string url = transfer_urls().of(transfer);
    CURLMcode result = board().faults.hit(Edge::transfer, url)
                           ? CURLM_OUT_OF_MEMORY
                           : __real_curl_multi_add_handle(multi, transfer);
    board().trace.add(show_call("listen", url.c_str()) + " = " + std::to_string(result));
    return result;
}

// The switch's certificates are the board's, without the bundle that the workstation's libcurl
// would trust, or miss, besides.
CURLcode trust_board(CURL* transfer, const char* folder) {
    __real_curl_easy_setopt(transfer, CURLOPT_CAINFO, nullptr);
    return __real_curl_easy_setopt(transfer, CURLOPT_CAPATH, board().path(folder).c_str());
}

CURLcode set_option(CURL* transfer, CURLoption option, va_list arguments) {
    if (option >= CURLOPTTYPE_OFF_T && option < CURLOPTTYPE_BLOB)
        return __real_curl_easy_setopt(transfer, option, va_arg(arguments, curl_off_t));
    if (option < CURLOPTTYPE_OBJECTPOINT)
        return __real_curl_easy_setopt(transfer, option, va_arg(arguments, long));
    void* value = va_arg(arguments, void*);
    if (option == CURLOPT_URL)
        transfer_urls().note(transfer, static_cast<const char*>(value));
    if (option == CURLOPT_CAPATH)
        return trust_board(transfer, static_cast<const char*>(value));
    return __real_curl_easy_setopt(transfer, option, value);
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
    return sim::open_on_board(path, flags, mode);
}
int __wrap_open64(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    mode_t mode = (flags & O_CREAT) != 0 ? static_cast<mode_t>(va_arg(arguments, unsigned)) : 0;
    va_end(arguments);
    return sim::open_on_board(path, flags, mode);
}
int __wrap___open_2(const char* path, int flags) { return sim::open_on_board(path, flags, 0); }
int __wrap___open64_2(const char* path, int flags) { return sim::open_on_board(path, flags, 0); }

FILE* __wrap_fopen(const char* path, const char* mode) { return sim::fopen_on_board(path, mode); }
FILE* __wrap_fopen64(const char* path, const char* mode) { return sim::fopen_on_board(path, mode); }

int __wrap_stat(const char* path, struct stat* status) {
    return __real_stat(board().path(path).c_str(), status);
}
int __wrap_stat64(const char* path, struct stat* status) { return __wrap_stat(path, status); }
int __wrap___stat64_time64(const char* path, struct stat* status) {
    return __wrap_stat(path, status);
}

int __wrap_unlink(const char* path) { return __real_unlink(board().path(path).c_str()); }

int __wrap_close(int descriptor) {
    sim::chip_descriptors().forget(descriptor);
    return __real_close(descriptor);
}

int __wrap_ioctl(int descriptor, unsigned long request, ...) {
    va_list arguments;
    va_start(arguments, request);
    void* record = va_arg(arguments, void*);
    va_end(arguments);
    if (sim::chip_descriptors().owns(descriptor))
        return sim::traced_request(static_cast<std::uint32_t>(request), record);
    return __real_ioctl(descriptor, request, record);
}
int __wrap___ioctl_time64(int descriptor, unsigned long request, void* record) {
    return __wrap_ioctl(descriptor, request, record);
}

int __wrap_system(const char* command) {
    int result = sim::run_command(command);
    board().trace.add(sim::show_call("system", command) + " = " + std::to_string(result));
    board().carry_out_orders();
    return result;
}

// A thread may be cancelled while it sleeps, but not while the sleep is written down; nor in
// virtual time, where a sleep is all bookkeeping.
unsigned __wrap_sleep(unsigned seconds) {
    int cancellable;
    bool paced = !board().clock.is_virtual();
    unsigned left = paced ? board().clock.sleep(seconds) : 0;
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &cancellable);
    if (!paced)
        left = board().clock.sleep(seconds);
    board().trace.add(sim::show_call("sleep", seconds) + " = " + std::to_string(left));
    pthread_setcancelstate(cancellable, nullptr);
    return left;
}

time_t __wrap_time(time_t* now) {
    time_t calendar = board().clock.calendar();
    if (now)
        *now = calendar;
    return calendar;
}
time_t __wrap___time64(time_t* now) { return __wrap_time(now); }

int __wrap_clock_settime(clockid_t, const struct timespec* now) {
    board().clock.set_calendar(now->tv_sec);
    board().trace.add(sim::show_call("clock_settime", now->tv_sec) + " = 0");
    return 0;
}
int __wrap___clock_settime64(clockid_t clock, const struct timespec* now) {
    return __wrap_clock_settime(clock, now);
}

int __wrap___res_init() {
    board().trace.add("__res_init() = 0");
    return 0;
}

// The option is passed as the integer that va_start can stand on.
CURLcode __wrap_curl_easy_setopt(CURL* transfer, unsigned option, ...) {
    va_list arguments;
    va_start(arguments, option);
    CURLcode result = sim::set_option(transfer, static_cast<CURLoption>(option), arguments);
    va_end(arguments);
    return result;
}

CURLcode __wrap_curl_easy_perform(CURL* transfer) { return sim::traced_transfer(transfer); }

CURLMcode __wrap_curl_multi_add_handle(CURLM* multi, CURL* transfer) {
    return sim::traced_listen(multi, transfer);
}
}
