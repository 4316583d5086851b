// A listening port of the lab: accepts connections on loopback, one thread each until there is a
// reply or it is put off, and hands whole requests to a handler. A port with certificates speaks
// TLS to who starts with TLS and plain HTTP to everyone else, for a switch uses one "host:port"
// text for both.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "lab/ca.h"
#include "lab/http.h"
#include "lab/misbehaviour.h"

namespace lab {

struct ListenerPlan {
    int port = 0;           // 0: any free one
    std::string plain_name; // the misbehaviours' word for its plain side
    Handler plain;
    std::string tls_name = {}; // and for its TLS side
    Handler tls = {};
    const CertificateAuthority* authority = nullptr; // none: plain only
    Misbehaviours* misbehaviours = nullptr;          // none: always behaves
    // How many bytes of a body a request may bring, asked before any is read. None: 64 KiB.
    std::function<std::size_t(const Call& without_body)> body_limit = {};
    std::function<void(const std::string& text)> on_tls_failure = {};
    // A connection that ended before a request came; `listener` is the side's name.
    std::function<void(const std::string& listener, int port, const std::string& how)>
        on_no_request = {};
    std::function<void(const std::string& listener, int port, Fault fault)> on_misbehaviour = {};
};

class Listener {
  public:
    explicit Listener(ListenerPlan plan);
    ~Listener();
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    // Throws when the port is taken. The port stays the same over close and open.
    void open();
    // Ends every connection and stops listening. With keep_port the port is held, so that a peer
    // is refused and no other program can take it.
    void close(bool keep_port = false);
    int port() const;
    // Serves one connection that came some other way, on the calling thread, and closes it unless
    // its reply was put off.
    void serve(int socket);

  private:
    class Server;
    std::unique_ptr<Server> server_;
};

} // namespace lab
