// A name service that knows one host more, and counts who asks for it.
#pragma once

#include <chrono>
#include <string>

class NameService {
  public:
    enum class Answer {
        this_machine,      // by IPv4
        this_machine_ipv6, // by IPv6 alone: an address that leads to what listens on IPv4
        none,              // there is no such host
    };

    explicit NameService(const std::string& host, Answer answer = Answer::this_machine);
    ~NameService();
    NameService(const NameService&) = delete;
    NameService& operator=(const NameService&) = delete;

    void change(Answer answer);
    void take_time(std::chrono::microseconds time); // for each look-up from now on
    int lookups() const;
};
