// What a judgement has found, and the forms in which it is told: a table, JSON, JUnit XML, and a
// text for a ticket. Of every judge.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace judge {

// What a judge calls itself, what it judges, and the parts of a finding.
struct Wording {
    const char* judge = "platform_judge";
    const char* subject = "a platform library";
    const char* suite = "platform"; // before a family's name, in JUnit's class names
    const char* calls = "calls";    // columns of the table
    const char* cases = "cases";
    const char* call = "call";   // at most six letters
    const char* says = "header"; // of a must, where there are shoulds, too
};

struct Finding {
    std::string reason;
    std::string call; // as it stands in a trace
    std::string says; // the header
    std::string came;
    std::uint64_t times = 1; // the same again with other arguments
    bool should = false;     // what is asked for is no must: nobody is convicted of it
};

struct StepResult {
    int number = 0;
    std::string family;
    std::string probe;
    std::uint64_t calls = 0;
    std::uint64_t cases = 0;
    std::vector<Finding> findings;
    // Of a judge that tells also what was good: what was done and what came, without a reason.
    std::vector<Finding> seen = {};
    std::string skipped = {}; // why nothing was judged; empty: it was
};

struct Report {
    Wording wording;
    std::vector<StepResult> steps;
    std::vector<std::string> remarks;
    std::map<std::string, std::uint64_t> calls; // by name
    bool interrupted = false;

    void add(StepResult& step, Finding finding);
    std::uint64_t findings() const; // against a must
    std::uint64_t shoulds() const;  // the others
    std::uint64_t skipped() const;
};

// The four lines of a finding, or of what was seen where nothing was wrong.
std::string as_text(const Report& report, const StepResult& step, const Finding& finding);
std::string as_table(const Report& report);
std::string as_json(const Report& report);
std::string as_junit(const Report& report);
std::string as_summary(const Report& report, const std::string& command);

// Writes one of these to a file, unless its name is empty. False, with a line of `program` on
// standard error, when the file cannot be written.
bool write_file(const char* program, const std::string& file, const std::string& text);

} // namespace judge
