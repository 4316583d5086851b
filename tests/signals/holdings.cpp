// The heap tells by itself, the kernel tells the rest.
#include "tests/signals/holdings.h"

#include <malloc.h>

#include <chrono>
#include <filesystem>
#include <iterator>
#include <thread>

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define HEAP_OF_SANITIZER 1
#include <sanitizer/allocator_interface.h>
#endif
#endif

namespace {

std::size_t heap_in_use() {
#ifdef HEAP_OF_SANITIZER
    return __sanitizer_get_current_allocated_bytes();
#else
    return mallinfo2().uordblks;
#endif
}

std::size_t count_entries(const char* folder) {
    const std::filesystem::directory_iterator entries(folder);
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

} // namespace

Holdings count_holdings() {
    return {heap_in_use(), count_entries("/proc/self/fd"), count_entries("/proc/self/task")};
}

bool wait_for_threads(std::size_t count) {
    for (int tries = 0; tries < 2000; ++tries) {
        if (count_entries("/proc/self/task") <= count)
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return false;
}
