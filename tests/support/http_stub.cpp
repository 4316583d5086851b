// Every connection is served by a thread of its own, until its stub ends.
#include "tests/support/http_stub.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <stdexcept>

namespace {

int listen_on_loopback() {
    int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (listener < 0 || bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) ||
        listen(listener, 16))
        throw std::runtime_error("no listening socket on the loopback interface");
    return listener;
}

int port_of(int listener) {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
    return ntohs(address.sin_port);
}

bool receive_more(int connection, std::string& text) {
    char bytes[4096];
    ssize_t count = recv(connection, bytes, sizeof bytes, 0);
    if (count <= 0)
        return false;
    text.append(bytes, static_cast<std::size_t>(count));
    return true;
}

void send_all(int connection, const std::string& text) {
    for (std::size_t sent = 0; sent < text.size();) {
        ssize_t count = send(connection, text.data() + sent, text.size() - sent, MSG_NOSIGNAL);
        if (count <= 0)
            return;
        sent += static_cast<std::size_t>(count);
    }
}

std::vector<std::string> lines_of(const std::string& head) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < head.size();) {
        std::size_t end = std::min(head.find("\r\n", at), head.size());
        lines.push_back(head.substr(at, end - at));
        at = end + 2;
    }
    return lines;
}

std::string head_of(const HttpAnswer& answer, std::size_t size) {
    std::string head =
        "HTTP/1.1 " + std::to_string(answer.status) + " Canned\r\nConnection: close\r\n";
    for (const std::string& line : answer.headers)
        head += line + "\r\n";
    head += answer.chunked ? "Transfer-Encoding: chunked\r\n"
                           : "Content-Length: " + std::to_string(size + answer.missing) + "\r\n";
    return head + "\r\n";
}

std::string as_chunk(const std::string& piece) {
    char size[20];
    std::snprintf(size, sizeof size, "%zx\r\n", piece.size());
    return size + piece + "\r\n";
}

void send_answer(int connection, const HttpAnswer& answer) {
    std::vector<std::string> pieces = answer.pieces;
    if (pieces.empty() && !answer.body.empty())
        pieces.push_back(answer.body);
    std::size_t size = 0;
    for (const std::string& piece : pieces)
        size += piece.size();
    send_all(connection, head_of(answer, size));
    for (const std::string& piece : pieces)
        send_all(connection, answer.chunked ? as_chunk(piece) : piece);
    if (answer.chunked && answer.missing == 0)
        send_all(connection, "0\r\n\r\n");
}

} // namespace

std::string HttpRequest::header(const std::string& name) const {
    for (const std::string& line : head)
        if (line.starts_with(name + ": "))
            return line.substr(name.size() + 2);
    return "";
}

HttpStub::HttpStub() : listener_(listen_on_loopback()), port_(port_of(listener_)) {
    acceptor_ = std::thread([this] { accept_connections(); });
}

HttpStub::~HttpStub() {
    {
        std::lock_guard guard(mutex_);
        stopping_ = true;
        for (int connection : open_)
            shutdown(connection, SHUT_RDWR);
    }
    shutdown(listener_, SHUT_RDWR);
    acceptor_.join();
    for (std::thread& server : servers_)
        server.join();
    close(listener_);
}

void HttpStub::answer_path(const std::string& path, HttpAnswer answer) {
    std::lock_guard guard(mutex_);
    answers_[path].push_back(std::move(answer));
}

void HttpStub::forget_answers() {
    std::lock_guard guard(mutex_);
    answers_.clear();
}

std::vector<HttpRequest> HttpStub::requests() const {
    std::lock_guard guard(mutex_);
    return requests_;
}

std::vector<std::string> HttpStub::lines() const {
    std::vector<std::string> lines;
    for (const HttpRequest& request : requests())
        lines.push_back(request.line());
    return lines;
}

bool HttpStub::wait_for(std::size_t count, std::chrono::seconds longest) const {
    std::unique_lock lock(mutex_);
    return arrived_.wait_for(lock, longest, [&] { return requests_.size() >= count; });
}

void HttpStub::accept_connections() {
    for (;;) {
        int connection = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0)
            return;
        if (!register_connection(connection))
            return;
        servers_.emplace_back([this, connection] {
            serve(connection);
            forget_connection(connection);
        });
    }
}

bool HttpStub::register_connection(int connection) {
    std::lock_guard guard(mutex_);
    if (!stopping_)
        open_.push_back(connection);
    else
        close(connection);
    return !stopping_;
}

void HttpStub::forget_connection(int connection) {
    std::lock_guard guard(mutex_);
    std::erase(open_, connection);
    close(connection);
}

void HttpStub::serve(int connection) {
    HttpRequest request;
    if (!record(connection, request))
        return;
    HttpAnswer answer = next_answer(request);
    std::this_thread::sleep_for(answer.delay);
    if (answer.silent) {
        if (!answer.pieces.empty())
            send_answer(connection, answer);
        for (std::string ignored; receive_more(connection, ignored);)
            ignored.clear();
        return;
    }
    send_answer(connection, answer);
    // Whatever the client still sends is taken, lest the close resets what it has not read yet.
    shutdown(connection, SHUT_WR);
    for (std::string ignored; receive_more(connection, ignored);)
        ignored.clear();
}

// Reads a request whole; false when the connection ended before its head did, or when what arrives
// is not HTTP, as a TLS handshake.
bool HttpStub::record(int connection, HttpRequest& request) {
    std::string text;
    while (text.find("\r\n\r\n") == std::string::npos)
        if (!receive_more(connection, text) || !std::isupper(static_cast<unsigned char>(text[0])))
            return false;
    std::size_t end = text.find("\r\n\r\n");
    request.head = lines_of(text.substr(0, end));
    request.body = text.substr(end + 4);
    std::string length = request.header("Content-Length");
    std::size_t announced = length.empty() ? 0 : std::stoul(length);
    if (request.header("Expect") == "100-continue")
        send_all(connection, "HTTP/1.1 100 Continue\r\n\r\n");
    while (request.body.size() < announced && receive_more(connection, request.body)) {}
    std::lock_guard guard(mutex_);
    requests_.push_back(request);
    arrived_.notify_all();
    return true;
}

HttpAnswer HttpStub::next_answer(const HttpRequest& request) {
    std::string line = request.line();
    std::size_t path_at = line.find(' ') + 1;
    std::string path = line.substr(path_at, line.find(' ', path_at) - path_at);
    std::lock_guard guard(mutex_);
    for (const std::string& key : {path, std::string()}) {
        auto queue = answers_.find(key);
        if (queue == answers_.end() || queue->second.empty())
            continue;
        HttpAnswer answer = std::move(queue->second.front());
        queue->second.pop_front();
        return answer;
    }
    HttpAnswer none;
    none.status = 404;
    return none;
}
