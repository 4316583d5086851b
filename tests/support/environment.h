// Variables of the environment as long as a test wants them.
#pragma once

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

class Environment {
  public:
    Environment(const std::vector<std::string>& names, const std::string& value) {
        for (const std::string& name : names) {
            const char* old = std::getenv(name.c_str());
            before_.emplace_back(name, old ? old : "");
            setenv(name.c_str(), value.c_str(), 1);
        }
    }
    ~Environment() {
        for (const auto& [name, value] : before_) {
            if (value.empty())
                unsetenv(name.c_str());
            else
                setenv(name.c_str(), value.c_str(), 1);
        }
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

  private:
    std::vector<std::pair<std::string, std::string>> before_;
};
