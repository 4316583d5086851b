// Which function answers which request to the admin interface.
#pragma once

#include "lab/admin/request.h"

namespace lab {

// Throws a Refusal: 404 for a path that is in no line of the table, 405 for another method.
Reply route(const Call& call, AdminParts& parts);

} // namespace lab
