// Calling a getter with good and bad arguments, and looking at all that it touches.
#include <algorithm>

#include "judge/operation.h"

namespace judge {

namespace {

constexpr int tries = 3; // a live switch may change between two calls, though not between all

bool is_input(const Parameter& parameter) { return parameter.direction == Parameter::input; }

// The bytes that were filled in, and are not the caller's.
bool is_untouched(const Parameter& parameter, const Guarded& buffer, Byte fill) {
    return buffer.untouched(fill, parameter.given);
}

std::string with_name(const Parameter& parameter) { return parameter.name + ": " + parameter.says; }

// A byte that has both fillings was not written.
bool has_gap(const Guarded& buffer, const Guarded& other) {
    for (std::size_t i = 0; i < buffer.size(); ++i)
        if (buffer.data()[i] == Guarded::filling && other.data()[i] == Guarded::other_filling)
            return true;
    return false;
}

void judge_bounds(const Operation& operation, const Outcome& outcome) {
    for (std::size_t i = 0; i < operation.parameters.size(); ++i) {
        const Guarded& buffer = outcome.outputs[i];
        if (is_input(operation.parameters[i]))
            continue;
        bench->holds(
            buffer.overrun() == 0, reason::overrun,
            operation.parameters[i].name + " takes " + std::to_string(buffer.size()) + " bytes",
            std::to_string(buffer.overrun()) + " bytes outside it were written");
    }
}

// `other` is the same call into buffers filled otherwise: what has both fillings was not written.
void judge_output(const Parameter& parameter, const Guarded& buffer, const Guarded& other) {
    bool unwritten = is_untouched(parameter, buffer, Guarded::filling) &&
                     is_untouched(parameter, other, Guarded::other_filling);
    if (unwritten && parameter.may_stay)
        return;
    if (!bench->holds(
            !unwritten, reason::not_written, with_name(parameter), "code 0, and nothing written"))
        return;
    if (parameter.is_whole && !bench->holds(
                                  !has_gap(buffer, other), reason::not_written,
                                  with_name(parameter), "a part of it was not written"))
        return;
    if (parameter.is_text)
        bench->holds(
            buffer.terminated(), reason::unterminated, with_name(parameter), "no NUL within it");
    if (!parameter.fault)
        return;
    std::string fault = parameter.fault(buffer.data(), buffer.size());
    bool unended = fault.find("not terminated") != fault.npos;
    bench->holds(
        fault.empty(), unended ? reason::unterminated : reason::out_of_range, with_name(parameter),
        fault);
}

bool same(const Operation& operation, const Outcome& a, const Outcome& b) {
    if (a.code != b.code && !operation.result.varies)
        return false;
    for (std::size_t i = 0; i < operation.parameters.size(); ++i)
        if (!operation.parameters[i].varies && a.outputs[i].bytes() != b.outputs[i].bytes())
            return false;
    return true;
}

void judge_repeats(const Operation& operation, const Numbers& inputs) {
    for (int attempt = 1; attempt <= tries; ++attempt) {
        Outcome first = make_call(operation, inputs);
        if (same(operation, first, make_call(operation, inputs)))
            return bench->count_case();
    }
    bench->count_case();
    bench->convict(
        reason::not_repeated, "the same question has the same answer",
        "two calls in a row differ, " + std::to_string(tries) + " times");
}

void judge_value(const Operation& operation, const Numbers& inputs) {
    Outcome outcome = make_call(operation, inputs);
    Numbers good = operation.result.good ? operation.result.good() : Numbers{outcome.code};
    bench->holds(
        std::find(good.begin(), good.end(), outcome.code) != good.end(), reason::out_of_range,
        with_name(operation.result), std::to_string(outcome.code));
    judge_repeats(operation, inputs);
}

void judge_good(const Operation& operation, const Numbers& inputs) {
    if (operation.is_value)
        return judge_value(operation, inputs);
    Outcome other = make_call(operation, inputs, Guarded::other_filling);
    Outcome outcome = make_call(operation, inputs);
    judge_bounds(operation, outcome);
    if (!bench->works(static_cast<int>(outcome.code), "a good question is answered with 0"))
        return;
    for (std::size_t i = 0; i < operation.parameters.size(); ++i)
        if (!is_input(operation.parameters[i]))
            judge_output(operation.parameters[i], outcome.outputs[i], other.outputs[i]);
    judge_repeats(operation, inputs);
}

void judge_bad(const Operation& operation, const Numbers& inputs, const Parameter& wrong) {
    Outcome outcome = make_call(operation, inputs);
    judge_bounds(operation, outcome);
    bench->refuses(static_cast<int>(outcome.code), with_name(wrong) + "; any other is refused");
    if (outcome.code == 0)
        return;
    for (std::size_t i = 0; i < operation.parameters.size(); ++i)
        if (!is_input(operation.parameters[i]))
            bench->holds(
                is_untouched(operation.parameters[i], outcome.outputs[i], Guarded::filling),
                reason::touched, "a failing call leaves its outputs unchanged",
                operation.parameters[i].name + " was written");
}

// Each input wrong in turn, the others good.
void judge_bad_inputs(const Operation& operation, const Numbers& sample) {
    for (std::size_t i = 0, input = 0; i < operation.parameters.size(); ++i) {
        const Parameter& parameter = operation.parameters[i];
        if (!is_input(parameter))
            continue;
        Numbers inputs = sample;
        for (Number wrong : parameter.bad ? parameter.bad() : Numbers())
            if (operation.takes(i, wrong)) {
                inputs[input] = wrong;
                judge_bad(operation, inputs, parameter);
            }
        ++input;
    }
}

std::string outcome_text(const Operation& operation, const Outcome& outcome) {
    std::string text = operation.result.varies ? "" : std::to_string(outcome.code);
    for (std::size_t i = 0; i < operation.parameters.size(); ++i)
        if (!operation.parameters[i].varies)
            text += "|" + outcome.outputs[i].bytes();
    return text;
}

} // namespace

Outcome make_call(const Operation& operation, const Numbers& inputs, Byte fill) {
    Outcome outcome;
    Slots slots;
    outcome.outputs.reserve(operation.parameters.size());
    std::size_t input = 0;
    for (const Parameter& parameter : operation.parameters) {
        outcome.outputs.emplace_back(is_input(parameter) ? 0 : parameter.size, fill);
        slots.push_back({is_input(parameter) ? inputs[input++] : 0, outcome.outputs.back().data()});
    }
    outcome.code = operation.invoke(slots);
    outcome.call = Bench::last();
    return outcome;
}

std::vector<Numbers> good_inputs(const Parameters& parameters) {
    std::vector<Numbers> all = {{}};
    for (const Parameter& parameter : parameters) {
        if (!is_input(parameter))
            continue;
        std::vector<Numbers> longer;
        for (const Numbers& start : all)
            for (Number number : parameter.good()) {
                longer.push_back(start);
                longer.back().push_back(number);
            }
        all = longer;
    }
    return all;
}

void judge_reads(const Operations& operations) {
    for (const Operation& operation : operations) {
        std::vector<Numbers> all = good_inputs(operation.parameters);
        for (const Numbers& inputs : all)
            if (!Bench::stopped())
                judge_good(operation, inputs);
        if (!all.empty() && !operation.is_value)
            judge_bad_inputs(operation, all.front());
    }
}

std::vector<Reading> read_all(const Operations& operations) {
    std::vector<Reading> all;
    for (const Operation& operation : operations)
        for (const Numbers& inputs : good_inputs(operation.parameters)) {
            Outcome outcome = make_call(operation, inputs);
            all.push_back({outcome.call, outcome_text(operation, outcome)});
        }
    return all;
}

std::string
first_difference(const std::vector<Reading>& before, const std::vector<Reading>& after) {
    for (std::size_t i = 0; i < before.size() || i < after.size(); ++i) {
        if (i >= before.size() || i >= after.size())
            return (i < before.size() ? before : after)[i].call;
        if (before[i].outcome != after[i].outcome)
            return after[i].call;
    }
    return "";
}

} // namespace judge
