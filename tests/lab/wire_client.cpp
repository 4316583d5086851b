// Sockets, TLS and HMAC straight from the system and OpenSSL, none of it shared with the lab.
#include "wire_client.h"

#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace lab_test {

namespace {

int open_socket(int port) {
    const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const timeval patience{20, 0};
    setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    const int on = 1;
    setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    if (connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
        return fd;
    const int error = errno;
    close(fd);
    errno = error;
    return -1;
}

void send_all(int fd, const std::string& bytes) {
    for (std::size_t at = 0; at < bytes.size();) {
        const ssize_t count = send(fd, bytes.data() + at, bytes.size() - at, MSG_NOSIGNAL);
        if (count <= 0)
            return;
        at += static_cast<std::size_t>(count);
    }
}

void take_apart(const std::string& bytes, Answer& answer) {
    const std::size_t end = bytes.find("\r\n\r\n");
    if (end == std::string::npos)
        return;
    answer.head = bytes.substr(0, end + 2);
    answer.body = bytes.substr(end + 4);
    answer.status = std::atoi(answer.head.c_str() + answer.head.find(' '));
    const std::size_t length = answer.head.find("Content-Length: ");
    answer.whole =
        length != std::string::npos &&
        std::strtoul(answer.head.c_str() + length + 16, nullptr, 10) == answer.body.size();
}

void talk_plain(int fd, const std::string& bytes, bool cut, Answer& answer) {
    send_all(fd, bytes);
    if (cut)
        shutdown(fd, SHUT_WR);
    std::string received;
    char buffer[4096];
    for (ssize_t count;
         received.size() < longest_answer && (count = recv(fd, buffer, sizeof buffer, 0)) > 0;)
        received.append(buffer, static_cast<std::size_t>(count));
    take_apart(received, answer);
}

using Context = std::unique_ptr<SSL_CTX, void (*)(SSL_CTX*)>;
using Session = std::unique_ptr<SSL, void (*)(SSL*)>;

void talk_tls(
    int fd, const std::string& trust, const std::string& bytes, bool cut, Answer& answer) {
    const Context context(SSL_CTX_new(TLS_client_method()), SSL_CTX_free);
    SSL_CTX_set_verify(context.get(), SSL_VERIFY_PEER, nullptr);
    SSL_CTX_load_verify_dir(context.get(), trust.c_str());
    const Session ssl(SSL_new(context.get()), SSL_free);
    X509_VERIFY_PARAM_set1_ip_asc(SSL_get0_param(ssl.get()), "127.0.0.1");
    SSL_set_fd(ssl.get(), fd);
    answer.handshake = SSL_connect(ssl.get()) == 1;
    answer.verify_result = SSL_get_verify_result(ssl.get());
    if (!answer.handshake)
        return;
    SSL_write(ssl.get(), bytes.data(), static_cast<int>(bytes.size()));
    if (cut)
        SSL_shutdown(ssl.get());
    std::string received;
    char buffer[4096];
    for (int count; received.size() < longest_answer &&
                    (count = SSL_read(ssl.get(), buffer, sizeof buffer)) > 0;)
        received.append(buffer, static_cast<std::size_t>(count));
    ERR_clear_error();
    take_apart(received, answer);
}

std::string to_hex(const unsigned char* bytes, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; i++) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", bytes[i]);
        text += digits;
    }
    return text;
}

std::string fresh_nonce() {
    static std::atomic<unsigned> counter = 0;
    char text[33];
    std::snprintf(text, sizeof text, "%032x", ++counter);
    return text;
}

std::string hmac(const std::string& secret, const std::string& message) {
    unsigned char mac[EVP_MAX_MD_SIZE];
    unsigned length = 0;
    HMAC(
        EVP_sha256(), secret.data(), static_cast<int>(secret.size()),
        reinterpret_cast<const unsigned char*>(message.data()), message.size(), mac, &length);
    return to_hex(mac, length);
}

std::string host_line(const Peer& peer) {
    return "Host: localhost:" + std::to_string(peer.port) + "\r\n";
}

std::string or_else(const std::string& text, const std::string& otherwise) {
    return text.empty() ? otherwise : text;
}

} // namespace

Answer talk(const Peer& peer, const std::string& bytes, bool cut) {
    Answer answer;
    const int fd = open_socket(peer.port);
    answer.connected = fd >= 0;
    answer.refused = fd < 0 && errno == ECONNREFUSED;
    if (fd < 0)
        return answer;
    if (peer.trust_folder.empty())
        talk_plain(fd, bytes, cut, answer);
    else
        talk_tls(fd, peer.trust_folder, bytes, cut, answer);
    close(fd);
    return answer;
}

IdleConnection::IdleConnection(int port, const std::string& bytes) : socket_(open_socket(port)) {
    send_all(socket_, bytes);
}

IdleConnection::~IdleConnection() { close(socket_); }

Checkin::Checkin() : timestamp(std::time(nullptr)), nonce(fresh_nonce()) {}

std::string Checkin::text() const {
    const std::string target = or_else(path, "/cloud-switch/" + mac + "/checkin");
    const std::string proof = or_else(
        authorization,
        "key=" + key + ",timestamp=" + std::to_string(timestamp) + ",nonce=" + nonce);
    std::vector<std::string> lines = {
        "Host: localhost",
        "Accept: */*",
        "Content-Length: " + or_else(content_length, std::to_string(body.size())),
        "Content-Type: " + content_type,
        "Authorization: " + proof,
        "Signature: " + or_else(signature, hmac(secret, proof + target + body))};
    if (rearrange)
        rearrange(lines);
    std::string text = method + " " + target + " HTTP/1.1\r\n";
    for (const std::string& line : lines)
        text += line + "\r\n";
    return text + "\r\n" + or_else(sent_body, body);
}

Answer get(const Peer& peer, const std::string& path) {
    return talk(peer, "GET " + path + " HTTP/1.1\r\n" + host_line(peer) + "\r\n");
}

Answer request(
    const Peer& peer, const std::string& method, const std::string& path, const std::string& body) {
    return talk(
        peer, method + " " + path + " HTTP/1.1\r\n" + host_line(peer) +
                  "Content-Length: " + std::to_string(body.size()) +
                  "\r\nContent-Type: application/json\r\n\r\n" + body);
}

} // namespace lab_test
