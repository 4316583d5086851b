// A setting of the contract as a row of a table: the setter, what tells which setting is meant (the
// keys: a port, a queue), the values it takes, and how they are read back.
//
//     {NAMED(sal_port_flowCtrl_set), {port}, {flag("enable")}, outputs(sal_port_flowCtrl_get,
//     {0})},
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "judge/operation.h"

namespace judge {

// Reads values back: 0 or a code.
using Reader = std::function<int(const Numbers& keys, Numbers& values)>;

struct Setting {
    std::string name;
    Parameters keys;
    Parameters values;
    Reader read;                              // none: no call reads it
    std::function<int(const Numbers&)> write; // keys, then values
    std::function<bool(std::size_t argument, Number)> takes;
    bool may_refuse =
        false; // a value of its range may be refused: by the medium, by other settings
    // Another setting, by its setter's name, and the value that it must have, or must not: while it
    // has the wrong one, this setter refuses.
    std::string needs;
    Number needed = 0;

    template <class Result, class... Types>
    Setting(
        const char* name_, Result (*function)(Types...), Parameters keys_, Parameters values_,
        Reader read_)
        : name(name_), keys(std::move(keys_)), values(std::move(values_)), read(std::move(read_)) {
        bind(function, std::index_sequence_for<Types...>());
    }

    Setting& unless_refused() {
        may_refuse = true;
        return *this;
    }
    Setting& only_while(const char* other, Number value) {
        needs = other;
        needed = value;
        return *this;
    }

  private:
    template <class Result, class... Types, std::size_t... index>
    void bind(Result (*function)(Types...), std::index_sequence<index...>) {
        std::string called = name;
        write = [called, function](const Numbers& numbers) -> int {
            return static_cast<int>(
                bench->call(called.c_str(), function, static_cast<Types>(numbers[index])...));
        };
        takes = [](std::size_t argument, [[maybe_unused]] Number number) {
            const bool all[] = {fits<Types>(number)..., true};
            return all[argument];
        };
    }
};

using Settings = std::vector<Setting>;

// --- Readers.

namespace detail {

template <class... Types, std::size_t... index>
int call_getter(
    int (*function)(Types...), const Numbers& keys, Numbers& outs, std::index_sequence<index...>) {
    // A number or a place for one, in the order of the arguments; keys come first.
    std::tuple<
        std::conditional_t<std::is_pointer<Types>::value, std::remove_pointer_t<Types>, Types>...>
        places;
    std::size_t inputs = 0;
    auto pass = [&](auto& place, auto type) -> decltype(type) {
        using Type = decltype(type);
        if constexpr (std::is_pointer<Type>::value)
            return &place;
        else
            return place = static_cast<Type>(keys[inputs++]);
    };
    // A braced list is evaluated in order.
    std::tuple<Types...> arguments{pass(std::get<index>(places), Types{})...};
    if (int code = function(std::get<index>(arguments)...))
        return code;
    auto take = [&](const auto& place, bool is_output) {
        if (is_output)
            outs.push_back(static_cast<Number>(place));
    };
    (take(std::get<index>(places), std::is_pointer<Types>::value), ...);
    return 0;
}

} // namespace detail

// The outputs of a getter, all numbers, of which those at `wanted` are the values in order.
template <class... Types>
Reader outputs(int (*function)(Types...), std::vector<std::size_t> wanted = {0}) {
    return [function, wanted](const Numbers& keys, Numbers& values) -> int {
        Numbers outs;
        if (int code =
                detail::call_getter(function, keys, outs, std::index_sequence_for<Types...>()))
            return code;
        values.clear();
        for (std::size_t i : wanted)
            values.push_back(outs[i]);
        return 0;
    };
}

// Members of the record that a getter without keys, or with one, fills.
template <class Record, class... Members>
Reader members(int (*function)(Record*), Members Record::*... member) {
    return [=](const Numbers&, Numbers& values) -> int {
        Record record = {};
        if (int code = function(&record))
            return code;
        values = {static_cast<Number>(record.*member)...};
        return 0;
    };
}

template <class Record, class... Members>
Reader members(int (*function)(int, Record*), Members Record::*... member) {
    return [=](const Numbers& keys, Numbers& values) -> int {
        Record record = {};
        if (int code = function(static_cast<int>(keys.empty() ? 0 : keys[0]), &record))
            return code;
        values = {static_cast<Number>(record.*member)...};
        return 0;
    };
}

// --- Judging.

// Each setting with each value, for each key; `all` is where a setting that another needs is found.
void judge_settings(const Settings& settings);

// For settings that no call reads: what is out of range is refused; with `also_good`, what is in
// range is taken.
void judge_unread_settings(const Settings& settings, bool also_good);

// Settings of the switch as a whole: one number each that is read back, takes each value of its
// range, and needs no other.
std::vector<const Setting*> simple_settings();

// Puts back one setting, found by its setter's name among all families: for the journal.
int write_setting(const std::string& name, const Numbers& numbers);

} // namespace judge
