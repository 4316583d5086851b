// A cloud in a process of its own, so that what it holds is not counted with the agent's. It
// answers check-ins late, some with settings; it holds a long-poll, answers it, breaks its answer
// in two, or hangs up, as it comes.
#pragma once

#include <sys/types.h>

#include <string>

class RestlessCloud {
  public:
    explicit RestlessCloud(unsigned seed);
    ~RestlessCloud();
    RestlessCloud(const RestlessCloud&) = delete;
    RestlessCloud& operator=(const RestlessCloud&) = delete;

    std::string host(const std::string& name = "127.0.0.1") const {
        return name + ":" + std::to_string(port_);
    }

  private:
    int port_;
    pid_t process_;
};
