// What the agent does before its first check-in.
#pragma once

#include "core/keeper.h"

// Never fails: what cannot be read stays empty and shows in check-ins that fail. Takes a little
// more than half a minute, so that the switch's own services come up first.
void start_up(KeeperThread* keeper);
