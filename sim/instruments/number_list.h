// Sets of numbers as text: "1,3-5,8".
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace sim {

// The bits that are set, bit b % 32 of word b / 32; bit 0 is written as `base`.
std::string write_numbers(std::span<const std::uint32_t> words, unsigned base);

// Adds what one item of a list, "3" or "3-5", stands for. False, with the set as it was, for any
// other text and for a number that the set has no room for.
bool read_numbers(const std::string& item, unsigned base, std::span<std::uint32_t> words);

} // namespace sim
