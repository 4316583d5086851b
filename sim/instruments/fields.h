// One description of a record serves to read it from a scenario or a saved configuration and to
// write it back: a record has a method `void fields(Fields& f)` that names its members.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

namespace sim {

class Fields {
  public:
    virtual ~Fields() = default;

    virtual void boolean(const char* key, bool& value) = 0;
    virtual void
    integer(const char* key, std::int64_t& value, std::int64_t low, std::int64_t high) = 0;
    virtual void text(const char* key, std::string& value, std::size_t longest) = 0;

    // A nested object.
    virtual void object(const char* key, const std::function<void(Fields&)>& members) = 0;
    // A list: `resize` is told how many elements there are when reading, or asked when writing
    // (its argument is then -1); `element` describes element i.
    virtual void list(
        const char* key, const std::function<std::size_t(int)>& resize,
        const std::function<void(Fields&, std::size_t)>& element) = 0;
    // Refuses what was just read, with a reason that names what is wrong.
    virtual void refuse(const std::string& reason) = 0;
    virtual bool reading() const = 0;

    template <class Number>
    requires std::is_integral_v<Number>
    void integer(const char* key, Number& value, std::int64_t low, std::int64_t high) {
        auto wide = static_cast<std::int64_t>(value);
        integer(key, wide, low, high);
        value = static_cast<Number>(wide);
    }

    template <class Record> void object(const char* key, Record& record) {
        object(key, [&](Fields& f) { record.fields(f); });
    }

    // A list of records that grows to what is read.
    template <class Record>
    void list(const char* key, std::vector<Record>& records, std::size_t longest) {
        list(
            key,
            [&, longest](int count) {
                if (count > static_cast<int>(longest))
                    refuse(
                        std::string(key) + " has more than " + std::to_string(longest) +
                        " elements");
                else if (count >= 0)
                    records.assign(static_cast<std::size_t>(count), Record{});
                return records.size();
            },
            [&](Fields& f, std::size_t i) {
                if (i < records.size())
                    records[i].fields(f);
            });
    }

    // A list whose elements exist beforehand: what is read changes the first of them.
    template <class Records> void slots(const char* key, Records& records) {
        list(
            key,
            [&](int count) {
                if (count > static_cast<int>(records.size()))
                    refuse(
                        std::string(key) + " has more than " + std::to_string(records.size()) +
                        " elements");
                return records.size();
            },
            [&](Fields& f, std::size_t i) {
                if (i < records.size())
                    records[i].fields(f);
            });
    }

    // "AA:BB:CC:DD:EE:FF", dotted IPv4 text and a set such as "1,3-5", as the switch holds them.
    void mac(const char* key, std::uint8_t (&address)[6]);
    void ipv4(const char* key, std::uint32_t& address);
    void bits(const char* key, std::uint32_t* words, std::size_t count); // bit 0 is written 0
};

} // namespace sim
