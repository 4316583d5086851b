// Following the clean run, and the table where a call fails.
#include "tests/torture/expectation.h"

#include <cctype>
#include <cstring>
#include <map>
#include <set>
#include <stdexcept>

namespace torture {

namespace {

constexpr const char* no_driver = "501"; // whose device cannot be opened: no request is made
constexpr const char* lasting = "from here on: ";

class Follower {
  public:
    Follower(const CleanRun& clean, const Fails& fails, bool for_good)
        : events_(clean.events), fails_(fails), for_good_(for_good) {}

    Expectation follow() {
        for (std::size_t at = 0; at < events_.size();) {
            const Event& event = events_[at];
            make_late_calls(at);
            if (left_out_.contains(at)) {
                ++at;
                continue;
            }
            std::optional<std::string> code = fails_(at, expected_.calls.size(), event.call);
            if (!code && refused_.contains(at))
                code = refused_[at];
            bool is_without_driver = event.name() == "ioctl" && code == no_driver;
            if (!event.file && !is_without_driver)
                expected_.calls.push_back(changed_.contains(at) ? changed_[at] : event.call);
            const Row* row = code ? row_of_failure(event) : nullptr;
            if (!row && after_.contains(at))
                expected_.calls.push_back(after_[at]);
            at = row ? apply(*row, at, *code) : at + 1;
        }
        make_late_calls(events_.size());
        return std::move(expected_);
    }

  private:
    // A row may take the agent past the place where a late call belongs.
    void make_late_calls(std::size_t at) {
        for (auto late = late_.begin(); late != late_.end() && late->first <= at;) {
            expected_.calls.push_back(late->second);
            late = late_.erase(late);
        }
    }

    // A value that the platform hands over without a result cannot fail, but what it asks the
    // driver for can: without a row of its own that changes nothing.
    const Row* row_of_failure(const Event& event) const {
        if (event.row->can_fail())
            return event.row;
        return event.section->find("request in " + event.name());
    }

    std::size_t apply(const Row& row, std::size_t at, const std::string& code) {
        note(row, at, code);
        std::size_t next = at + 1;
        ended_ = false;
        for (const std::string& step : split(row.then, ';'))
            if (holds(step, at) && !ended_)
                next = take(bare(step), row, at, code);
        failed_.insert(events_[at].section);
        return next;
    }

    // "from here on: ..." holds when the row's call is the first of its section that fails, and all
    // after it do.
    bool holds(const std::string& text, std::size_t at) const {
        return !text.starts_with(lasting) || (for_good_ && !failed_.contains(events_[at].section));
    }
    static std::string bare(const std::string& text) {
        return text.starts_with(lasting) ? text.substr(std::strlen(lasting)) : text;
    }

    void note(const Row& row, std::size_t at, const std::string& code) {
        for (const std::string& each : split(row.codes, ' '))
            expected_.codes.push_back(each == "its" ? code : each);
        for (const std::string& each : split(row.log, ';'))
            expected_.log.push_back(each);
        for (const std::string& each : split(row.left, ';'))
            if (holds(each, at))
                add_edit(filled_in(bare(each), at), each.starts_with(lasting));
    }

    // A lasting one is the last word.
    void add_edit(const std::string& edit, bool is_lasting) {
        (is_lasting ? expected_.last_edits : expected_.edits).push_back(edit);
    }

    std::size_t
    take(const std::string& step, const Row& row, std::size_t at, const std::string& code) {
        if (step == "on")
            return at + 1;
        if (step == "end")
            return events_.size();
        if (step == "section")
            return end_of_section(at);
        if (step.starts_with("to "))
            return find(step.substr(3), row, at);
        if (step.starts_with("past "))
            return find(step.substr(5), row, at) + 1;
        if (step.starts_with("do "))
            return make_call(step.substr(3), at, code);
        if (step.starts_with("after "))
            return call_after(step.substr(6), row, at);
        if (step.starts_with("refused "))
            return refuse(step.substr(8), row, at);
        if (step.starts_with("late "))
            call_late(end_of_section(at), step.substr(5));
        if (step.starts_with("without "))
            leave_out(step.substr(8), row, at);
        if (step.starts_with("late ") || step.starts_with("without "))
            return at + 1;
        if (step.starts_with("as "))
            return change_call(step.substr(3), row, at);
        throw std::runtime_error(row.place + ": no such way on: " + step);
    }

    std::size_t end_of_section(std::size_t at) const {
        std::size_t next = at + 1;
        while (next < events_.size() && events_[next].section == events_[at].section)
            ++next;
        return next;
    }

