// Writing the findings: the table, JSON, JUnit XML and the ticket.
#include "judge/report.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>

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
    std::uint64_t calls = 0, cases = 0, findings = 0;
};

std::uint64_t count(const std::vector<Finding>& findings) {
    std::uint64_t sum = 0;
    for (const Finding& finding : findings)
        sum += finding.times;
    return sum;
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
        line->findings += count(step.findings);
    }
    return lines;
}

std::string
row(const std::string& family, std::uint64_t calls, std::uint64_t cases, std::uint64_t findings) {
    char text[128];
    std::snprintf(
        text, sizeof text, "%-12s %9llu %9llu   %s\n", family.c_str(),
        static_cast<unsigned long long>(calls), static_cast<unsigned long long>(cases),
        findings ? (number(findings) + (findings == 1 ? " finding" : " findings")).c_str()
                 : "good");
    return text;
}

std::string findings_text(const Report& report) {
    std::string text;
    for (const StepResult& step : report.steps)
        for (const Finding& finding : step.findings)
            text += "\n" + step.family + ", " + step.probe + ": " + finding.reason +
                    (finding.times > 1 ? " (" + number(finding.times) + " times)" : "") +
                    "\n  call   " + finding.call + "\n  header " + finding.says + "\n  came   " +
                    finding.came + "\n";
    return text;
}

std::string verdict(const Report& report) {
    if (report.interrupted)
        return "interrupted: no verdict";
    if (std::uint64_t findings = report.findings())
        return "convicted: " + number(findings) + (findings == 1 ? " finding" : " findings");
    return "acquitted";
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

std::uint64_t Report::findings() const {
    std::uint64_t sum = 0;
    for (const StepResult& step : steps)
        sum += count(step.findings);
    return sum;
}

std::string as_table(const Report& report) {
    std::string text = "family           calls     cases   verdict\n";
    std::uint64_t calls = 0;
    std::uint64_t cases = 0;
    for (const Line& line : lines_of(report)) {
        text += row(line.family, line.calls, line.cases, line.findings);
        calls += line.calls;
        cases += line.cases;
    }
    text += row("all", calls, cases, report.findings());
    for (const std::string& remark : report.remarks)
        text += "\nremark: " + remark;
    return text + (report.remarks.empty() ? "" : "\n") + findings_text(report) + "\n" +
           verdict(report) + "\n";
}

std::string as_json(const Report& report) {
    std::vector<std::string> families;
    std::vector<std::string> findings;
    std::vector<std::string> remarks;
    std::vector<std::string> calls;
    for (const Line& line : lines_of(report))
        families.push_back(
            "{" + member("family", json_text(line.family)) + ", " +
            member("calls", number(line.calls)) + ", " + member("cases", number(line.cases)) +
            ", " + member("findings", number(line.findings)) + "}");
    for (const StepResult& step : report.steps)
        for (const Finding& finding : step.findings)
            findings.push_back(
                "{" + member("family", json_text(step.family)) + ", " +
                member("probe", json_text(step.probe)) + ", " +
                member("reason", json_text(finding.reason)) + ", " +
                member("call", json_text(finding.call)) + ", " +
                member("says", json_text(finding.says)) + ", " +
                member("came", json_text(finding.came)) + ", " +
                member("times", number(finding.times)) + "}");
    for (const std::string& remark : report.remarks)
        remarks.push_back(json_text(remark));
    for (const auto& [name, times] : report.calls)
        calls.push_back(member(name.c_str(), number(times)));
    return "{\n  " + member("version", json_text(VX_VERSION)) + ",\n  " +
           member("verdict", json_text(verdict(report))) + ",\n  " +
           member("families", "[" + joined(families) + "]") + ",\n  " +
           member("findings", "[" + joined(findings) + "]") + ",\n  " +
           member("remarks", "[" + joined(remarks) + "]") + ",\n  " +
           member("calls", "{" + joined(calls) + "}") + "\n}\n";
}

std::string as_junit(const Report& report) {
    std::uint64_t failures = 0;
    std::string cases;
    for (const StepResult& step : report.steps) {
        failures += !step.findings.empty();
        cases += "  <testcase classname=\"platform." + xml_text(step.family) + "\" name=\"" +
                 xml_text(step.probe) + "\"";
        if (step.findings.empty()) {
            cases += "/>\n";
            continue;
        }
        std::string text;
        for (const Finding& finding : step.findings)
            text += finding.reason + "\n  call   " + finding.call + "\n  header " + finding.says +
                    "\n  came   " + finding.came + "\n";
        cases += ">\n    <failure message=\"" + xml_text(step.findings.front().reason) + "\">" +
                 xml_text(text) + "</failure>\n  </testcase>\n";
    }
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite name=\"platform_judge\" "
           "tests=\"" +
           number(report.steps.size()) + "\" failures=\"" + number(failures) +
           "\">\n  <properties>\n    <property name=\"version\" value=\"" VX_VERSION
           "\"/>\n  </properties>\n" +
           cases + "</testsuite>\n";
}

std::string as_summary(const Report& report, const std::string& command) {
    char date[64];
    std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::strftime(date, sizeof date, "%Y-%m-%d %H:%M UTC", std::gmtime(&now));
    return "Judgement of a platform library by platform_judge " VX_VERSION "\n" +
           std::string(date) + "\n" + command + "\n\n" + as_table(report);
}

} // namespace judge
