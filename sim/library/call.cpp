// Texts that the platform hands over end within their buffers.
#include "sim/library/call.h"

#include <algorithm>

namespace sim {

thread_local int InsideLibrary::depth_ = 0;

void copy_text(char* buffer, std::size_t size, const std::string& text) {
    std::size_t length = std::min(text.size(), size - 1);
    std::copy_n(text.data(), length, buffer);
    buffer[length] = '\0';
}

} // namespace sim
