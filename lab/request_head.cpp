// Parsing of a request head; stricter than a web server, for the lab is there to find mistakes.
#include "lab/request_head.h"

#include <algorithm>
#include <cctype>

namespace lab {

namespace {

// Takes one line off the front of `rest`; nullopt when no CR LF is left.
std::optional<std::string_view> take_line(std::string_view& rest) {
    const std::size_t end = rest.find("\r\n");
    if (end == std::string_view::npos)
        return std::nullopt;
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end + 2);
    return line;
}

bool parse_request_line(std::string_view line, RequestHead& head) {
    const std::size_t first = line.find(' ');
    const std::size_t last = line.rfind(' ');
    if (first == std::string_view::npos || first == last)
        return false;
    head.method = line.substr(0, first);
    head.target = line.substr(first + 1, last - first - 1);
    head.version = line.substr(last + 1);
    return head.target.find(' ') == std::string::npos && head.version.starts_with("HTTP/1.");
}

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

bool parse_header_line(std::string_view line, RequestHead& head) {
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos || colon == 0 ||
        line.substr(0, colon).find_first_of(" \t") != std::string_view::npos)
        return false;
    head.lines.push_back(
        {std::string(line.substr(0, colon)), std::string(trimmed(line.substr(colon + 1)))});
    return true;
}

} // namespace

std::optional<RequestHead> parse_request_head(std::string_view bytes) {
    RequestHead head;
    auto line = take_line(bytes);
    if (!line || !parse_request_line(*line, head))
        return std::nullopt;
    for (line = take_line(bytes); line && !line->empty(); line = take_line(bytes))
        if (!parse_header_line(*line, head))
            return std::nullopt;
    return line ? std::optional(head) : std::nullopt;
}

bool same_name(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, [](unsigned char a, unsigned char b) {
        return std::tolower(a) == std::tolower(b);
    });
}

} // namespace lab
