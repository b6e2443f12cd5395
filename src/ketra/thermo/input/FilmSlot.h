#pragma once

#include <ketra/thermo/input/Component.h>
#include <ketra/thermo/input/Element.h>
#include <ketra/thermo/input/Length.h>
#include <ketra/thermo/input/NodeList.h>

namespace thermo::input {

/// A slot in the wall through which a film of coolant enters the chamber.
class KETRA_API FilmSlot : public Element
{
public:
    /// Where along the chamber the slot is; in m if \p si, else as stated.
    double getLocation(bool si) const { return location.valueFor(si); }
    double getLocation(Length::UNITS unit) const { return location.get(unit); }
    Length::UNITS getLocationUnit(bool si) const { return location.unitFor(si); }
    const char* getLocationRawUnit(bool si) const { return Length::unitToRaw(getLocationUnit(si)); }
    void setLocation(double x, Length::UNITS u, bool keepUnit) { location.set(x, u, keepUnit); }

    /// The components of the coolant. The list owns them; `addCoolant` takes ownership.
    /// \throws std::out_of_range for an index beyond the list
    /// \throws Exception 2 when a null pointer is added
    unsigned int getCoolantListSize() const { return coolant.size(); }
    Component* getCoolant(unsigned int i) { return &coolant.at(i); }
    const Component* getCoolant(unsigned int i) const { return &coolant.at(i); }
    void addCoolant(Component* component) { coolant.add(component, "component"); }
    void clearCoolantList() { coolant.clear(); }

    /// Flow rate of the coolant, a plain number.
    double getMdot() const { return mdot.get(); }
    void setMdot(double rate) { mdot.set(rate); }

private:
    void fields(Fields& walk) override;

    Length location{"location", 0.0, Length::M};
    NodeList<Component> coolant{"coolant"};
    DataValue<double> mdot{"flowrate", 0.0};
};

} // namespace thermo::input
