// What the lab does wrong on purpose.
#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lab {

enum class Fault {
    none,
    refuse,       // nobody listens on the port
    reset,        // the connection is reset once the peer has sent something
    silent,       // the connection is held and nothing is said, not even in a TLS handshake
    status,       // an HTTP status and no processing
    redirect,     // a redirection and no processing
    truncate,     // the connection ends in the middle of the reply's body
    short_length, // the reply is announced half as long as it is
    endless,      // a body without an end and no processing
    endless_head, // header lines without an end and no processing
    bomb,         // a small packed body that unpacks to a large one, and no processing
    slow,         // the reply's body in small pieces with pauses
    corrupt,      // one byte of the reply's body is altered
    expired,      // an expired certificate
    unknown_ca,   // a certificate of an authority that nobody trusts
    wrong_name,   // a certificate for another host
};

struct Misbehaviour {
    Fault fault = Fault::none;
    std::string listener = "checkin"; // checkin, plain, keeper
    int port = 0;                     // 0: every port of the listener
    std::int64_t left = 0;            // connections still to be spoiled; 0: until told to behave
    int status = 500;                 // for Fault::status
    std::int64_t delay_ms = 50;       // for Fault::slow: before each piece
    std::int64_t piece = 1;           // for Fault::slow: bytes
};

std::optional<Fault> find_fault(std::string_view name);
std::string_view fault_name(Fault fault);
bool is_certificate_fault(Fault fault);

// Thread-safe list of misbehaviours in force, oldest first.
class Misbehaviours {
  public:
    void add(const Misbehaviour& misbehaviour);
    void clear();
    std::vector<Misbehaviour> all() const;

    // What befalls a connection that has just sent its first byte; counted down.
    Misbehaviour take(std::string_view listener, int port);
    bool refuses(std::string_view listener, int port) const;

  private:
    mutable std::mutex mutex_;
    std::vector<Misbehaviour> list_;
};

} // namespace lab
