// The bench on which a platform library is judged: it makes the calls, counts them, knows the one
// that runs (for the day it does not come back), and takes down what was found.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "judge/show.h"

namespace judge {

// Why a library is convicted. The names are those of the report.
namespace reason {
inline constexpr const char* refused = "valid call refused";
inline constexpr const char* accepted = "invalid call accepted";
inline constexpr const char* touched = "output touched on failure";
inline constexpr const char* overrun = "wrote beyond the buffer";
inline constexpr const char* unterminated = "text not terminated";
inline constexpr const char* not_written = "output not written";
inline constexpr const char* out_of_range = "value out of range";
inline constexpr const char* not_repeated = "result does not repeat";
inline constexpr const char* disagrees = "calls disagree";
inline constexpr const char* unsorted = "out of order";
inline constexpr const char* not_stored = "value not stored";
inline constexpr const char* changed_on_failure = "changed by a refused call";
inline constexpr const char* changed_another = "changed something else";
inline constexpr const char* not_put_back = "not as it was before";
inline constexpr const char* not_kept = "not kept over a restart";
inline constexpr const char* kept_unsaved = "kept without a save";
inline constexpr const char* crashed = "crashed";
inline constexpr const char* hung = "did not return";
inline constexpr const char* differs_at_once = "differs when called from two threads";
inline constexpr const char* differs_in_handler = "differs in a signal handler";
inline constexpr const char* not_found = "name not found";
} // namespace reason

// What the judge's process shares with the one that watches over it.
struct Shared {
    static constexpr int threads = 3; // main thread, second thread, signal handler
    char call[threads][512];          // the call that each made last
    std::atomic<bool> busy[threads];  // and whether it is in it
    std::atomic<unsigned long> calls; // made so far, in a word that every processor has
    std::atomic<int> step;            // the one that is judged
};

class Bench {
  public:
    // `events` is the pipe to the watching process.
    Bench(int events, Shared* shared) : events_(events), shared_(shared) {}

    // Makes a call, and knows it by its text until the next.
    template <class Result, class... Parameters, class... Arguments>
    Result call(const char* name, Result (*function)(Parameters...), Arguments&&... arguments) {
        return call_as<Result, Parameters...>(
            show_call<Parameters...>(name, static_cast<Parameters>(arguments)...), function,
            static_cast<Parameters>(arguments)...);
    }

    template <class Result, class... Parameters>
    Result
    call_as(const std::string& text, Result (*function)(Parameters...), Parameters... arguments) {
        enter(text);
        Result result = function(arguments...);
        leave();
        note_result(result);
        return result;
    }

    // For calls that are made some other way.
    void enter(const std::string& text);
    void leave();
    template <class Number> void note_result(Number result) {
        if constexpr (std::is_arithmetic<Number>::value)
            last() += " = " + std::to_string(result);
    }

    // A case: something that the contract says of the call made last. Returns `good`.
    bool holds(bool good, const char* why, const std::string& says, const std::string& came);
    // The call must have worked, or must have been refused.
    bool works(int code, const std::string& says);
    bool refuses(int code, const std::string& says);

    void convict(const char* why, const std::string& says, const std::string& came);
    void convict(
        const char* why, const std::string& call, const std::string& says, const std::string& came);
    // What could not be judged here, and why.
    void remark(const std::string& text);

    // Steps: the units of the report.
    void begin(int step, const std::string& family, const std::string& probe);
    void end();
    void count_case() { ++cases_; }

    // The call made last on this thread, with its result.
    static std::string& last();
    // Which of Shared's places this thread uses.
    static void stand_at(int place);

    // True when somebody asked for an end: put back what is changed, and go.
    static bool stopped() { return stop_; }
    static std::atomic<bool> stop_;

  private:
    void send(const std::string& event);
    void count_name(const std::string& text);

    int events_;
    Shared* shared_;
    std::atomic<unsigned long> cases_{0};
    std::mutex names_lock_;
    std::map<std::string, std::uint64_t> names_; // calls by name, since the step began
    std::uint64_t calls_sent_ = 0;               // as far as they were told
    std::uint64_t cases_sent_ = 0;
};

extern Bench* bench; // the process's one

// A line of an event: fields with tabs between them.
std::string field(const std::string& text);

} // namespace judge

// A call by its name: ASK(sal_port_enable_set, port, 1).
#define ASK(function, ...) ::judge::bench->call(#function, function, ##__VA_ARGS__)
// A function with its name, for tables.
#define NAMED(function) #function, function
