// What comes in at the admin port. The input is a request from its first line on; without a Host it
// gets the one that the lab answers to, and the length of its body. No answer is a failure of the
// lab's own, and what says that it is JSON is JSON.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>

#include "lab_in_process.h"

namespace {

// First line, empty line, body.
std::string completed(const std::string& input) {
    const std::size_t line = std::min(input.find('\n'), input.size());
    const std::string body = line < input.size() ? input.substr(line + 1) : "";
    return input.substr(0, line) +
           " HTTP/1.1\r\nHost: 127.0.0.1:0\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\n\r\n" + body;
}

void require(bool holds, const std::string& reply) {
    if (holds)
        return;
    std::fprintf(stderr, "the lab answers: %s\n", reply.substr(0, 1000).c_str());
    std::abort();
}

void check(const std::string& reply) {
    require(!reply.starts_with("HTTP/1.1 500 "), reply);
    const std::size_t body = reply.find("\r\n\r\n");
    const bool chunked = reply.find("Transfer-Encoding: chunked") < body;
    const bool packed = reply.find("Content-Encoding: ") < body;
    if (body == std::string::npos || chunked || packed ||
        reply.find("Content-Type: application/json") > body)
        return;
    require(nlohmann::json::accept(reply.substr(body + 4)), reply);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    const bool whole = input.find("\nHost:") != std::string::npos;
    check(lab_fuzz::lab_of_the_hour().admin(whole ? input : completed(input)));
    return 0;
}
