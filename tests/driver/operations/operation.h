// What is expected of a driver operation: its number, where its arguments stand in the record, and
// ways to call it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

using Bytes = std::vector<unsigned char>;

// Where the arguments stand in the record, in bytes, in the order of the arguments.
struct Layout {
    std::vector<std::size_t> at;
    int port_argument = -1;    // the one that must be a logical port
    bool looks_up = false;     // the entry goes to the driver as well as back
    std::size_t text_size = 0; // of a text argument, with its terminator
    std::size_t size = 0;      // of the record; 0: four words and what stands behind them
    // Words that the operation repeats elsewhere in the record.
    std::vector<std::pair<std::size_t, std::size_t>> repeated = {};
};

struct Output {
    unsigned char* place;
    std::size_t size;
    std::size_t at;
    bool is_text;
};

// What a call changes in the sample arguments.
struct Change {
    int null_argument = -1; // the pointer passed as null
    int port_argument = -1; // the word passed as `port`
    std::uint32_t port = 0;
};

struct Operation {
    std::string name;
    std::uint32_t number = 0;
    const void* function = nullptr; // address, to compare with the exported one
    Bytes sent;                     // the record as it reaches the driver
    std::vector<Output> outputs;
    std::vector<int> pointers; // arguments that are pointers
    int port_argument = -1;    // the argument that must be a logical port
    std::function<int(const Change&)> invoke;

    int call() const { return invoke({}); }
    int call_with_null(int argument) const { return invoke({argument, -1, 0}); }
    int call_at_port(std::uint32_t port) const { return invoke({-1, port_argument, port}); }
};

constexpr unsigned char untouched = 0xA5;
inline const std::string sample_text = "text for a switch";

namespace detail {

template <class T> constexpr bool is_text = std::is_same_v<std::remove_const_t<T>, char>;

// A place for what argument `T` is or points at.
template <class T> struct Place {
    T value{};
    T argument() { return value; }
};
template <class T> struct Place<T*> {
    std::remove_const_t<T> value{};
    T* argument() { return &value; }
};
template <> struct Place<char*> {
    char value[512]{};
    char* argument() { return value; }
};
template <> struct Place<const char*> {
    char value[512]{};
    const char* argument() { return value; }
};

inline unsigned char input_byte(std::size_t i) { return static_cast<unsigned char>(i * 5 + 3); }
inline std::uint32_t input_number(std::size_t argument) {
    constexpr std::uint32_t numbers[] = {5, 1, 7, 3};
    return numbers[argument];
}

inline void put(Bytes& record, std::size_t at, const void* bytes, std::size_t size) {
    if (record.size() < at + size)
        record.resize(at + size);
    std::memcpy(record.data() + at, bytes, size);
}

template <class T>
void prepare(Operation& operation, const Layout& layout, std::size_t i, Place<T>& place) {
    using Target = std::remove_pointer_t<T>;
    auto* bytes = reinterpret_cast<unsigned char*>(&place.value);
    const std::size_t size = is_text<Target> ? layout.text_size : sizeof place.value;
    if constexpr (!std::is_pointer_v<T>) {
        place.value = static_cast<T>(input_number(i));
        put(operation.sent, layout.at[i], bytes, size);
    } else if constexpr (std::is_const_v<Target>) {
        if constexpr (is_text<Target>)
            std::memcpy(place.value, sample_text.c_str(), sample_text.size() + 1);
        else
            for (std::size_t b = 0; b < size; ++b)
                bytes[b] = input_byte(b);
        put(operation.sent, layout.at[i], bytes, size);
    } else {
        std::memset(bytes, untouched, size);
        if (layout.looks_up)
            put(operation.sent, layout.at[i], bytes, size);
        else if (operation.sent.size() < layout.at[i] + size)
            operation.sent.resize(layout.at[i] + size);
        operation.outputs.push_back({bytes, size, layout.at[i], is_text<Target>});
    }
}

template <class T> T changed(T argument, int i, const Change& change) {
    if constexpr (std::is_pointer_v<T>)
        return change.null_argument == i ? nullptr : argument;
    else
        return change.port_argument == i ? static_cast<T>(change.port) : argument;
}

template <class... A, std::size_t... I>
Operation build(int (*function)(A...), const Layout& layout, std::index_sequence<I...>) {
    Operation operation;
    operation.function = reinterpret_cast<const void*>(function);
    operation.port_argument = layout.port_argument;
    operation.sent.resize(layout.size ? layout.size : 16);
    auto places = std::make_shared<std::tuple<Place<A>...>>();
    (prepare<A>(operation, layout, I, std::get<I>(*places)), ...);
    for (auto [from, to] : layout.repeated)
        std::memcpy(operation.sent.data() + to, operation.sent.data() + from, 4);
    constexpr std::array<bool, sizeof...(A)> is_pointer = {std::is_pointer_v<A>...};
    for (std::size_t i = 0; i < is_pointer.size(); ++i)
        if (is_pointer[i])
            operation.pointers.push_back(static_cast<int>(i));
    operation.invoke = [places, function]([[maybe_unused]] const Change& change) {
        return function(
            changed<A>(std::get<I>(*places).argument(), static_cast<int>(I), change)...);
    };
    return operation;
}

// Arguments in order: words one after the other, everything else behind the four words.
template <class... A> std::vector<std::size_t> places_in_order() {
    std::vector<std::size_t> at;
    [[maybe_unused]] auto place = [&](bool is_word) { at.push_back(is_word ? 4 * at.size() : 16); };
    (place(std::is_same_v<A, std::uint32_t> || std::is_same_v<A, std::uint32_t*>), ...);
    return at;
}

} // namespace detail

class OperationList {
  public:
    template <class... A>
    void add(const char* name, std::uint32_t number, int (*function)(A...), Layout layout) {
        if (layout.at.empty())
            layout.at = detail::places_in_order<A...>();
        Operation operation = detail::build(function, layout, std::index_sequence_for<A...>());
        operation.name = name;
        operation.number = number;
        all.push_back(std::move(operation));
    }

    std::vector<Operation> all;
};

std::vector<Operation> operations(); // every one that makes a request; storage of its own each time
