// Replies that no honest cloud sends.
#pragma once

#include "lab/connection.h"
#include "lab/http.h"

namespace lab {

// The reply in the place of the one that would be made, for faults that make one: then the request
// is not processed.
bool has_spoiled_reply(Fault fault);
Reply make_spoiled_reply(const Misbehaviour& misbehaviour);

// Writes a reply that breaks the rules of HTTP, for faults that are about that, past the HTTP
// library. False: there is nothing unruly about this one.
bool write_unruly(Connection& connection, const Reply& reply);

} // namespace lab
