#include <ketra/thermo/input/PropellantFeedSystem.h>

namespace thermo::input {

PressurizedFeedSystem&
PropellantFeedSystem::setPressurizedFeedSystem(PressurizedFeedSystem::TYPE type)
{
    turbopump.reset();
    PressurizedFeedSystem& system = pressurized.create();
    system.setType(type);
    return system;
}

TurbopumpFeedSystem& PropellantFeedSystem::setTurbopumpFeedSystem(TurbopumpFeedSystem::CYCLE cycle)
{
    pressurized.reset();
    TurbopumpFeedSystem& system = turbopump.create();
    system.setCycle(cycle);
    return system;
}

void PropellantFeedSystem::clear()
{
    pressurized.reset();
    turbopump.reset();
}

void PropellantFeedSystem::validate()
{
    pressurized.validate();
    turbopump.validate();
}

void PropellantFeedSystem::fields(Fields& walk)
{
    walk.oneOf(pressurized, turbopump);
    walk.field(estimateDryMass);
}

} // namespace thermo::input
