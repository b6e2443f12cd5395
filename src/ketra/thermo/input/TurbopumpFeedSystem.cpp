#include <ketra/thermo/input/TurbopumpFeedSystem.h>

#include <ketra/thermo/input/detail/OwnedMembers.h>

#include <libconfig.h++>

using libconfig::Setting;

namespace thermo::input {

namespace {

constexpr const char* generatorsKey = "gasGenerators";
constexpr const char* turbinesKey = "turbines";
constexpr const char* oxidizerKey = "oxidizerFeedSystem";
constexpr const char* fuelKey = "fuelFeedSystem";

/// The element \p i of the list \p key of \p group, or null.
const Setting* findElement(const Setting& group, const char* key, int i)
{
    if (!group.exists(key) || !group[key].isList() || i >= group[key].getLength()) return nullptr;
    return &group[key][i];
}

} // namespace

void TurbopumpFeedSystem::reset()
{
    oxidizer.reset();
    fuel.reset();
    firstGenerator = {};
    secondGenerator = {};
    clear(firstTurbine, secondTurbine);
}

void TurbopumpFeedSystem::read(const Setting& parent)
{
    Section::read(parent);
    const Setting& group = getSettings(parent);
    if (const Setting* element = findElement(group, generatorsKey, 0))
        readGenerator(*element, firstGenerator);
    if (const Setting* element = findElement(group, generatorsKey, 1))
        readGenerator(*element, secondGenerator);
    if (const Setting* element = findElement(group, turbinesKey, 0))
        detail::readOwned(*element, firstTurbine);
    if (const Setting* element = findElement(group, turbinesKey, 1))
        detail::readOwned(*element, secondTurbine);
}

void TurbopumpFeedSystem::write(Setting& parent, bool all)
{
    Section::write(parent, all);
    Setting& group = createSettings(parent);
    if (firstGenerator.parameters.isSet()) {
        Setting& list = createList(group, generatorsKey);
        writeGenerator(list, firstGenerator, all);
        if (secondGenerator.parameters.isSet()) writeGenerator(list, secondGenerator, all);
    }
    if (firstTurbine.isSet()) {
        Setting& list = createList(group, turbinesKey);
        detail::writeOwned(list.add(Setting::TypeGroup), firstTurbine, all);
        if (secondTurbine.isSet())
            detail::writeOwned(list.add(Setting::TypeGroup), secondTurbine, all);
    }
}

// The generator's own keys stand beside the groups of its two lines.
void TurbopumpFeedSystem::readGenerator(const Setting& element, Generator& generator)
{
    detail::readOwned(element, generator.parameters);
    if (element.exists(oxidizerKey)) detail::readOwned(element[oxidizerKey], generator.oxidizer);
    if (element.exists(fuelKey)) detail::readOwned(element[fuelKey], generator.fuel);
}

void TurbopumpFeedSystem::writeGenerator(Setting& list, Generator& generator, bool all)
{
    Setting& element = list.add(Setting::TypeGroup);
    detail::writeOwned(element, generator.parameters, all);
    if (generator.oxidizer.isSet())
        detail::writeOwned(createGroup(element, oxidizerKey), generator.oxidizer, all);
    if (generator.fuel.isSet())
        detail::writeOwned(createGroup(element, fuelKey), generator.fuel, all);
}

void TurbopumpFeedSystem::fields(Fields& walk)
{
    walk.field(cycle);
    walk.field(oxidizer);
    walk.field(fuel);
}

} // namespace thermo::input
