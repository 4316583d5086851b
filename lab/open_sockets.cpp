// Sockets are only shut down here: whoever serves one closes it.
#include "lab/open_sockets.h"

#include <sys/socket.h>

namespace lab {

bool OpenSockets::add(int socket) {
    const std::lock_guard lock(mutex_);
    if (!closing_)
        waiting_since_[socket] = Clock::now();
    return !closing_;
}

void OpenSockets::remove(int socket) {
    const std::lock_guard lock(mutex_);
    waiting_since_.erase(socket);
}

void OpenSockets::wait_for_peer(int socket) {
    const std::lock_guard lock(mutex_);
    waiting_since_[socket] = Clock::now();
}

void OpenSockets::work(int socket) {
    const std::lock_guard lock(mutex_);
    waiting_since_[socket].reset();
}

void OpenSockets::end_slow() {
    const std::lock_guard lock(mutex_);
    for (const auto& [socket, since] : waiting_since_)
        if (since && Clock::now() - *since > patience_)
            shutdown(socket, SHUT_RDWR);
}

void OpenSockets::end_all() {
    const std::lock_guard lock(mutex_);
    closing_ = true;
    for (const auto& [socket, since] : waiting_since_)
        shutdown(socket, SHUT_RDWR);
}

void OpenSockets::reopen() {
    const std::lock_guard lock(mutex_);
    closing_ = false;
}

bool OpenSockets::closing() const {
    const std::lock_guard lock(mutex_);
    return closing_;
}

} // namespace lab
