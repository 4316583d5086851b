// Turns, and how they are shown.
#include "bench/turns.h"

#include <time.h>

#include <algorithm>
#include <cstdio>

namespace bench {

double processor_seconds() {
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

Spread spread(std::vector<double> values) {
    std::ranges::sort(values);
    return {values[values.size() / 2], values.front(), values.back()};
}

Values operator+(const Values& a, const Values& b) {
    Values sum(a.size());
    std::ranges::transform(a, b, sum.begin(), std::plus());
    return sum;
}

namespace {

void take_turn(const Contender& contender, std::vector<Values>& parts, std::size_t repetition) {
    const std::vector<double> seconds = contender();
    parts.resize(seconds.size());
    for (std::size_t part = 0; part < seconds.size(); ++part) {
        parts[part].resize(std::max(parts[part].size(), repetition + 1), 1e9);
        parts[part][repetition] = std::min(parts[part][repetition], seconds[part]);
    }
}

} // namespace

std::vector<std::vector<Values>> take_turns(const std::vector<Contender>& contenders, Turns turns) {
    std::vector<std::vector<Values>> all(contenders.size());
    for (int repetition = 0; repetition < turns.repetitions; ++repetition) {
        for (int round = 0; round < turns.rounds; ++round) {
            for (std::size_t turn = 0; turn < contenders.size(); ++turn) {
                const std::size_t whose =
                    (turn + static_cast<std::size_t>(round)) % contenders.size();
                for (int time = 0; time < turns.row; ++time)
                    take_turn(contenders[whose], all[whose], static_cast<std::size_t>(repetition));
            }
        }
    }
    return all;
}

void print_time(const std::string& name, const Values& seconds) {
    const Spread us = spread(seconds);
    std::printf(
        "%-44s %8.2f us (%.2f to %.2f)\n", name.c_str(), us.median * 1e6, us.least * 1e6,
        us.most * 1e6);
}

double print_ratio(const std::string& name, const Values& over, const Values& under) {
    Values ratios(over.size());
    std::ranges::transform(over, under, ratios.begin(), std::divides());
    const Spread ratio = spread(ratios);
    std::printf(
        "%-44s %8.3f    (%.3f to %.3f)\n", name.c_str(), ratio.median, ratio.least, ratio.most);
    return ratio.median;
}

} // namespace bench
