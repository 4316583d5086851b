// What is judged, family by family; each in a file of its own.
#pragma once

#include "judge/cloud/session.h"

namespace judge::cloud {

void judge_certificates(Session& session); // certificates.cpp
void judge_checkins(Session& session);     // checkins.cpp
void judge_refusals(Session& session);     // refusals.cpp
void judge_nonces(Session& session);       // nonces.cpp
void judge_pace(Session& session);         // pace.cpp
void judge_settings(Session& session);     // settings.cpp
void judge_keeper(Session& session);       // keeper.cpp
void judge_time(Session& session);         // time.cpp
void judge_fallback(Session& session);     // fallback.cpp

struct Family {
    const char* name;
    void (*judge)(Session& session);
};

constexpr Family families[] = {
    {"certificates", judge_certificates},
    {"check-ins", judge_checkins},
    {"refusals", judge_refusals},
    {"nonces", judge_nonces},
    {"pace", judge_pace},
    {"fallback", judge_fallback},
    {"settings", judge_settings},
    {"keeper", judge_keeper},
    {"time", judge_time},
};

} // namespace judge::cloud
