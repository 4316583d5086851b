// The list of steps, and which options ask for which.
#include "judge/steps.h"

#include "judge/changes.h"
#include "judge/driver_half.h"
#include "judge/family.h"
#include "judge/irrevocable.h"
#include "judge/journal.h"
#include "judge/restart.h"
#include "judge/together.h"

namespace judge {

namespace {

std::vector<Reading>& reading_before() {
    static std::vector<Reading> reading;
    return reading;
}

// Puts back what a run left that was interrupted, or whose library crashed.
void restore() {
    for (const auto& [line, words] : journal->pending()) {
        int code = undo(words);
        bench->remark(
            "put back: " + words[0] + " = " + std::to_string(code) +
            (code < 0 ? " (no call of this judge)" : ""));
        journal->strike(line);
    }
}

void add_reads(std::vector<Step>& all, const Family& family) {
    if (family.reads)
        all.push_back({family.name, "reads", [&family] { judge_reads(family.reads()); }});
    if (family.agreement)
        all.push_back({family.name, "agreement", family.agreement});
}

void add_changes(std::vector<Step>& all, const Family& family) {
    if (family.settings) {
        all.push_back({family.name, "settings", [&family] { judge_settings(family.settings()); }});
        all.push_back({family.name, "settings that no call reads", [&family] {
                           judge_unread_settings(family.settings(), false);
                       }});
    }
    if (family.changes)
        all.push_back({family.name, "changes", family.changes});
}

void judge_as_before() {
    std::string different = first_difference(reading_before(), read_all(all_reads()));
    bench->count_case();
    if (!different.empty())
        bench->convict(
            reason::not_put_back, different, "afterwards everything is as it was",
            "another outcome than before the changes");
}

std::vector<Step> all_steps(const Options& options) {
    std::vector<Step> all;
    if (options.restore)
        return {{"restore", "what an earlier run has left", restore}};
    if (options.restart_test)
        return {{"restart", "what is kept", judge_restart}};
    for (const Family* family : families())
        add_reads(all, *family);
    all.push_back({"together", "two threads", judge_two_threads});
    all.push_back({"together", "signal handler", judge_signal_handler});
    all.push_back({"driver", "names", judge_names});
    all.push_back({"driver", "records", judge_records});
    all.push_back({"driver", "unknown commands", judge_unknown_commands});
    if (options.change)
        for (const Family* family : families())
            add_changes(all, *family);
    if (options.change)
        all.push_back({"together", "changes", judge_changes_at_once});
    add_irrevocable(all, options);
    return all;
}

} // namespace

std::vector<Step> steps(const Options& options) {
    std::vector<Step> wanted;
    bool change = options.change && !options.restore && !options.restart_test;
    if (change) {
        wanted.push_back({"restore", "what an earlier run has left", restore});
        wanted.push_back({"restore", "as it is", [] { reading_before() = read_all(all_reads()); }});
    }
    for (Step& step : all_steps(options))
        if (options.wants(step.family) || options.restore || options.restart_test)
            wanted.push_back(std::move(step));
    if (change)
        wanted.push_back({"restore", "as it was", judge_as_before});
    return wanted;
}

} // namespace judge
