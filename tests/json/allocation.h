// Makes an allocation of the code under test fail: those that go through cJSON, and those that the
// JSON layer makes itself.
#pragma once

#include <cjson/cJSON.h>

namespace allocation {

// While it lives, the `nth` allocation from now on (from 0), and every one after it if `for_good`,
// returns null.
class Failure {
  public:
    explicit Failure(int nth, bool for_good = false);
    ~Failure();
    Failure(const Failure&) = delete;
    Failure& operator=(const Failure&) = delete;
    bool happened() const;
};

} // namespace allocation
