#include <ketra/thermo/input/NozzleFlowOptions.h>

#include <libconfig.h++>

#include <memory>

using libconfig::Setting;

namespace thermo::input {

namespace {

constexpr const char* stationsKey = "nozzleStations";
constexpr const char* stationKey = "stationConditions";

} // namespace

NozzleSectionConditions& NozzleFlowOptions::setSection()
{
    return stations.add(std::make_unique<NozzleSectionConditions>(stationKey));
}

void NozzleFlowOptions::reset()
{
    clear(freezing, inlet, exit, efficiencies, ambient, throttling);
    stations.clear();
}

void NozzleFlowOptions::validate()
{
    if (isCalculateNozzleFlow() && !isFreezingConditionsSet() && !isNozzleInletConditionsSet() &&
        !isNozzleExitConditionsSet())
        failInvalid("Neither freezing conditions, nozzle inlet conditions nor nozzle exit "
                    "conditions is defined within NozzleFlowOptions");
    freezing.validate();
    inlet.validate();
    exit.validate();
    ambient.validate();
    throttling.validate();
    for (unsigned int i = 0; i < stations.size(); ++i) stations.at(i).validate();
}

// The stations are a list of groups, each holding one section under a key of its own.
void NozzleFlowOptions::read(const Setting& parent)
{
    Section::read(parent);
    const Setting& group = getSettings(parent);
    if (!group.exists(stationsKey) || !group[stationsKey].isList()) return;
    const Setting& list = group[stationsKey];
    for (int i = 0; i < list.getLength(); ++i) {
        auto station = std::make_unique<NozzleSectionConditions>(stationKey);
        station->read(list[i]);
        stations.add(std::move(station));
    }
}

void NozzleFlowOptions::write(Setting& parent, bool all)
{
    Section::write(parent, all);
    Setting& list = createList(createSettings(parent), stationsKey);
    for (unsigned int i = 0; i < stations.size(); ++i)
        stations.at(i).write(list.add(Setting::TypeGroup), all);
}

void NozzleFlowOptions::fields(Fields& walk)
{
    walk.field(calculateNozzleFlow);
    walk.field(freezing);
    walk.field(inlet);
    walk.field(exit);
    walk.sparse(efficiencies);
    walk.field(ambient);
    walk.field(throttling);
}

} // namespace thermo::input
