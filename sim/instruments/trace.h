// What the agent asked of the board: every platform call with its arguments and result, every
// sleep, shell command, driver request of its own and transfer, in order, one line each.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/types.h"

namespace sim {

class Trace {
  public:
    // Nothing is made of a call until somebody asks for it, from then on: keep() for a test that
    // looks at the lines, write_to() for a file that gets each line as it comes.
    void keep();
    void write_to(const std::filesystem::path& file);

    // Arguments as show_call() takes them, and the result.
    template <class Result, class... Arguments>
    void add_call(const char* name, const Result& result, const Arguments&... arguments);

    // What was kept.
    std::vector<std::string> lines() const;
    std::vector<std::string> calls() const; // names only
    std::size_t size() const;
    void clear();

  private:
    void add(const std::string& line);

    mutable std::mutex mutex_;
    std::atomic<bool> wanted_ = false;
    bool kept_ = false;
    std::vector<std::string> lines_;
    std::ofstream file_;
};

// How an argument reads in the trace: numbers in decimal, texts in quotes, sets as {1,3-5}.
std::string show(const char* text);
std::string show(const std::string& text);
std::string show(const PortBitmap& ports);
std::string show(const VlanMask& vlans);
std::string show_mac(const std::uint8_t* mac);

template <class Number>
requires std::is_arithmetic_v<Number> std::string show(Number number) {
    return std::to_string(number);
}

template <class... Arguments>
std::string show_call(const char* name, const Arguments&... arguments) {
    std::string line = std::string(name) + "(";
    [[maybe_unused]] const char* separator = "";
    ((line += separator + show(arguments), separator = ", "), ...);
    return line + ")";
}

template <class Result, class... Arguments>
void Trace::add_call(const char* name, const Result& result, const Arguments&... arguments) {
    if (wanted_)
        add(show_call(name, arguments...) + " = " + show(result));
}

} // namespace sim
