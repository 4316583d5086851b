// Allocation faults: the agent's own calls are taken over at link time, the JSON library's through
// its hooks. Memory that the board itself takes never fails.
#include "sim/edges/allocation.h"

#include <cjson/cJSON.h>

#include <cstdlib>
#include <cstring>

#include "sim/library/board.h"
#include "sim/library/call.h"

extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* memory, std::size_t size);
char* __real_strdup(const char* text);
}

namespace sim {

namespace {

// The fault plan's own bookkeeping must not ask the fault plan.
thread_local bool asking = false;

void* json_malloc(std::size_t size) { return is_out_of_memory() ? nullptr : __real_malloc(size); }

// The JSON library has no name of its own for its allocator, so its hooks are set at the start.
[[maybe_unused]] const bool hooked = [] {
    cJSON_Hooks hooks{json_malloc, std::free};
    cJSON_InitHooks(&hooks);
    return true;
}();

} // namespace

bool is_out_of_memory() {
    if (asking || InsideLibrary::active() || !has_board())
        return false;
    asking = true;
    bool out = board().faults.hit(Edge::allocation, "").has_value();
    asking = false;
    return out;
}

} // namespace sim

using sim::is_out_of_memory;

extern "C" {
void* __wrap_malloc(std::size_t size) { return is_out_of_memory() ? nullptr : __real_malloc(size); }

void* __wrap_calloc(std::size_t count, std::size_t size) {
    return is_out_of_memory() ? nullptr : __real_calloc(count, size);
}

void* __wrap_realloc(void* memory, std::size_t size) {
    return is_out_of_memory() ? nullptr : __real_realloc(memory, size);
}

char* __wrap_strdup(const char* text) { return is_out_of_memory() ? nullptr : __real_strdup(text); }
}
