// The MAC of a switch as text.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lab {

// "AA:BB:CC:DD:EE:FF" from that form in any letter case, or from twelve digits without colons.
std::optional<std::string> canonical_mac(std::string_view text);

} // namespace lab
