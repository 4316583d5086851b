// Writing and reading "1,3-5,8".
#include "sim/instruments/number_list.h"

#include <charconv>

namespace sim {

std::string write_numbers(std::span<const std::uint32_t> words, unsigned base) {
    std::string written;
    auto has = [&](std::size_t bit) {
        return bit < words.size() * 32 && (words[bit / 32] >> (bit % 32) & 1) != 0;
    };
    for (std::size_t first = 0; first < words.size() * 32; ++first) {
        if (!has(first))
            continue;
        std::size_t last = first;
        while (has(last + 1))
            ++last;
        written += (written.empty() ? "" : ",") + std::to_string(first + base);
        if (last > first)
            written += "-" + std::to_string(last + base);
        first = last;
    }
    return written;
}

bool read_numbers(const std::string& item, unsigned base, std::span<std::uint32_t> words) {
    unsigned first = 0;
    const char* end = item.data() + item.size();
    std::from_chars_result read = std::from_chars(item.data(), end, first);
    unsigned last = first;
    if (read.ec == std::errc{} && read.ptr != end && *read.ptr == '-') {
        read = std::from_chars(read.ptr + 1, end, last);
        if (last <= first)
            return false;
    }
    if (read.ec != std::errc{} || read.ptr != end || first < base ||
        last >= words.size() * 32 + base)
        return false;
    for (unsigned bit = first - base; bit <= last - base; ++bit)
        words[bit / 32] |= 1u << (bit % 32);
    return true;
}

} // namespace sim
