// What a process holds: to be the same after many thousand turns as after the first ones.
#pragma once

#include <cstddef>

struct Holdings {
    std::size_t memory;      // bytes in use, of the heap
    std::size_t descriptors; // open files and sockets
    std::size_t threads;
};

Holdings count_holdings();

// Waits until so many threads are left, for some that libcurl starts end by themselves.
bool wait_for_threads(std::size_t count);
