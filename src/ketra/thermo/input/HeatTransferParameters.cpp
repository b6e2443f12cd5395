#include <ketra/thermo/input/HeatTransferParameters.h>

#include <libconfig.h++>

using libconfig::Setting;

namespace thermo::input {

void HeatTransferParameters::read(const Setting& parent)
{
    Section::read(parent);
    if (wallLayerHeight.get() == 0.0) wallLayerHeight.set(wallLayerHeight.getDefault());
}

void HeatTransferParameters::fields(Fields& walk)
{
    walk.each(relationsType, applyBLC, numberOfStations, radiation, wallLayerHeight);
}

void HeatTransferParameters::Radiation::read(const Setting& parent)
{
    isOn = parent.exists(getName());
    if (isOn) emissivity.read(getSettings(parent));
}

void HeatTransferParameters::Radiation::write(Setting& parent, bool all)
{
    if (isOn) emissivity.write(createSettings(parent), all);
}

} // namespace thermo::input
