// What the cloud may ask for between two check-ins: one action a message.
#pragma once

#include "json/json_document.h"

// Carries out the message's "action", and raises setting_from_cloud where that changed anything. An
// action that is not known, or that lacks the "port" it needs, does nothing.
void perform_keeper_action(const cJSON* message);
