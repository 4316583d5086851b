// What a new aggregation group takes away from its members.
#pragma once

#include "platform/types.h"

extern "C" {

// Lifts the rate limits of the given logical ports, and deletes each static MAC address that lies
// on no other port than these. Failures are ignored.
void sn_trunkRelated(PortBitmap members);
}
