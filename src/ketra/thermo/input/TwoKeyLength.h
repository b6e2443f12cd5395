#pragma once

#include <ketra/thermo/input/Length.h>
#include <ketra/thermo/input/OptionalQuantity.h>

namespace thermo::input {

/// A length that may be absent, with two keys: one under which a document is searched for it, and
/// one that a setter gives it. The member keeps the key with which it came up.
class KETRA_API TwoKeyLength : public OptionalQuantity<Length>
{
public:
    TwoKeyLength(const char* readKey, const char* setKey, double initialValue, UNITS stated,
                 const char* absent)
        : OptionalQuantity(setKey, initialValue, stated, absent),
          found(readKey, initialValue, stated)
    {
    }

    const std::string& getKey() const override { return found.getName(); }
    Node& renew() override { return member.emplace(found); }

private:
    Length found; // what a member of a document is before it is read
};

} // namespace thermo::input
