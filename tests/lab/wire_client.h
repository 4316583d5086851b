// A client that says exactly what a test wants said: raw bytes over a socket, with or without TLS.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lab_test {

struct Answer {
    bool connected = false;
    bool refused = false;   // nobody listens
    long verify_result = 0; // X509_V_OK or what is wrong with the certificate
    bool handshake = true;  // false: TLS did not come about
    int status = 0;         // 0: no reply
    std::string head;
    std::string body;
    bool whole = false; // as many bytes as Content-Length says
};

struct Peer {
    int port = 0;
    std::string trust_folder; // empty: plain HTTP
};

// Where the client has had enough, in bytes.
constexpr std::size_t longest_answer = 20 << 20;

// Sends the bytes, then reads to the end of the connection, or until it has had enough. With `cut`
// the sending side is closed once the bytes are out.
Answer talk(const Peer& peer, const std::string& bytes, bool cut = false);

// A connection that is opened and left alone until the object goes.
class IdleConnection {
  public:
    explicit IdleConnection(int port, const std::string& bytes = {});
    ~IdleConnection();
    IdleConnection(const IdleConnection&) = delete;
    IdleConnection& operator=(const IdleConnection&) = delete;

  private:
    int socket_;
};

// A check-in request in the making; every part can be spoiled before text() is taken.
struct Checkin {
    Checkin();

    std::string method = "POST";
    std::string mac = "AA:BB:CC:DD:EE:FF";
    std::string path; // empty: made from the MAC
    std::string key = "lab-key";
    std::string secret = "lab-secret";
    std::int64_t timestamp;    // now
    std::string nonce;         // one that no other request of the process has
    std::string authorization; // empty: made from key, timestamp and nonce
    std::string body = "{}";
    std::string sent_body;      // empty: the body that was signed
    std::string content_length; // empty: the body's
    std::string content_type = "application/json";
    std::string signature; // empty: the right one
    // Last change to the header lines "Name: value", in the order in which they will be sent.
    std::function<void(std::vector<std::string>& lines)> rearrange;

    std::string text() const;
};

Answer get(const Peer& peer, const std::string& path);
Answer request(
    const Peer& peer, const std::string& method, const std::string& path, const std::string& body);

} // namespace lab_test
