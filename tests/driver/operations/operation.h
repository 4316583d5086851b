// What is expected of a driver operation: its number, the size of its record, where its arguments
// stand in it, and ways to call it.
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

// A place in a record, in bytes.
struct Field {
    std::size_t at;
    std::size_t size;
};

struct Layout {
    // Of the arguments, in their order. None: words one after the other, and behind the four words
    // what is no word.
    std::vector<Field> fields = {};
    std::size_t size = 16;     // of the record
    int port_argument = -1;    // the one that must be a logical port
    bool looks_up = false;     // the entry goes to the driver as well as back
    std::size_t text_size = 0; // longest text with its terminator
    bool on_off = false;       // the words that are no port are 0 or 1
    // Words that the operation repeats elsewhere in the record: from, to.
    std::vector<std::pair<std::size_t, std::size_t>> repeated = {};
};

// An argument that is written on success.
struct Output {
    unsigned char* place;
    Bytes before;     // all that is there, more than is written for a text
    std::size_t size; // what is written
    std::size_t at;
    bool is_text;
};

// The words that are passed, and their complements: no bit may be lost, or set.
enum class Samples { words, complements };

// What a call changes in the sample arguments.
struct Change {
    int null_argument = -1; // the pointer passed as null
    int port_argument = -1; // the word passed as `port`
    std::uint32_t port = 0;
    const char* text = nullptr; // in place of the sample text
};

struct Operation {
    std::string name;
    std::uint32_t number = 0;
    const void* function = nullptr; // address, to compare with the exported one
    Bytes sent;                     // the record as it reaches the driver
    std::vector<Output> outputs;
    std::vector<int> pointers; // arguments that are pointers
    bool fits = true;          // each argument is as long as its field
    int port_argument = -1;    // the argument that must be a logical port
    std::size_t text_at = 0;   // of a text that goes to the driver
    std::size_t text_size = 0; // the longest one with its terminator; 0: there is none
    std::function<int(const Change&)> invoke;

    int call() const { return invoke({}); }
    int call_with_null(int argument) const { return invoke({.null_argument = argument}); }
    int call_with_text(const std::string& text) const { return invoke({.text = text.c_str()}); }
    int call_at_port(std::uint32_t port) const {
        return invoke({.port_argument = port_argument, .port = port});
    }
};

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
    const char* value = sample_text.c_str();
    const char* argument() { return value; }
};

// Arguments of which no byte may be lost, and no two be taken for each other.
inline unsigned char input_byte(std::size_t i) {
    return static_cast<unsigned char>((i * 5 + i / 256 * 3 + 3) | 1);
}
inline std::uint32_t input_word(std::size_t argument, Samples samples) {
    constexpr std::uint32_t words[] = {0x1A2B3C4D, 0x5E6F7081, 0x92A3B4C5, 0xD6E7F809};
    return samples == Samples::words ? words[argument] : ~words[argument];
}

inline void put(Bytes& record, std::size_t at, const void* bytes, std::size_t size) {
    if (at + size <= record.size())
        std::memcpy(record.data() + at, bytes, size);
}

inline void fill(unsigned char* bytes, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = input_byte(i);
}

template <class T>
void prepare(
    Operation& operation, const Layout& layout, Samples samples, std::size_t i, Place<T>& place) {
    using Target = std::remove_pointer_t<T>;
    const Field field = layout.fields[i];
    auto* bytes = reinterpret_cast<unsigned char*>(&place.value);
    if constexpr (is_text<Target> && std::is_const_v<Target>) {
        put(operation.sent, field.at, sample_text.data(), sample_text.size());
        operation.text_at = field.at;
        operation.text_size = layout.text_size;
        return;
    } else if constexpr (!std::is_pointer_v<T>) {
        const bool is_port = static_cast<int>(i) == layout.port_argument;
        place.value = static_cast<T>(layout.on_off && !is_port ? 1 : input_word(i, samples));
    } else {
        fill(bytes, sizeof place.value);
    }
    const std::size_t size = is_text<Target> ? layout.text_size : sizeof place.value;
    operation.fits &= size == field.size && field.at + size <= layout.size;
    if constexpr (!std::is_pointer_v<T> || std::is_const_v<Target>) {
        put(operation.sent, field.at, bytes, size);
    } else {
        if (layout.looks_up)
            put(operation.sent, field.at, bytes, size);
        operation.outputs.push_back(
            {bytes, Bytes(bytes, bytes + sizeof place.value), size, field.at, is_text<Target>});
    }
}

template <class T> T changed(T argument, int i, const Change& change) {
    if constexpr (std::is_pointer_v<T>) {
        if (change.null_argument == i)
            return nullptr;
        if constexpr (std::is_same_v<T, const char*>)
            return change.text ? change.text : argument;
        return argument;
    } else {
        return change.port_argument == i ? static_cast<T>(change.port) : argument;
    }
}

template <class... A, std::size_t... I>
Operation build(
    int (*function)(A...), const Layout& layout, [[maybe_unused]] Samples samples,
    std::index_sequence<I...>) {
    Operation operation;
    operation.function = reinterpret_cast<const void*>(function);
    operation.port_argument = layout.port_argument;
    operation.sent.resize(layout.size);
    auto places = std::make_shared<std::tuple<Place<A>...>>();
    (prepare<A>(operation, layout, samples, I, std::get<I>(*places)), ...);
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

template <class... A> std::vector<Field> fields_in_order(const Layout& layout) {
    const Field behind = {16, layout.text_size ? layout.text_size : layout.size - 16};
    std::vector<Field> fields;
    [[maybe_unused]] auto place = [&](bool is_word) {
        fields.push_back(is_word ? Field{4 * fields.size(), 4} : behind);
    };
    (place(std::is_same_v<A, std::uint32_t> || std::is_same_v<A, std::uint32_t*>), ...);
    return fields;
}

} // namespace detail

class OperationList {
  public:
    explicit OperationList(Samples samples) : samples_(samples) {}

    template <class... A>
    void add(const char* name, std::uint32_t number, int (*function)(A...), Layout layout) {
        if (layout.fields.empty())
            layout.fields = detail::fields_in_order<A...>(layout);
        Operation operation =
            detail::build(function, layout, samples_, std::index_sequence_for<A...>());
        operation.name = name;
        operation.number = number;
        all.push_back(std::move(operation));
    }

    std::vector<Operation> all;

  private:
    Samples samples_;
};

// Every one that makes a request; storage of its own each time.
std::vector<Operation> operations(Samples samples = Samples::words);
