// Stands before the C library's look-up of names, which libcurl calls on threads of its own.
#include "tests/support/name_service.h"

#include <dlfcn.h>
#include <netdb.h>

#include <atomic>
#include <mutex>
#include <thread>

namespace {

std::mutex guard;
std::string known_host;
std::atomic<NameService::Answer> current;
std::atomic<int> asked;
std::atomic<std::chrono::microseconds> needed_time;

bool is_known(const char* host) {
    std::lock_guard lock(guard);
    return host && !known_host.empty() && known_host == host;
}

void know(const std::string& host) {
    std::lock_guard lock(guard);
    known_host = host;
    asked = 0;
    needed_time = std::chrono::microseconds(0);
}

// Null where the host has no address of the family that is asked for.
const char* address_for(const addrinfo* hints) {
    switch (current) {
    case NameService::Answer::this_machine:
        return "127.0.0.1";
    case NameService::Answer::this_machine_ipv6:
        return hints && hints->ai_family == AF_INET ? nullptr : "::ffff:127.0.0.1";
    default:
        return nullptr;
    }
}

} // namespace

NameService::NameService(const std::string& host, Answer answer) {
    know(host);
    change(answer);
}
NameService::~NameService() { know(""); }
void NameService::change(Answer answer) { current = answer; }
void NameService::take_time(std::chrono::microseconds time) { needed_time = time; }
int NameService::lookups() const { return asked; }

extern "C" int
getaddrinfo(const char* host, const char* service, const addrinfo* hints, addrinfo** found) {
    using LookUp = int (*)(const char*, const char*, const addrinfo*, addrinfo**);
    static const auto look_up = reinterpret_cast<LookUp>(dlsym(RTLD_NEXT, "getaddrinfo"));
    if (!is_known(host))
        return look_up(host, service, hints, found);
    ++asked;
    std::this_thread::sleep_for(needed_time.load());
    const char* address = address_for(hints);
    return address ? look_up(address, service, hints, found) : EAI_NONAME;
}
