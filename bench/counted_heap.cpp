// Stands before the C library's allocator and counts what is in use.
#include "bench/counted_heap.h"

#include <malloc.h>

#include <algorithm>

#include "sim/library/call.h"

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void __libc_free(void* memory);
}

namespace {

bool counting = false;
std::ptrdiff_t held = 0;
std::ptrdiff_t most = 0;

bool is_agents() { return counting && !sim::InsideLibrary::active(); }

std::ptrdiff_t size_of(void* memory) {
    return static_cast<std::ptrdiff_t>(malloc_usable_size(memory));
}

void* taken(void* memory) {
    if (memory && is_agents()) {
        held += size_of(memory);
        most = std::max(most, held);
    }
    return memory;
}

void given_back(void* memory) {
    if (memory && is_agents())
        held -= size_of(memory);
}

} // namespace

extern "C" {
void* malloc(std::size_t size) { return taken(__libc_malloc(size)); }
void* calloc(std::size_t count, std::size_t size) { return taken(__libc_calloc(count, size)); }

// A block that grows counts as both old and new: it may have had to move. One that shrinks gives
// back its end.
void* realloc(void* memory, std::size_t size) {
    std::ptrdiff_t old = memory && is_agents() ? size_of(memory) : 0;
    void* changed = __libc_realloc(memory, size);
    if (changed && is_agents()) {
        held += size_of(changed);
        if (size_of(changed) > old)
            most = std::max(most, held);
        held -= old;
    }
    return changed;
}

void free(void* memory) {
    given_back(memory);
    __libc_free(memory);
}
}

namespace bench {

void start_counting_heap() {
    held = most = 0;
    counting = true;
}

std::size_t stop_counting_heap() {
    counting = false;
    return static_cast<std::size_t>(most);
}

} // namespace bench
