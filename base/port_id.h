// How the cloud names a port: "3" for the third copper port, "F1" for a fibre port, "trunk2" for an
// aggregation group.
#pragma once

enum { PORT_ID_SIZE = 20 }; // bytes, for any number of ports

// Writes the id of a zero-based logical port into `id`, which holds PORT_ID_SIZE bytes.
void format_port_id(int port, char* id);

// Finds the zero-based logical port that `id` names. What follows the number is ignored, and the
// number is taken as it is: a port that the switch does not have is the caller's to refuse. False,
// with `*port` unchanged, when there is no number where the form wants it, or one that no int
// holds.
bool parse_port_id(const char* id, int* port);

// The same for ids of copper ports only, as cable tests take them.
bool parse_copper_port_id(const char* id, int* port);
