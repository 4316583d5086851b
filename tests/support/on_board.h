// A test on a simulated switch of its own: 28 logical ports, time that passes only in sleeps, and
// an agent that has just been loaded.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "json/json_document.h"
#include "sim/library/board.h"
#include "tests/support/fresh_agent.h"
#include "tests/support/temp_folder.h"

using Lines = std::vector<std::string>;
using Codes = std::vector<int>;

class OnBoard : public testing::Test {
  protected:
    OnBoard() {
        board.trace.keep();
        reset_agent();
    }

    // What the agent did: the trace since the last call of forget(), without the reads that every
    // handler makes of the number of ports.
    Lines trace() const;
    Lines calls() const; // the same, names only
    bool called(const std::string& name) const;
    void forget(); // trace, error list, system log, console, fault plan

    // Fails the nth call of that name, or every one.
    void fail(const std::string& call, int code, int nth = 1);
    void fail_always(const std::string& call, int code);

    Lines log() const { return board.log; }
    Lines console() const; // texts of the debug console, a line each, empty lines left out
    std::string raw_console() const { return board.console(); }

    std::string file(const std::string& path) const; // a file of the board, "" when it is missing
    void put_file(const std::string& path, const std::string& content);

    TempFolder folder;
    sim::Board board{folder.path()};
    sim::Switch& device = board.device;
};

// The codes in the agent's error list.
Codes recorded();

// A JSON text that lives as long as a test needs it. Refuses text that is not JSON.
class Json {
  public:
    explicit Json(const std::string& text);
    explicit Json(cJSON* node) : node_(node) {}
    ~Json() { deleteJsonObject(node_); }
    Json(const Json&) = delete;
    Json& operator=(const Json&) = delete;

    operator cJSON*() const { return node_; }
    cJSON* operator[](const char* name) const { return getJsonObjectForKey(node_, name); }

  private:
    cJSON* node_;
};

// A document as the agent prints it, on one line without blanks, members in their order.
std::string compact(const cJSON* node);

// What a getter adds to an empty object.
struct Report {
    int result;
    std::string text; // compact
};
Report report_of(const std::function<int(cJSON*)>& getter);

// What happened when one of the platform calls of a run failed.
struct FailedRun {
    std::string call;   // which one failed
    int nth;            // which of its calls, from 1
    int result;         // of the run
    Codes errors;       // recorded
    Lines calls_after;  // names of the platform calls made after the failure
    std::string report; // compact document, when the run built one
};

// Runs `run` once on a fresh board as `prepare` leaves it, and then again for each platform call
// that it made and that can fail, on a fresh board with that call failing with `code`. `run` is
// given an empty object for a getter to fill. `scenario` is the text of a scenario file. Of a call
// that is made more than `most` times, only the first ones fail.
std::vector<FailedRun> fail_each_call(
    const std::function<void(sim::Board&)>& prepare, const std::function<int(cJSON*)>& run,
    int code = 77, const std::string& scenario = "", int most = 1000);
