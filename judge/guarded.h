// A buffer that tells whether a call kept to it: canaries before and behind it, and a filling by
// which written bytes are known.
#pragma once

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

namespace judge {

using Byte = unsigned char;

class Guarded {
  public:
    // No filling holds a NUL, so an unwritten text has no end within its buffer.
    static constexpr Byte filling = 0xA5;
    static constexpr Byte other_filling = 0x5A;

    explicit Guarded(std::size_t size, Byte fill = filling)
        : size_(size), memory_(size + 2 * guard, canary) {
        std::memset(data(), fill, size);
    }

    Byte* data() { return memory_.data() + guard; }
    const Byte* data() const { return memory_.data() + guard; }
    char* text() { return reinterpret_cast<char*>(data()); }
    template <class Record> Record* as() { return reinterpret_cast<Record*>(data()); }
    std::size_t size() const { return size_; }

    // How many bytes were written before or behind the buffer.
    std::size_t overrun() const {
        std::size_t count = 0;
        for (std::size_t i = 0; i < guard; ++i)
            count += (memory_[i] != canary) + (memory_[guard + size_ + i] != canary);
        return count;
    }

    // Whether all of it, from byte `first`, still is `fill`.
    bool untouched(Byte fill = filling, std::size_t first = 0) const {
        for (std::size_t i = first; i < size_; ++i)
            if (data()[i] != fill)
                return false;
        return true;
    }

    bool terminated() const { return std::memchr(data(), 0, size_) != nullptr; }
    std::string bytes() const { return {reinterpret_cast<const char*>(data()), size_}; }

  private:
    static constexpr std::size_t guard = 64; // a multiple of every alignment
    static constexpr Byte canary = 0xC3;
    std::size_t size_;
    std::vector<Byte> memory_;
};

} // namespace judge
