#pragma once

#include <ketra/thermo/input/Section.h>

namespace thermo::input {

/// A section that reads and writes the very group that it is given: an element of a list of the
/// document, which has no key of its own, or the members of a group that holds others too.
class KETRA_API Element : public Section
{
public:
    explicit Element(const char* key = "") : Section(key) {}

    /// \throws Exception 4 for an unknown unit
    void read(const libconfig::Setting& group) override { readMembers(group); }
    void write(libconfig::Setting& group, bool all) override { writeMembers(group, all); }
};

} // namespace thermo::input
