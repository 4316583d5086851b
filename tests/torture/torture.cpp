// Every injection on a board of its own, which finds the flash of the one before.
#include "tests/torture/torture.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <memory>
#include <set>

#include "base/errors.h"
#include "json/json_document.h"
#include "tests/support/on_board.h"
#include "tests/support/temp_folder.h"
#include "tests/torture/difference.h"
#include "tests/torture/expectation.h"
#include "tests/torture/leftovers.h"

namespace torture {

namespace {

constexpr unsigned longest_run = 120; // seconds, for a run that takes some milliseconds
constexpr int most_failures = 10;     // of runs, before a scenario is given up

struct DeleteDocument {
    void operator()(cJSON* document) const { deleteJsonObject(document); }
};
using Document = std::unique_ptr<cJSON, DeleteDocument>;

// What a run came to.
struct Outcome {
    Calls calls;
    std::vector<std::string> codes;
    Document result;
};

struct Injection {
    sim::Edge edge;
    std::uint64_t nth;
    bool for_good;
    std::string what;

    // Whether such a call can fail with it.
    bool is_about(const std::string& call) const {
        return (edge == sim::Edge::transfer) == call.starts_with("transfer(");
    }

    std::string name() const {
        static const std::map<sim::Edge, const char*> names = {
            {sim::Edge::platform, "platform"},
            {sim::Edge::ioctl, "request"},
            {sim::Edge::file, "file"},
            {sim::Edge::allocation, "memory"},
            {sim::Edge::transfer, "transfer"}};
        return std::string(names.at(edge)) + " " + std::to_string(nth) +
               (for_good ? " on" : " once");
    }
};

std::string wish() {
    const char* value = std::getenv("VX_TORTURE");
    return value ? value : "";
}

// Whether every call counts: also where one of them was asked for by its number.
bool is_full() {
    return wish() == "full" || wish().find_first_of("0123456789") != std::string::npos;
}

// --- A run that hangs is ended, with its name.

std::string under_way;

[[noreturn]] void give_up(int) {
    const std::string text = "torture: " + under_way + " does not end\n";
    [[maybe_unused]] ssize_t written = write(STDERR_FILENO, text.data(), text.size());
    std::abort();
}

class Deadline {
  public:
    explicit Deadline(const std::string& what) {
        under_way = what;
        signal(SIGALRM, give_up);
        alarm(longest_run);
    }
    ~Deadline() { alarm(0); }
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;
};

std::vector<std::string> recorded_codes() {
    std::vector<std::string> codes;
    for (int code : recorded())
        codes.push_back(std::to_string(code));
    return codes;
}

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += "\n    " + line;
    return text.empty() ? " none" : text;
}

void expect_same(
    const char* what, const std::vector<std::string>& wanted, const std::vector<std::string>& is) {
    auto [one, other] = std::mismatch(wanted.begin(), wanted.end(), is.begin(), is.end());
    if (one == wanted.end() && other == is.end())
        return;
    constexpr std::ptrdiff_t shown = 4;
    std::vector<std::string> rest(one, one + std::min(shown, wanted.end() - one));
    std::vector<std::string> others(other, other + std::min(shown, is.end() - other));
    ADD_FAILURE() << what << ", from number " << one - wanted.begin() << " on: expected"
                  << joined(rest) << "\n  but there is" << joined(others);
}

int failures() {
    return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
}

// --- The runs of a scenario.

class Runner {
  public:
    explicit Runner(const Scenario& scenario) : scenario_(scenario), prescription_(scenario.name) {
        std::ofstream(scenario_file()) << scenario.board;
    }

    void torture(unsigned edges) {
        run(nullptr);
        Outcome outcome = run(nullptr);
        clean_ = std::move(outcome);
        assign_rows(events_, prescription_);
        EXPECT_EQ(clean_.codes, std::vector<std::string>{}) << "without any failure";
        EXPECT_EQ(clean_.calls.log, std::vector<std::string>{}) << "without any failure";
        if (wish() == "calls")
            show_calls();
        if (testing::Test::HasFailure())
            return;
        int failed = 0;
        for (const Injection& injection : injections(edges)) {
            failed += !inject(injection);
            if (failed == most_failures)
                return;
        }
        if (wish().empty() || wish() == "full")
            for (const std::string& row : prescription_.idle_rows())
                ADD_FAILURE() << row << " was not met";
        tell();
    }

  private:
    std::filesystem::path scenario_file() const { return folder_.path() / "scenario.json"; }

