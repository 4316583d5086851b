// What can be wrong with a network or with what answers on it.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

struct Misbehaviour {
    enum Kind {
        nothing,
        of_lab,        // the lab does it when it is given `order`
        of_name,       // the host's name does not resolve
        of_family,     // the host's name leads to an IPv6 address only
        of_certificate // as of_lab, where there is TLS
    };
    std::string name;
    Kind kind;
    nlohmann::json order = {};

    bool is_silent() const { return name == "silent"; }
    bool is_slow() const { return name == "one byte a second"; }
    bool concerns_name() const { return kind == of_name || kind == of_family; }
};

// In the order in which tables show them.
const std::vector<Misbehaviour>& all_misbehaviours();
