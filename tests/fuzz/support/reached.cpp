// The compiler keeps a counter a place, which libFuzzer clears before each run, and the table of
// the places' addresses.
#include "tests/fuzz/support/reached.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

extern "C" {
extern std::uint8_t __start___sancov_cntrs[], __stop___sancov_cntrs[];
extern const std::uintptr_t __start___sancov_pcs[]; // address and flags of each
extern const char __executable_start;
}

namespace {

class Reached {
  public:
    Reached() : path_(std::getenv("REACHED_PLACES")) {
        if (path_)
            reached_.resize(
                static_cast<std::size_t>(__stop___sancov_cntrs - __start___sancov_cntrs));
    }
    ~Reached() {
        if (path_)
            write();
    }
    Reached(const Reached&) = delete;
    Reached& operator=(const Reached&) = delete;

    void note() {
        for (std::size_t i = 0; i < reached_.size(); ++i)
            reached_[i] = reached_[i] || __start___sancov_cntrs[i];
    }

  private:
    // Past the board, whose files the agent's calls of this name are.
    void write() const {
        std::FILE* file = std::freopen(path_, "w", stdout);
        const auto start = reinterpret_cast<std::uintptr_t>(&__executable_start);
        for (std::size_t i = 0; file && i < reached_.size(); ++i)
            std::fprintf(
                file, "%c0x%zx\n", reached_[i] ? '+' : '-', __start___sancov_pcs[2 * i] - start);
        if (file)
            std::fflush(file);
    }

    const char* path_;
    std::vector<bool> reached_;
};

} // namespace

void note_reached() {
    static Reached reached;
    reached.note();
}
