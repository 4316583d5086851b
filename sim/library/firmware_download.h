// How the firmware fetches an image.
#pragma once

#include <string>

namespace sim {

// Fetches what `url` names: "http://…" and "https://…" from the network, "file:///…" or a path from
// the board's files. Returns code_ok, code_bad_value for another URL, code_failed for whatever else
// goes wrong; `content` is then undefined.
int fetch(const std::string& url, std::string& content);

} // namespace sim