    // The flash stays from board to board, for filling one takes long.
    void clear_board() const {
        for (const char* each : {"dev", "etc", "proc", "run", "tmp", "var"})
            std::filesystem::remove_all(folder_.path() / "board" / each);
        if (!scenario_.keeps_flash)
            std::filesystem::remove_all(folder_.path() / "board" / "flash");
    }

    void hide_host(std::string& line) const {
        std::size_t at = scenario_.host.empty() ? line.npos : line.find(scenario_.host);
        if (at != line.npos)
            line.replace(at, scenario_.host.size(), "HOST");
    }

    Outcome run(const sim::Fault* fault) {
        clear_board();
        sim::Board board(folder_.path() / "board", scenario_file());
        reset_agent();
        scenario_.prepare(board);
        clear_errors();
        board.faults.clear();
        board.log.clear();
        board.trace.clear();
        board.trace.keep();
        std::optional<Recorder> recorder;
        if (fault)
            board.faults.plan(*fault);
        else
            recorder.emplace(board);
        scenario_.run();
        std::vector<std::string> lines = board.trace.lines();
        for (std::string& line : lines)
            hide_host(line);
        if (recorder)
            events_ = recorder->take_down(lines);
        board.faults.clear();
        Outcome outcome = {calls_of(lines), recorded_codes(), nullptr};
        outcome.result.reset(scenario_.result(board));
        return outcome;
    }

    void show_calls() const {
        for (const Event& event : events_.events)
            std::printf(
                "%s %s = %s\n", event.row ? event.row->place.c_str() : "?", event.call.c_str(),
                event.result.c_str());
    }

    // --- What is to fail.

    void add(std::vector<Injection>& list, sim::Edge edge, std::uint64_t nth, std::string what) {
        for (bool for_good : {false, true})
            list.push_back({edge, nth, for_good, what});
    }

    // The first, the last and one in the middle of the calls of each row; all of them in full.
    std::vector<Injection>
    calls_that_fail(sim::Edge edge, const std::function<std::uint64_t(const Event&)>& nth) {
        std::map<const Row*, std::vector<const Event*>> by_row;
        for (const Event& event : events_.events)
            if (nth(event))
                by_row[event.row].push_back(&event);
        std::vector<Injection> list;
        for (const auto& [row, events] : by_row) {
            std::size_t last = events.size() - 1;
            for (std::size_t i = 0; i <= last; ++i)
                if (is_full() || i == 0 || i == last || i == last / 2)
                    add(list, edge, nth(*events[i]), events[i]->call + " of " + row->place);
            possible_ += 2 * events.size();
        }
        return list;
    }

    // The first before a call of each row, one of each some forty, and the last ones.
    std::vector<Injection> allocations_that_fail() {
        constexpr std::size_t stride = 41;
        constexpr std::size_t last_ones = 4;
        std::vector<Injection> list;
        std::set<const Row*> seen;
        const std::size_t count = events_.allocations.size();
        for (std::size_t i = 0; i < count; ++i) {
            const Event& event =
                events_.events[std::min(events_.allocations[i], events_.events.size() - 1)];
            bool is_first = seen.insert(event.row).second;
            if (is_full() || is_first || i % stride == 0 || i + last_ones >= count)
                add(list, sim::Edge::allocation, i + 1, "allocation before " + event.call);
        }
        possible_ += 2 * events_.allocations.size();
        return list;
    }

    std::vector<Injection> injections(unsigned edges) {
        std::vector<Injection> list;
        auto append = [&](std::vector<Injection> more) {
            list.insert(list.end(), more.begin(), more.end());
        };
        auto first = [](const std::vector<std::uint64_t>& all) { return all.empty() ? 0 : all[0]; };
        if (edges & platform_calls)
            append(calls_that_fail(
                sim::Edge::platform, [](const Event& event) { return event.platform; }));
        if (edges & driver_requests)
            append(calls_that_fail(
                sim::Edge::ioctl, [&](const Event& event) { return first(event.requests); }));
        if (edges & files) {
            append(calls_that_fail(
                sim::Edge::file, [&](const Event& event) { return first(event.openings); }));
            append(calls_that_fail(sim::Edge::file, [](const Event& event) { return event.file; }));
        }
        if (edges & transfers)
            append(calls_that_fail(
                sim::Edge::transfer, [](const Event& event) { return event.transfer; }));
        if (edges & memory)
            append(allocations_that_fail());
        if (!wish().empty() && wish() != "full")
            std::erase_if(
                list, [](const Injection& each) { return !each.name().starts_with(wish()); });
        return list;
    }

