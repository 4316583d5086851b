// A thread for each task: a waiting long-poll never takes the place of another request.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>

namespace lab {

class ThreadEach {
  public:
    // `when_full` is called once a second while a task waits for others to end.
    ThreadEach(std::size_t most_threads, std::function<void()> when_full)
        : most_threads_(most_threads), when_full_(std::move(when_full)) {}

    void run(std::function<void()> task);
    void wait_for_all();

  private:
    void start_thread(const std::function<void()>& task);
    void work(const std::function<void()>& task);

    const std::size_t most_threads_;
    const std::function<void()> when_full_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::size_t running_ = 0;
};

} // namespace lab
