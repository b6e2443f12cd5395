#pragma once

#include <ketra/thermo/input/Optional.h>
#include <ketra/thermo/input/UnitValue.h>

namespace thermo::input {

/// A quantity that may be absent, and the words with which the log tells that it, or its unit, is.
/// It answers as the quantity does, so that accessors of both kinds of member read alike.
template <class Quantity> class KETRA_API OptionalQuantity : public Optional<Quantity>
{
public:
    using UNITS = typename Quantity::UNITS;

    /// \p absent says what could not be obtained from an absent member, \p absentUnit the same of
    /// its unit: by default the words of the member with " unit". Without a text nothing is logged.
    OptionalQuantity(const char* key, double initialValue, UNITS stated, const char* absent,
                     const char* absentUnit = nullptr)
        : Optional<Quantity>(key, initialValue, stated), what(absent), whatUnit(absentUnit)
    {
    }

    /// The value in the base unit, or as stated.
    /// \throws Exception 2 while the member is absent, as all the getters
    double valueFor(bool si) const { return this->at(what).valueFor(si); }
    /// The value in \p wanted.
    double get(UNITS wanted) const { return this->at(what).get(wanted); }
    /// The base unit, or the stated one.
    UNITS unitFor(bool si) const
    {
        if (!this->isSet()) failUnit();
        return this->at().unitFor(si);
    }

    /// Brings the member up if it is absent, and takes \p x given in \p in. With \p keepUnit the
    /// stated unit stays; a temperature always keeps its scale and takes no flag.
    template <class... KeepUnit> void set(double x, UNITS in, KeepUnit... keepUnit)
    {
        this->create().set(x, in, keepUnit...);
    }
    /// The same, but a member that this brings up has \p x in \p in as its default too, so that a
    /// sparse document leaves it out.
    void setWithDefault(double x, UNITS in, bool keepUnit)
    {
        if (!this->isSet()) this->member.emplace(this->getKey(), x, in);
        set(x, in, keepUnit);
    }

private:
    [[noreturn]] void failUnit() const
    {
        if (whatUnit == nullptr) this->failAbsentUnit(what);
        if (*whatUnit == '\0') this->failAbsent();
        this->failAbsent(whatUnit);
    }

    const char* what;
    const char* whatUnit;
};

} // namespace thermo::input