    // --- A failing run and its judgement.

    // Whether all was as it is prescribed.
    bool inject(const Injection& injection) {
        const std::string name = scenario_.name + ": " + injection.name();
        SCOPED_TRACE(
            injection.what + "\n  again: VX_TORTURE=\"" + injection.name() + "\", " +
            scenario_.name);
        Deadline deadline(name);
        const int before = failures();
        ++made_[injection.edge];
        Leftovers leftovers;
        try {
            judge_one(injection);
        } catch (const std::exception& error) {
            ADD_FAILURE() << error.what();
        }
        if (failures() == before)
            leftovers.expect_none();
        return failures() == before;
    }

    void judge_one(const Injection& injection) {
        const sim::Fault fault = {injection.edge, "", injection.nth, injection.for_good,
                                  scenario_.code, 0};
        Outcome outcome = run(&fault);
        EXPECT_LE(error_count, static_cast<std::uint32_t>(ERROR_LIST_SIZE));
        if (injection.edge == sim::Edge::allocation)
            judge_memory(injection, outcome);
        else
            judge(injection, outcome);
    }

    // The code with which a call of the clean run failed in this one.
    std::optional<std::string> code_of(
        const Injection& injection, const Outcome& outcome, std::size_t at, std::size_t call,
        const std::string& text) {
        auto fails = [&](std::uint64_t nth) {
            return nth == injection.nth || (injection.for_good && nth > injection.nth);
        };
        const std::string code = std::to_string(scenario_.code);
        if (at == events_.events.size()) // a call that the clean run does not make
            return injection.for_good && injection.is_about(text) ? std::optional(code)
                                                                  : std::nullopt;
        const Event& event = events_.events[at];
        if (injection.edge == sim::Edge::platform)
            return event.platform && fails(event.platform) ? std::optional(code) : std::nullopt;
        if (injection.edge == sim::Edge::transfer)
            return event.transfer && fails(event.transfer) ? std::optional(code) : std::nullopt;
        if (event.file && injection.edge == sim::Edge::file)
            return fails(event.file) ? std::optional(code) : std::nullopt;
        bool requests = injection.edge == sim::Edge::ioctl;
        const auto& within = requests ? event.requests : event.openings;
        if (std::none_of(within.begin(), within.end(), fails) ||
            call >= outcome.calls.results.size())
            return std::nullopt;
        if (!event.platform)
            return requests ? code : no_driver;
        const std::string& result = outcome.calls.results[call]; // may be a code of its own
        return result == event.result ? std::nullopt : std::optional(result);
    }

    void judge(const Injection& injection, const Outcome& outcome) {
        Fails fails = [&](std::size_t at, std::size_t call, const std::string& text) {
            auto code = code_of(injection, outcome, at, call, text);
            if (code && at < events_.events.size())
                note_injected(events_.events[at]);
            return code;
        };
        Expectation expected = expect_failures(events_, fails, injection.for_good);
        expect_same("calls", expected.calls, outcome.calls.made);
        expect_same("codes", expected.codes, outcome.codes);
        expect_same("log", expected.log, outcome.calls.log);
        expect_result(expected, outcome, injection.for_good);
    }

    void note_injected(const Event& event) {
        Row* row =
            event.row->can_fail() ? event.row : event.section->find("request in " + event.name());
        if (row)
            ++row->injected;
    }

    // What is removed, the last first, so that places in a list stay what they were; then what is
    // changed.
    void expect_result(const Expectation& expected, const Outcome& outcome, bool for_good) {
        Document wanted(cJSON_Duplicate(clean_.result.get(), 1));
        auto make = [&](const std::string& change) {
            bool changed = edit(wanted.get(), change);
            EXPECT_TRUE(changed || for_good || change.ends_with(".."))
                << change << " changes nothing";
        };
        const std::vector<std::string>& edits = expected.edits;
        auto is_change = [](const std::string& each) {
            return each.find("= ") != std::string::npos;
        };
        for (auto each = edits.rbegin(); each != edits.rend(); ++each)
            if (!is_change(*each))
                make(*each);
        for (const std::string& each : edits)
            if (is_change(each))
                make(each);
        for (const std::string& each : expected.last_edits)
            make(each);
        std::string difference = first_difference(wanted.get(), outcome.result.get());
        EXPECT_EQ(difference, "");
    }

    // --- Memory: what is lost names the row.