    // The next such call of the section, or of any that follows when the name is behind a "/"; with
    // "#3" the third.
    std::size_t find(const std::string& call, const Row& row, std::size_t at) const {
        bool anywhere = call.starts_with("/");
        std::size_t hash = std::min(call.find('#'), call.size());
        int nth = hash == call.size() ? 1 : std::stoi(call.substr(hash + 1));
        Row wanted = {"", call.substr(anywhere, hash - anywhere), "", "", "", ""};
        std::size_t end = anywhere ? events_.size() : end_of_section(at);
        for (std::size_t next = at + 1; next < end; ++next)
            if (wanted.is_about(events_[next].call) && --nth == 0)
                return next;
        if (anywhere)
            throw std::runtime_error(row.place + ": no later " + call);
        return end;
    }

    // A call that a clean run does not make, such as one that puts something back.
    std::size_t make_call(const std::string& call, std::size_t at, const std::string& code) {
        if (given_up_.contains(call))
            return at + 1;
        expected_.calls.push_back(filled_in(call, at));
        Row* row = events_[at].section->find("do " + call);
        if (!row || !fails_(events_.size(), expected_.calls.size() - 1, call))
            return at + 1;
        ++row->injected;
        std::size_t next = apply(*row, at, code);
        ended_ = true;
        return next;
    }

    // "CALL: X": X follows the next such call.
    std::size_t call_after(const std::string& step, const Row& row, std::size_t at) {
        std::size_t colon = step.find(": ");
        after_[find(step.substr(0, colon), row, at)] = step.substr(colon + 2);
        return at + 1;
    }

    // "CALL CODE": the platform will not do that now.
    std::size_t refuse(const std::string& step, const Row& row, std::size_t at) {
        std::size_t blank = step.rfind(' ');
        refused_[find(step.substr(0, blank), row, at)] = step.substr(blank + 1);
        return at + 1;
    }

    void call_late(std::size_t before, const std::string& call) {
        if (!given_up_.contains(call))
            late_.insert({before, call});
    }

    void leave_out(const std::string& call, const Row& row, std::size_t at) {
        std::size_t event = find(call, row, at);
        if (event != end_of_section(at))
            left_out_.insert(event);
        given_up_.insert(call);
        std::erase_if(late_, [&](const auto& late) { return late.second == call; });
    }

    // The next call of that name has other arguments.
    std::size_t change_call(const std::string& call, const Row& row, std::size_t at) {
        changed_[find(call.substr(0, call.find('(')), row, at)] = filled_in(call, at);
        return at + 1;
    }

    // "[arg]": the call's first argument. "[CALL]", "[CALL+1]", "[CALL-1]": how many such calls the
    // section has seen before its last one, and one more, and one less. "[result]": of the clean
    // run.
    std::string filled_in(std::string text, std::size_t at) const {
        for (std::size_t open = 0; (open = text.find('[', open)) != std::string::npos;) {
            std::size_t close = text.find(']', open);
            std::string inner = text.substr(open + 1, close - open - 1);
            if (inner.empty() || !std::isalpha(static_cast<unsigned char>(inner[0]))) {
                ++open; // of a JSON value
                continue;
            }
            text.replace(open, close - open + 1, std::to_string(number(inner, at)));
        }
        return text;
    }

    int number(std::string what, std::size_t at) const {
        int number = -1;
        if (what.ends_with("+1") || what.ends_with("-1")) {
            number += what.ends_with("+1") ? 1 : -1;
            what.resize(what.size() - 2);
        }
        if (what == "arg")
            return number + 1 + events_[at].first_argument();
        if (what == "result")
            return std::stoi(events_[at].result);
        Row wanted = {"", what, "", "", "", ""};
        for (std::size_t i = 0; i <= at; ++i)
            number += events_[i].section == events_[at].section && wanted.is_about(events_[i].call);
        return number;
    }

    const std::vector<Event>& events_;
    const Fails& fails_;
    const bool for_good_;
    bool ended_ = false;              // by a call that was to put something back
    std::set<const Section*> failed_; // sections of which a call has failed
    Expectation expected_;
    std::map<std::size_t, std::string> after_;           // calls that follow an event
    std::map<std::size_t, std::string> refused_;         // codes of calls that the platform refuses
    std::map<std::size_t, std::string> changed_;         // calls of events
    std::set<std::size_t> left_out_;                     // events that do not come about
    std::set<std::pair<std::size_t, std::string>> late_; // calls that come before an event
    std::set<std::string> given_up_;                     // calls that nothing brings about
};

} // namespace

Expectation expect_failures(const CleanRun& clean, const Fails& fails, bool for_good) {
    return Follower(clean, fails, for_good).follow();
}

} // namespace torture
