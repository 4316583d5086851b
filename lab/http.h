// A request as it came in and the reply to it, free of any HTTP library: all that a service sees.
#pragma once

#include <functional>
#include <map>
#include <string>

namespace lab {

struct Call {
    std::string method;
    std::string path;                         // decoded, without the query
    std::map<std::string, std::string> query; // the first value of each name
    std::string head;                         // bytes as received, with the closing empty line
    std::string body;                         // bytes as received
    bool body_whole = true;                   // false: less than announced, or not read at all
    bool tls = false;
    int port = 0;                  // at which it came in
    std::function<bool()> hung_up; // the peer has closed its connection
};

struct Reply {
    int status = 200;
    std::string body = {};
    std::string type = "application/json";
    std::function<void()> unsent = {}; // runs when the reply could not be written to the peer
};

using Handler = std::function<Reply(const Call&)>;

} // namespace lab
