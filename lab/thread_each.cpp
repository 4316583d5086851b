// Tasks that find no thread wait, and whoever hands them in waits with them.
#include "lab/thread_each.h"

#include <chrono>
#include <cstdio>
#include <exception>
#include <system_error>
#include <thread>
#include <utility>

namespace lab {

void ThreadEach::run(std::function<void()> task) {
    std::unique_lock lock(mutex_);
    const auto has_room = [this] { return running_ < most_threads_; };
    while (!changed_.wait_for(lock, std::chrono::seconds(1), has_room))
        when_full_();
    running_++;
    lock.unlock();
    start_thread(task);
}

// A workstation that has no thread to give has one later. What the task holds goes before the task
// counts as done, for who waits for that may be about to take away what it belongs to.
void ThreadEach::start_thread(const std::function<void()>& task) {
    for (;;)
        try {
            std::thread([this, task = std::function(task)]() mutable {
                work([&task] { std::exchange(task, nullptr)(); });
            }).detach();
            return;
        } catch (const std::system_error&) {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
}

void ThreadEach::work(const std::function<void()>& task) {
    try {
        task();
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "lab_cloud: %s\n", failure.what());
    } catch (...) {
        std::fprintf(stderr, "lab_cloud: unknown failure\n");
    }
    // Notified under the lock: this object may be gone as soon as the lock is.
    const std::lock_guard done(mutex_);
    running_--;
    changed_.notify_all();
}

void ThreadEach::wait_for_all() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return running_ == 0; });
}

} // namespace lab
