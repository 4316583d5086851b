// What a source with all its mutants in it asks: is this the one that is switched on? What was
// asked is kept, so that it is known which test reaches which mutant.
#pragma once

namespace vx_mutants {

struct Source {
    int switched_on;
    unsigned char* reached;
    bool is(int mutant) const {
        reached[mutant] = 1;
        return mutant == switched_on;
    }
};

// The mutants of a source, 1 to `count`; 0 is none of them.
Source enter(const char* path, int count);

} // namespace vx_mutants
