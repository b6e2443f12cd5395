#include <ketra/thermo/input/PressurizedFeedSystem.h>

namespace thermo::input {

void PressurizedFeedSystem::reset()
{
    oxidizer.reset();
    fuel.reset();
}

void PressurizedFeedSystem::fields(Fields& walk)
{
    walk.field(type);
    walk.field(oxidizer);
    walk.field(fuel);
}

} // namespace thermo::input
