// Every connection has a thread of its own in the child, which ends with its parent.
#include "tests/signals/restless_cloud.h"

#include <arpa/inet.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <random>
#include <stdexcept>
#include <thread>

namespace {

std::atomic<unsigned> next_seed;

int listen_on_loopback(int& port) {
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    socklen_t size = sizeof address;
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (listener < 0 || bind(listener, reinterpret_cast<sockaddr*>(&address), size) ||
        listen(listener, 128))
        throw std::runtime_error("no listening socket on the loopback interface");
    getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
    port = ntohs(address.sin_port);
    return listener;
}

// One connection.
class Conversation {
  public:
    explicit Conversation(int socket) : socket_(socket), random_(next_seed++) {}

    void hold() {
        const std::string request = read_request();
        pause();
        if (request.starts_with("POST"))
            send_whole(pick(4) ? "{}" : R"({"qos": {"mode": 1}})");
        else
            answer_poll();
        shutdown(socket_, SHUT_WR);
        wait_for_end();
        close(socket_);
    }

  private:
    unsigned pick(unsigned choices) { return static_cast<unsigned>(random_()) % choices; }
    void pause() { std::this_thread::sleep_for(std::chrono::microseconds(pick(3000))); }

    std::string read_request() {
        std::string text;
        char bytes[16384];
        for (ssize_t count; !is_whole(text) && (count = recv(socket_, bytes, sizeof bytes, 0)) > 0;)
            text.append(bytes, static_cast<std::size_t>(count));
        return text;
    }
    static bool is_whole(const std::string& text) {
        const std::size_t end = text.find("\r\n\r\n");
        const std::size_t length = text.find("Content-Length: ");
        return end != std::string::npos &&
               (length == std::string::npos ||
                text.size() >= end + 4 + std::stoul(text.substr(length + 16)));
    }

    void answer_poll() {
        const std::string message = R"({"action": "counter_reset", "port": "1"})";
        switch (pick(4)) {
        case 0: // nothing to do for the switch
            return wait_for_end();
        case 1:
            return send_whole(message);
        case 2:
            send_text(head(message.size()) + message.substr(0, 10));
            pause();
            return send_text(message.substr(10));
        default:
            return; // hangs up
        }
    }

    static std::string head(std::size_t size) {
        return "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " + std::to_string(size) +
               "\r\n\r\n";
    }
    void send_whole(const std::string& body) { send_text(head(body.size()) + body); }
    void send_text(const std::string& text) {
        send(socket_, text.data(), text.size(), MSG_NOSIGNAL);
    }
    void wait_for_end() {
        char bytes[4096];
        while (recv(socket_, bytes, sizeof bytes, 0) > 0) {}
    }

    int socket_;
    std::minstd_rand random_;
};

[[noreturn]] void serve(int listener) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (;;) {
        const int socket = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket >= 0)
            std::thread([socket] { Conversation(socket).hold(); }).detach();
    }
}

} // namespace

RestlessCloud::RestlessCloud(unsigned seed) {
    const int listener = listen_on_loopback(port_);
    next_seed = seed;
    process_ = fork();
    if (process_ == 0)
        serve(listener);
    close(listener);
}

RestlessCloud::~RestlessCloud() {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
}
