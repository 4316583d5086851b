// What a request holds of the memory that all requests together may take for their bodies.
#pragma once

#include <atomic>
#include <cstddef>

namespace lab {

class BodyShare {
  public:
    BodyShare() = default;
    ~BodyShare() { held_by_all -= held_; }
    BodyShare(const BodyShare&) = delete;
    BodyShare& operator=(const BodyShare&) = delete;

    // False, and nothing taken, when there would be too much in all.
    bool grow(std::size_t bytes) {
        if (held_by_all.fetch_add(bytes) + bytes > most_in_all) {
            held_by_all -= bytes;
            return false;
        }
        held_ += bytes;
        return true;
    }

    static constexpr std::size_t most_in_all = std::size_t{256} << 20;

  private:
    static inline std::atomic<std::size_t> held_by_all = 0;
    std::size_t held_ = 0;
};

} // namespace lab
