// See allocation.h.
#include "allocation.h"

#include <cstdlib>

namespace {

bool active;
int countdown;
bool persistent;
bool failed;

bool fails_now() {
    if (!active || (failed && !persistent))
        return false;
    if (countdown-- > 0)
        return false;
    countdown = 0;
    failed = true;
    return true;
}

} // namespace

extern "C" {

void* __real_malloc(size_t size);
void* __real_realloc(void* block, size_t size);
void* __wrap_malloc(size_t size);
void* __wrap_realloc(void* block, size_t size);

void* __wrap_malloc(size_t size) { return fails_now() ? nullptr : __real_malloc(size); }

void* __wrap_realloc(void* block, size_t size) {
    return fails_now() ? nullptr : __real_realloc(block, size);
}

static void* hooked_malloc(size_t size) { return fails_now() ? nullptr : __real_malloc(size); }
static void hooked_free(void* block) { free(block); }
}

namespace allocation {

Failure::Failure(int nth, bool for_good) {
    cJSON_Hooks hooks{hooked_malloc, hooked_free};
    cJSON_InitHooks(&hooks);
    countdown = nth;
    persistent = for_good;
    failed = false;
    active = true;
}

Failure::~Failure() {
    active = false;
    cJSON_InitHooks(nullptr);
}

bool Failure::happened() const { return failed; }

} // namespace allocation
