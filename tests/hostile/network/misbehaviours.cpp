// The list of what can be wrong.
#include "tests/hostile/network/misbehaviours.h"

const std::vector<Misbehaviour>& all_misbehaviours() {
    using M = Misbehaviour;
    static const std::vector<Misbehaviour> list = {
        {"nothing", M::nothing},
        {"refused", M::of_lab, {{"mode", "refuse"}}},
        {"reset", M::of_lab, {{"mode", "reset"}}},
        {"silent", M::of_lab, {{"mode", "silent"}}},
        {"one byte a second", M::of_lab, {{"mode", "slow"}}},
        {"body shorter than announced", M::of_lab, {{"mode", "truncate"}}},
        {"body longer than announced", M::of_lab, {{"mode", "short-length"}}},
        {"one byte altered", M::of_lab, {{"mode", "corrupt"}}},
        {"endless body", M::of_lab, {{"mode", "endless"}}},
        {"endless head", M::of_lab, {{"mode", "endless-head"}}},
        {"compressed bomb", M::of_lab, {{"mode", "bomb"}}},
        {"redirection", M::of_lab, {{"mode", "redirect"}}},
        {"status 204", M::of_lab, {{"mode", "status"}, {"status", 204}}},
        {"status 301", M::of_lab, {{"mode", "status"}, {"status", 301}}},
        {"status 403", M::of_lab, {{"mode", "status"}, {"status", 403}}},
        {"status 500", M::of_lab, {{"mode", "status"}, {"status", 500}}},
        {"status 503", M::of_lab, {{"mode", "status"}, {"status", 503}}},
        {"certificate of another name", M::of_certificate, {{"mode", "wrong-name"}}},
        {"certificate expired", M::of_certificate, {{"mode", "expired"}}},
        {"certificate of an unknown authority", M::of_certificate, {{"mode", "unknown-ca"}}},
        {"name does not resolve", M::of_name},
        {"IPv6 only", M::of_family},
    };
    return list;
}
