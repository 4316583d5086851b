// The walk over the access lists of a type.
#pragma once

#include "base/errors.h"
#include "platform/acl.h"

// Calls `visit(name)` for each list until it returns non-zero, which is then the result. A list
// whose name cannot be read is recorded and left out; a failed count is recorded and returned.
template <class Visit> int for_each_list(uint32_t type, Visit visit) {
    uint32_t count = 0;
    if (int code = sal_acl_entry_countByType_get(type, &count))
        return record_error(code);
    for (uint32_t index = 0; index < count; ++index) {
        char name[ACL_NAME_LENGTH + 1] = {};
        if (int code = sal_acl_entry_nameByIdx_get(name, type, index)) {
            record_error(code);
            continue;
        }
        if (int result = visit(static_cast<const char*>(name)))
            return result;
    }
    return 0;
}
