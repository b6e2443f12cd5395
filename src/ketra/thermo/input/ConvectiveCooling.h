#pragma once

#include <ketra/thermo/input/Component.h>
#include <ketra/thermo/input/CoolingSection.h>
#include <ketra/thermo/input/NodeList.h>

namespace thermo::input {

/// A section whose wall is cooled by a flow of coolant: the coolant, stated by its components or by
/// the section that it comes from, and how it flows.
class KETRA_API ConvectiveCooling : public CoolingSection
{
public:
    using CoolingSection::CoolingSection;

    /// The components of the coolant. The list owns them; `addCoolant` takes ownership, and drops
    /// the section where the coolant comes from.
    /// \throws std::out_of_range for an index beyond the list
    /// \throws Exception 2 when a null pointer is added
    bool isCoolantSet() const { return !coolant.isEmpty(); }
    unsigned int getCoolantListSize() const { return coolant.size(); }
    Component* getCoolant(unsigned int i) { return &coolant.at(i); }
    const Component* getCoolant(unsigned int i) const { return &coolant.at(i); }
    void addCoolant(Component* component);
    void clearCoolantList() { coolant.clear(); }

    /// The section where the coolant comes from; setting it clears the list of components.
    bool isCoolantFromSet() const { return coolantFrom.isSet(); }
    const std::string& getCoolantFrom() const { return coolantFrom.get(); }
    void setCoolantFrom(const std::string& section);

    /// Flow rate of the coolant, a plain number.
    double getMdot() const { return mdot.get(); }
    void setMdot(double rate) { mdot.set(rate); }

    /// The coolant flows against the gas.
    bool getOppositeFlow() const { return oppositeFlow.get(); }
    void setOppositeFlow(bool opposite) { oppositeFlow.set(opposite); }

    /// The coolant passes the section there and back.
    bool getTwoPass() const { return twoPass.get(); }
    void setTwoPass(bool two) { twoPass.set(two); }

protected:
    void fields(Fields& walk) override;

private:
    NodeList<Component> coolant{"coolant"};
    OptionalValue<std::string> coolantFrom{"coolantFrom", "", "coolantFrom"};
    DataValue<double> mdot{"flowrate", 1.0};
    DataValue<bool> oppositeFlow{"oppositeFlow", false};
    DataValue<bool> twoPass{"twoPass", false};
};

} // namespace thermo::input
