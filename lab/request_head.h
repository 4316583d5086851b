// The head of a request taken apart with its header lines in the order in which they came.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lab {

struct HeaderLine {
    std::string name; // as sent
    std::string value;
};

struct RequestHead {
    std::string method;
    std::string target; // undecoded
    std::string version;
    std::vector<HeaderLine> lines;
};

// nullopt: not a request head whose lines all end in CR LF and read "name: value".
std::optional<RequestHead> parse_request_head(std::string_view bytes);

bool same_name(std::string_view left, std::string_view right); // header names ignore letter case

} // namespace lab
