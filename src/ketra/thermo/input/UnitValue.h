#pragma once

#include <ketra/thermo/input/UnitNode.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <string>

namespace thermo::input {

/// One row of the table of a unit class.
template <class Enumeration> struct Unit {
    Enumeration unit;
    double factor;                        ///< base units in one of this unit
    std::array<const char*, 4> spellings; ///< accepted texts, the first one is printed
};

/// A quantity of the document: a number and the unit in which its author stated it. The stated unit
/// is remembered, so that a document is written back as it was meant, and converted on demand.
///
/// \p Units has the enumeration `UNITS`, its base unit, the words of the unknown-unit message and
/// the table; a dimension whose conversion is not a factor has its own `convert`.
template <class Units> class KETRA_API UnitValue : public UnitNode, public Units
{
public:
    using typename Units::UNITS; // the enumerators come from the same base: Pressure::BAR

    /// \p initial is both default and value, in \p stated.
    UnitValue(const char* key, double initial, UNITS stated) : UnitNode(key, initial), unit(stated)
    {
    }
    UnitValue(const std::string& key, double initial, UNITS stated)
        : UnitNode(key, initial), unit(stated)
    {
    }

    /// The number as stated.
    double getValue() const { return value.get(); }
    /// The stated unit.
    UNITS getUnit() const { return unit; }
    const char* getRawUnit() const { return unitToRaw(unit); }
    /// \throws Exception 4 if \p text is no unit of this class
    void setRawUnit(const char* text) { unit = rawToUnit(text); }

    /// The value in \p wanted.
    double get(UNITS wanted) const { return convert(value.get(), unit, wanted); }
    /// The default, which is taken to be in the stated unit, in \p wanted.
    double getDefault(UNITS wanted) const { return convert(value.getDefault(), unit, wanted); }
    /// The value in the base unit, or as stated.
    double valueFor(bool si) const { return si ? get(Units::base) : getValue(); }
    /// The base unit, or the stated one.
    UNITS unitFor(bool si) const { return si ? Units::base : unit; }

    /// Adds \p x given in \p in. \returns the new value in the base unit
    double add(double x, UNITS in);
    /// \returns the new value in the base unit
    double multiply(double factor);
    /// Takes \p x given in \p in. With \p keepUnit the stated unit stays and \p x is converted to
    /// it, otherwise \p in becomes the stated unit. \returns the new value in the base unit
    double set(double x, UNITS in, bool keepUnit);

    /// The name of \p wanted as the document writes it; a unit without a name counts as the base.
    static const char* unitToRaw(UNITS wanted) { return row(wanted).spellings[0]; }
    /// The unit spelt \p text, with the case of its letters; logs what it does not know.
    /// \throws Exception 4
    static UNITS rawToUnit(const char* text);
    /// Base units in one \p wanted.
    static double getConversionFactor(UNITS wanted) requires(!requires { Units::convert; })
    {
        return row(wanted).factor;
    }
    static double convert(double x, UNITS from, UNITS to);

    /// The group's number and unit; nothing if the group is absent. A group without a unit is in
    /// the base unit.
    /// \throws Exception 4 for an unknown unit
    void read(const libconfig::Setting& parent) override;
    void write(libconfig::Setting& parent, bool all) override
    {
        writeGroup(parent, all, getRawUnit());
    }

protected:
    double getConversionFactor() const requires(!requires { Units::convert; })
    {
        return row(unit).factor;
    }

private:
    static const Unit<UNITS>& row(UNITS wanted);

    UNITS unit; // the stated one
};

template <class Units> double UnitValue<Units>::add(double x, UNITS in)
{
    value.set(value.get() + convert(x, in, unit));
    return get(Units::base);
}

template <class Units> double UnitValue<Units>::multiply(double factor)
{
    value.set(value.get() * factor);
    return get(Units::base);
}

template <class Units> double UnitValue<Units>::set(double x, UNITS in, bool keepUnit)
{
    if (in != unit && keepUnit) {
        value.set(convert(x, in, unit));
    } else {
        value.set(x);
        unit = in;
    }
    return get(Units::base);
}

template <class Units>
typename UnitValue<Units>::UNITS UnitValue<Units>::rawToUnit(const char* text)
{
    const char* given = text != nullptr ? text : "";
    for (const Unit<UNITS>& candidate : Units::table)
        for (const char* spelling : candidate.spellings)
            if (spelling != nullptr && std::strcmp(given, spelling) == 0) return candidate.unit;
    failUnknown(Units::what, given);
}

template <class Units> double UnitValue<Units>::convert(double x, UNITS from, UNITS to)
{
    if constexpr (requires { Units::convert; })
        return Units::convert(x, from, to);
    else
        return x * row(from).factor / row(to).factor;
}

template <class Units> void UnitValue<Units>::read(const libconfig::Setting& parent)
{
    std::string text = unitToRaw(Units::base);
    if (readGroup(parent, text)) unit = rawToUnit(text.c_str());
}

template <class Units>
const Unit<typename UnitValue<Units>::UNITS>& UnitValue<Units>::row(UNITS wanted)
{
    const Unit<UNITS>* base = nullptr;
    for (const Unit<UNITS>& candidate : Units::table) {
        if (candidate.unit == wanted) return candidate;
        if (candidate.unit == Units::base) base = &candidate;
    }
    return *base;
}

} // namespace thermo::input
