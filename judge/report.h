// What a judgement has found, and the forms in which it is told: a table, JSON, JUnit XML, and a
// text for a ticket.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace judge {

struct Finding {
    std::string reason;
    std::string call; // as it stands in a trace
    std::string says; // the header
    std::string came;
    std::uint64_t times = 1; // the same again with other arguments
};

struct StepResult {
    int number = 0;
    std::string family;
    std::string probe;
    std::uint64_t calls = 0;
    std::uint64_t cases = 0;
    std::vector<Finding> findings;
};

struct Report {
    std::vector<StepResult> steps;
    std::vector<std::string> remarks;
    std::map<std::string, std::uint64_t> calls; // by name
    bool interrupted = false;

    void add(StepResult& step, Finding finding);
    std::uint64_t findings() const;
};

std::string as_table(const Report& report);
std::string as_json(const Report& report);
std::string as_junit(const Report& report);
std::string as_summary(const Report& report, const std::string& command);

} // namespace judge
