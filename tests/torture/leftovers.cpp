// The leak sanitizer is asked only after a run that holds more memory than it found.
#include "tests/torture/leftovers.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <chrono>
#include <filesystem>
#include <iterator>
#include <thread>

#include "sim/edges/device.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TORTURE_FINDS_LEAKS 1
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define TORTURE_FINDS_LEAKS 1
#endif

#ifdef TORTURE_FINDS_LEAKS
#include <sanitizer/allocator_interface.h>
#include <sanitizer/lsan_interface.h>
#endif

namespace torture {

namespace {

std::size_t open_descriptors() {
    std::filesystem::directory_iterator all("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(all), end(all))) +
           sim::open_chip_descriptors();
}

#ifdef TORTURE_FINDS_LEAKS
std::size_t bytes_in_use() { return __sanitizer_get_current_allocated_bytes(); }
bool has_leaked() { return __lsan_do_recoverable_leak_check() != 0; }
#else
std::size_t bytes_in_use() { return mallinfo2().uordblks; }
bool has_leaked() { return false; }
#endif

} // namespace

Leftovers::Leftovers() : descriptors_(open_descriptors()), bytes_(bytes_in_use()) {}

void Leftovers::expect_none() const {
    // A server of the test's own may take a moment to see that its client has gone.
    for (int waited = 0; waited < 200 && open_descriptors() > descriptors_; ++waited)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_LE(open_descriptors(), descriptors_) << "descriptors that are open";
    if (bytes_in_use() > bytes_)
        EXPECT_FALSE(has_leaked());
}

} // namespace torture
