// A connection to a cloud, plain or under TLS, over which exactly those bytes go that a check wants
// to send. What a switch's HTTP library would put right stays wrong here.
#pragma once

#include <chrono>
#include <csignal>
#include <string>
#include <string_view>

#include "judge/cloud/host.h"

typedef struct ssl_st SSL;
typedef struct ssl_ctx_st SSL_CTX;

namespace judge::cloud {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

inline Clock::time_point after(double seconds) {
    return Clock::now() + std::chrono::duration_cast<Clock::duration>(Seconds(seconds));
}

// The certificates that a switch would trust.
class Trust {
  public:
    // A file of certificates, a directory of the form that a switch has, or the machine's own when
    // empty. Throws std::runtime_error for one that cannot be read.
    explicit Trust(const std::string& file_or_folder);
    ~Trust();
    Trust(const Trust&) = delete;
    Trust& operator=(const Trust&) = delete;
    SSL_CTX* context() const { return context_; }

  private:
    SSL_CTX* context_;
};

class Connection {
  public:
    // Connects within `patience` seconds; without a `trust` it is plain. A certificate that does
    // not verify ends nothing here.
    Connection(const Host& host, int port, const Trust* trust, double patience);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // Why there is no connection, or it broke; empty while nothing is wrong.
    const std::string& fault() const { return fault_; }
    // Why a switch would not trust the certificate; empty: it does.
    const std::string& certificate_fault() const { return certificate_fault_; }

    bool send(std::string_view bytes);
    void end_sending(); // the other side sees the end of the stream, and can still answer
    // The next bytes. None at the end of the stream, see ended(), or when the time is over.
    std::string receive(Clock::time_point until);
    bool ended() const { return ended_; }

  private:
    void connect(const Host& host, int port, double patience);
    void begin_tls(const Host& host, const Trust& trust);
    bool wait_readable(Clock::time_point until);

    int socket_ = -1;
    SSL* ssl_ = nullptr;
    bool ended_ = false;
    std::string fault_;
    std::string certificate_fault_;
};

// Set by a signal: every wait ends.
extern volatile std::sig_atomic_t interrupted;

} // namespace judge::cloud
