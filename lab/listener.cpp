// The only place that knows the HTTP server library.
#include "lab/listener.h"

#include <openssl/err.h>
#include <openssl/ssl.h>

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <condition_variable>
#include <cstdio>
#include <exception>
#include <mutex>
#include <set>
#include <stdexcept>
#include <thread>
#include <utility>

#include "lab/connection.h"

namespace lab {

namespace {

constexpr int first_byte_wait_ms = 5000;
constexpr time_t io_timeout_seconds = 10;
constexpr std::size_t most_threads = 256; // of one port; beyond that a new connection waits
constexpr int backlog = 128;
constexpr std::size_t longest_body = 64u << 20;
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

// A thread for each connection: a waiting long-poll never takes the place of another request.
class ThreadEach : public httplib::TaskQueue {
  public:
    void enqueue(std::function<void()> task) override {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return running_ < most_threads; });
        running_++;
        std::thread([this, task = std::move(task)] {
            try {
                task();
            } catch (...) {
                std::fprintf(
                    stderr, "lab_cloud: %s", describe_failure(std::current_exception()).c_str());
            }
            // Notified under the lock: the queue may be gone as soon as the lock is.
            const std::lock_guard done(mutex_);
            running_--;
            changed_.notify_all();
        }).detach();
    }

    void shutdown() override {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return running_ == 0; });
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::size_t running_ = 0;
};

// The sockets in use, so that closing the listener can end them.
class OpenSockets {
  public:
    bool add(int socket) {
        const std::lock_guard lock(mutex_);
        if (!closing_)
            sockets_.insert(socket);
        return !closing_;
    }
    void remove(int socket) {
        const std::lock_guard lock(mutex_);
        sockets_.erase(socket);
    }
    void end_all() {
        const std::lock_guard lock(mutex_);
        closing_ = true;
        for (const int socket : sockets_)
            shutdown(socket, SHUT_RDWR);
    }
    void reopen() {
        const std::lock_guard lock(mutex_);
        closing_ = false;
    }

  private:
    std::mutex mutex_;
    std::set<int> sockets_;
    bool closing_ = false;
};

// The library's handlers see its request only; the connection of the thread gives them the rest.
thread_local Connection* current_connection = nullptr;

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

void reset(int socket) {
    const linger at_once{1, 0};
    setsockopt(socket, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
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

// What the library would read without an end, or take apart, is left unread.
bool is_body_readable(const httplib::Request& request) {
    return !request.is_multipart_form_data() &&
           (request.has_header("Content-Length") || request.has_header("Transfer-Encoding"));
}

} // namespace

class Listener::Server : public httplib::Server {
  public:
    explicit Server(ListenerPlan plan) : plan_(std::move(plan)), port_(plan_.port) {
        new_task_queue = [] { return new ThreadEach; };
        set_socket_options(reuse_address);
        set_tcp_nodelay(true);
        set_read_timeout(io_timeout_seconds);
        set_write_timeout(io_timeout_seconds);
        set_payload_max_length(longest_body);
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
        }
        if (keep_port && held_ < 0)
            held_ = hold_port(port_);
        if (!keep_port && held_ >= 0)
            ::close(std::exchange(held_, -1));
    }

    int port() const { return port_; }

  private:
    using Request = httplib::Request;
    using Response = httplib::Response;

    void route() {
        const auto bare = [this](const Request& request, Response& response) {
            answer(request, response, {}, true);
        };
        const auto with_body = [this](
                                   const Request& request, Response& response,
                                   const httplib::ContentReader& reader) {
            std::string body;
            const bool whole =
                is_body_readable(request) && reader([&](const char* bytes, std::size_t size) {
                    body.append(bytes, size);
                    return true;
                });
            answer(request, response, std::move(body), whole);
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
                answer(request, response, {}, false);
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

    void answer(const Request& request, Response& response, std::string body, bool whole) {
        Connection& connection = *current_connection;
        Reply reply;
        if (connection.misbehaviour().fault == Fault::status) {
            reply = {connection.misbehaviour().status, "told to fail\n", "text/plain"};
        } else {
            const Call call = make_call(request, connection, std::move(body), whole);
            reply = connection.tls() ? plan_.tls(call) : plan_.plain(call);
        }
        connection.unsent = reply.unsent;
        response.status = reply.status;
        for (const auto& [name, value] : reply.headers)
            response.set_header(name, value);
        if (reply.next_piece)
            return stream(response, std::move(reply));
        connection.expect_reply_body(reply.body.size());
        response.set_content(std::move(reply.body), reply.type);
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

    static Call
    make_call(const Request& request, Connection& connection, std::string body, bool whole) {
        Call call;
        call.method = request.method;
        call.path = request.path;
        for (const auto& [name, value] : request.params)
            call.query.emplace(name, value);
        call.head = connection.head();
        call.body = std::move(body);
        call.body_whole = whole;
        call.tls = connection.tls();
        call.port = connection.port();
        call.hung_up = [&connection] { return connection.hung_up(); };
        return call;
    }

    bool process_and_close_socket(int socket) override {
        if (sockets_.add(socket)) {
            const timeval timeout{io_timeout_seconds, 0};
            setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout);
            setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &timeout, sizeof timeout);
            serve(socket);
            sockets_.remove(socket);
        }
        ::close(socket);
        return true;
    }

    void serve(int socket) {
        const int byte = peek_first_byte(socket);
        if (byte < 0)
            return;
        const bool tls = byte == tls_handshake_record;
        if (tls && !plan_.authority)
            return;
        const Misbehaviour misbehaviour = take_misbehaviour(tls);
        if (misbehaviour.fault == Fault::reset)
            reset(socket);
        else if (tls)
            serve_tls(socket, misbehaviour);
        else
            serve_request(socket, nullptr, misbehaviour);
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

    void serve_tls(int socket, const Misbehaviour& misbehaviour) {
        SSL_CTX* context = plan_.authority->context(choose_certificate(misbehaviour.fault));
        const std::unique_ptr<SSL, void (*)(SSL*)> ssl(SSL_new(context), SSL_free);
        if (!ssl || SSL_set_fd(ssl.get(), socket) != 1)
            return;
        if (SSL_accept(ssl.get()) != 1) {
            if (plan_.on_tls_failure)
                plan_.on_tls_failure(take_tls_error());
            return;
        }
        // After a body cut short, no farewell either: the peer must see a broken connection.
        if (serve_request(socket, ssl.get(), misbehaviour))
            SSL_shutdown(ssl.get());
        ERR_clear_error();
    }

    bool serve_request(int socket, SSL* ssl, const Misbehaviour& misbehaviour) {
        Connection connection(socket, ssl, misbehaviour);
        current_connection = &connection;
        bool closed = false;
        // Replies go out whole and as they are: tests count their bytes.
        process_request(connection, true, closed, [](Request& request) {
            request.headers.erase("Accept-Encoding");
            request.ranges.clear();
        });
        current_connection = nullptr;
        if (connection.write_failed() && connection.unsent)
            connection.unsent();
        return !connection.write_failed();
    }

    const ListenerPlan plan_;
    int port_;
    int held_ = -1;
    OpenSockets sockets_;
    std::thread accepting_;
};

Listener::Listener(ListenerPlan plan) : server_(std::make_unique<Server>(std::move(plan))) {}

Listener::~Listener() { close(); }

void Listener::open() { server_->open(); }

void Listener::close(bool keep_port) { server_->close(keep_port); }

int Listener::port() const { return server_->port(); }

} // namespace lab
