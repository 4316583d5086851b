// Lines of the trace, joined with what the fault plan heard while they came about.
#include "tests/torture/clean_run.h"

#include <gtest/gtest.h>

#include <charconv>
#include <map>

namespace torture {

namespace {

constexpr const char* chip_device = "/dev/ski";

bool is_port_count(const std::string& line) { return line.starts_with("sys_logic_port_num_ret("); }
bool is_log(const std::string& line) { return line.starts_with("sys_log("); }

std::string text_in_quotes(const std::string& line) {
    std::size_t first = line.find('"') + 1;
    return line.substr(first, line.rfind('"') - first);
}

} // namespace

int Event::first_argument() const {
    int number = 0;
    std::size_t open = call.find('(');
    if (open != std::string::npos)
        std::from_chars(call.data() + open + 1, call.data() + call.size(), number);
    return number;
}

Recorder::Recorder(sim::Board& board) : board_(board) {
    board.faults.heard = [this](sim::Edge edge, std::string_view name) {
        hits_.push_back({edge, std::string(name), board_.trace.size()});
    };
}

CleanRun Recorder::take_down(const std::vector<std::string>& lines) {
    board_.faults.heard = nullptr;
    CleanRun run;
    std::map<sim::Edge, std::uint64_t> count;
    auto hit = hits_.begin();
    for (std::size_t line = 0; line <= lines.size(); ++line) {
        Event event;
        for (; hit != hits_.end() && hit->line == line; ++hit) {
            std::uint64_t nth = ++count[hit->edge];
            if (hit->edge == sim::Edge::platform)
                event.platform = nth;
            else if (hit->edge == sim::Edge::transfer)
                event.transfer = nth;
            else if (hit->edge == sim::Edge::ioctl)
                event.requests.push_back(nth);
            else if (hit->edge == sim::Edge::file && hit->name == chip_device)
                event.openings.push_back(nth);
            else if (hit->edge == sim::Edge::file)
                run.events.push_back({"open " + hit->name, "", 0, 0, nth, {}, {}});
            else if (hit->edge == sim::Edge::allocation)
                run.allocations.push_back(run.events.size());
        }
        if (line == lines.size() || is_port_count(lines[line]) || is_log(lines[line]))
            continue;
        std::size_t equals = lines[line].rfind(" = ");
        event.call = lines[line].substr(0, equals);
        event.result = lines[line].substr(equals + 3);
        run.events.push_back(event);
    }
    return run;
}

Calls calls_of(const std::vector<std::string>& trace) {
    Calls calls;
    for (const std::string& line : trace) {
        if (is_port_count(line))
            continue;
        if (is_log(line)) {
            calls.log.push_back(text_in_quotes(line));
            continue;
        }
        std::size_t equals = line.rfind(" = ");
        calls.made.push_back(line.substr(0, equals));
        calls.results.push_back(line.substr(equals + 3));
    }
    return calls;
}

namespace {

// A section begins with its first row; what else a call belongs to is the section that is under
// way, or else the next one that knows it.
class Assignment {
  public:
    explicit Assignment(Prescription& prescription) : sections_(prescription.sections) {}

    bool assign(Event& event) {
        std::size_t next = begun_ ? current_ + 1 : 0;
        if (next < sections_.size() && opens(sections_[next], event)) {
            take(event, next, sections_[next].rows[0]);
            return true;
        }
        for (std::size_t at = current_; at < sections_.size(); ++at)
            if (Row* row = row_of(event, sections_[at], at != current_ || !begun_)) {
                take(event, at, *row);
                return true;
            }
        return false;
    }

    const std::string& section() const { return sections_[current_].name; }

  private:
    // A first row of "CALL#2" begins with the second such call of the section before.
    bool opens(const Section& section, const Event& event) {
        if (section.rows.empty())
            return false;
        const Row& row = section.rows[0];
        return row.is_about(event.call) ||
               row.call == event.name() + "#" + std::to_string(seen_[event.name()] + 1);
    }

    // A row of the section's third such call, "CALL#3", goes before the others.
    Row* row_of(const Event& event, Section& section, bool is_new) {
        int nth = is_new ? 1 : seen_[event.name()] + 1;
        const std::string numbered = event.name() + "#" + std::to_string(nth);
        for (Row& row : section.rows)
            if (row.call == numbered)
                return &row;
        return section.find(event.call);
    }

    void take(Event& event, std::size_t at, Row& row) {
        if (at != current_)
            seen_.clear();
        current_ = at;
        begun_ = true;
        ++seen_[event.name()];
        ++row.met;
        event.section = &sections_[at];
        event.row = &row;
    }

    std::vector<Section>& sections_;
    std::size_t current_ = 0;
    bool begun_ = false;
    std::map<std::string, int> seen_; // calls of the section, by name
};

} // namespace

void assign_rows(CleanRun& run, Prescription& prescription) {
    Assignment assignment(prescription);
    for (Event& event : run.events) {
        if (!assignment.assign(event))
            ADD_FAILURE() << event.call << " has no row in or after [" << assignment.section()
                          << "]";
        else if (event.platform && !event.row->can_fail())
            ADD_FAILURE() << event.row->place << ": " << event.call << " can fail";
    }
}

} // namespace torture
