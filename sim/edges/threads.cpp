// Threads of the agent. They take memory, so the fault plan can refuse one.
//
// In a build with the address sanitizer: a thread that is cancelled never returns from its
// functions, so the guard zones that the sanitizer put around their variables stay on the stack and
// make what runs at the thread's end look like an overflow.
#include <pthread.h>

#include <cerrno>
#include <cstddef>

#include "sim/edges/allocation.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SIM_GUARDED_STACKS 1
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define SIM_GUARDED_STACKS 1
#endif

#ifdef SIM_GUARDED_STACKS
#include <sanitizer/asan_interface.h>
#endif

extern "C" int __real_pthread_create(
    pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*), void* argument);

namespace sim {

namespace {

#ifdef SIM_GUARDED_STACKS

// More than the agent's functions take below the thread's first one.
constexpr std::size_t cleared_depth = 65536;

struct ThreadStart {
    void* (*run)(void*);
    void* argument;
};

void clear_guards(void*) {
    char* here = static_cast<char*>(__builtin_frame_address(0));
    __asan_unpoison_memory_region(here - cleared_depth, cleared_depth);
}

void* run_and_clear(void* start) {
    ThreadStart thread = *static_cast<ThreadStart*>(start);
    delete static_cast<ThreadStart*>(start);
    void* result;
    pthread_cleanup_push(clear_guards, nullptr);
    result = thread.run(thread.argument);
    pthread_cleanup_pop(0);
    return result;
}

int create_thread(
    pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*), void* argument) {
    auto* start = new ThreadStart{run, argument};
    int result = __real_pthread_create(thread, attributes, run_and_clear, start);
    if (result != 0)
        delete start;
    return result;
}

#else

int create_thread(
    pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*), void* argument) {
    return __real_pthread_create(thread, attributes, run, argument);
}

#endif

} // namespace

} // namespace sim

extern "C" int __wrap_pthread_create(
    pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*), void* argument) {
    return sim::is_out_of_memory() ? EAGAIN : sim::create_thread(thread, attributes, run, argument);
}