    static std::string pattern_of(const std::string& path) {
        std::string pattern;
        for (const std::string& part : split(path, '/')) {
            bool number = std::all_of(
                part.begin(), part.end(), [](unsigned char c) { return std::isdigit(c) != 0; });
            pattern += (pattern.empty() ? "" : "/") + (number ? "*" : part);
        }
        return pattern;
    }

    Row& row_of_losses(const std::vector<std::string>& lost) {
        std::string what = lost.empty() ? "nothing" : pattern_of(lost[0]);
        for (const std::string& path : lost)
            if (pattern_of(path) != what)
                what = "several members";
        Row* otherwise = nullptr;
        for (Row& row : prescription_.memory.rows) {
            if (row.call == what)
                return row;
            if (row.call == "any member" && lost.size() == 1)
                otherwise = &row;
        }
        if (!otherwise)
            throw std::runtime_error("no row for the loss of " + what + joined(lost));
        return *otherwise;
    }

    void judge_memory(const Injection& injection, const Outcome& outcome) {
        if (!clean_.result != !outcome.result && !injection.for_good)
            throw std::runtime_error("there is no result at all");
        std::vector<std::string> lost = losses(clean_.result.get(), outcome.result.get());
        if (lost == std::vector<std::string>{""})
            throw std::runtime_error(
                "what is left holds something else: " +
                first_difference(clean_.result.get(), outcome.result.get()));
        if (injection.for_good)
            return judge_memory_for_good(outcome);
        Row& row = row_of_losses(lost);
        ++row.injected;
        SCOPED_TRACE(row.place);
        EXPECT_TRUE(row.left == "some" || lost.size() <= 1) << joined(lost);
        expect_same("codes", split(row.codes, ' '), outcome.codes);
        expect_same("log", split(row.log, ';'), outcome.calls.log);
        expect_same("calls", calls_without(split(row.then, ';')), outcome.calls.made);
    }

    std::vector<std::string> calls_without(const std::vector<std::string>& sections) {
        std::vector<std::string> calls;
        for (const Event& event : events_.events) {
            bool left_out = std::any_of(sections.begin(), sections.end(), [&](const auto& each) {
                return each == "without " + event.section->name ||
                       (each.starts_with("without ") && event.call.starts_with(each.substr(8)));
            });
            if (!event.file && !left_out)
                calls.push_back(event.call);
        }
        return calls;
    }

    // No call that a clean run does not make, no line and no code that no row has.
    void judge_memory_for_good(const Outcome& outcome) {
        auto next = clean_.calls.made.begin();
        for (const std::string& call : outcome.calls.made) {
            next = std::find(next, clean_.calls.made.end(), call);
            ASSERT_NE(next, clean_.calls.made.end()) << call;
            ++next;
        }
        std::vector<std::string> lines, codes;
        for (const Row& row : prescription_.memory.rows) {
            for (const std::string& line : split(row.log, ';'))
                lines.push_back(line);
            for (const std::string& code : split(row.codes, ' '))
                codes.push_back(code);
        }
        for (const std::string& line : outcome.calls.log)
            EXPECT_NE(std::find(lines.begin(), lines.end(), line), lines.end()) << line;
        for (const std::string& code : outcome.codes)
            EXPECT_NE(std::find(codes.begin(), codes.end(), code), codes.end()) << code;
    }

    void tell() const {
        const std::pair<sim::Edge, const char*> kinds[] = {
            {sim::Edge::platform, "platform calls"},
            {sim::Edge::ioctl, "driver requests"},
            {sim::Edge::file, "files"},
            {sim::Edge::allocation, "memory"},
            {sim::Edge::transfer, "transfers"}};
        std::uint64_t all = 0;
        std::string parts;
        for (auto [edge, name] : kinds) {
            auto found = made_.find(edge);
            if (found == made_.end())
                continue;
            all += found->second;
            parts += (parts.empty() ? "" : ", ") + std::to_string(found->second) + " " + name;
        }
        std::printf(
            "\ntorture: %s: %llu injections of %llu: %s\n", scenario_.name.c_str(),
            static_cast<unsigned long long>(all), static_cast<unsigned long long>(possible_),
            parts.c_str());
    }

    const std::string no_driver = "501";
    const Scenario& scenario_;
    Prescription prescription_;
    TempFolder folder_;
    CleanRun events_;
    Outcome clean_;
    std::map<sim::Edge, std::uint64_t> made_;
    std::uint64_t possible_ = 0;
};

} // namespace

void torture(const Scenario& scenario, unsigned edges) { Runner(scenario).torture(edges); }

} // namespace torture
