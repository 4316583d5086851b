// The only place that knows the HTTP server library.
#include "lab/listener.h"

#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <stdexcept>
#include <thread>
#include <utility>

#include "lab/body_share.h"
#include "lab/connection.h"
#include "lab/open_sockets.h"
#include "lab/spoiled_reply.h"
#include "lab/thread_each.h"

namespace lab {

namespace {

constexpr int first_byte_wait_ms = 5000;
constexpr time_t io_timeout_seconds = 10;
constexpr std::size_t most_threads = 256; // of one port; beyond that a new connection waits
constexpr int backlog = 128;
constexpr auto most_patience = std::chrono::seconds(60); // with a slow peer, when threads run out
constexpr auto drain_seconds = std::chrono::seconds(2);
constexpr std::size_t little_body = 64 << 10;
constexpr unsigned char tls_handshake_record = 0x16;

std::string describe_failure(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const std::exception& known) {
        return std::string(known.what()) + "\n";
    } catch (...) {
        return "unknown failure\n";
    }
}

// The library's way to run a task, on a thread of its own.
class ConnectionThreads : public httplib::TaskQueue {
  public:
    explicit ConnectionThreads(std::function<void()> when_full)
        : threads_(most_threads, std::move(when_full)) {}
    void enqueue(std::function<void()> task) override { threads_.run(std::move(task)); }
    void shutdown() override { threads_.wait_for_all(); }

