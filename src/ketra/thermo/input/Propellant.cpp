#include <ketra/thermo/input/Propellant.h>

#include <ketra/thermo/input/Exception.h>
#include <ketra/thermo/input/detail/codes.h>
#include <ketra/util/Log.h>

#include <libconfig.h++>

#include <memory>

using libconfig::Setting;

namespace thermo::input {

namespace {

// The component read into this list is complete or not there at all.
void readList(const Setting& group, const char* key, List<Component>& list)
{
    if (!group.exists(key) || !group[key].isList()) return;
    const Setting& items = group[key];
    for (int i = 0; i < items.getLength(); ++i) {
        auto component = std::make_unique<Component>();
        component->read(items[i]);
        list.add(std::move(component));
    }
}

void writeList(Setting& items, List<Component>& list, bool all)
{
    for (unsigned int i = 0; i < list.size(); ++i)
        list.at(i).write(items.add(Setting::TypeGroup), all);
}

} // namespace

void Propellant::add(List<Component>& list, Component* component)
{
    if (component == nullptr) {
        util::Log::error("THERMO", "Could not add component: NULL pointer\n");
        throw Exception(codes::nullPointer);
    }
    list.add(std::unique_ptr<Component>(component));
}

void Propellant::reset()
{
    ratio.set(0.0, Ratio::KM);
    oxidizer.clear();
    fuel.clear();
    species.clear();
}

void Propellant::validate()
{
    if (isMixture() && species.isEmpty()) failInvalid("Mixture is not defined within Propellant");
    if (isOxidizerAndFuel() && (oxidizer.isEmpty() || fuel.isEmpty()))
        failInvalid("Either oxidizer or fuel is not defined within Propellant");
}

void Propellant::read(const Setting& parent)
{
    const Setting& group = getSettings(parent);
    if (group.exists("components")) {
        const Setting& components = group["components"];
        if (components.exists("ratio"))
            ratio.read(components);
        else
            ratio.set(0.0, Ratio::OPTIMAL);
        readList(components, "oxidizer", oxidizer);
        readList(components, "fuel", fuel);
    } else if (group.exists("mixture")) {
        ratio.set(0.0, Ratio::MIXTURE);
        readList(group["mixture"], "species", species);
    } else {
        util::Log::error("THERMO", "Neither composition ox+fuel nor mixture is defined\n");
        throw Exception(codes::notFound, "Neither composition ox+fuel nor mixture is defined.");
    }
}

void Propellant::write(Setting& parent, bool all)
{
    Setting& group = createSettings(parent);
    if (isOxidizerAndFuel()) {
        Setting& components = createGroup(group, "components");
        ratio.write(components, all);
        writeList(createList(components, "oxidizer"), oxidizer, all);
        writeList(createList(components, "fuel"), fuel, all);
    } else if (isMixture()) {
        writeList(createList(createGroup(group, "mixture"), "species"), species, all);
    }
}

bool Propellant::isOxidizerAndFuel() const
{
    const Ratio::UNITS type = ratio.getUnit();
    return type == Ratio::KM || type == Ratio::ALPHA || type == Ratio::OPTIMAL;
}

} // namespace thermo::input
