// MAC texts: an engineer types them in either form, the wire knows only upper case with colons.
#include "lab/mac.h"

#include <cctype>

namespace lab {

namespace {

bool colons_in_place(std::string_view text) {
    for (std::size_t at = 2; at < text.size(); at += 3)
        if (text[at] != ':')
            return false;
    return true;
}

} // namespace

std::optional<std::string> canonical_mac(std::string_view text) {
    const bool with_colons = text.size() == 17 && colons_in_place(text);
    if (!with_colons && text.size() != 12)
        return std::nullopt;
    const std::size_t step = with_colons ? 3 : 2;
    std::string mac;
    for (std::size_t at = 0; at < text.size(); at += step) {
        if (!mac.empty())
            mac += ':';
        for (const char digit : text.substr(at, 2)) {
            if (!std::isxdigit(static_cast<unsigned char>(digit)))
                return std::nullopt;
            mac += static_cast<char>(std::toupper(static_cast<unsigned char>(digit)));
        }
    }
    return mac;
}

} // namespace lab
