// Taking a port down and up again, so that both ends of its link start afresh.
#pragma once

// Disables `port`, waits a second, enables it. Nobody watches the results: a port that stays down
// shows in the next report.
void bounce_port(int port);

// The same for a port that is enabled; a disabled one is left alone. Returns 0, or the code of a
// state that could not be read.
int bounce_enabled_port(int port);
