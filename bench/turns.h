// Ways to do the same thing, measured turn by turn in one run: whatever else the machine does meets
// all of them alike.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench {

// Of this thread: the machine may have other things to do.
double processor_seconds();

// Seconds that `work` takes.
template <class Work> double time_of(Work&& work) {
    const double start = processor_seconds();
    work();
    return processor_seconds() - start;
}

struct Spread {
    double median, least, most;
};
Spread spread(std::vector<double> values);

using Values = std::vector<double>; // one a repetition
Values operator+(const Values& a, const Values& b);

struct Turns {
    int repetitions = 15;
    int rounds = 4; // of a repetition
    int row = 16;   // how often in a row a contender has its turn
};

// Each of `contenders` measures itself, a row a round and in changing order; it returns the seconds
// of its parts, such as of building and of printing, of which a repetition keeps the fastest. By
// contender, then by part.
using Contender = std::function<std::vector<double>()>;
std::vector<std::vector<Values>> take_turns(const std::vector<Contender>& contenders, Turns turns);

// "NAME   12.3 us (12.1 to 12.9)", and the same of what each repetition gives for one divided by
// the other.
void print_time(const std::string& name, const Values& seconds);
double print_ratio(const std::string& name, const Values& over, const Values& under);

} // namespace bench
