#include <ketra/thermo/input/Propellant.h>

#include <ketra/thermo/input/Exception.h>
#include <ketra/thermo/input/detail/codes.h>
#include <ketra/util/Log.h>

#include <libconfig.h++>

using libconfig::Setting;

namespace thermo::input {

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
        oxidizer.read(components);
        fuel.read(components);
    } else if (group.exists("mixture")) {
        ratio.set(0.0, Ratio::MIXTURE);
        species.read(group["mixture"]);
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
        oxidizer.write(components, all);
        fuel.write(components, all);
    } else if (isMixture()) {
        species.write(createGroup(group, "mixture"), all);
    }
}

bool Propellant::isOxidizerAndFuel() const
{
    const Ratio::UNITS type = ratio.getUnit();
    return type == Ratio::KM || type == Ratio::ALPHA || type == Ratio::OPTIMAL;
}

} // namespace thermo::input
