// The agent's life after its start: check in, sleep, and again.
#pragma once

#include "core/keeper.h"

// One turn: a check-in, a new connection keeper if its host was changed, and the sleep that the
// state of the connection asks for, if any.
void main_loop_turn(KeeperThread* keeper);
