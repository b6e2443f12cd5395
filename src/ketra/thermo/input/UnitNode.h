#pragma once

#include <ketra/thermo/input/DataValue.h>

namespace thermo::input {

/// The document's side of a number with a unit: the group `{ value = 2.5; unit = "MPa"; }`.
/// What the units are is the business of `UnitValue`.
class KETRA_API UnitNode : public Node
{
protected:
    UnitNode(const char* key, double initial) : Node(key), value("value", initial) {}
    UnitNode(const std::string& key, double initial) : Node(key), value("value", initial) {}

    /// Reads the number, and the text of the unit into \p unitText, which keeps what it holds if
    /// the group states none. \returns whether the document has the group at all
    bool readGroup(const libconfig::Setting& parent, std::string& unitText);
    /// Writes the number, and with \p all the unit: a number without a unit is in the assumed one.
    void writeGroup(libconfig::Setting& parent, bool all, const char* unitText);
    /// Logs that \p text is no unit of a \p what, and throws.
    /// \throws Exception 4
    [[noreturn]] static void failUnknown(const char* what, const char* text);

    DataValue<double> value; // in the stated unit
};

} // namespace thermo::input
