// The lab's clocks and the way a moment is written.
#pragma once

#include <cstdint>
#include <string>

namespace lab {

std::int64_t wall_seconds();      // since 1970
std::int64_t wall_milliseconds(); // since 1970

std::string utc_text(std::int64_t seconds); // YYYY-MM-DDThh:mm:ssZ

} // namespace lab
