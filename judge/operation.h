// A getter of the contract as a row of a table: its name, the function, and what the contract says
// of each argument. The function's types are taken from it, so a row is one line:
//
//     {NAMED(sal_port_enable_get), {port, gives_flag("enable")}},
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "judge/bench.h"
#include "judge/parameter.h"

namespace judge {

// What is passed for one argument.
struct Slot {
    Number number = 0;
    Byte* memory = nullptr;
};

using Slots = std::vector<Slot>;

template <class Type> Type unpack(const Slot& slot) {
    if constexpr (std::is_pointer<Type>::value)
        return reinterpret_cast<Type>(slot.memory);
    else
        return static_cast<Type>(slot.number);
}

template <class Type> std::size_t pointee_size() {
    if constexpr (std::is_pointer<Type>::value)
        return sizeof(std::remove_pointer_t<Type>);
    else
        return 0;
}

// Whether a number goes into an argument of this type as it is.
template <class Type> bool fits(Number number) {
    if constexpr (std::is_pointer<Type>::value)
        return false;
    else
        return static_cast<Number>(static_cast<Type>(number)) == number;
}

struct Operation {
    std::string name;
    Parameters parameters;
    // Makes the call on the bench; a code, or the value of a call that cannot fail.
    std::function<Number(const Slots&)> invoke;
    std::function<bool(std::size_t argument, Number)> takes; // fits the argument's type
    bool is_value = false; // returns the value itself and cannot fail
    Parameter result;      // of those: what it may be

    template <class Result, class... Types>
    Operation(const char* name_, Result (*function)(Types...), Parameters parameters_)
        : name(name_), parameters(std::move(parameters_)) {
        bind(function, std::index_sequence_for<Types...>());
        const std::size_t sizes[] = {pointee_size<Types>()..., 0};
        for (std::size_t i = 0; i < parameters.size(); ++i)
            if (parameters[i].direction == Parameter::output && parameters[i].size == 0)
                parameters[i].size = sizes[i];
    }

    // A call that returns its value: "sys_port_isLPort10G_ret", of which 0 or 1 may come.
    template <class Result, class... Types>
    Operation(
        const char* name_, Result (*function)(Types...), Parameters parameters_, Parameter result_)
        : Operation(name_, function, std::move(parameters_)) {
        is_value = true;
        result = std::move(result_);
    }

  private:
    template <class Result, class... Types, std::size_t... index>
    void bind(Result (*function)(Types...), std::index_sequence<index...>) {
        std::string called = name;
        invoke = [called, function](const Slots& slots) -> Number {
            return static_cast<Number>(
                bench->call(called.c_str(), function, unpack<Types>(slots[index])...));
        };
        takes = [](std::size_t argument, [[maybe_unused]] Number number) {
            const bool all[] = {fits<Types>(number)..., true};
            return all[argument];
        };
    }
};

using Operations = std::vector<Operation>;

// The outputs of one call, and what it returned.
struct Outcome {
    Number code = 0;
    std::vector<Guarded> outputs; // one an argument; empty for inputs
    std::string call;             // with its result
};

Outcome make_call(const Operation& operation, const Numbers& inputs, Byte fill = Guarded::filling);

// Every combination of good inputs, one number an input.
std::vector<Numbers> good_inputs(const Parameters& parameters);

// Getters alone, over the whole range of their inputs; what is refused leaves the outputs alone.
void judge_reads(const Operations& operations);

// What a table of getters says, call by call: those that repeat.
struct Reading {
    std::string call;
    std::string outcome; // code and bytes
};
std::vector<Reading> read_all(const Operations& operations);

// The first call of which two readings tell different things; empty when there is none.
std::string first_difference(const std::vector<Reading>& before, const std::vector<Reading>& after);

} // namespace judge
