// The socket that libcurl opens is connected already; its call that would connect it comes here.
#include "tests/fuzz/support/answers.h"

#include <curl/curl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "sim/edges/transfers.h"
#include "tests/fuzz/support/fresh_board.h"

// libcurl has no way of its own to be given a socket that is connected, in all of its releases.
extern "C" int connect(int socket, const sockaddr* address, socklen_t size) {
    sockaddr own{};
    socklen_t own_size = sizeof own;
    if (getsockname(socket, &own, &own_size) == 0 && own.sa_family == AF_UNIX)
        return 0;
    return static_cast<int>(syscall(SYS_connect, socket, address, size));
}

Answers::Answers(std::string first, std::string others)
    : first_(std::move(first)), others_(std::move(others)) {
    curl_opensocket_callback open = [](void* answers, curlsocktype, curl_sockaddr*) {
        return static_cast<Answers*>(answers)->connect();
    };
    sim::on_transfer = [this, open](CURL* transfer) {
        curl_easy_setopt(transfer, CURLOPT_OPENSOCKETFUNCTION, open);
        curl_easy_setopt(transfer, CURLOPT_OPENSOCKETDATA, this);
    };
}

Answers::~Answers() {
    sim::on_transfer = nullptr;
    for (int peer : peers_)
        close(peer);
}

// The answer and an end of file are there before the request is. Without an answer, nobody listens.
int Answers::connect() {
    const std::string& answer = made_++ == 0 ? first_ : others_;
    if (answer.empty())
        return CURL_SOCKET_BAD;
    int ends[2];
    require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends) == 0);
    peers_.push_back(ends[1]);
    if (send(ends[1], answer.data(), answer.size(), MSG_NOSIGNAL) >= 0)
        shutdown(ends[1], SHUT_WR);
    return ends[0];
}

std::string as_answer(const std::string& text) {
    if (text.starts_with("HTTP/"))
        return text;
    return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(text.size()) + "\r\n\r\n" + text;
}
