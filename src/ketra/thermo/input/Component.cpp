#include <ketra/thermo/input/Component.h>

namespace thermo::input {

Component::Component(const char* speciesName) : Component(speciesName, 0.0) {}

Component::Component(const char* speciesName, double mf) : Node("")
{
    species.set(speciesName != nullptr ? speciesName : "");
    massFraction.set(mf);
}

Component::Component(const char* speciesName, double mf, double initialT)
    : Component(speciesName, mf)
{
    T.set(initialT, Temperature::K);
}

Component::Component(const char* speciesName, double mf, double initialT, double initialP,
                     Pressure::UNITS pUnit)
    : Component(speciesName, mf, initialT, Temperature::K, initialP, pUnit)
{
}

Component::Component(const char* speciesName, double mf, double initialT, Temperature::UNITS TUnit,
                     double initialP, Pressure::UNITS pUnit)
    : Component(speciesName, mf)
{
    // The stated scale of a temperature never changes once it is there.
    T = Temperature("T", 0.0, TUnit);
    T.set(initialT, TUnit);
    setP(initialP, pUnit);
}

void Component::read(const libconfig::Setting& item)
{
    species.read(item);
    massFraction.read(item);
    T.read(item);
    p.read(item);
}

void Component::write(libconfig::Setting& item, bool all)
{
    species.write(item, all);
    massFraction.write(item, all);
    T.write(item, all);
    p.write(item, all);
}

} // namespace thermo::input
