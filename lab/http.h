// A request as it came in and the reply to it, free of any HTTP library: all that a service sees.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lab {

struct Call {
    std::string method;
    std::string path;                         // decoded, without the query
    std::map<std::string, std::string> query; // the first value of each name
    std::string head;                         // bytes as received, with the closing empty line
    std::string body;                         // bytes as received
    std::string body_flaw;                    // why the body is not whole; empty: it is
    bool tls = false;
    int port = 0;                                       // at which it came in
    std::chrono::steady_clock::time_point connected_at; // when the peer's connection was taken
    std::function<bool()> hung_up;                      // the peer has closed its connection
};

struct Reply;

// A peer whose reply is not there yet. Its connection is held open, without a thread, until this is
// answered or goes.
class Waiter {
  public:
    virtual ~Waiter() = default;
    virtual bool hung_up() const = 0;            // the peer has closed its connection
    virtual void answer(const Reply& reply) = 0; // once, from any thread; waits for no peer
};

struct Reply {
    int status = 200;
    std::string body = {};
    std::string type = "application/json";
    std::vector<std::pair<std::string, std::string>> headers = {}; // besides the usual ones
    // Asked for piece after piece of a body without an end, in the place of `body`; false: it ends.
    // Should it wait, then for some seconds only: a peer that has gone is noticed in between.
    std::function<bool(std::string& piece)> next_piece = {};
    // There is no reply yet: gets the peer, to answer it later. For connections without TLS.
    std::function<void(std::unique_ptr<Waiter>)> put_off = {};
    std::function<void()> unsent = {}; // runs when the reply could not be written to the peer
};

using Handler = std::function<Reply(const Call&)>;

} // namespace lab
