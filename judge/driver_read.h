// A request of the driver that reads, as a row of the table that is made from driver/.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "driver/request.h"
#include "judge/bench.h"

namespace judge {

// A request that reads. Its record is four words and what the function's last argument points at,
// unless that is a word, or a counter, which has its place among the four.
struct DriverRead {
    const char* name;
    std::uint32_t command;
    std::size_t size;

    template <class... Arguments>
    DriverRead(const char* name_, int (*)(Arguments...), std::uint32_t command_)
        : name(name_), command(command_), size(sizeof(ChipWords)) {
        (add_entry<Arguments>(), ...);
    }

  private:
    template <class Argument> void add_entry() {
        if constexpr (std::is_pointer<Argument>::value) {
            using Entry = std::remove_pointer_t<Argument>;
            if (!std::is_integral<Entry>::value)
                size = sizeof(ChipWords) + sizeof(Entry);
        }
    }
};

} // namespace judge
