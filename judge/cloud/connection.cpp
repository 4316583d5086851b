// Sockets and OpenSSL, blocking, each wait with an end.
#include "judge/cloud/connection.h"

#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>

namespace judge::cloud {

volatile std::sig_atomic_t interrupted = 0;

namespace {

bool is_address(const std::string& name) {
    unsigned char bytes[sizeof(in6_addr)];
    return inet_pton(AF_INET, name.c_str(), bytes) == 1 ||
           inet_pton(AF_INET6, name.c_str(), bytes) == 1;
}

std::string tls_error() {
    const auto code = ERR_get_error();
    ERR_clear_error();
    const char* reason = code ? ERR_reason_error_string(code) : nullptr;
    return reason ? reason : "the connection was closed";
}

int milliseconds_until(Clock::time_point end) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
    return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, 1 << 30));
}

void set_options(int socket, double seconds) {
    const timeval patience{std::max(1, static_cast<int>(seconds)), 0};
    const int on = 1;
    setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
    setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

// -1, with errno, when it cannot be had. A time-out for sending is one for connecting, too.
int connect_to(const addrinfo& address, double patience) {
    const int fd =
        socket(address.ai_family, address.ai_socktype | SOCK_CLOEXEC, address.ai_protocol);
    if (fd < 0)
        return -1;
    set_options(fd, patience);
    if (connect(fd, address.ai_addr, address.ai_addrlen) == 0)
        return fd;
    const int error = errno;
    close(fd);
    errno = error == EINPROGRESS ? ETIMEDOUT : error;
    return -1;
}

} // namespace

Trust::Trust(const std::string& file_or_folder) : context_(SSL_CTX_new(TLS_client_method())) {
    const bool folder = std::filesystem::is_directory(file_or_folder);
    int done;
    if (file_or_folder.empty())
        done = SSL_CTX_set_default_verify_paths(context_);
    else if (folder)
        done = SSL_CTX_load_verify_dir(context_, file_or_folder.c_str());
    else
        done = SSL_CTX_load_verify_file(context_, file_or_folder.c_str());
    SSL_CTX_set_options(context_, SSL_OP_IGNORE_UNEXPECTED_EOF);
    if (done != 1) {
        SSL_CTX_free(context_);
        throw std::runtime_error("--ca " + file_or_folder + ": no certificates there");
    }
}

Trust::~Trust() { SSL_CTX_free(context_); }

Connection::Connection(const Host& host, int port, const Trust* trust, double patience) {
    connect(host, port, patience);
    if (fault_.empty() && trust)
        begin_tls(host, *trust);
}

Connection::~Connection() {
    if (ssl_)
        SSL_free(ssl_);
    if (socket_ >= 0)
        close(socket_);
}

void Connection::connect(const Host& host, int port, double patience) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const std::string service = std::to_string(port);
    if (int code = getaddrinfo(host.name.c_str(), service.c_str(), &hints, &found)) {
        fault_ = host.name + " cannot be resolved: " + gai_strerror(code);
        return;
    }
    for (const addrinfo* one = found; one && socket_ < 0; one = one->ai_next)
        socket_ = connect_to(*one, patience);
    if (socket_ < 0)
        fault_ = "no connection to " + host.name + ":" + service + ": " + std::strerror(errno);
    freeaddrinfo(found);
}

// The chain and the name are verified as the switch does it, but a bad one is only noted.
void Connection::begin_tls(const Host& host, const Trust& trust) {
    ssl_ = SSL_new(trust.context());
    SSL_set_verify(ssl_, SSL_VERIFY_NONE, nullptr);
    X509_VERIFY_PARAM* const param = SSL_get0_param(ssl_);
    if (is_address(host.name)) {
        X509_VERIFY_PARAM_set1_ip_asc(param, host.name.c_str());
    } else {
        X509_VERIFY_PARAM_set1_host(param, host.name.c_str(), 0);
        SSL_set_tlsext_host_name(ssl_, host.name.c_str());
    }
    SSL_set_fd(ssl_, socket_);
    if (SSL_connect(ssl_) != 1)
        fault_ = "TLS did not come about: " + tls_error();
    else if (const long result = SSL_get_verify_result(ssl_); result != X509_V_OK)
        certificate_fault_ = X509_verify_cert_error_string(result);
}

bool Connection::send(std::string_view bytes) {
    while (fault_.empty() && !bytes.empty()) {
        const std::size_t most = std::min<std::size_t>(bytes.size(), 1 << 20);
        const ssize_t count = ssl_ ? SSL_write(ssl_, bytes.data(), static_cast<int>(most))
                                   : ::send(socket_, bytes.data(), most, MSG_NOSIGNAL);
        if (count <= 0) {
            ERR_clear_error();
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return fault_.empty();
}

void Connection::end_sending() {
    if (ssl_)
        SSL_shutdown(ssl_);
    else
        shutdown(socket_, SHUT_WR);
    ERR_clear_error();
}

bool Connection::wait_readable(Clock::time_point until) {
    if (ssl_ && SSL_pending(ssl_) > 0)
        return true;
    pollfd entry{socket_, POLLIN, 0};
    while (!interrupted) {
        const int count = poll(&entry, 1, std::min(milliseconds_until(until), 500));
        if (count > 0)
            return true;
        if (Clock::now() >= until)
            return false;
    }
    return false;
}

std::string Connection::receive(Clock::time_point until) {
    if (!fault_.empty() || ended_ || !wait_readable(until))
        return {};
    std::string bytes(16384, '\0');
    const ssize_t count = ssl_ ? SSL_read(ssl_, bytes.data(), static_cast<int>(bytes.size()))
                               : recv(socket_, bytes.data(), bytes.size(), 0);
    ended_ = count <= 0;
    if (count < 0 && !ssl_)
        fault_ = std::strerror(errno);
    ERR_clear_error();
    bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return bytes;
}

} // namespace judge::cloud
