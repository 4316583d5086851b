// One accepted connection, plain or under TLS, as a stream of the HTTP library. It keeps the head
// of the request as it came in and spoils the body of the reply when told to.
#pragma once

#include <httplib.h>

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "lab/http.h"
#include "lab/misbehaviour.h"

namespace lab {

bool has_hung_up(int socket); // the peer has closed its side

class Connection : public httplib::Stream {
  public:
    Connection(int socket, SSL* ssl, const Misbehaviour& misbehaviour)
        : socket_(socket), ssl_(ssl), misbehaviour_(misbehaviour), allowed_(longest_head) {}

    static constexpr std::size_t longest_head = 32 << 10;

    // Everything up to and with the empty line; empty while that has not come.
    std::string head() const;
    bool tls() const { return ssl_ != nullptr; }
    int port() const; // ours
    const Misbehaviour& misbehaviour() const { return misbehaviour_; }

    // What may come after the head, as it comes over the wire; nothing until this is said.
    void allow_body(std::size_t most);
    bool overran() const { return overran_; } // more came, or a head without an end

    // Announces the reply's body: what is written from here on is a head and `length` bytes.
    void expect_reply_body(std::size_t length);
    bool write_failed() const { return write_failed_; }

    void end_reply() { reply_ended_ = true; } // whatever is written from here on is dropped

    bool is_readable() const override;
    bool is_writable() const override;
    ssize_t read(char* bytes, std::size_t size) override;
    ssize_t write(const char* bytes, std::size_t size) override;
    void get_remote_ip_and_port(std::string& ip, int& port) const override;
    void get_local_ip_and_port(std::string& ip, int& port) const override;
    int socket() const override { return socket_; }

    // Reads this head, which came earlier, and answers with this reply.
    void repeat(std::string head, Reply reply);

    std::optional<Reply> ready;       // the reply to a request that is read once more
    decltype(Reply::put_off) put_off; // nothing is written: the reply comes later
    decltype(Reply::unsent) unsent;   // what to do should the reply not get through

  private:
    ssize_t receive(char* bytes, std::size_t size);
    void note_received(std::string_view bytes);
    bool write_all(const char* bytes, std::size_t size);
    bool write_body(std::string_view bytes);
    bool write_slowly(std::string_view bytes);
    bool write_corrupted(std::string bytes);
    bool write_half(std::string_view bytes);
    std::size_t head_left(std::string_view bytes);

    const int socket_;
    SSL* const ssl_;
    const Misbehaviour misbehaviour_;
    std::string repeated_;
    std::string received_;
    bool head_received_ = false;
    std::array<char, 16384> buffer_; // the HTTP library reads much byte by byte
    std::string_view buffered_;      // of that, what the library has not had yet
    std::size_t allowed_;            // bytes that may still come
    bool overran_ = false;
    bool reply_ended_ = false;
    bool reply_expected_ = false;
    std::string reply_head_;
    std::size_t body_length_ = 0;
    std::size_t body_written_ = 0;
    bool write_failed_ = false;
};

} // namespace lab
