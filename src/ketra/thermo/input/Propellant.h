#pragma once

#include <ketra/thermo/input/Component.h>
#include <ketra/thermo/input/NodeList.h>
#include <ketra/thermo/input/Ratio.h>

namespace thermo::input {

/// What burns, as the document says it: oxidizer and fuel with a ratio between them, or one
/// premixed list of species. `thermo::Propellant` is what the calculation makes of it.
class KETRA_API Propellant : public Node
{
public:
    Propellant() : Node("propellant") {}

    /// The ratio between oxidizer and fuel, and its kind.
    double getRatio() const { return ratio.getValue(); }
    Ratio::UNITS getRatioType() const { return ratio.getUnit(); }
    void setRatio(double value, Ratio::UNITS type) { ratio.set(value, type); }

    /// The components of the oxidizer. The list owns them; `add` takes ownership.
    /// \throws std::out_of_range for an index beyond the list
    /// \throws Exception 2 when a null pointer is added
    unsigned int getOxidizerListSize() const { return oxidizer.size(); }
    Component* getOxidizer(unsigned int i) { return &oxidizer.at(i); }
    const Component* getOxidizer(unsigned int i) const { return &oxidizer.at(i); }
    void addOxidizer(Component* component) { oxidizer.add(component, "component"); }

    /// The components of the fuel, in the same manner.
    unsigned int getFuelListSize() const { return fuel.size(); }
    Component* getFuel(unsigned int i) { return &fuel.at(i); }
    const Component* getFuel(unsigned int i) const { return &fuel.at(i); }
    void addFuel(Component* component) { fuel.add(component, "component"); }

    /// The components of a mixture, in the same manner.
    unsigned int getSpeciesListSize() const { return species.size(); }
    Component* getSpecies(unsigned int i) { return &species.at(i); }
    const Component* getSpecies(unsigned int i) const { return &species.at(i); }
    void addSpecies(Component* component) { species.add(component, "component"); }

    /// A mass ratio of 0, and empty lists.
    void reset();

    /// Oxidizer and fuel must both have components, or the mixture must.
    /// \throws Exception 7
    void validate() override;
    /// Components are appended to what the lists hold already.
    /// \throws libconfig::SettingNotFoundException without a group "propellant"
    /// \throws Exception 3 if it holds neither components nor a mixture, 4 for an unknown unit
    void read(const libconfig::Setting& parent) override;
    void write(libconfig::Setting& parent, bool all) override;

private:
    bool isOxidizerAndFuel() const;
    bool isMixture() const { return ratio.getUnit() == Ratio::MIXTURE; }

    Ratio ratio{"ratio", 0.0, Ratio::KM};
    NodeList<Component> oxidizer{"oxidizer"};
    NodeList<Component> fuel{"fuel"};
    NodeList<Component> species{"species"};
};

} // namespace thermo::input
