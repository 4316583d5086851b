// Writing the findings: the table, JSON, JUnit XML and the ticket.
#include "judge/report.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <fstream>

#include "version/version.h"

namespace judge {

namespace {

// Beyond these, findings that are alike only count.
constexpr std::size_t shown_of_a_kind = 5;

std::string name_of(const std::string& call) { return call.substr(0, call.find('(')); }

bool alike(const Finding& a, const Finding& b) {
    return a.reason == b.reason && a.says == b.says && name_of(a.call) == name_of(b.call);
}

std::string escaped(const std::string& text, const std::map<char, std::string>& codes) {
    std::string safe;
    for (char c : text) {
        auto code = codes.find(c);
        safe += code != codes.end()                   ? code->second
                : static_cast<unsigned char>(c) < ' ' ? std::string("?")
                                                      : std::string(1, c);
    }
    return safe;
}

std::string json_text(const std::string& text) {
    static const std::map<char, std::string> codes = {{'"', "\\\""}, {'\\', "\\\\"}, {'\n', "\\n"}};
    return "\"" + escaped(text, codes) + "\"";
}

std::string xml_text(const std::string& text) {
    static const std::map<char, std::string> codes = {
        {'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}, {'\n', "&#10;"}};
    return escaped(text, codes);
}

std::string member(const char* name, const std::string& value) {
    return json_text(name) + ": " + value;
}

std::string number(std::uint64_t value) { return std::to_string(value); }

// The sums of a family's steps, in the order in which families came.
struct Line {
    std::string family;
    std::uint64_t calls = 0, cases = 0, findings = 0, shoulds = 0, skipped = 0;
};

std::uint64_t count(const std::vector<Finding>& findings, bool should) {
    std::uint64_t sum = 0;
    for (const Finding& finding : findings)
        sum += finding.should == should ? finding.times : 0;
    return sum;
}

std::string numbered(std::uint64_t count, const std::string& one) {
    return number(count) + " " + one + (count == 1 ? "" : "s");
}

std::vector<Line> lines_of(const Report& report) {
    std::vector<Line> lines;
    for (const StepResult& step : report.steps) {
        auto line = std::find_if(
            lines.begin(), lines.end(), [&](const Line& one) { return one.family == step.family; });
        if (line == lines.end())
            line = lines.insert(lines.end(), {step.family});
        line->calls += step.calls;
        line->cases += step.cases;
        line->findings += count(step.findings, false);
        line->shoulds += count(step.findings, true);
        line->skipped += !step.skipped.empty();
    }
    return lines;
}

std::string verdict(const Line& line) {
    std::string text = line.findings ? numbered(line.findings, "finding") : "good";
    if (line.shoulds)
        text += ", " + numbered(line.shoulds, "should");
    if (line.skipped)
        text = (line.cases ? text + ", " : "") + number(line.skipped) + " skipped";
    return text;
}

std::string row(const Line& line) {
    char text[256];
    std::snprintf(
        text, sizeof text, "%-12s %9llu %9llu   %s\n", line.family.c_str(),
        static_cast<unsigned long long>(line.calls), static_cast<unsigned long long>(line.cases),
        verdict(line).c_str());
    return text;
}

std::string label(const char* name) {
    return "\n  " + std::string(name) + std::string(7 - std::string(name).size(), ' ');
}

std::string findings_text(const Report& report) {
    std::string text;
    for (const StepResult& step : report.steps)
        for (const Finding& finding : step.findings)
            text += "\n" + as_text(report, step, finding);
    return text;
}

// Why checks were not made, and how many for each reason.
std::string skipped_text(const Report& report) {
    std::map<std::string, std::uint64_t> reasons;
    for (const StepResult& step : report.steps)
        if (!step.skipped.empty())
            ++reasons[step.skipped];
    std::string text;
    for (const auto& [reason, count] : reasons)
        text += "\nskipped: " + numbered(count, "check") + ": " + reason;
    return text;
}

std::string verdict(const Report& report) {
    if (report.interrupted)
        return "interrupted: no verdict";
    std::string text = "acquitted";
    if (std::uint64_t findings = report.findings())
        text = "convicted: " + numbered(findings, "finding");
    if (std::uint64_t shoulds = report.shoulds())
        text += ", and " + numbered(shoulds, "thing") + " that should be otherwise";
    if (std::uint64_t skipped = report.skipped())
        text += "; " + numbered(skipped, "check") + " skipped";
    return text;
}

std::uint64_t sum_of(const Report& report, bool should) {
    std::uint64_t sum = 0;
    for (const StepResult& step : report.steps)
        sum += count(step.findings, should);
    return sum;
}

std::string finding_json(const StepResult& step, const Finding& finding) {
    return "{" + member("family", json_text(step.family)) + ", " +
           member("probe", json_text(step.probe)) + ", " +
           member("level", json_text(finding.should ? "should" : "must")) + ", " +
           member("reason", json_text(finding.reason)) + ", " +
           member("call", json_text(finding.call)) + ", " +
           member("says", json_text(finding.says)) + ", " +
           member("came", json_text(finding.came)) + ", " + member("times", number(finding.times)) +
           "}";
}

std::string skipped_json(const StepResult& step) {
    return "{" + member("family", json_text(step.family)) + ", " +
           member("probe", json_text(step.probe)) + ", " +
           member("skipped", json_text(step.skipped)) + "}";
}

// What follows the name of a test case, to its end.
std::string junit_outcome(const Report& report, const StepResult& step) {
    std::string text;
    for (const Finding& finding : step.findings)
        text += as_text(report, step, finding);
    if (!step.skipped.empty())
        return ">\n    <skipped message=\"" + xml_text(step.skipped) + "\"/>\n  </testcase>\n";
    if (step.findings.empty())
        return "/>\n";
    return ">\n    <failure message=\"" + xml_text(step.findings.front().reason) + "\">" +
           xml_text(text) + "</failure>\n  </testcase>\n";
}

std::string joined(const std::vector<std::string>& parts) {
    std::string text;
    for (const std::string& part : parts)
        text += (text.empty() ? "" : ",") + ("\n    " + part);
    return text + "\n  ";
}

} // namespace

void Report::add(StepResult& step, Finding finding) {
    std::size_t of_a_kind = 0;
    Finding* last = nullptr;
    for (Finding& one : step.findings)
        if (alike(one, finding)) {
            ++of_a_kind;
            last = &one;
        }
    if (of_a_kind < shown_of_a_kind)
        step.findings.push_back(std::move(finding));
    else
        ++last->times;
}

std::uint64_t Report::findings() const { return sum_of(*this, false); }
std::uint64_t Report::shoulds() const { return sum_of(*this, true); }

std::uint64_t Report::skipped() const {
    return std::count_if(
        steps.begin(), steps.end(), [](const StepResult& step) { return !step.skipped.empty(); });
}

std::string as_text(const Report& report, const StepResult& step, const Finding& finding) {
    return step.family + ", " + step.probe + ": " + finding.reason +
           (finding.times > 1 ? " (" + number(finding.times) + " times)" : "") +
           label(report.wording.call) + finding.call +
           label(finding.should ? "should" : report.wording.says) + finding.says + label("came") +
           finding.came + "\n";
}

std::string as_table(const Report& report) {
    char head[128];
    std::snprintf(
        head, sizeof head, "%-12s %9s %9s   verdict\n", "family", report.wording.calls,
        report.wording.cases);
    std::string text = head;
    Line all{"all"};
    for (const Line& line : lines_of(report)) {
        text += row(line);
        all.calls += line.calls;
        all.cases += line.cases;
    }
    all.findings = report.findings();
    all.shoulds = report.shoulds();
    all.skipped = report.skipped();
    text += row(all);
    std::string remarks = skipped_text(report);
    for (const std::string& remark : report.remarks)
        remarks += "\nremark: " + remark;
    return text + remarks + (remarks.empty() ? "" : "\n") + findings_text(report) + "\n" +
           verdict(report) + "\n";
}

std::string as_json(const Report& report) {
    std::vector<std::string> families;
    std::vector<std::string> findings;
    std::vector<std::string> remarks;
    std::vector<std::string> calls;
    std::vector<std::string> checks;
    for (const Line& line : lines_of(report))
        families.push_back(
            "{" + member("family", json_text(line.family)) + ", " +
            member("calls", number(line.calls)) + ", " + member("cases", number(line.cases)) +
            ", " + member("findings", number(line.findings)) + ", " +
            member("shoulds", number(line.shoulds)) + ", " +
            member("skipped", number(line.skipped)) + "}");
    for (const StepResult& step : report.steps)
        for (const Finding& finding : step.findings)
            findings.push_back(finding_json(step, finding));
    for (const StepResult& step : report.steps) {
        for (const Finding& seen : step.seen)
            checks.push_back(finding_json(step, seen));
        if (!step.skipped.empty())
            checks.push_back(skipped_json(step));
    }
    for (const std::string& remark : report.remarks)
        remarks.push_back(json_text(remark));
    for (const auto& [name, times] : report.calls)
        calls.push_back(member(name.c_str(), number(times)));
    return "{\n  " + member("version", json_text(VX_VERSION)) + ",\n  " +
           member("verdict", json_text(verdict(report))) + ",\n  " +
           member("families", "[" + joined(families) + "]") + ",\n  " +
           member("findings", "[" + joined(findings) + "]") + ",\n  " +
           member("remarks", "[" + joined(remarks) + "]") + ",\n  " +
           member("calls", "{" + joined(calls) + "}") +
           (checks.empty() ? "" : ",\n  " + member("checks", "[" + joined(checks) + "]")) + "\n}\n";
}

std::string as_junit(const Report& report) {
    std::uint64_t failures = 0;
    std::string cases;
    for (const StepResult& step : report.steps) {
        failures += !step.findings.empty();
        cases += "  <testcase classname=\"" + std::string(report.wording.suite) + "." +
                 xml_text(step.family) + "\" name=\"" + xml_text(step.probe) + "\"" +
                 junit_outcome(report, step);
    }
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite name=\"" +
           std::string(report.wording.judge) + "\" tests=\"" + number(report.steps.size()) +
           "\" failures=\"" + number(failures) + "\" skipped=\"" + number(report.skipped()) +
           "\">\n  <properties>\n    <property name=\"version\" value=\"" VX_VERSION
           "\"/>\n  </properties>\n" +
           cases + "</testsuite>\n";
}

std::string as_summary(const Report& report, const std::string& command) {
    char date[64];
    std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::strftime(date, sizeof date, "%Y-%m-%d %H:%M UTC", std::gmtime(&now));
    return "Judgement of " + std::string(report.wording.subject) + " by " + report.wording.judge +
           " " VX_VERSION "\n" + std::string(date) + "\n" + command + "\n\n" + as_table(report);
}

bool write_file(const char* program, const std::string& file, const std::string& text) {
    if (file.empty())
        return true;
    std::ofstream out(file);
    out << text;
    out.flush();
    if (!out)
        std::fprintf(stderr, "%s: %s cannot be written\n", program, file.c_str());
    return static_cast<bool>(out);
}

} // namespace judge
