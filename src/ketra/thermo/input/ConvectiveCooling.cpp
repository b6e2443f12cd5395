#include <ketra/thermo/input/ConvectiveCooling.h>

namespace thermo::input {

void ConvectiveCooling::addCoolant(Component* component)
{
    coolant.add(component, "component");
    clear(coolantFrom);
}

void ConvectiveCooling::setCoolantFrom(const std::string& section)
{
    coolant.clear();
    coolantFrom.set(section);
}

void ConvectiveCooling::fields(Fields& walk)
{
    CoolingSection::fields(walk);
    if (!walk.ifAny(coolant)) walk.field(coolantFrom);
    walk.each(mdot, oppositeFlow, twoPass);
}

} // namespace thermo::input
