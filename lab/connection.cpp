// Reading that remembers the head, writing that can go wrong on purpose.
#include "lab/connection.h"

#include <openssl/ssl.h>

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>

namespace lab {

namespace {

constexpr std::string_view head_end = "\r\n\r\n";

void name_of_peer(const sockaddr_in& address, std::string& ip, int& port) {
    char text[INET_ADDRSTRLEN] = "";
    inet_ntop(AF_INET, &address.sin_addr, text, sizeof text);
    ip = text;
    port = ntohs(address.sin_port);
}

} // namespace

bool has_hung_up(int socket) {
    pollfd entry{socket, POLLRDHUP, 0};
    return poll(&entry, 1, 0) > 0 && (entry.revents & (POLLRDHUP | POLLHUP | POLLERR));
}

std::string Connection::head() const { return head_received_ ? received_ : std::string(); }

int Connection::port() const {
    std::string address;
    int port = 0;
    get_local_ip_and_port(address, port);
    return port;
}

void Connection::repeat(std::string head, Reply reply) {
    repeated_ = std::move(head);
    buffered_ = repeated_;
    ready = std::move(reply);
}

void Connection::allow_body(std::size_t most) { allowed_ = most; }

void Connection::expect_reply_body(std::size_t length) {
    reply_expected_ = true;
    body_length_ = length;
}

bool Connection::is_readable() const {
    pollfd entry{socket_, POLLIN, 0};
    return !buffered_.empty() || (ssl_ && SSL_pending(ssl_) > 0) || poll(&entry, 1, 0) > 0;
}

bool Connection::is_writable() const { return !has_hung_up(socket_); }

ssize_t Connection::read(char* bytes, std::size_t size) {
    if (allowed_ == 0) {
        overran_ = true;
        return -1;
    }
    if (buffered_.empty()) {
        const ssize_t count = receive(buffer_.data(), buffer_.size());
        if (count <= 0)
            return count;
        buffered_ = {buffer_.data(), static_cast<std::size_t>(count)};
    }
    const std::string_view piece = buffered_.substr(0, std::min(size, allowed_));
    std::ranges::copy(piece, bytes);
    buffered_.remove_prefix(piece.size());
    note_received(piece);
    return static_cast<ssize_t>(piece.size());
}

ssize_t Connection::receive(char* bytes, std::size_t size) {
    if (ssl_)
        return SSL_read(ssl_, bytes, static_cast<int>(size));
    ssize_t count;
    do
        count = recv(socket_, bytes, size, 0);
    while (count < 0 && errno == EINTR);
    return count;
}

// The HTTP library takes a head byte by byte, so it never runs past the end into the body.
void Connection::note_received(std::string_view bytes) {
    allowed_ -= bytes.size();
    if (head_received_)
        return;
    received_.append(bytes);
    head_received_ = received_.ends_with(head_end);
    if (head_received_)
        allowed_ = 0;
}

ssize_t Connection::write(const char* bytes, std::size_t size) {
    if (put_off)
        return static_cast<ssize_t>(size);
    if (reply_ended_)
        return -1;
    std::string_view rest(bytes, size);
    const std::size_t head = head_left(rest);
    const bool sent = write_all(bytes, head) && write_body(rest.substr(head));
    if (!sent)
        write_failed_ = true;
    return sent ? static_cast<ssize_t>(size) : -1;
}

// How many of the bytes still belong to the reply's head.
std::size_t Connection::head_left(std::string_view bytes) {
    if (!reply_expected_)
        return bytes.size();
    if (reply_head_.ends_with(head_end))
        return 0;
    const std::size_t before = reply_head_.size();
    reply_head_.append(bytes);
    const std::size_t end = reply_head_.find(head_end);
    if (end == std::string::npos)
        return bytes.size();
    reply_head_.resize(end + head_end.size());
    return reply_head_.size() - before;
}

bool Connection::write_body(std::string_view bytes) {
    if (bytes.empty())
        return true;
    bool sent = false;
    switch (misbehaviour_.fault) {
    case Fault::slow:
        sent = write_slowly(bytes);
        break;
    case Fault::corrupt:
        sent = write_corrupted(std::string(bytes));
        break;
    case Fault::truncate:
        sent = write_half(bytes);
        break;
    default:
        sent = write_all(bytes.data(), bytes.size());
    }
    body_written_ += bytes.size();
    return sent;
}

bool Connection::write_slowly(std::string_view bytes) {
    const auto piece = static_cast<std::size_t>(misbehaviour_.piece);
    for (; !bytes.empty(); bytes.remove_prefix(std::min(piece, bytes.size()))) {
        pollfd entry{socket_, 0, 0}; // a pause that a closed connection ends
        if (poll(&entry, 1, static_cast<int>(misbehaviour_.delay_ms)) > 0)
            return false;
        if (!write_all(bytes.data(), std::min(piece, bytes.size())))
            return false;
    }
    return true;
}

bool Connection::write_corrupted(std::string bytes) {
    const std::size_t middle = body_length_ / 2;
    if (middle >= body_written_ && middle < body_written_ + bytes.size())
        bytes[middle - body_written_] = static_cast<char>(bytes[middle - body_written_] ^ 1);
    return write_all(bytes.data(), bytes.size());
}

bool Connection::write_half(std::string_view bytes) {
    const std::size_t half = body_length_ / 2;
    if (body_written_ < half)
        write_all(bytes.data(), std::min(bytes.size(), half - body_written_));
    return body_written_ + bytes.size() <= half;
}

bool Connection::write_all(const char* bytes, std::size_t size) {
    while (size > 0) {
        ssize_t count;
        if (ssl_)
            count = SSL_write(ssl_, bytes, static_cast<int>(std::min(size, std::size_t{1} << 20)));
        else
            count = send(socket_, bytes, size, MSG_NOSIGNAL);
        if (count < 0 && !ssl_ && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        bytes += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

void Connection::get_remote_ip_and_port(std::string& ip, int& port) const {
    sockaddr_in address{};
    socklen_t length = sizeof address;
    getpeername(socket_, reinterpret_cast<sockaddr*>(&address), &length);
    name_of_peer(address, ip, port);
}

void Connection::get_local_ip_and_port(std::string& ip, int& port) const {
    sockaddr_in address{};
    socklen_t length = sizeof address;
    getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &length);
    name_of_peer(address, ip, port);
}

} // namespace lab