  private:
    ThreadEach threads_;
};

// The library's handlers see its request only; the connection of the thread gives them the rest.
thread_local Connection* current_connection = nullptr;
thread_local std::chrono::steady_clock::time_point connected_at;

Certificate choose_certificate(Fault fault) {
    switch (fault) {
    case Fault::expired:
        return Certificate::expired;
    case Fault::unknown_ca:
        return Certificate::unknown_ca;
    case Fault::wrong_name:
        return Certificate::wrong_name;
    default:
        return Certificate::good;
    }
}

// -1: nothing came.
int peek_first_byte(int socket) {
    pollfd entry{socket, POLLIN, 0};
    unsigned char byte = 0;
    if (poll(&entry, 1, first_byte_wait_ms) <= 0 || recv(socket, &byte, 1, MSG_PEEK) != 1)
        return -1;
    return byte;
}

void wait_for_end(int socket) {
    pollfd entry{socket, POLLRDHUP, 0};
    poll(&entry, 1, -1);
}

void reset(int socket) {
    const linger at_once{1, 0};
    setsockopt(socket, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
}

// The server sees the wrong name by what the peer asked for, if it asked for a name at all.
std::string describe_name(SSL* ssl) {
    const char* asked = SSL_get_servername(ssl, TLSEXT_NAMETYPE_host_name);
    X509* certificate = SSL_get_certificate(ssl);
    if (!asked || X509_check_host(certificate, asked, 0, 0, nullptr) == 1)
        return {};
    return std::string("; it asked for \"") + asked + "\", which is not a name of the certificate";
}

std::string take_tls_error() {
    const auto code = ERR_get_error();
    ERR_clear_error();
    const char* reason = code ? ERR_reason_error_string(code) : nullptr;
    return reason ? reason : "connection closed";
}

sockaddr_in loopback_address(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
}

void reuse_address(int socket) {
    const int on = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
}

// Bound and not listening: the kernel refuses who connects. -1 when it cannot be had.
int hold_port(int port) {
    const int held = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    reuse_address(held);
    const sockaddr_in address = loopback_address(port);
    if (bind(held, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
        return held;
    ::close(held);
    return -1;
}

// A peer that is still sending would have its connection reset by a close, and never read the
// reply.
void drain(int socket) {
    shutdown(socket, SHUT_WR);
    const auto end = std::chrono::steady_clock::now() + drain_seconds;
    pollfd entry{socket, POLLIN, 0};
    char bytes[16384];
    while (std::chrono::steady_clock::now() < end && poll(&entry, 1, 500) > 0 &&
           recv(socket, bytes, sizeof bytes, MSG_DONTWAIT) > 0)
        ;
}

// A connection from its acceptance to its close.
class TakenSocket {
  public:
    TakenSocket(OpenSockets& all, int number) : all_(all), number_(number) {}
    ~TakenSocket() {
        all_.remove(number_);
        ::close(number_);
    }
    TakenSocket(const TakenSocket&) = delete;
    TakenSocket& operator=(const TakenSocket&) = delete;
    int number() const { return number_; }

  private:
    OpenSockets& all_;
    const int number_;
};

using SharedSocket = std::shared_ptr<TakenSocket>;

// What is kept of a connection whose reply was put off.
class HeldConnection : public Waiter {
  public:
    using Answer = std::function<void(const Reply&)>;

    HeldConnection(int socket, Answer answer) : socket_(socket), answer_(std::move(answer)) {}
    bool hung_up() const override { return has_hung_up(socket_); }
    void answer(const Reply& reply) override { std::exchange(answer_, nullptr)(reply); }

  private:
    const int socket_;
    Answer answer_; // owns the socket, until it is called
};

struct Body {
    std::string bytes;
    std::string flaw; // as in Call
};

// Without either header the library would read until the peer closes.
bool announces_body(const httplib::Request& request) {
    return request.has_header("Content-Length") || request.has_header("Transfer-Encoding");
}

// Counts what comes, for a header may announce anything.
Body read_body(const httplib::ContentReader& reader, std::size_t most, BodyShare& share) {
    Body body;
    const bool whole = reader([&](const char* bytes, std::size_t size) {
        if (body.bytes.size() + size > most)
            body.flaw = "the body is longer than " + std::to_string(most) + " bytes";
        else if (!share.grow(size))
            body.flaw = "there are too many long bodies at once";
        else
            body.bytes.append(bytes, size);
        return body.flaw.empty();
    });
    if (!whole && current_connection->overran())
        body.flaw = "the body is longer than " + std::to_string(most) + " bytes";
    else if (!whole && body.flaw.empty())
        body.flaw = "the body ended after " + std::to_string(body.bytes.size()) + " bytes";
    return body;
}

} // namespace

class Listener::Server : public httplib::Server {
  public:
    explicit Server(ListenerPlan plan) : plan_(std::move(plan)), port_(plan_.port) {
        new_task_queue = [this] { return new ConnectionThreads([this] { sockets_.end_slow(); }); };
        set_socket_options(reuse_address);
        set_tcp_nodelay(true);
        set_read_timeout(io_timeout_seconds);
        set_write_timeout(io_timeout_seconds);
        route();
    }

    void open() {
        if (accepting_.joinable())
            return;
        bind_loopback();
        if (held_ >= 0)
            ::close(std::exchange(held_, -1));
        sockets_.reopen();
        accepting_ = std::thread([this] { listen_after_bind(); });
        while (!is_running()) // stop() would pass unheard before that
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }

    void close(bool keep_port) {
        if (accepting_.joinable()) {
            sockets_.end_all();
            stop();
            accepting_.join();
            answering_.wait_for_all();
        }
        if (keep_port && held_ < 0)
            held_ = hold_port(port_);
        if (!keep_port && held_ >= 0)
            ::close(std::exchange(held_, -1));
    }

    int port() const { return port_; }
    void take(int socket) { process_and_close_socket(socket); }

  private:
    using Request = httplib::Request;
    using Response = httplib::Response;

    void route() {
        const auto bare = [this](const Request& request, Response& response) {
            answer(make_call(request), response);
        };
        const auto with_body = [this](
                                   const Request& request, Response& response,
                                   const httplib::ContentReader& reader) {
            answer_with_body(request, response, reader);
        };
        Get(".*", bare);
        Options(".*", bare);
        Delete(".*", bare);
        Post(".*", with_body);
        Put(".*", with_body);
        Patch(".*", with_body);
        // What the library itself finds fault with, such as an unreadable head.
        set_error_handler([this](const Request& request, Response& response) {
            if (response.body.empty())
                answer(make_call(request), response);
        });
        set_exception_handler([](const Request&, Response& response, std::exception_ptr failure) {
            response.status = 500;
            response.set_content(
                "the lab cloud failed: " + describe_failure(failure), "text/plain");
        });
    }

    void bind_loopback() {
        if (port_ == 0)
            port_ = std::max(0, bind_to_any_port("127.0.0.1"));
        else if (!bind_to_port("127.0.0.1", port_))
            throw std::runtime_error("port " + std::to_string(port_) + " is taken");
        if (port_ == 0)
            throw std::runtime_error("no free port");
        ::listen(svr_sock_, backlog); // the library's own backlog of 5 is soon full
    }

    void answer_with_body(
        const Request& request, Response& response, const httplib::ContentReader& reader) {
        Call call = make_call(request);
        BodyShare share;
        Body body{{}, "there is no Content-Length"};
        if (announces_body(request)) {
            const std::size_t most = plan_.body_limit ? plan_.body_limit(call) : little_body;
            current_connection->allow_body(most);
            body = read_body(reader, most, share);
        }
        call.body = std::move(body.bytes);
        call.body_flaw = std::move(body.flaw);
        answer(call, response);
    }

    void answer(const Call& call, Response& response) {
        Connection& connection = *current_connection;
        sockets_.work(connection.socket());
        Reply reply = connection.ready ? std::move(*connection.ready) : decide(call);
        sockets_.wait_for_peer(connection.socket());
        if (!reply.put_off && write_unruly(connection, reply))
            return;
        connection.put_off = reply.put_off;
        connection.unsent = reply.unsent;
        response.status = reply.status;
        for (const auto& [name, value] : reply.headers)
            response.set_header(name, value);
        if (reply.next_piece)
            return stream(response, std::move(reply));
        connection.expect_reply_body(reply.body.size());
        response.set_content(std::move(reply.body), reply.type);
    }

    Reply decide(const Call& call) const {
        const Connection& connection = *current_connection;
        if (has_spoiled_reply(connection.misbehaviour().fault))
            return make_spoiled_reply(connection.misbehaviour());
        return connection.tls() ? plan_.tls(call) : plan_.plain(call);
    }

    static void stream(Response& response, Reply reply) {
        response.set_chunked_content_provider(
            reply.type, [next = std::move(reply.next_piece)](std::size_t, httplib::DataSink& sink) {
                std::string piece;
                if (!next(piece))
                    sink.done();
                else
                    sink.write(piece.data(), piece.size());
                return true;
            });
    }

    // A request without its body; nothing of it when not even the head is whole.
    static Call make_call(const Request& request) {
        const Connection& connection = *current_connection;
        Call call;
        call.head = connection.head();
        if (!call.head.empty()) {
            call.method = request.method;
            call.path = request.path;
            for (const auto& [name, value] : request.params)
                call.query.emplace(name, value);
        }
        call.tls = connection.tls();
        call.port = connection.port();
        call.connected_at = connected_at;
        call.hung_up = [socket = connection.socket()] { return has_hung_up(socket); };
        return call;
    }

    // Bodies come in as they are, and replies go out whole and as they are: tests count their
    // bytes.
    static void take_as_it_is(Request& request) {
        for (const char* name : {"Accept-Encoding", "Content-Encoding", "Content-Type"})
            request.headers.erase(name);
        request.ranges.clear();
    }

    bool process_and_close_socket(int socket) override {
        const auto taken = std::make_shared<TakenSocket>(sockets_, socket);
        if (sockets_.add(socket)) {
            const timeval timeout{io_timeout_seconds, 0};
            setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout);
            setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &timeout, sizeof timeout);
            serve(taken);
        }
        return true;
    }

    void serve(const SharedSocket& socket) {
        connected_at = std::chrono::steady_clock::now();
        const int byte = peek_first_byte(socket->number());
        if (byte < 0)
            return note_no_request(plan_.plain_name, "a connection closed without a request");
        const bool tls = byte == tls_handshake_record;
        if (tls && !plan_.authority)
            return;
        const Misbehaviour misbehaviour = take_misbehaviour(tls);
        if (misbehaviour.fault == Fault::reset)
            reset(socket->number());
        else if (misbehaviour.fault == Fault::silent)
            wait_for_end(socket->number());
        else if (tls)
            serve_tls(socket, misbehaviour);
        else
            serve_request(socket, nullptr, misbehaviour);
    }

    void note_no_request(const std::string& name, const std::string& how) const {
        if (plan_.on_no_request && !sockets_.closing())
            plan_.on_no_request(name, port_, how);
    }

    Misbehaviour take_misbehaviour(bool tls) {
        const std::string& name = tls ? plan_.tls_name : plan_.plain_name;
        if (!plan_.misbehaviours)
            return {};
        const Misbehaviour taken = plan_.misbehaviours->take(name, port_);
        if (taken.fault != Fault::none && plan_.on_misbehaviour)
            plan_.on_misbehaviour(name, port_, taken.fault);
        return taken;
    }

    void serve_tls(const SharedSocket& socket, const Misbehaviour& misbehaviour) {
        SSL_CTX* context = plan_.authority->context(choose_certificate(misbehaviour.fault));
        const std::unique_ptr<SSL, void (*)(SSL*)> ssl(SSL_new(context), SSL_free);
        if (!ssl || SSL_set_fd(ssl.get(), socket->number()) != 1)
            return;
        if (SSL_accept(ssl.get()) != 1) {
            if (plan_.on_tls_failure)
                plan_.on_tls_failure(take_tls_error() + describe_name(ssl.get()));
            return;
        }
        // After a body cut short, no farewell either: the peer must see a broken connection.
        if (serve_request(socket, ssl.get(), misbehaviour))
            SSL_shutdown(ssl.get());
        ERR_clear_error();
    }

    bool serve_request(const SharedSocket& socket, SSL* ssl, const Misbehaviour& misbehaviour) {
        Connection connection(socket->number(), ssl, misbehaviour);
        process(connection);
        if (connection.head().empty())
            note_no_request(
                ssl ? plan_.tls_name : plan_.plain_name,
                ssl ? "TLS came about, and the peer closed without a request, as one does that "
                      "finds another name in the certificate" +
                          describe_name(ssl)
                    : std::string("a connection closed in the middle of a request's head"));
        if (connection.put_off)
            hold(socket, connection);
        if (connection.overran())
            drain(socket->number());
        return !connection.write_failed();
    }

    void process(Connection& connection) {
        current_connection = &connection;
        bool closed = false;
        process_request(connection, true, closed, take_as_it_is);
        current_connection = nullptr;
        if (connection.write_failed() && connection.unsent)
            connection.unsent();
    }

    // The library has a reply to every request, which is not written; when there is one, it is
    // given the request once more.
    void hold(const SharedSocket& socket, const Connection& connection) {
        sockets_.work(socket->number());
        const auto answer = [this, socket, head = connection.head(),
                             misbehaviour = connection.misbehaviour()](const Reply& reply) {
            answering_.run([this, socket, head, misbehaviour, reply] {
                Connection again(socket->number(), nullptr, misbehaviour);
                again.repeat(head, reply);
                process(again);
            });
        };
        connection.put_off(std::make_unique<HeldConnection>(socket->number(), answer));
    }

    const ListenerPlan plan_;
    int port_;
    int held_ = -1;
    OpenSockets sockets_{most_patience};
    ThreadEach answering_{most_threads, [this] { sockets_.end_slow(); }}; // what was put off
    std::thread accepting_;
};

Listener::Listener(ListenerPlan plan) : server_(std::make_unique<Server>(std::move(plan))) {}

Listener::~Listener() { close(); }

void Listener::open() { server_->open(); }

void Listener::close(bool keep_port) { server_->close(keep_port); }

int Listener::port() const { return server_->port(); }

void Listener::serve(int socket) { server_->take(socket); }

} // namespace lab
