// A web server on the loopback interface that records what it is sent, byte by byte, and answers
// from a list. It speaks plain HTTP, one request a connection, each connection on its own thread.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <list>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

struct HttpRequest {
    std::vector<std::string> head; // request line and header lines in order, without line ends
    std::string body;              // as much as arrived

    std::string line() const { return head.empty() ? "" : head.front(); }
    std::string header(const std::string& name) const; // "" when it is missing; case counts
};

struct HttpAnswer {
    int status = 200;
    std::string body = {};
    std::vector<std::string> headers = {}; // whole lines
    bool chunked = false;                  // a chunk for each piece
    std::vector<std::string> pieces = {};  // sent one by one in place of `body`
    std::size_t missing = 0;               // bytes that are announced and never sent
    std::chrono::milliseconds delay{0};    // before the first byte
    bool silent = false;                   // nothing, or nothing after `pieces`, until the client
                                           // or the server gives up
};

class HttpStub {
  public:
    HttpStub();
    ~HttpStub(); // ends every connection
    HttpStub(const HttpStub&) = delete;
    HttpStub& operator=(const HttpStub&) = delete;

    std::string host() const { return "127.0.0.1:" + std::to_string(port_); }
    int port() const { return port_; }

    // Queued for the next request of any path, or of that path. A request for which nothing is
    // queued gets status 404.
    void answer(HttpAnswer answer) { answer_path("", std::move(answer)); }
    void answer_path(const std::string& path, HttpAnswer answer);
    void forget_answers();

    std::vector<HttpRequest> requests() const;
    std::vector<std::string> lines() const; // of all requests, in order
    // Waits until that many requests arrived; false when they did not within the time.
    bool wait_for(std::size_t count, std::chrono::seconds longest = std::chrono::seconds(10)) const;

  private:
    void accept_connections();
    void serve(int connection);
    bool record(int connection, HttpRequest& request);
    HttpAnswer next_answer(const HttpRequest& request);
    bool register_connection(int connection);
    void forget_connection(int connection);

    int listener_;
    int port_;
    mutable std::mutex mutex_;
    mutable std::condition_variable arrived_;
    bool stopping_ = false;
    std::vector<HttpRequest> requests_;
    std::map<std::string, std::deque<HttpAnswer>> answers_; // by path, "" for any
    std::vector<int> open_;
    std::list<std::thread> servers_;
    std::thread acceptor_;
};
