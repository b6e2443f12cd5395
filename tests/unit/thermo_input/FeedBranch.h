#pragma once

#include <ketra/thermo/input/PropellantFeedSystem.h>

namespace ketra_test {

/// A new branch with a name alone, the caller's.
inline thermo::input::BranchParameters* branchOf(const char* name)
{
    auto* branch = new thermo::input::BranchParameters;
    branch->setName(name);
    return branch;
}

} // namespace ketra_test
