// What became of a run whose calls were failed one by one, as lines that a test lists:
//
//     sal_x_set #2: 77 [77], then sal_y_set, sal_z_set x3
//
// the call that failed, the run's result, what the error list held, and the calls that were made
// afterwards.
#pragma once

#include <string>

#include "tests/support/on_board.h"

inline std::string joined_calls(const Lines& names) {
    std::string text;
    for (std::size_t i = 0; i < names.size();) {
        std::size_t end = i;
        while (end < names.size() && names[end] == names[i])
            ++end;
        text += (text.empty() ? "" : ", ") + names[i];
        if (end - i > 1)
            text += " x" + std::to_string(end - i);
        i = end;
    }
    return text.empty() ? "nothing" : text;
}

inline std::string outcome(const FailedRun& run) {
    std::string codes;
    for (int code : run.errors)
        codes += (codes.empty() ? "" : " ") + std::to_string(code);
    return run.call + " #" + std::to_string(run.nth) + ": " + std::to_string(run.result) + " [" +
           codes + "], then " + joined_calls(run.calls_after);
}

inline Lines outcomes(const std::vector<FailedRun>& runs) {
    Lines lines;
    for (const FailedRun& run : runs)
        lines.push_back(outcome(run));
    return lines;
}

// The same with the report that was left, for getters.
inline Lines outcomes_and_reports(const std::vector<FailedRun>& runs) {
    Lines lines;
    for (const FailedRun& run : runs)
        lines.push_back(outcome(run) + ", leaving " + run.report);
    return lines;
}
