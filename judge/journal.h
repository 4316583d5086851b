// What the judge has changed and not put back yet, in a file that outlives it: the calls that put
// it back, the last first.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace judge {

using Words = std::vector<std::string>; // a call's name and its arguments

class Journal {
  public:
    // Takes over what an earlier run left in the file. It is readable by its owner alone: the
    // cloud account's secret may be in it.
    explicit Journal(std::string file);

    std::size_t note(const Words& call);
    void strike(std::size_t line);
    bool empty() const { return lines_.empty(); }
    // What is left to put back, the last change first.
    std::vector<std::pair<std::size_t, Words>> pending() const;

  private:
    void write() const;

    std::string file_;
    std::map<std::size_t, Words> lines_;
    std::size_t next_ = 1;
};

extern Journal* journal; // the process's one

} // namespace judge
