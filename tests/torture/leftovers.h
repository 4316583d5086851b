// What a run leaves behind: memory and descriptors.
#pragma once

#include <cstddef>

namespace torture {

// Counts at its start. A run may leave more memory in use, such as a table that has grown; only
// what nobody can reach any more is lost.
class Leftovers {
  public:
    Leftovers();
    void expect_none() const;

  private:
    std::size_t descriptors_;
    std::size_t bytes_;
};

} // namespace torture
